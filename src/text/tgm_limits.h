#pragma once

#include <cstdint>

// The numbers of the markdown dialect. A text beyond one of the limits gives kTgmInvalidBlock.

// The longest text, in bytes: lines count their bytes with 32 bits.
inline constexpr std::uint64_t kTgmMaxLength = 0xFFFF'FFFF;

// How many nodes a tree has below each other, the root not counted. All work on a tree recurses, and a
// window's thread has one MiB of stack; a list takes two levels, a quote one.
inline constexpr std::uint32_t kTgmMaxDepth = 200;

// A block may reach beyond the item or list that it stands in, and its lines then appear again in the block
// around it: the dialect allows trees that double with every third line. Nested quotes and lists also read
// their lines once for each level. So the work on a text is counted, and there is so much for each byte:
// several times of what the densest text without such doubling needs.
inline constexpr std::uint64_t kTgmWorkPerByte = 64;
// For small texts, whatever they do.
inline constexpr std::uint64_t kTgmBaseWork = 4 * 1024 * 1024;

// What the work costs. Memory is dearer than time.
inline constexpr std::uint64_t kTgmLineVisitCost = 1;   // looking at one line, or at one byte for emphasis
inline constexpr std::uint64_t kTgmOpenBlockCost = 16;  // one of the blocks that are open at a line of a log
inline constexpr std::uint64_t kTgmByteCost = 4;        // a byte of a node's text
inline constexpr std::uint64_t kTgmNodeCost = 32;       // a node
inline constexpr std::uint64_t kTgmQuotedLineCost =
    32;  // a line of a quote, which is read as a line of its own

// Blanks of one level of indentation inside quotes.
inline constexpr std::uint32_t kTgmQuoteTabWidth = 2;

// The size of the work that a translator is told for a short text, in bytes.
inline constexpr std::uint32_t kTgmMinWorkSize = 32768;

static_assert(kTgmNodeCost < kTgmWorkPerByte, "one byte may become a node");
static_assert(kTgmBaseWork / kTgmNodeCost >= 100'000, "small texts may grow large trees");

#pragma once

#include <cstddef>
#include <cstdint>

// The limits of the markdown dialect. A text that exceeds one of them gives kTgmInvalidBlock.

// The longest text, in bytes: lines count their bytes with 32 bits.
inline constexpr std::uint64_t kTgmMaxLength = 0xFFFF'FFFF;

// The deepest level of a tree; the root is level 0. Everything that works on a tree recurses, and the thread
// of a window has a stack of one MiB. A list takes two levels, a quote one.
inline constexpr std::uint32_t kTgmMaxDepth = 200;

// A block may reach beyond the item or list that contains it, and its lines then appear again in the block
// around it: the dialect allows trees that double with every third line. Nested quotes and lists also read
// their lines once for each level. So the work on a text is counted, and each byte of the text pays for this
// much, several times what the densest text without such doubling needs.
inline constexpr std::uint64_t kTgmWorkPerByte = 64;
// Every text may use this much, however short it is.
inline constexpr std::uint64_t kTgmBaseWork = 4 * 1024 * 1024;

// What the work costs. Memory is dearer than time.
inline constexpr std::uint64_t kTgmLineVisitCost = 1;    // to look at a line, or at a byte for emphasis
inline constexpr std::uint64_t kTgmOpenBlockCost = 16;   // a block that is open at a line of the debug log
inline constexpr std::uint64_t kTgmByteCost = 4;         // a byte of a node's text
inline constexpr std::uint64_t kTgmNodeCost = 32;        // a node
inline constexpr std::uint64_t kTgmQuotedLineCost = 32;  // a line of a quote, which is parsed once more

// The blanks of one level of indentation inside quotes.
inline constexpr std::uint32_t kTgmQuoteTabWidth = 2;

// The smallest size, in bytes, that is announced to a translator, even for a shorter text.
inline constexpr std::uint32_t kTgmMinWorkSize = 32768;

static_assert(kTgmNodeCost < kTgmWorkPerByte, "one byte may become a node");
static_assert(kTgmBaseWork / kTgmNodeCost >= 100'000, "small texts may grow large trees");

// Counts the work on one text, quotes included, against what its length allows.
class TGMWorkBudget {
public:
    // `length` is that of the whole text, in bytes.
    explicit TGMWorkBudget(std::size_t length) : limit_(kTgmBaseWork + kTgmWorkPerByte * length) {}

    // False when this is more than what is left; from then on every call fails.
    bool spend(std::uint64_t work) {
        spent_ += work;
        return spent_ <= limit_;
    }

    bool isExhausted() const { return spent_ > limit_; }
    std::uint64_t getSpent() const { return spent_; }
    std::uint64_t getLimit() const { return limit_; }

private:
    std::uint64_t limit_;
    std::uint64_t spent_ = 0;
};

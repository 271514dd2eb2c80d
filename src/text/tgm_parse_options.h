#pragma once

#include <cstdint>
#include <string>
#include <vector>

// What the rules of the dialect leave out of a text, or show otherwise than it looks.
enum class TGMLossKind : std::uint8_t {
    kJoinedHeading,    // a heading that became text of the paragraph above it
    kJoinedList,       // the first of some list lines that did
    kRenumberedItem,   // the first item of a list that isn't shown with its own number or letter
    kQuotedLine,       // the last line of a quote, which isn't shown
    kQuotedCharacter,  // the character directly after a `>`, which isn't shown
};

struct TGMLoss {
    TGMLossKind kind;
    std::uint32_t line;  // from 0, counted as in TGMParseResult

    auto operator<=>(const TGMLoss&) const = default;
};

// How a text of the markdown dialect is parsed.
struct TGMParseOptions {
    // A list line directly under a plain line stays in the paragraph.
    bool lazyLists = true;
    // Lines such as `a. text` are list items.
    bool alphaLists = true;
    // Parsing goes on after an error.
    bool keepGoing = false;
    // All lines are first checked to be valid UTF-8.
    bool checkUtf8 = false;
    // The number of blanks that make one level of indentation; 0 counts as 1.
    std::uint32_t tabWidth = 4;
    // Joins the lines of a paragraph.
    char joinChar = '\n';
    // Receives the dumps unless it is null; not owned.
    std::string* debugLog = nullptr;
    // Receives the losses unless it is null; not owned. In no order, and those of lines that the dialect
    // reads twice are there twice.
    std::vector<TGMLoss>* losses = nullptr;
};

// What went wrong in a parse; several can occur together.
enum TGMParseError : std::uint8_t {
    kTgmNullText = 1,
    kTgmEmptyText = 2,         // or the range of a block is reversed
    kTgmInvalidBlock = 8,      // a block without a valid structure, or a text that exceeds the limits
    kTgmInvalidEmphasis = 16,  // emphasis that can't be resolved
    kTgmInvalidUtf8 = 32,
};

struct TGMParseResult {
    std::uint8_t errors = 0;  // a set of TGMParseError
    // The first place of trouble, counted from 0; all ones when none is known, as for emphasis. A line inside
    // a quote is counted from the start of the whole text, too. The column is for information only.
    std::uint32_t line = UINT32_MAX;
    std::uint32_t column = UINT32_MAX;

    bool succeeded() const { return errors == 0; }

    void add(TGMParseError error, std::uint32_t atLine = UINT32_MAX, std::uint32_t atColumn = UINT32_MAX) {
        errors = static_cast<std::uint8_t>(errors | error);
        if (atLine < line) {
            line = atLine;
            column = atColumn;
        }
    }

    void merge(const TGMParseResult& other) {
        errors = static_cast<std::uint8_t>(errors | other.errors);
        if (other.line < line) {
            line = other.line;
            column = other.column;
        }
    }
};

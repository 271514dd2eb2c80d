#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "base/char_string.h"

// The values are shared by lines and nodes; a heading of level n is kTgmHeading1 + n - 1.
enum TGMNodeType : std::uint8_t {
    kTgmNone = 0,      // never in a tree
    kTgmBlank = 1,     // only a kind of line
    kTgmDocument = 2,  // the root
    kTgmPlain = 3,     // text without a paragraph of its own
    kTgmParagraph = 4,
    kTgmBold = 5,
    kTgmItalic = 6,
    kTgmUnorderedList = 7,
    kTgmNumberedList = 8,
    kTgmLetteredList = 9,
    kTgmListItem = 10,
    kTgmHeading1 = 11,
    kTgmHeading6 = 16,
    kTgmQuote = 17,
    kTgmComposite = 18,  // a former plain node whose text is now in children
};

constexpr bool isTgmList(TGMNodeType type) {
    return type == kTgmUnorderedList || type == kTgmNumberedList || type == kTgmLetteredList;
}

constexpr bool isTgmHeading(TGMNodeType type) {
    return type >= kTgmHeading1 && type <= kTgmHeading6;
}

// A node of the tree of a text. Owns its children; parsers bound the depth of a tree (tgm_limits.h).
struct TGMNode {
    TGMNodeType type = kTgmNone;
    CharString text;
    std::vector<std::unique_ptr<TGMNode>> children;
};

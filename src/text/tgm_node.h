#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <memory_resource>
#include <string_view>
#include <vector>

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

// The text of a node: zero-terminated bytes in the memory of the tree, shared by copies.
class TGMText {
public:
    TGMText() = default;
    // `data` holds `length` bytes and a terminator, and nobody else's text.
    TGMText(char* data, std::size_t length) : data_(data), length_(length) {}

    bool isEmpty() const { return length_ == 0; }
    const char* c_str() const { return data_ == nullptr ? "" : data_; }
    std::string_view view() const { return {c_str(), length_}; }
    // For whoever finishes the tree; null for a text that was never set.
    char* data() { return data_; }

private:
    char* data_ = nullptr;
    std::size_t length_ = 0;
};

struct TGMNode;

// A node and all that it holds lie in the memory of its tree and end with it, so there is nothing to do.
struct TGMNodeEnd {
    void operator()(TGMNode* /*node*/) const {}
};
using TGMNodePtr = std::unique_ptr<TGMNode, TGMNodeEnd>;

// A node of the tree of a text. Owns its children; parsers bound the depth of a tree (tgm_limits.h). Made by
// TGMTree.
struct TGMNode {
    TGMNode(TGMNodeType nodeType, std::pmr::memory_resource* memory) : type(nodeType), children(memory) {}

    TGMNodeType type;
    TGMText text;
    std::pmr::vector<TGMNodePtr> children;
};

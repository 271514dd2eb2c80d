#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <memory_resource>
#include <span>
#include <string_view>
#include <vector>

// Lines and nodes share these values; a heading of level n is kTgmHeading1 + n - 1.
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
    kTgmComposite = 18,  // a former plain node whose text is now in its children
};

constexpr bool isTgmList(TGMNodeType type) {
    return type == kTgmUnorderedList || type == kTgmNumberedList || type == kTgmLetteredList;
}

constexpr bool isTgmHeading(TGMNodeType type) {
    return type >= kTgmHeading1 && type <= kTgmHeading6;
}

// The text of a node: bytes in the memory of the tree, which copies of this object share.
class TGMText {
public:
    TGMText() = default;
    // No other text uses these bytes.
    explicit TGMText(std::span<char> bytes) : bytes_(bytes) {}

    bool isEmpty() const { return bytes_.empty(); }
    std::string_view view() const { return {bytes_.data(), bytes_.size()}; }
    // For the second phase, which changes a text in place.
    std::span<char> bytes() { return bytes_; }

private:
    std::span<char> bytes_;
};

struct TGMNode;

// A node and all that it holds are in the memory of its tree and end with it, so there is nothing to free.
struct TGMNodeEnd {
    void operator()(TGMNode* /*node*/) const {}
};
using TGMNodePtr = std::unique_ptr<TGMNode, TGMNodeEnd>;

// A node of the tree of a text, made by TGMTree. It owns its children. The parser bounds the depth of a tree
// (kTgmMaxDepth).
struct TGMNode {
    TGMNode(TGMNodeType nodeType, std::pmr::memory_resource* memory) : type(nodeType), children(memory) {}

    TGMNodeType type;
    TGMText text;
    std::pmr::vector<TGMNodePtr> children;
};

// The memory of all nodes of a text and of their texts. Most nodes are small and all end together, so they
// come from a few large blocks. The tree must outlive its nodes. One thread only.
class TGMTree {
public:
    // `textLength` is that of the text to come, in bytes.
    explicit TGMTree(std::size_t textLength);
    TGMTree(const TGMTree&) = delete;
    TGMTree& operator=(const TGMTree&) = delete;

    // A node without a text. Throws std::bad_alloc, as copyText does.
    TGMNodePtr makeNode(TGMNodeType type);
    // A copy of its own, which can be changed.
    TGMText copyText(std::string_view text);

private:
    std::pmr::monotonic_buffer_resource memory_;
};

#include "text/tgm_tree.h"

#include <cstring>

namespace {

// Room for the texts and for the nodes, which take half as much in an ordinary document.
std::size_t firstBlockSize(std::size_t textLength) {
    constexpr std::size_t kSmallest = 1024;
    return kSmallest + textLength + textLength / 2;
}

}  // namespace

TGMTree::TGMTree(std::size_t textLength) : memory_(firstBlockSize(textLength)) {}

TGMNodePtr TGMTree::makeNode(TGMNodeType type) {
    void* const place = memory_.allocate(sizeof(TGMNode), alignof(TGMNode));
    return TGMNodePtr(std::construct_at(static_cast<TGMNode*>(place), type, &memory_));
}

TGMText TGMTree::copyText(std::string_view text) {
    if (text.empty()) {
        return {};
    }
    auto* const copy = static_cast<char*>(memory_.allocate(text.size(), 1));
    std::memcpy(copy, text.data(), text.size());
    return TGMText({copy, text.size()});
}

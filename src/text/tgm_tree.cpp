#include "text/tgm_tree.h"

#include <cstring>
#include <memory>

namespace {

// For the texts and, in an ordinary document, half as much for the nodes.
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
    auto* const copy = static_cast<char*>(memory_.allocate(text.size() + 1, 1));
    std::memcpy(copy, text.data(), text.size());
    copy[text.size()] = '\0';
    return {copy, text.size()};
}

#pragma once

#include <cstddef>
#include <memory_resource>
#include <string_view>

#include "text/tgm_node.h"

// The memory of all nodes of a text and of their texts. Most nodes are small and all end together, so they
// come from a few large blocks. It has to outlive its nodes. One thread only.
class TGMTree {
public:
    // `textLength` is that of the text to come, in bytes.
    explicit TGMTree(std::size_t textLength);
    TGMTree(const TGMTree&) = delete;
    TGMTree& operator=(const TGMTree&) = delete;

    // A node without a text. Throws std::bad_alloc, as below.
    TGMNodePtr makeNode(TGMNodeType type);
    // A copy of its own, which can be changed.
    TGMText copyText(std::string_view text);

private:
    std::pmr::monotonic_buffer_resource memory_;
};

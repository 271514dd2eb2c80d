#pragma once

#include <cstdint>
#include <unordered_set>

class OverlayContent;

// The memory that the contents of changed files share. When it runs short, the largest contents are
// forgotten: of a product's files that is what nobody reads again, while logs and records, which are read,
// are small. For one thread.
class ContentMemory {
public:
    explicit ContentMemory(std::int64_t limit) : limit_(limit) {}

    void join(OverlayContent& content) { contents_.insert(&content); }
    void leave(OverlayContent& content) { contents_.erase(&content); }
    // A content has grown, or shrunk, by that many bytes. May have contents forgotten.
    void grow(std::int64_t bytes);

    std::int64_t used() const { return used_; }

private:
    void forgetLargest();

    std::int64_t limit_;
    std::int64_t used_ = 0;
    std::unordered_set<OverlayContent*> contents_;
};

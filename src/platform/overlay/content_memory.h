#pragma once

#include <cstdint>
#include <unordered_set>

// What takes memory, and can do without it.
class KeptContent {
public:
    virtual ~KeptContent() = default;
    virtual std::int64_t keptBytes() const = 0;
    // Gives the memory back, and tells ContentMemory::grow.
    virtual void forget() = 0;
};

// The memory that the contents of changed files share. When it runs short, the largest contents are
// forgotten: of a product's files that is what nobody reads again, while logs and records, which are read,
// are small. For one thread.
class ContentMemory {
public:
    explicit ContentMemory(std::int64_t limit) : limit_(limit) {}

    void join(KeptContent& content) { contents_.insert(&content); }
    void leave(KeptContent& content) { contents_.erase(&content); }
    // A content has grown, or shrunk, by that many bytes. May have contents forgotten.
    void grow(std::int64_t bytes);

    std::int64_t used() const { return used_; }

private:
    void forgetLargest();

    std::int64_t limit_;
    std::int64_t used_ = 0;
    std::unordered_set<KeptContent*> contents_;
};

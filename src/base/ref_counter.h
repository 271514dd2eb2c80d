#pragma once

#include <cstdint>

// A block of elements that frees itself with its last reference. It starts with one reference, which
// belongs to the maker. The count isn't atomic: a block and all its holders stay on one thread.
template <typename T>
class RefCounter {
public:
    // Takes ownership of `data`, which came from new T[], and may be null.
    explicit RefCounter(T* data) : data_(data) {}
    RefCounter(const RefCounter&) = delete;
    RefCounter& operator=(const RefCounter&) = delete;

    void addReference() { ++references_; }

    // Deletes this object and its block when the last reference goes.
    void release() {
        if (--references_ == 0) {
            delete this;
        }
    }

    T* data() const { return data_; }
    std::int32_t references() const { return references_; }

protected:
    virtual ~RefCounter() { delete[] data_; }

private:
    T* data_;
    std::int32_t references_ = 1;
};

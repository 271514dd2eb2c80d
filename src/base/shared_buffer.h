#pragma once

#include <cstdint>

#include "base/ref_counter.h"

// A shared block of bytes. Copies share the block, which is freed with the last of them. One thread only.
class SharedBuffer {
public:
    SharedBuffer() = default;
    // A new block of `size` bytes followed by one zero byte, so that a block can be used as text.
    // The bytes start uninitialised. Throws std::bad_alloc.
    explicit SharedBuffer(std::int32_t size);
    SharedBuffer(const SharedBuffer& other);
    SharedBuffer(SharedBuffer&& other) noexcept;
    SharedBuffer& operator=(const SharedBuffer& other);
    SharedBuffer& operator=(SharedBuffer&& other) noexcept;
    ~SharedBuffer();

    // Drops the reference; data() is null and size() 0 afterwards.
    void release();

    // Null when nothing is held.
    unsigned char* data() const { return data_ == nullptr ? nullptr : data_->data(); }
    const char* text() const { return reinterpret_cast<const char*>(data()); }
    // In bytes, without the zero byte after them.
    std::int32_t size() const { return size_; }
    // How many objects share the block; 0 when nothing is held.
    std::int32_t references() const { return data_ == nullptr ? 0 : data_->references(); }

private:
    RefCounter<unsigned char>* data_ = nullptr;
    std::int32_t size_ = 0;
};

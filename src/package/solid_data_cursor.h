#pragma once

#include <cstddef>
#include <cstdint>

// A position in a block of memory that belongs to somebody else.
class SolidDataCursor {
public:
    static constexpr int kShortRead = -11;
    static constexpr int kBadSeek = -12;

    SolidDataCursor(const unsigned char* data, std::int64_t size) : data_(data), size_(size) {}

    // 0, or kBadSeek for a place ahead of the block or behind its end; the position stays then.
    int seekRelative(std::int64_t distance);
    // Copies at most what is left; kShortRead when that was less than `size`.
    int read(void* buffer, std::int64_t size);
    // The next `size` bytes where they lie, or kShortRead with nothing moved.
    int readInPlace(std::int64_t size, const unsigned char*& outData);

    std::int64_t position() const { return position_; }

private:
    const unsigned char* data_;
    std::int64_t size_;
    std::int64_t position_ = 0;
};

#pragma once

#include <cstdint>

// The numbers appear in the debug log.
enum class CursorResult : int { kDone = 0, kShortRead = -11, kBadSeek = -12 };

// A position in a borrowed block of memory.
class SolidDataCursor {
public:
    SolidDataCursor(const unsigned char* data, std::int64_t size) : data_(data), size_(size) {}

    // kBadSeek for a position before the block or past its end; the position then stays.
    CursorResult seekRelative(std::int64_t distance);
    // Copies what is left, at most `size` bytes; kShortRead when that was less.
    CursorResult read(void* buffer, std::int64_t size);
    // Points to the next `size` bytes in place; kShortRead, with nothing moved, when there are fewer.
    CursorResult readInPlace(std::int64_t size, const unsigned char*& outData);

    std::int64_t position() const { return position_; }

private:
    const unsigned char* data_;
    std::int64_t size_;
    std::int64_t position_ = 0;
};

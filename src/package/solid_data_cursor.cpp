#include "package/solid_data_cursor.h"

#include <algorithm>
#include <cstring>

CursorResult SolidDataCursor::seekRelative(std::int64_t distance) {
    const std::int64_t target = position_ + distance;
    if (target < 0 || target > size_) {
        return CursorResult::kBadSeek;
    }
    position_ = target;
    return CursorResult::kDone;
}

CursorResult SolidDataCursor::read(void* buffer, std::int64_t size) {
    const std::int64_t available = std::min(size, size_ - position_);
    if (available > 0) {
        std::memcpy(buffer, data_ + position_, static_cast<std::size_t>(available));
        position_ += available;
    }
    return available < size ? CursorResult::kShortRead : CursorResult::kDone;
}

CursorResult SolidDataCursor::readInPlace(std::int64_t size, const unsigned char*& outData) {
    if (size < 0 || size > size_ - position_) {
        return CursorResult::kShortRead;
    }
    outData = data_ + position_;
    position_ += size;
    return CursorResult::kDone;
}

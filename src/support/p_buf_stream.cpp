#include "support/p_buf_stream.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

PBufStream::PBufStream(void* data, std::int64_t size) {
    attach(data, size);
}

PBufStream::~PBufStream() {
    freeOwned();
}

void PBufStream::freeOwned() {
    if (ownsData_) {
        std::free(data_);
    }
    data_ = nullptr;
    size_ = 0;
    position_ = 0;
}

void PBufStream::attach(void* data, std::int64_t size) {
    freeOwned();
    ownsData_ = false;
    data_ = static_cast<unsigned char*>(data);
    size_ = data == nullptr ? 0 : std::max<std::int64_t>(size, 0);
}

void PBufStream::adopt(void* data, std::int64_t size) {
    if (data_ == data) {
        ownsData_ = false;  // the same block again must not be freed under its new owner
    }
    freeOwned();
    ownsData_ = true;
    data_ = static_cast<unsigned char*>(data);
    size_ = data == nullptr ? 0 : std::max<std::int64_t>(size, 0);
}

int PBufStream::open() {
    ++openCount_;
    return 0;
}

int PBufStream::close() {
    --openCount_;
    return 0;
}

int PBufStream::write(const void* buffer, std::uint32_t size, std::uint32_t& outWritten) {
    const auto fitting = static_cast<std::uint32_t>(std::min<std::int64_t>(size, size_ - position_));
    if (fitting > 0) {
        std::memcpy(data_ + position_, buffer, fitting);
        position_ += fitting;
    }
    outWritten = fitting;
    return 0;
}

int PBufStream::read(void* buffer, std::uint32_t size, std::uint32_t& outRead) {
    outRead = 0;
    if (!prepareRead()) {
        return -1;
    }
    const auto left = static_cast<std::uint32_t>(std::min<std::int64_t>(size, size_ - position_));
    if (left > 0) {
        std::memcpy(buffer, data_ + position_, left);
        position_ += left;
    }
    outRead = left;
    return 0;
}

int PBufStream::seek(std::int64_t position) {
    if (position < 0 || position > size_) {
        return -1;
    }
    position_ = position;
    return 0;
}

int PBufStream::seekRelative(std::int64_t distance) {
    // Compared this way round, no distance can overflow.
    return distance > size_ - position_ ? -1 : seek(position_ + distance);
}

int PBufStream::seekFromEnd(std::int64_t distance) {
    return distance < -1 || distance >= size_ ? -1 : seek(size_ - distance - 1);
}

int PBufStream::setEndOfStream() {
    size_ = position_;
    return 0;
}

#include "support/p_mem_stream.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace {

constexpr std::int64_t kBlockSize = 64 * 1024;

}  // namespace

PMemStream::PMemStream(const void* data, std::int64_t size) {
    const auto* bytes = static_cast<const unsigned char*>(data);
    while (size > 0) {
        const auto part = static_cast<std::uint32_t>(std::min<std::int64_t>(size, kBlockSize));
        std::uint32_t written = 0;
        PMemStream::write(bytes, part, written);
        bytes += part;
        size -= part;
    }
    position_ = 0;
}

int PMemStream::open() {
    ++openCount_;
    return 0;
}

int PMemStream::close() {
    --openCount_;
    return 0;
}

int PMemStream::write(const void* buffer, std::uint32_t size, std::uint32_t& outWritten) {
    outWritten = 0;
    const auto* bytes = static_cast<const unsigned char*>(buffer);
    while (static_cast<std::int64_t>(blocks_.size()) * kBlockSize < position_ + size) {
        blocks_.push_back(std::make_unique<unsigned char[]>(kBlockSize));
    }
    while (outWritten < size) {
        const std::int64_t offset = position_ % kBlockSize;
        const auto part =
            static_cast<std::uint32_t>(std::min<std::int64_t>(size - outWritten, kBlockSize - offset));
        std::memcpy(blocks_[static_cast<std::size_t>(position_ / kBlockSize)].get() + offset,
                    bytes + outWritten, part);
        outWritten += part;
        position_ += part;
    }
    size_ = std::max(size_, position_);
    return 0;
}

int PMemStream::read(void* buffer, std::uint32_t size, std::uint32_t& outRead) {
    outRead = 0;
    auto* bytes = static_cast<unsigned char*>(buffer);
    const auto wanted = static_cast<std::uint32_t>(std::min<std::int64_t>(size, size_ - position_));
    while (outRead < wanted) {
        const std::int64_t offset = position_ % kBlockSize;
        const auto part =
            static_cast<std::uint32_t>(std::min<std::int64_t>(wanted - outRead, kBlockSize - offset));
        std::memcpy(bytes + outRead, blocks_[static_cast<std::size_t>(position_ / kBlockSize)].get() + offset,
                    part);
        outRead += part;
        position_ += part;
    }
    return 0;
}

int PMemStream::seek(std::int64_t position) {
    if (position < 0 || position > size_) {
        return -1;
    }
    position_ = position;
    return 0;
}

int PMemStream::seekRelative(std::int64_t distance) {
    return distance > size_ - position_ ? -1 : seek(position_ + distance);
}

int PMemStream::seekFromEnd(std::int64_t distance) {
    return distance > 0 ? -1 : seek(size_ + distance);
}

int PMemStream::setEndOfStream() {
    size_ = position_;
    return 0;
}

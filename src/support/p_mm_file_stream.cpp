#include "support/p_mm_file_stream.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

PMMFileStream::~PMMFileStream() {
    PMMFileStream::close();
}

int PMMFileStream::readView() {
    const std::int64_t size = PFileStream::getSize();
    if (size < 1 || size > INT32_MAX) {
        return -1;
    }
    std::vector<unsigned char> view(static_cast<std::size_t>(size));
    std::size_t filled = 0;
    while (filled < view.size()) {
        std::uint32_t done = 0;
        const auto left = static_cast<std::uint32_t>(view.size() - filled);
        if (PFileStream::read(view.data() + filled, left, done) != 0 || done == 0) {
            return -1;
        }
        filled += done;
    }
    view_ = std::move(view);
    return 0;
}

int PMMFileStream::open() {
    PMMFileStream::close();
    const int status = PFileStream::open();
    if (status != 0) {
        return status;
    }
    if (readView() != 0) {
        PFileStream::close();
        return -1;
    }
    return 0;
}

int PMMFileStream::close() {
    const int flushed = view_.empty() ? 0 : PMMFileStream::flush();
    view_ = std::vector<unsigned char>();
    position_ = 0;
    changedFrom_ = 0;
    changedTo_ = 0;
    const int closed = PFileStream::close();
    return flushed != 0 ? flushed : closed;
}

int PMMFileStream::flush() {
    if (view_.empty()) {
        return -1;
    }
    if (changedFrom_ == changedTo_) {
        return 0;
    }
    const auto size = static_cast<std::uint32_t>(changedTo_ - changedFrom_);
    int status = PFileStream::seek(changedFrom_);
    std::uint32_t written = 0;
    if (status == 0) {
        status = PFileStream::write(view_.data() + changedFrom_, size, written);
    }
    if (status == 0) {
        changedFrom_ = changedTo_ = 0;
    }
    return status;
}

int PMMFileStream::write(const void* buffer, std::uint32_t size, std::uint32_t& outWritten) {
    outWritten = 0;
    if (size > static_cast<std::int64_t>(view_.size()) - position_) {
        return -1;
    }
    if (size > 0) {
        std::memcpy(view_.data() + position_, buffer, size);
        const bool unchanged = changedFrom_ == changedTo_;
        changedFrom_ = unchanged ? position_ : std::min(changedFrom_, position_);
        position_ += size;
        changedTo_ = unchanged ? position_ : std::max(changedTo_, position_);
    }
    outWritten = size;
    return 0;
}

int PMMFileStream::read(void* buffer, std::uint32_t size, std::uint32_t& outRead) {
    outRead = 0;
    if (size > static_cast<std::int64_t>(view_.size()) - position_) {
        return -1;
    }
    if (size > 0) {
        std::memcpy(buffer, view_.data() + position_, size);
        position_ += size;
    }
    outRead = size;
    return 0;
}

int PMMFileStream::seek(std::int64_t position) {
    if (position < 0 || position >= static_cast<std::int64_t>(view_.size())) {
        return -1;
    }
    position_ = position;
    return 0;
}

int PMMFileStream::seekRelative(std::int64_t distance) {
    return distance >= static_cast<std::int64_t>(view_.size()) - position_ ? -1 : seek(position_ + distance);
}

int PMMFileStream::seekFromEnd(std::int64_t distance) {
    return distance > 0 ? -1 : seek(static_cast<std::int64_t>(view_.size()) + distance);
}

std::int64_t PMMFileStream::getSize() {
    return view_.empty() ? -1 : static_cast<std::int64_t>(view_.size());
}

int PMMFileStream::setEndOfStream() {
    return -1;
}

std::int64_t PMMFileStream::getPosition() {
    return view_.empty() ? -1 : position_;
}

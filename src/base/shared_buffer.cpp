#include "base/shared_buffer.h"

#include <memory>
#include <new>
#include <utility>

SharedBuffer::SharedBuffer(std::int32_t size) {
    if (size < 0) {
        throw std::bad_alloc();
    }
    std::unique_ptr<unsigned char[]> block(new unsigned char[static_cast<std::size_t>(size) + 1]);
    block[static_cast<std::size_t>(size)] = 0;
    data_ = new RefCounter<unsigned char>(block.get());
    block.release();
    size_ = size;
}

SharedBuffer::SharedBuffer(const SharedBuffer& other) : data_(other.data_), size_(other.size_) {
    if (data_ != nullptr) {
        data_->addReference();
    }
}

SharedBuffer::SharedBuffer(SharedBuffer&& other) noexcept
    : data_(std::exchange(other.data_, nullptr)), size_(std::exchange(other.size_, 0)) {}

SharedBuffer& SharedBuffer::operator=(const SharedBuffer& other) {
    SharedBuffer copy(other);
    std::swap(data_, copy.data_);
    std::swap(size_, copy.size_);
    return *this;
}

SharedBuffer& SharedBuffer::operator=(SharedBuffer&& other) noexcept {
    std::swap(data_, other.data_);
    std::swap(size_, other.size_);
    return *this;
}

SharedBuffer::~SharedBuffer() {
    release();
}

void SharedBuffer::release() {
    if (data_ != nullptr) {
        data_->release();
    }
    data_ = nullptr;
    size_ = 0;
}

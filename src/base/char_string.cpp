#include "base/char_string.h"

#include <cstring>
#include <utility>

CharString::CharString(const char* text) {
    if (text == nullptr || *text == '\0') {
        return;
    }
    const std::size_t size = std::strlen(text) + 1;
    char* copy = new char[size];
    std::memcpy(copy, text, size);
    buffer_ = new CharStringBuf(copy);
}

CharString::CharString(const CharString& other) : buffer_(other.buffer_) {
    if (buffer_ != nullptr) {
        buffer_->addReference();
    }
}

CharString::CharString(CharString&& other) noexcept : buffer_(std::exchange(other.buffer_, nullptr)) {}

CharString& CharString::operator=(const CharString& other) {
    CharString copy(other);
    std::swap(buffer_, copy.buffer_);
    return *this;
}

CharString& CharString::operator=(CharString&& other) noexcept {
    std::swap(buffer_, other.buffer_);
    return *this;
}

CharString::~CharString() {
    if (buffer_ != nullptr) {
        buffer_->release();
    }
}

const char* CharString::c_str() const {
    return buffer_ == nullptr ? nullptr : buffer_->data();
}

bool CharString::isEmpty() const {
    return buffer_ == nullptr || *buffer_->data() == '\0';
}

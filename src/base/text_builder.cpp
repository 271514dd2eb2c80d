#include "base/text_builder.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <string>

namespace OUtils {

namespace {

constexpr std::int64_t kSmallestBlock = 16;
constexpr float kLargestFactor = 1024.0F;
// Far enough from the limit of the type that no sum below can overflow.
constexpr std::int64_t kLargestCapacity = std::numeric_limits<std::int64_t>::max() / 4;

float acceptedFactor(float factor) {
    return factor > 1.0F ? std::min(factor, kLargestFactor) : 0.0F;
}

}  // namespace

TextBuilder::TextBuilder(std::int64_t blockSize, float growthFactor)
    : blockSize_(std::max(blockSize, kSmallestBlock)), growthFactor_(acceptedFactor(growthFactor)) {}

void TextBuilder::makeRoom(std::int64_t addition) {
    if (addition > kLargestCapacity - length_) {
        throw std::bad_alloc();
    }
    // One byte after the text is kept for the terminator.
    if (data_ != nullptr && length_ + addition < capacity_) {
        return;
    }
    std::int64_t capacity = (length_ + addition + blockSize_) / blockSize_ * blockSize_;
    const double scaled = static_cast<double>(growthFactor_) * static_cast<double>(capacity_);
    if (scaled > static_cast<double>(capacity)) {
        if (scaled > static_cast<double>(kLargestCapacity)) {
            throw std::bad_alloc();
        }
        capacity = (static_cast<std::int64_t>(scaled) + blockSize_ - 1) / blockSize_ * blockSize_;
    }
    std::unique_ptr<char[]> grown(new char[static_cast<std::size_t>(capacity)]);
    if (length_ > 0) {
        std::memcpy(grown.get(), data_.get(), static_cast<std::size_t>(length_));
    }
    grown[static_cast<std::size_t>(length_)] = '\0';
    data_ = std::move(grown);
    capacity_ = capacity;
}

TextBuilder& TextBuilder::append(const char* text) {
    return append(text, text == nullptr ? 0 : static_cast<std::int64_t>(std::strlen(text)));
}

TextBuilder& TextBuilder::append(const char* text, std::int64_t length) {
    if (length < 1) {
        return *this;
    }
    makeRoom(length);
    std::memcpy(data_.get() + length_, text, static_cast<std::size_t>(length));
    length_ += length;
    data_[static_cast<std::size_t>(length_)] = '\0';
    return *this;
}

TextBuilder& TextBuilder::append(char character) {
    return append(character, 1);
}

TextBuilder& TextBuilder::append(char character, std::int64_t count) {
    if (count < 1) {
        return *this;
    }
    makeRoom(count);
    std::memset(data_.get() + length_, character, static_cast<std::size_t>(count));
    length_ += count;
    data_[static_cast<std::size_t>(length_)] = '\0';
    return *this;
}

TextBuilder& TextBuilder::appendInteger(std::int64_t value) {
    return append(std::to_string(value).c_str());
}

void TextBuilder::clear() {
    length_ = 0;
    makeRoom(0);
    data_[0] = '\0';
}

}  // namespace OUtils

#pragma once

#include <cstddef>
#include <cstring>
#include <string_view>

// A text of at most `Capacity` - 1 bytes inside a record; what doesn't fit is cut silently. The object is
// a plain array, so that records with it can be moved bit by bit.
template <std::size_t Capacity>
class FixedText {
    static_assert(Capacity > 1);

public:
    FixedText() = default;
    explicit FixedText(std::string_view text) { assign(text); }

    // Takes the bytes up to the capacity or the first zero byte. `text` may lie within this object.
    void assign(std::string_view text) {
        std::size_t length = text.size() < Capacity - 1 ? text.size() : Capacity - 1;
        const void* zero = length == 0 ? nullptr : std::memchr(text.data(), 0, length);
        if (zero != nullptr) {
            length = static_cast<std::size_t>(static_cast<const char*>(zero) - text.data());
        }
        if (length > 0) {
            std::memmove(text_, text.data(), length);
        }
        text_[length] = '\0';
    }
    // A null `text` counts as empty.
    void assign(const char* text) { assign(text == nullptr ? std::string_view() : std::string_view(text)); }

    const char* c_str() const { return text_; }
    char* data() { return text_; }
    std::string_view view() const { return text_; }
    bool isEmpty() const { return text_[0] == '\0'; }
    // In bytes, terminator included.
    static constexpr std::size_t capacity() { return Capacity; }

private:
    char text_[Capacity] = {};
};

// A path inside the engine's records: at most 1,559 bytes.
using PathText = FixedText<1560>;

#pragma once

#include <cstdint>
#include <memory>

// Conversion between UTF-8 and UTF-16 through which any bytes survive both ways: a byte that isn't part of
// valid UTF-8 becomes the code point 0x100000 plus the byte, and back.
namespace OUtils {

// Decodes sequences of up to six bytes. Writes at most `capacity` - 1 units and a terminator; a surrogate
// pair isn't cut in half. Returns the number of units written without the terminator; with a null `out` the
// number of units that the whole text needs without the terminator. A null text counts as empty.
std::int64_t utf8ToWide(const char* text, char16_t* out, std::int64_t capacity);

// The reverse, in bytes. A lone surrogate is written as a three-byte sequence.
std::int64_t wideToUtf8(const char16_t* text, char* out, std::int64_t capacity);

// One object for one conversion. It borrows the text that it is made from and owns the other form, which is
// made at the first request and lives as long as the object.
class WideTextConverter {
public:
    explicit WideTextConverter(const char* utf8) : utf8_(utf8) {}
    explicit WideTextConverter(const char16_t* wide) : wide_(wide) {}

    // Null when made from a null text. The same pointer at every call.
    const char16_t* wide();
    const char* utf8();

private:
    const char* utf8_ = nullptr;
    const char16_t* wide_ = nullptr;
    std::unique_ptr<char[]> ownedUtf8_;
    std::unique_ptr<char16_t[]> ownedWide_;
};

}  // namespace OUtils

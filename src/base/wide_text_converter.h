#pragma once

#include <string>
#include <string_view>

// Conversion between UTF-8 and UTF-16 through which any bytes survive both ways: a byte that isn't part of
// valid UTF-8 becomes the code point 0x100000 plus the byte, and back. Such bytes are 0x80 and above, so
// converting neither makes nor hides an ASCII character.
namespace OUtils {

// Decodes sequences of up to six bytes. A zero byte is a character like any other.
std::u16string utf8ToWide(std::string_view text);

// The reverse. A lone surrogate is written as a three-byte sequence.
std::string wideToUtf8(std::u16string_view text);

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
    std::string ownedUtf8_;
    std::u16string ownedWide_;
};

}  // namespace OUtils

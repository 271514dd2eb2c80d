#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace OUtils {

// The length in bytes of the valid UTF-8 character at the start of `text`, 1 to 4; 0 where there is none: a
// broken or cut sequence, an overlong form, a surrogate, a value above U+10FFFF, or an empty text.
std::size_t utf8CharacterLength(std::string_view text);

// The code point of one valid character, given as all of its bytes.
char32_t utf8CodePoint(std::string_view character);

// The text with U+FFFD, the replacement character, for each byte that isn't UTF-8.
std::string validUtf8(std::string_view text);

}  // namespace OUtils

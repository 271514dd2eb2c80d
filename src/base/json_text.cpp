#include "base/json_text.h"

#include "base/utf8_character.h"
#include "base/visible_text.h"

namespace OUtils {

namespace {

// Nothing above U+FFFF has to be escaped.
std::string escapeOf(char32_t character) {
    constexpr std::string_view kHexadecimal = "0123456789abcdef";
    std::string escape = "\\u";
    for (unsigned shift = 16; shift > 0; shift -= 4) {
        escape += kHexadecimal[(character >> (shift - 4)) & 0xFU];
    }
    return escape;
}

bool needsEscape(const std::string& character) {
    return character == "\t" || character == "\n" || visibleText(character) != character;
}

}  // namespace

std::string jsonString(std::string_view text) {
    const std::string valid = validUtf8(text);
    std::string json = "\"";
    for (std::size_t at = 0; at < valid.size();) {
        const std::string character = valid.substr(at, utf8CharacterLength(valid.substr(at, 4)));
        at += character.size();
        if (character == "\"" || character == "\\") {
            json += "\\" + character;
        } else if (needsEscape(character)) {
            json += escapeOf(utf8CodePoint(character));
        } else {
            json += character;
        }
    }
    return json + "\"";
}

}  // namespace OUtils

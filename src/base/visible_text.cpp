#include "base/visible_text.h"

#include <algorithm>
#include <cstdint>

#include "base/utf8_character.h"

namespace OUtils {

namespace {

struct Range {
    std::uint32_t first;
    std::uint32_t last;
};

constexpr Range kInvisible[] = {
    {0x00, 0x08},     {0x0B, 0x1F},     {0x7F, 0x9F},  // controls but TAB and line feed
    {0x061C, 0x061C}, {0x200E, 0x200F},                // marks of a direction
    {0x2028, 0x2029},                                  // separators of lines and paragraphs
    {0x202A, 0x202E}, {0x2066, 0x2069},                // embeddings, overrides, isolates
};

bool isPlainAscii(char c) {
    return c >= 0x20 && c < 0x7F;
}

bool isInvisible(std::string_view character) {
    const char32_t value = utf8CodePoint(character);
    return std::any_of(std::begin(kInvisible), std::end(kInvisible),
                       [&](const Range& range) { return value >= range.first && value <= range.last; });
}

}  // namespace

std::string visibleText(std::string_view text) {
    std::string visible;
    visible.reserve(text.size());
    while (!text.empty()) {
        const auto plain =
            static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), isPlainAscii) - text.begin());
        visible += text.substr(0, plain);
        text.remove_prefix(plain);
        if (text.empty()) {
            break;
        }
        const std::size_t length = utf8CharacterLength(text);
        const std::string_view character = text.substr(0, std::max<std::size_t>(length, 1));
        const bool shown = length > 0 && (!isInvisible(character) || text.starts_with("\r\n"));
        visible += shown ? character : "?";
        text.remove_prefix(character.size());
    }
    return visible;
}

std::string visibleLine(std::string_view text) {
    std::string line = visibleText(text);
    std::replace_if(
        line.begin(), line.end(), [](char c) { return c == '\t' || c == '\r' || c == '\n'; }, '?');
    return line;
}

}  // namespace OUtils

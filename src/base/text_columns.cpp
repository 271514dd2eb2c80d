#include "base/text_columns.h"

#include <algorithm>
#include <iterator>

#include "base/utf8_character.h"

namespace OUtils {

namespace {

constexpr char32_t kFirstUncommon = 0x300;

struct Range {
    char32_t first;
    char32_t last;
};

// Both tables are sorted.
constexpr Range kCombining[] = {
    {0x0300, 0x036F}, {0x0483, 0x0489}, {0x0591, 0x05BD},   {0x064B, 0x065F},   {0x0900, 0x0902},
    {0x0E31, 0x0E31}, {0x0E34, 0x0E3A}, {0x0E47, 0x0E4E},   {0x1AB0, 0x1AFF},   {0x1DC0, 0x1DFF},
    {0x200B, 0x200D}, {0x20D0, 0x20FF}, {0x302A, 0x302D},   {0x3099, 0x309A},   {0xFE00, 0xFE0F},
    {0xFE20, 0xFE2F}, {0xFEFF, 0xFEFF}, {0x1F3FB, 0x1F3FF}, {0xE0100, 0xE01EF},
};
constexpr Range kWide[] = {
    {0x1100, 0x115F}, {0x2E80, 0x303E},   {0x3041, 0x33FF},   {0x3400, 0x4DBF},   {0x4E00, 0xA4CF},
    {0xA960, 0xA97F}, {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},   {0xFF00, 0xFF60},
    {0xFFE0, 0xFFE6}, {0x1F300, 0x1F64F}, {0x1F680, 0x1F6FF}, {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD},
};

template <std::size_t Count>
bool isIn(const Range (&ranges)[Count], char32_t character) {
    const Range* const range =
        std::lower_bound(std::begin(ranges), std::end(ranges), character,
                         [](const Range& candidate, char32_t wanted) { return candidate.last < wanted; });
    return range != std::end(ranges) && character >= range->first;
}

}  // namespace

int columnsOf(char32_t character) {
    if (character < kFirstUncommon) {
        return 1;
    }
    if (isIn(kCombining, character)) {
        return 0;
    }
    return isIn(kWide, character) ? 2 : 1;
}

std::size_t columnsOf(std::string_view text) {
    std::size_t columns = 0;
    while (!text.empty()) {
        const std::size_t length = utf8CharacterLength(text);
        columns +=
            length == 0 ? 1 : static_cast<std::size_t>(columnsOf(utf8CodePoint(text.substr(0, length))));
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return columns;
}

}  // namespace OUtils

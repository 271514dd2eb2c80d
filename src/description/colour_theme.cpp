#include "description/colour_theme.h"

#include <cstdlib>
#include <iterator>
#include <string_view>

#include "base/text_functions.h"

namespace {

constexpr const char* kSlotNames[] = {
    "DialogBackground",
    "DialogForeground",
    "ListBackground",
    "InputBoxBackground",
    "InputBoxText",
    "LinkButtons",
    "ButtonsBackground",
    "ButtonsText",
    "ActiveButtonsBackground",
    "ActiveButtonsText",
    "ActiveText",
    "InactiveText",
    "HighlightedText",
    "ProgressBarForeground",
    "ProgressBarBackground",
    "FieldForeground",
    "FieldBackground",
    "InvalidFieldForeground",
    "InvalidFieldBackground",
    "StaticElements",
};
static_assert(std::size(kSlotNames) == kThemeSlotCount);

constexpr std::string_view kGroupPrefix = "Group:";
constexpr unsigned long long kLargestNumber = 0xFFFFFFFFULL;  // that 32 bits hold

// strtoul of base 16 with 32 bits on every system: what is too large is the largest number, and a minus sign
// negates within 32 bits.
std::uint32_t readHexadecimal(const char* text) {
    const std::string_view digits(text);
    const std::size_t first = digits.find_first_not_of(" \t\n\v\f\r");
    const bool isNegative = first != std::string_view::npos && digits[first] == '-';
    const unsigned long long number = std::strtoull(text, nullptr, 16);
    const unsigned long long magnitude = isNegative ? 0ULL - number : number;
    return magnitude > kLargestNumber ? UINT32_MAX : static_cast<std::uint32_t>(number);
}

}  // namespace

const char* ColourTheme::nameOf(ThemeSlot slot) {
    return kSlotNames[static_cast<std::size_t>(slot)];
}

std::int32_t ColourTheme::findSlot(const char* name) {
    for (std::int32_t i = 0; i < kThemeSlotCount; ++i) {
        if (OUtils::equalsIgnoreCase(kSlotNames[i], name)) {
            return i;
        }
    }
    return -1;
}

std::int32_t ColourTheme::parseHexColour(const char* text) {
    if (text == nullptr) {
        return -1;
    }
    const std::uint32_t number = readHexadecimal(text);
    const auto red = static_cast<std::int32_t>((number >> 16) & 0xFF);
    const auto green = static_cast<std::int32_t>((number >> 8) & 0xFF);
    const auto blue = static_cast<std::int32_t>(number & 0xFF);
    return blue << 16 | green << 8 | red;
}

std::int32_t ColourTheme::parseColour(const char* text) const {
    if (text == nullptr || !OUtils::startsWithIgnoreCase(text, kGroupPrefix)) {
        return parseHexColour(text);
    }
    const auto group = customGroups_.find(text + kGroupPrefix.size());
    return group == customGroups_.end() ? -1 : group->second;
}

std::int32_t ColourTheme::getThemeColour(int index) const {
    return index >= 0 && index < kThemeSlotCount ? slots_[static_cast<std::size_t>(index)] : -1;
}

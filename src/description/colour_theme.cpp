#include "description/colour_theme.h"

#include <cstdlib>
#include <iterator>
#include <string>

#include "base/text_functions.h"
#include "description/vocabulary.h"

namespace {

static_assert(std::size(vocabulary::kThemeColours) == kThemeSlotCount);

constexpr std::string_view kGroupPrefix = "Group:";
constexpr unsigned long long kLargestNumber = 0xFFFFFFFFULL;  // that 32 bits hold

// strtoul of base 16 with 32 bits on every system: what is too large is the largest number, and a minus sign
// negates within 32 bits.
std::uint32_t readHexadecimal(std::string_view digits) {
    const std::size_t first = digits.find_first_not_of(" \t\n\v\f\r");
    const bool isNegative = first != std::string_view::npos && digits[first] == '-';
    const unsigned long long number = std::strtoull(std::string(digits).c_str(), nullptr, 16);
    const unsigned long long magnitude = isNegative ? 0ULL - number : number;
    return magnitude > kLargestNumber ? UINT32_MAX : static_cast<std::uint32_t>(number);
}

}  // namespace

std::string_view ColourTheme::nameOf(ThemeSlot slot) {
    return vocabulary::kThemeColours[static_cast<std::size_t>(slot)];
}

std::optional<ThemeSlot> ColourTheme::findSlot(std::string_view name) {
    for (std::int32_t i = 0; i < kThemeSlotCount; ++i) {
        const auto slot = static_cast<ThemeSlot>(i);
        if (OUtils::equalsIgnoreCase(nameOf(slot), name)) {
            return slot;
        }
    }
    return std::nullopt;
}

std::int32_t ColourTheme::parseHexColour(std::string_view text) {
    const std::uint32_t number = readHexadecimal(text);
    const auto red = static_cast<std::int32_t>((number >> 16) & 0xFF);
    const auto green = static_cast<std::int32_t>((number >> 8) & 0xFF);
    const auto blue = static_cast<std::int32_t>(number & 0xFF);
    return blue << 16 | green << 8 | red;
}

std::int32_t ColourTheme::parseColour(std::optional<std::string_view> text) const {
    if (!text) {
        return -1;
    }
    if (!OUtils::startsWithIgnoreCase(*text, kGroupPrefix)) {
        return parseHexColour(*text);
    }
    const auto group = customGroups_.find(std::string(text->substr(kGroupPrefix.size())));
    return group == customGroups_.end() ? -1 : group->second;
}

std::int32_t ColourTheme::getThemeColour(int index) const {
    return index >= 0 && index < kThemeSlotCount ? slots_[static_cast<std::size_t>(index)] : -1;
}

#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "description/hash_little.h"

// The colours that a theme sets, in their fixed order.
enum class ThemeSlot : std::int32_t {
    kDialogBackground,
    kDialogForeground,
    kListBackground,
    kInputBoxBackground,
    kInputBoxText,
    kLinkButtons,
    kButtonsBackground,
    kButtonsText,
    kActiveButtonsBackground,
    kActiveButtonsText,
    kActiveText,
    kInactiveText,
    kHighlightedText,
    kProgressBarForeground,
    kProgressBarBackground,
    kFieldForeground,
    kFieldBackground,
    kInvalidFieldForeground,
    kInvalidFieldBackground,
    kStaticElements,
};
inline constexpr std::int32_t kThemeSlotCount = 20;

// The session's colours, each 0x00BBGGRR, or -1 when not set.
class ColourTheme {
public:
    ColourTheme() { slots_.fill(-1); }

    // The tag of a slot in the description.
    static std::string_view nameOf(ThemeSlot slot);
    // The slot with this tag, without regard to ASCII case.
    static std::optional<ThemeSlot> findSlot(std::string_view name);
    // A colour written as RRGGBB in hexadecimal, with or without "0x"; the low three bytes of a 32-bit number
    // count, a minus sign wraps it around, and what isn't a number gives 0.
    static std::int32_t parseHexColour(std::string_view text);

    // The value of a colour attribute: as parseHexColour, or "Group:" (in any case) and the exact name of a
    // group, -1 when there is no such group and for a missing text.
    std::int32_t parseColour(std::optional<std::string_view> text) const;

    std::int32_t getColour(ThemeSlot slot) const { return slots_[static_cast<std::size_t>(slot)]; }
    // -1 for an index outside the slots.
    std::int32_t getThemeColour(int index) const;
    void setColour(ThemeSlot slot, std::int32_t colour) { slots_[static_cast<std::size_t>(slot)] = colour; }
    // The same name replaces the earlier colour.
    void setGroup(std::string_view name, std::int32_t colour) { customGroups_[std::string(name)] = colour; }

    bool isThemed() const { return themed_; }
    void setThemed(bool themed) { themed_ = themed; }

private:
    struct NameHash {
        std::size_t operator()(const std::string& name) const { return hashLittle(name, 0); }
    };

    std::array<std::int32_t, kThemeSlotCount> slots_;
    std::unordered_map<std::string, std::int32_t, NameHash> customGroups_;
    bool themed_ = false;
};

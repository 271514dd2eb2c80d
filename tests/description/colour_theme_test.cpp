#include "description/colour_theme.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

TEST(ColourTheme, ColoursAreWrittenRedFirst) {
    EXPECT_EQ(ColourTheme::parseHexColour("e84d00"), 0x00004DE8);
    EXPECT_EQ(ColourTheme::parseHexColour("0xe84d00"), 0x00004DE8);
    EXPECT_EQ(ColourTheme::parseHexColour("0X010203"), 0x00030201);
    EXPECT_EQ(ColourTheme::parseHexColour("e84d00ff"), 0x00FF004D) << "the low three bytes count";
    EXPECT_EQ(ColourTheme::parseHexColour("1234567890"), 0x00FFFFFF)
        << "more than 32 bits are their largest number";
    EXPECT_EQ(ColourTheme::parseHexColour(" ff rest"), 0x00FF0000);
    EXPECT_EQ(ColourTheme::parseHexColour("ffffffff"), 0x00FFFFFF);
    EXPECT_EQ(ColourTheme::parseHexColour("fffffffffffffffffffff"), 0x00FFFFFF);
    EXPECT_EQ(ColourTheme::parseHexColour("\t\v -ff"), 0x0001FFFF) << "a minus sign wraps within 32 bits";
    EXPECT_EQ(ColourTheme::parseHexColour("-1234567890"), 0x00FFFFFF);
    EXPECT_EQ(ColourTheme::parseHexColour("--1"), 0);
    EXPECT_EQ(ColourTheme::parseHexColour("+ff"), 0x00FF0000);
    EXPECT_EQ(ColourTheme::parseHexColour("#ff"), 0);
    EXPECT_EQ(ColourTheme::parseHexColour("0x"), 0);
    EXPECT_EQ(ColourTheme::parseHexColour("ed"), 0x00ED0000);
    EXPECT_EQ(ColourTheme::parseHexColour("word"), 0);
    EXPECT_EQ(ColourTheme::parseHexColour(""), 0);
}

TEST(ColourTheme, GroupsAreFoundByTheirExactName) {
    ColourTheme theme;
    theme.setGroup("Name", 7);
    EXPECT_EQ(theme.parseColour("Group:Name"), 7);
    EXPECT_EQ(theme.parseColour("group:Name"), 7);
    EXPECT_EQ(theme.parseColour("Group:name"), -1);
    EXPECT_EQ(theme.parseColour("Group: Name"), -1);
    EXPECT_EQ(theme.parseColour("Group:"), -1);
    EXPECT_EQ(theme.parseColour("Group"), 0);
    EXPECT_EQ(theme.parseColour("0000ff"), 0x00FF0000);
    EXPECT_EQ(theme.parseColour(std::nullopt), -1);
    theme.setGroup("Name", 8);
    EXPECT_EQ(theme.parseColour("GROUP:Name"), 8);
}

TEST(ColourTheme, ThousandsOfGroupsAreFound) {
    ColourTheme theme;
    for (int i = 0; i < 10000; ++i) {
        theme.setGroup("g" + std::to_string(i), i);
    }
    EXPECT_EQ(theme.parseColour("Group:g9999"), 9999);
    EXPECT_EQ(theme.parseColour("Group:g10000"), -1);
}

TEST(ColourTheme, NamesOfGroupsMayHoldAnything) {
    ColourTheme theme;
    const std::string names[] = {" ", "Group:", "a b", "\xC3\xA4", std::string(5000, 'x')};
    std::int32_t colour = 0;
    for (const std::string& name : names) {
        theme.setGroup(name, ++colour);
    }
    colour = 0;
    for (const std::string& name : names) {
        EXPECT_EQ(theme.parseColour("Group:" + name), ++colour) << name;
    }
    EXPECT_EQ(theme.parseColour(" Group:a b"), 0) << "not at the start, so it is a number that isn't one";
}

TEST(ColourTheme, AGroupWithoutColourIsNoColour) {
    ColourTheme theme;
    theme.setGroup("G", -1);
    EXPECT_EQ(theme.parseColour("Group:G"), -1);
}

TEST(ColourTheme, SlotsHaveTheirNamesAndPlaces) {
    const char* const names[] = {
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
    std::int32_t index = 0;
    for (const char* const name : names) {
        EXPECT_EQ(ColourTheme::findSlot(name), static_cast<ThemeSlot>(index));
        EXPECT_EQ(ColourTheme::nameOf(static_cast<ThemeSlot>(index)), name);
        ++index;
    }
    EXPECT_EQ(index, kThemeSlotCount);
}

TEST(ColourTheme, EverySlotHasANameOfItsOwn) {
    std::set<std::string_view> names;
    for (std::int32_t i = 0; i < kThemeSlotCount; ++i) {
        const std::string_view name = ColourTheme::nameOf(static_cast<ThemeSlot>(i));
        EXPECT_TRUE(names.insert(name).second) << name;
        EXPECT_EQ(ColourTheme::findSlot(name), static_cast<ThemeSlot>(i));
    }
    EXPECT_EQ(static_cast<std::int32_t>(ThemeSlot::kStaticElements), 19);
    EXPECT_EQ(ColourTheme::nameOf(ThemeSlot::kActiveText), "ActiveText");
    EXPECT_EQ(ColourTheme::findSlot("activetext"), ThemeSlot::kActiveText);
    EXPECT_EQ(ColourTheme::findSlot("Other"), std::nullopt);
    EXPECT_EQ(ColourTheme::findSlot(""), std::nullopt);
}

TEST(ColourTheme, SlotsStartUnsetAndIndicesAreChecked) {
    ColourTheme theme;
    EXPECT_FALSE(theme.isThemed());
    for (int i = -2; i < 22; ++i) {
        EXPECT_EQ(theme.getThemeColour(i), -1);
    }
    theme.setColour(ThemeSlot::kStaticElements, 3);
    EXPECT_EQ(theme.getThemeColour(19), 3);
    EXPECT_EQ(theme.getThemeColour(20), -1);
    const ColourTheme copy = theme;
    EXPECT_EQ(copy.getColour(ThemeSlot::kStaticElements), 3);
}

}  // namespace

#include "description/theme_reader.h"

#include <gtest/gtest.h>

#include <string>

#include "description/colour_theme.h"
#include "description/dialog_model.h"
#include "description/expressions.h"
#include "description/pxml.h"
#include "log_lines.h"
#include "map_lookup.h"

namespace {

class ThemeReading : public testing::Test {
protected:
    void read(const char* text) {
        PXML document;
        document.parseText(text);
        readColourTheme(document, expressions_, log_.console(), theme_);
    }

    MapLookup variables_;
    LogLines log_;
    Expressions expressions_{variables_, log_.console()};
    ColourTheme theme_;
};

TEST_F(ThemeReading, WithoutASectionNothingIsThemed) {
    read("<R/>");
    EXPECT_FALSE(theme_.isThemed());
}

TEST_F(ThemeReading, EmptySectionThemesWithoutColours) {
    read("<R><ColourTheme/></R>");
    EXPECT_TRUE(theme_.isThemed());
    for (int i = 0; i < kThemeSlotCount; ++i) {
        EXPECT_EQ(theme_.getThemeColour(i), -1);
    }
}

TEST_F(ThemeReading, SlotsAndGroupsAreRead) {
    variables_.values = {{"A", "1"}};
    read(
        "<R><ColourTheme><dialogbackground>e84d00</dialogbackground>"
        "<DialogForeground Condition='[A]==2'>1</DialogForeground><ActiveText "
        "Condition='[A]==1'>2</ActiveText>"
        "<CustomGroup Name='G'>1</CustomGroup><CustomGroup Name='G'>3</CustomGroup>"
        "<LinkButtons><x/></LinkButtons></ColourTheme></R>");
    EXPECT_EQ(theme_.getColour(ThemeSlot::kDialogBackground), 0x004DE8);
    EXPECT_EQ(theme_.getColour(ThemeSlot::kDialogForeground), -1) << "its condition is false";
    EXPECT_EQ(theme_.getColour(ThemeSlot::kActiveText), 0x020000);
    EXPECT_EQ(theme_.parseColour("Group:G"), 0x030000) << "the later colour counts";
    EXPECT_EQ(theme_.getColour(ThemeSlot::kLinkButtons), -1);
    EXPECT_TRUE(log_.lines.empty());
}

TEST_F(ThemeReading, EverySlotIsReadByItsTag) {
    std::string text = "<R><ColourTheme>";
    for (std::int32_t i = 0; i < kThemeSlotCount; ++i) {
        const std::string name(ColourTheme::nameOf(static_cast<ThemeSlot>(i)));
        text += "<" + name + ">" + std::to_string(10 + i) + "0000</" + name + ">";
    }
    read((text + "</ColourTheme></R>").c_str());
    for (std::int32_t i = 0; i < kThemeSlotCount; ++i) {
        EXPECT_EQ(theme_.getThemeColour(i), std::stoi(std::to_string(10 + i), nullptr, 16)) << i;
    }
    EXPECT_TRUE(log_.lines.empty());
}

TEST_F(ThemeReading, TagsOfSlotsIgnoreCaseAndOthersDoNot) {
    read(
        "<R><Deep><ColourTheme><ACTIVETEXT>1</ACTIVETEXT><CustomGroup name='G'>2</CustomGroup>"
        "<customgroup name='H'>2</customgroup></ColourTheme></Deep></R>");
    EXPECT_EQ(theme_.getColour(ThemeSlot::kActiveText), 0x010000);
    EXPECT_EQ(theme_.parseColour("Group:G"), 0x020000);
    EXPECT_EQ(theme_.parseColour("Group:H"), -1);
    EXPECT_EQ(log_.lines, (std::vector<std::string>{
                              "WARNING: Colour theme tag is not supported by installer: \"customgroup\""}));
    ColourTheme other;
    PXML document;
    document.parseText("<R><colourtheme><ActiveText>1</ActiveText></colourtheme></R>");
    readColourTheme(document, expressions_, DebugLog(), other);
    EXPECT_FALSE(other.isThemed());
}

TEST_F(ThemeReading, OnlyTheFirstSectionIsRead) {
    read(
        "<R><ColourTheme><ActiveText>1</ActiveText></ColourTheme>"
        "<ColourTheme><ActiveText>2</ActiveText><InactiveText>2</InactiveText></ColourTheme></R>");
    EXPECT_EQ(theme_.getColour(ThemeSlot::kActiveText), 0x010000);
    EXPECT_EQ(theme_.getColour(ThemeSlot::kInactiveText), -1);
}

TEST_F(ThemeReading, ASlotGivenTwiceKeepsTheLaterColour) {
    read(
        "<R><ColourTheme><ActiveText>1</ActiveText><ActiveText>2</ActiveText>"
        "<InactiveText>3</InactiveText><InactiveText/>"
        "<LinkButtons>4</LinkButtons><LinkButtons></LinkButtons></ColourTheme></R>");
    EXPECT_EQ(theme_.getColour(ThemeSlot::kActiveText), 0x020000);
    EXPECT_EQ(theme_.getColour(ThemeSlot::kInactiveText), -1) << "a tag without a text unsets it";
    EXPECT_EQ(theme_.getColour(ThemeSlot::kLinkButtons), -1);
}

TEST_F(ThemeReading, GroupsObeyTheirConditions) {
    read(
        "<R><ColourTheme><CustomGroup Name='G'>1</CustomGroup>"
        "<CustomGroup Name='G' Condition='1==2'>2</CustomGroup><CustomGroup Condition='1==2'>2</CustomGroup>"
        "<Odd Condition='1==2'/><CustomGroup Name='Empty'/><CustomGroup Name='H' Condition='1==1'>3"
        "</CustomGroup></ColourTheme></R>");
    EXPECT_EQ(theme_.parseColour("Group:G"), 0x010000);
    EXPECT_EQ(theme_.parseColour("Group:H"), 0x030000);
    EXPECT_EQ(theme_.parseColour("Group:Empty"), -1);
    EXPECT_TRUE(log_.lines.empty()) << "a tag whose condition is false isn't looked at";
}

TEST_F(ThemeReading, WordsAreBlack) {
    read("<R><ColourTheme><ActiveText>orange</ActiveText></ColourTheme></R>");
    EXPECT_EQ(theme_.getColour(ThemeSlot::kActiveText), 0);
}

TEST_F(ThemeReading, OddTagsAreLogged) {
    read(
        "<R><ColourTheme><Odd>1</Odd><CustomGroup>2</CustomGroup><CustomGroup Name=''>2</CustomGroup>"
        "</ColourTheme></R>");
    EXPECT_EQ(log_.lines,
              (std::vector<std::string>{"WARNING: Colour theme tag is not supported by installer: \"Odd\"",
                                        "WARNING: Theme custom group tag missing a 'Name' attribute!",
                                        "WARNING: Theme custom group tag missing a 'Name' attribute!"}));
    PXML document;
    document.parseText("<R><ColourTheme><Odd/><CustomGroup/></ColourTheme></R>");
    readColourTheme(document, expressions_, DebugLog(), theme_);
}

class ThemeApplying : public testing::Test {
protected:
    ThemeApplying() {
        for (std::int32_t i = 0; i < kThemeSlotCount; ++i) {
            theme_.setColour(static_cast<ThemeSlot>(i), 100 + i);
        }
        theme_.setThemed(true);
        model_.add(DialogDesc());
    }

    DialogDesc& page() { return *model_.getDialog(0, -1); }
    DialogElementDesc themed(DialogElementKind kind) {
        page().elements.resize(1);
        page().elements[0] = DialogElementDesc();
        page().elements[0].kind = kind;
        applyColourTheme(theme_, model_);
        return page().elements[0];
    }
    DialogFieldDesc themedField() {
        page().fields.assign(1, DialogFieldDesc());
        applyColourTheme(theme_, model_);
        return page().fields[0];
    }
    DialogButtonDesc themedButton(std::uint32_t flags) {
        page().buttons.assign(1, DialogButtonDesc());
        page().buttons[0].flags = flags;
        applyColourTheme(theme_, model_);
        return page().buttons[0];
    }

    ColourTheme theme_;
    DialogModel model_;
};

TEST_F(ThemeApplying, WithoutAThemeAColourOfADialogThemesTheSession) {
    ColourTheme none;
    model_.add(DialogDesc());
    applyColourTheme(none, model_);
    EXPECT_FALSE(none.isThemed());
    page().subDialogs.resize(1);
    page().subDialogs[0].backgroundColour = 1;
    applyColourTheme(none, model_);
    EXPECT_FALSE(none.isThemed()) << "sub-dialogs don't count";
    model_.getDialog(1, -1)->foregroundColour = 1;
    applyColourTheme(none, model_);
    EXPECT_TRUE(none.isThemed());
    EXPECT_EQ(page().backgroundColour, -1);
}

TEST_F(ThemeApplying, PagesTakeTheFirstTwoSlots) {
    page().special = kDialogHasSubDialogs;
    page().backgroundColour = 5;
    page().subDialogs.resize(1);
    applyColourTheme(theme_, model_);
    EXPECT_EQ(page().backgroundColour, 5);
    EXPECT_EQ(page().foregroundColour, 101);
    EXPECT_EQ(page().subDialogs[0].backgroundColour, 100) << "not the background of its dialog";
    EXPECT_EQ(page().subDialogs[0].foregroundColour, 101);
}

struct ElementCase {
    DialogElementKind kind;
    std::int32_t background;
    std::int32_t foreground;
};

TEST_F(ThemeApplying, EveryKindOfElementHasItsDefaults) {
    constexpr std::int32_t kPage = 9;
    page().backgroundColour = kPage;
    const ElementCase cases[] = {
        {kElementText, kPage, 110},   {kElementImage, kPage, -1},      {kElementSlideShow, kPage, -1},
        {kElementHLine, -1, 119},     {kElementBorder, -1, 119},       {kElementRichEditText, 102, -1},
        {kElementTaskLB, 102, -1},    {kElementHtmlEditText, 102, -1}, {kElementPlainEditText, 102, -1},
        {kElementProgress, 114, 113}, {kElementList, 102, 110},
    };
    for (const ElementCase& one : cases) {
        EXPECT_EQ(themed(one.kind).backgroundColour, one.background) << one.kind;
        EXPECT_EQ(themed(one.kind).foregroundColour, one.foreground) << one.kind;
    }
}

TEST_F(ThemeApplying, OwnColoursWin) {
    page().elements.resize(1);
    page().elements[0].kind = kElementText;
    page().elements[0].foregroundColour = 1;
    applyColourTheme(theme_, model_);
    EXPECT_EQ(page().elements[0].foregroundColour, 1);
    EXPECT_EQ(page().elements[0].backgroundColour, 100);
}

TEST_F(ThemeApplying, OwnColoursOfFieldsAndButtonsWin) {
    page().fields.resize(1);
    DialogFieldDesc& field = page().fields[0];
    std::int32_t* const fieldColours[] = {
        &field.labelColour,      &field.background,       &field.inputBackground,   &field.inputForeground,
        &field.buttonBackground, &field.buttonForeground, &field.invalidBackground, &field.invalidForeground};
    page().buttons.resize(1);
    DialogButtonDesc& button = page().buttons[0];
    std::int32_t* const buttonColours[] = {&button.foregroundColour, &button.backgroundColour,
                                           &button.activeForeground, &button.activeBackground};
    std::int32_t own = 0;
    for (std::int32_t* const colour : fieldColours) {
        *colour = own++;
    }
    for (std::int32_t* const colour : buttonColours) {
        *colour = own++;
    }
    applyColourTheme(theme_, model_);
    own = 0;
    for (const std::int32_t* const colour : fieldColours) {
        EXPECT_EQ(*colour, own++);
    }
    for (const std::int32_t* const colour : buttonColours) {
        EXPECT_EQ(*colour, own++);
    }
}

TEST_F(ThemeApplying, SlotsThatAreNotSetFillNothing) {
    ColourTheme empty;
    empty.setThemed(true);
    page().elements.resize(1);
    page().elements[0].kind = kElementList;
    page().fields.resize(1);
    page().buttons.resize(1);
    applyColourTheme(empty, model_);
    EXPECT_EQ(page().backgroundColour, -1);
    EXPECT_EQ(page().foregroundColour, -1);
    EXPECT_EQ(page().elements[0].backgroundColour, -1);
    EXPECT_EQ(page().elements[0].foregroundColour, -1);
    EXPECT_EQ(page().fields[0].labelColour, -1);
    EXPECT_EQ(page().fields[0].background, -1);
    EXPECT_EQ(page().fields[0].inputBackground, -1);
    EXPECT_EQ(page().buttons[0].activeForeground, -1);
    EXPECT_EQ(page().buttons[0].backgroundColour, -1);
}

TEST_F(ThemeApplying, ALabelTakesAPageForegroundThatIsNotSetOverActiveText) {
    theme_.setColour(ThemeSlot::kDialogForeground, -1);
    EXPECT_EQ(themedField().labelColour, -1) << "slot 15 is set, so the page's foreground counts as it is";
}

TEST_F(ThemeApplying, AButtonsOwnColoursAreThoseOfItsActiveState) {
    theme_.setColour(ThemeSlot::kActiveButtonsText, -1);
    theme_.setColour(ThemeSlot::kActiveButtonsBackground, -1);
    page().buttons.resize(1);
    page().buttons[0].foregroundColour = 1;
    page().buttons[0].backgroundColour = 2;
    applyColourTheme(theme_, model_);
    EXPECT_EQ(page().buttons[0].activeForeground, 1);
    EXPECT_EQ(page().buttons[0].activeBackground, 2);
}

TEST_F(ThemeApplying, WhatStandsOnASubDialogTakesItsOwnPage) {
    page().special = kDialogHasSubDialogs;
    page().backgroundColour = 5;
    page().subDialogs.resize(2);
    page().subDialogs[1].backgroundColour = 6;
    for (DialogDesc& sub : page().subDialogs) {
        sub.elements.resize(1);
        sub.elements[0].kind = kElementImage;
    }
    applyColourTheme(theme_, model_);
    EXPECT_EQ(page().subDialogs[0].elements[0].backgroundColour, 100);
    EXPECT_EQ(page().subDialogs[1].elements[0].backgroundColour, 6);
}

TEST_F(ThemeApplying, FieldsTakeTheirSlots) {
    const DialogFieldDesc field = themedField();
    EXPECT_EQ(field.labelColour, 101) << "the page's foreground, since slot 15 is set";
    EXPECT_EQ(field.background, 116);
    EXPECT_EQ(field.inputBackground, 103);
    EXPECT_EQ(field.inputForeground, 104);
    EXPECT_EQ(field.buttonBackground, 106);
    EXPECT_EQ(field.buttonForeground, 107);
    EXPECT_EQ(field.invalidBackground, 118);
    EXPECT_EQ(field.invalidForeground, 117);
}

TEST_F(ThemeApplying, FieldsWithoutTheirSlotsTakeThePage) {
    theme_.setColour(ThemeSlot::kFieldForeground, -1);
    theme_.setColour(ThemeSlot::kFieldBackground, -1);
    const DialogFieldDesc field = themedField();
    EXPECT_EQ(field.labelColour, 110);
    EXPECT_EQ(field.background, 100);
}

TEST_F(ThemeApplying, ButtonsTakeTheirSlots) {
    const DialogButtonDesc button = themedButton(0);
    EXPECT_EQ(button.foregroundColour, 107);
    EXPECT_EQ(button.backgroundColour, 106);
    EXPECT_EQ(button.activeForeground, 109);
    EXPECT_EQ(button.activeBackground, 108);
    EXPECT_EQ(themedButton(kButtonLinkStyle).foregroundColour, 105);
    theme_.setColour(ThemeSlot::kActiveButtonsText, -1);
    theme_.setColour(ThemeSlot::kActiveButtonsBackground, -1);
    EXPECT_EQ(themedButton(kButtonLinkStyle).activeForeground, 105);
    EXPECT_EQ(themedButton(0).activeBackground, 106);
}

}  // namespace

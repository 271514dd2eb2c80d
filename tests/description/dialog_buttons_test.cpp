#include "description/dialog_buttons.h"

#include <gtest/gtest.h>

#include "description/pxml.h"

namespace {

struct Expected {
    const char* name;
    std::uint32_t flags;
    std::int32_t shift;
    const char* action;
};

TEST(DialogButtons, PresetsLieOverWhatWasGiven) {
    const Expected all[] = {
        {"Next", 1 | 16 | 8, 1, "given"},
        {"back", 1 | 8, -1, "given"},
        {"Cancel", 2 | 8, 7, "Cancel"},
        {"Help", 2 | 8, 7, "Help"},
        {"Customize", 3 | 8, 1, "[CUSTOMIZE]='1'"},
        {"EXPRESS", 3 | 8, -1, "[CUSTOMIZE]='0'"},
        {"Other", 8, 7, "given"},
    };
    for (const Expected& expected : all) {
        DialogButtonDesc button;
        button.flags = kButtonDisableable;
        button.shift = 7;
        button.action.assign("given");
        DialogButtons::preset(button, expected.name);
        EXPECT_EQ(button.flags, expected.flags) << expected.name;
        EXPECT_EQ(button.shift, expected.shift) << expected.name;
        EXPECT_STREQ(button.action.c_str(), expected.action) << expected.name;
    }
}

TEST(DialogButtons, MissingNameChangesNothing) {
    DialogButtonDesc button;
    EXPECT_EQ(button.flags, 0U);
}

TEST(DialogButtons, FurnitureIsALineAndThreeButtons) {
    DialogDesc dialog;
    dialog.name.assign("Files");
    DialogButtons::addStandardFurniture(dialog, WizardWords());
    EXPECT_EQ(dialog.width, 500);
    EXPECT_EQ(dialog.height, 390);

    ASSERT_EQ(dialog.elements.size(), 1U);
    const DialogElementDesc& line = dialog.elements[0];
    EXPECT_EQ(line.kind, kElementHLine);
    EXPECT_EQ(line.x, 1);
    EXPECT_EQ(line.y, 70);
    EXPECT_EQ(line.width, -1);
    EXPECT_EQ(line.height, 1);
    EXPECT_EQ(line.horizontalAlign, kAlignLeft);
    EXPECT_EQ(line.verticalAlign, kAlignBottom);

    ASSERT_EQ(dialog.buttons.size(), 3U);
    const char* const labels[] = {"&Next", "&Cancel", "&Back"};
    const std::int32_t columns[] = {100, 20, 190};
    const std::int32_t sides[] = {kAlignRight, kAlignLeft, kAlignRight};
    const std::uint32_t flags[] = {1, 2, 1};
    const std::int32_t shifts[] = {1, 0, -1};
    for (std::size_t i = 0; i < 3; ++i) {
        const DialogButtonDesc& button = dialog.buttons[i];
        EXPECT_STREQ(button.label.c_str(), labels[i]);
        EXPECT_EQ(button.x, columns[i]);
        EXPECT_EQ(button.y, 50);
        EXPECT_EQ(button.width, 80);
        EXPECT_EQ(button.height, 30);
        EXPECT_EQ(button.horizontalAlign, sides[i]);
        EXPECT_EQ(button.verticalAlign, kAlignBottom);
        EXPECT_EQ(button.flags, flags[i]);
        EXPECT_EQ(button.shift, shifts[i]);
        EXPECT_EQ(button.backgroundColour, -1);
    }
    EXPECT_STREQ(dialog.buttons[1].action.c_str(), "Cancel");
}

TEST(DialogButtons, FurnitureHasTheWordsOfTheDescription) {
    PXML description;
    description.parseText(
        "<R><Words><Word Name=\"ButtonBack\">&amp;Zur\xC3\xBC"
        "ck</Word></Words></R>");
    DialogDesc dialog;
    DialogButtons::addStandardFurniture(dialog, WizardWords(description));
    ASSERT_EQ(dialog.buttons.size(), 3U);
    EXPECT_STREQ(dialog.buttons[0].label.c_str(), "&Next");
    EXPECT_STREQ(dialog.buttons[2].label.c_str(),
                 "&Zur\xC3\xBC"
                 "ck");
}

TEST(DialogButtons, FirstAndLastPagesHaveNoWayBack) {
    for (const char* name : {"Welcome", "Finish", "BadFinish"}) {
        DialogDesc dialog;
        dialog.name.assign(name);
        DialogButtons::addStandardFurniture(dialog, WizardWords());
        EXPECT_EQ(dialog.buttons.size(), 2U) << name;
    }
    DialogDesc other;
    other.name.assign("welcome");
    DialogButtons::addStandardFurniture(other, WizardWords());
    EXPECT_EQ(other.buttons.size(), 3U) << "names of dialogs compare exactly";
}

}  // namespace

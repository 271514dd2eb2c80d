#include "description/dialog_model.h"

#include <gtest/gtest.h>

#include <climits>

namespace {

class DialogModelTest : public testing::Test {
protected:
    DialogModelTest() {
        DialogDesc plain;
        plain.name.assign("Plain");
        plain.width = 1;
        plain.height = 2;
        plain.backgroundColour = 3;
        plain.elements.resize(2);
        plain.elements[1].kind = kElementImage;
        model_.add(plain);

        DialogDesc frame;
        frame.name.assign("Frame");
        frame.special = kDialogHasSubDialogs;
        frame.tasks.resize(3);
        frame.subDialogs.resize(2);
        frame.subDialogs[1].name.assign("Sub");
        frame.subDialogs[1].foregroundColour = 4;
        frame.subDialogs[1].fields.resize(1);
        frame.subDialogs[1].buttons.resize(2);
        model_.add(frame);
    }

    DialogModel model_;
};

constexpr int kBadIndices[] = {INT_MIN, -2, -1, 2, 3, INT_MAX};

TEST_F(DialogModelTest, DialogsAndSubDialogsAreFound) {
    EXPECT_EQ(model_.getDialogCount(), 2);
    EXPECT_STREQ(model_.getDialog(0, -1)->name.c_str(), "Plain");
    EXPECT_STREQ(model_.getDialog(1, 1)->name.c_str(), "Sub");
    EXPECT_EQ(model_.getSubDialogCount(0), 0);
    EXPECT_EQ(model_.getSubDialogCount(1), 2);
    EXPECT_EQ(model_.getDialogWidth(0), 1);
    EXPECT_EQ(model_.getDialogHeight(0), 2);
    EXPECT_TRUE(model_.getDialog(1, -1)->has(kDialogHasSubDialogs));
    EXPECT_FALSE(model_.getDialog(0, -1)->has(kDialogHasSubDialogs));
}

TEST_F(DialogModelTest, PartsOfAPageAreFound) {
    EXPECT_EQ(model_.getElementCount(0, -1), 2);
    EXPECT_EQ(model_.getElement(0, 1, -1)->kind, kElementImage);
    EXPECT_EQ(model_.getFieldCount(1, 1), 1);
    EXPECT_NE(model_.getField(1, 0, 1), nullptr);
    EXPECT_EQ(model_.getDialogItemCount(1, 1), 2);
    EXPECT_NE(model_.getDialogItem(1, 1, 1), nullptr);
    EXPECT_EQ(model_.getTaskCount(1), 3);
    EXPECT_NE(model_.getTask(1, 2), nullptr);
}

TEST_F(DialogModelTest, BadIndicesGiveNothing) {
    for (const int bad : kBadIndices) {
        EXPECT_EQ(model_.getDialog(bad, -1), nullptr) << bad;
        EXPECT_EQ(model_.getDialogWidth(bad), 0) << bad;
        EXPECT_EQ(model_.getDialogHeight(bad), 0) << bad;
        EXPECT_EQ(model_.getSubDialogCount(bad), 0) << bad;
        EXPECT_EQ(model_.getElement(bad, 0, -1), nullptr) << bad;
        EXPECT_EQ(model_.getElement(0, bad, -1), nullptr) << bad;
        EXPECT_EQ(model_.getElementCount(bad, -1), 0) << bad;
        EXPECT_EQ(model_.getDialogItem(1, bad, 1), nullptr) << bad;
        EXPECT_EQ(model_.getDialogItemCount(bad, 0), 0) << bad;
        EXPECT_EQ(model_.getField(1, bad, 1), nullptr) << bad;
        EXPECT_EQ(model_.getFieldCount(bad, 0), 0) << bad;
        EXPECT_EQ(model_.getTask(bad, 0), nullptr) << bad;
        EXPECT_EQ(model_.getTask(1, bad == 2 ? 3 : bad), nullptr) << bad;
        EXPECT_EQ(model_.getTaskCount(bad), 0) << bad;
    }
    EXPECT_EQ(model_.getDialog(1, 2), nullptr);
    EXPECT_EQ(model_.getDialog(1, -2), nullptr);
    EXPECT_EQ(model_.getDialog(0, 0), nullptr);
    EXPECT_EQ(model_.getField(1, 0, 7), nullptr);
}

TEST_F(DialogModelTest, ColoursOfAPage) {
    std::int32_t background = 0;
    std::int32_t foreground = 0;
    model_.getDialogColours(0, -1, background, foreground);
    EXPECT_EQ(background, 3);
    EXPECT_EQ(foreground, -1);
    model_.getDialogColours(1, 1, background, foreground);
    EXPECT_EQ(background, -1);
    EXPECT_EQ(foreground, 4);
    model_.getDialogColours(9, 1, background, foreground);
    EXPECT_EQ(background, -1);
    EXPECT_EQ(foreground, -1);
}

TEST_F(DialogModelTest, ClearForgetsAll) {
    model_.clear();
    EXPECT_EQ(model_.getDialogCount(), 0);
    EXPECT_EQ(model_.getDialog(0, -1), nullptr);
}

}  // namespace

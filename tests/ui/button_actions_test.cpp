#include "ui/button_actions.h"

#include "walk_fixture.h"

namespace {

class ButtonActionsTest : public Walk {};

TEST_F(ButtonActionsTest, DoesNothingForNoText) {
    walk.performAction(&ui, "");
    EXPECT_TRUE(ui.calls.empty());
    EXPECT_EQ(variables.getCount(), 0);
}

TEST_F(ButtonActionsTest, CancelsWithAnyTextThatBeginsSo) {
    for (const char* text : {"Cancel", "cancel", "CANCEL", "Cancelled", "Cancel;[A]='1'"}) {
        state.cancelled = false;
        walk.performAction(&ui, text);
        EXPECT_EQ(ui.take(), Calls{"confirmCancel()"}) << text;
        EXPECT_TRUE(state.cancelled) << text;
    }
    EXPECT_EQ(variables.getCount(), 0);
}

TEST_F(ButtonActionsTest, GoesOnWhenTheCancelIsNotConfirmed) {
    ui.confirmCancelResult = 0;
    EXPECT_EQ(walk.cancel(&ui), 0);
    EXPECT_FALSE(state.cancelled);
    EXPECT_EQ(walk.cancel(nullptr), -1);
}

TEST_F(ButtonActionsTest, ShowsTheHelp) {
    walk.performAction(&ui, "Help");
    walk.performAction(&ui, "helpful");
    EXPECT_EQ(ui.take(), (Calls{"showHelp()", "showHelp()"}));
    walk.showHelp(nullptr);
}

TEST_F(ButtonActionsTest, AssignsOneVariable) {
    walk.performAction(&ui, "[CUSTOMIZE]='1'");
    EXPECT_EQ(valueOf("CUSTOMIZE"), "1");
    EXPECT_TRUE(ui.calls.empty());
}

TEST_F(ButtonActionsTest, AssignsSeveralVariablesInOrder) {
    walk.performAction(&ui, "[A]='1';[B]='2'");
    EXPECT_EQ(valueOf("A"), "1");
    EXPECT_EQ(valueOf("B"), "2");
    walk.performAction(&ui, ";;[A]='3';broken;[A]='4';");
    EXPECT_EQ(valueOf("A"), "4");
}

TEST_F(ButtonActionsTest, DecidesAboutTheNextPageByWhatItAssigns) {
    addDialog("First");
    addDialog("Custom").conditionText.assign("[CUSTOMIZE]==1");
    addDialog("Last");
    placeAt(0);
    walk.performAction(&ui, "[CUSTOMIZE]='1'");
    walk.shift(&ui, 1);
    expectAt(1);
    placeAt(0);
    walk.performAction(&ui, "[CUSTOMIZE]='0'");
    walk.shift(&ui, 1);
    expectAt(2);
}

}  // namespace

#include "ui/button_actions.h"

#include "walk_fixture.h"

namespace {

class ButtonActionsTest : public Walk {};

TEST_F(ButtonActionsTest, DoNothingForNoText) {
    buttons.perform(&ui, nullptr);
    buttons.perform(&ui, "");
    EXPECT_TRUE(ui.calls.empty());
    EXPECT_EQ(variables.getCount(), 0);
}

TEST_F(ButtonActionsTest, CancelWithAnyTextThatBeginsSo) {
    for (const char* text : {"Cancel", "cancel", "CANCEL", "Cancelled", "Cancel;[A]='1'"}) {
        state.cancelled = 0;
        buttons.perform(&ui, text);
        EXPECT_EQ(ui.take(), Calls{"confirmCancel()"}) << text;
        EXPECT_EQ(state.cancelled, 1) << text;
    }
    EXPECT_EQ(variables.getCount(), 0);
}

TEST_F(ButtonActionsTest, GoOnWhenTheCancelIsNotConfirmed) {
    ui.confirmCancelResult = 0;
    EXPECT_EQ(buttons.cancel(&ui), 0);
    EXPECT_EQ(state.cancelled, 0);
    EXPECT_EQ(buttons.cancel(nullptr), -1);
}

TEST_F(ButtonActionsTest, ShowTheHelp) {
    buttons.perform(&ui, "Help");
    buttons.perform(&ui, "helpful");
    EXPECT_EQ(ui.take(), (Calls{"showHelp()", "showHelp()"}));
    buttons.showHelp(nullptr);
}

TEST_F(ButtonActionsTest, AssignOneVariable) {
    buttons.perform(&ui, "[CUSTOMIZE]='1'");
    EXPECT_EQ(valueOf("CUSTOMIZE"), "1");
    EXPECT_TRUE(ui.calls.empty());
}

TEST_F(ButtonActionsTest, AssignSeveralVariablesInOrder) {
    buttons.perform(&ui, "[A]='1';[B]='2'");
    EXPECT_EQ(valueOf("A"), "1");
    EXPECT_EQ(valueOf("B"), "2");
    buttons.perform(&ui, ";;[A]='3';broken;[A]='4';");
    EXPECT_EQ(valueOf("A"), "4");
}

TEST_F(ButtonActionsTest, DecideAboutTheNextPageByWhatTheyAssign) {
    addDialog("First");
    addDialog("Custom").conditionText.assign("[CUSTOMIZE]==1");
    addDialog("Last");
    stand(0);
    buttons.perform(&ui, "[CUSTOMIZE]='1'");
    navigator.shift(&ui, 1);
    expectAt(1);
    stand(0);
    buttons.perform(&ui, "[CUSTOMIZE]='0'");
    navigator.shift(&ui, 1);
    expectAt(2);
}

}  // namespace

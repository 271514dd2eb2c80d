#include "ui/dialog_condition_check.h"

#include "walk_fixture.h"

namespace {

class DialogConditionCheckTest : public Walk {};

TEST_F(DialogConditionCheckTest, GivesTwoForAPageWithoutAGate) {
    addDialog("Page");
    stand(0);
    EXPECT_EQ(conditionCheck.check(&ui), 2);
    EXPECT_EQ(valueOf("GATE"), "(none)");
}

TEST_F(DialogConditionCheckTest, StoresTheOutcome) {
    setGate(addDialog("Page"), {0, 1});
    stand(0);
    EXPECT_EQ(conditionCheck.check(&ui), 0);
    EXPECT_EQ(valueOf("GATE"), "0");
    EXPECT_EQ(conditionCheck.check(&ui), 1);
    EXPECT_EQ(valueOf("GATE"), "1");
}

TEST_F(DialogConditionCheckTest, GivesNothingForABadPosition) {
    addFrame("Frame", {"Sub"});
    stand(-1);
    EXPECT_EQ(conditionCheck.check(&ui), 0);
    stand(1);
    EXPECT_EQ(conditionCheck.check(&ui), 0);
    stand(0, 1);
    EXPECT_EQ(conditionCheck.check(&ui), 0);
}

TEST_F(DialogConditionCheckTest, LooksAtTheSubDialogOfAFrame) {
    DialogDesc& frame = addFrame("Frame", {"One", "Two"});
    const auto frameGate = setGate(frame, {0});
    setGate(frame.subDialogs[1], {1});
    stand(0, 1);
    EXPECT_EQ(conditionCheck.check(&ui), 1);
    stand(0, 0);
    EXPECT_EQ(conditionCheck.check(&ui), 2);
    EXPECT_EQ(frameGate->evaluations, 0);
}

TEST_F(DialogConditionCheckTest, StoresNothingWithoutAVariableOfThatRole) {
    const ControlVariables unnamed;
    ControlValues noControls(unnamed, variables);
    DialogConditionCheck check(state, dialogs, conditions, noControls);
    setGate(addDialog("Page"), {1});
    stand(0);
    EXPECT_EQ(check.check(&ui), 1);
    EXPECT_EQ(variables.getCount(), 0);
}

}  // namespace

#include "ui/page_conditions.h"

#include "walk_fixture.h"

namespace {

class PageConditionsTest : public Walk {
protected:
    ControlValues controls{controlNames, variables};
    PageConditions conditions{state, dialogs, expressions, controls};
};

TEST_F(PageConditionsTest, ShowsAPageUnlessItsConditionIsFalse) {
    DialogDesc& frame = addFrame("Frame", {"Sub"});
    EXPECT_TRUE(conditions.isVisible(0, -1));
    frame.conditionText.assign("0");
    frame.subDialogs[0].conditionText.assign("1==1");
    EXPECT_FALSE(conditions.isVisible(0, -1));
    EXPECT_TRUE(conditions.isVisible(0, 0));
    frame.subDialogs[0].conditionText.assign("1==2");
    EXPECT_FALSE(conditions.isVisible(0, 0));
}

TEST_F(PageConditionsTest, ShowsAPageWhoseConditionIsBroken) {
    addDialog("Page").conditionText.assign("broken");
    EXPECT_TRUE(conditions.isVisible(0, -1));
}

TEST_F(PageConditionsTest, OpensAPageWithoutAGate) {
    DialogDesc& page = addDialog("Page");
    EXPECT_TRUE(conditions.isOpen(page, ui));
    const auto gate = setGate(page, {false, true});
    EXPECT_FALSE(conditions.isOpen(page, ui));
    EXPECT_TRUE(conditions.isOpen(page, ui));
    EXPECT_EQ(gate->questions, 2);
}

TEST_F(PageConditionsTest, FindsNoGateOnAPageWithoutOne) {
    addDialog("Page");
    placeAt(0);
    EXPECT_EQ(conditions.checkCurrentPage(ui), GateAnswer::kNoGate);
    EXPECT_EQ(valueOf("GATE"), "(none)");
}

TEST_F(PageConditionsTest, StoresTheAnswerOfTheGate) {
    setGate(addDialog("Page"), {false, true});
    placeAt(0);
    EXPECT_EQ(conditions.checkCurrentPage(ui), GateAnswer::kClosed);
    EXPECT_EQ(valueOf("GATE"), "0");
    EXPECT_EQ(conditions.checkCurrentPage(ui), GateAnswer::kOpen);
    EXPECT_EQ(valueOf("GATE"), "1");
}

TEST_F(PageConditionsTest, TakesABadPositionForAClosedGate) {
    addFrame("Frame", {"Sub"});
    placeAt(-1);
    EXPECT_EQ(conditions.checkCurrentPage(ui), GateAnswer::kClosed);
    placeAt(1);
    EXPECT_EQ(conditions.checkCurrentPage(ui), GateAnswer::kClosed);
    placeAt(0, 1);
    EXPECT_EQ(conditions.checkCurrentPage(ui), GateAnswer::kClosed);
}

TEST_F(PageConditionsTest, AsksTheSubDialogOfAFrame) {
    DialogDesc& frame = addFrame("Frame", {"One", "Two"});
    const auto frameGate = setGate(frame, {false});
    setGate(frame.subDialogs[1], {true});
    placeAt(0, 1);
    EXPECT_EQ(conditions.checkCurrentPage(ui), GateAnswer::kOpen);
    placeAt(0, 0);
    EXPECT_EQ(conditions.checkCurrentPage(ui), GateAnswer::kNoGate);
    EXPECT_EQ(frameGate->questions, 0);
}

TEST_F(PageConditionsTest, StoresNothingWithoutAVariableOfThatRole) {
    const ControlVariables unnamed;
    ControlValues noControls(unnamed, variables);
    PageConditions check(state, dialogs, expressions, noControls);
    setGate(addDialog("Page"), {true});
    placeAt(0);
    EXPECT_EQ(check.checkCurrentPage(ui), GateAnswer::kOpen);
    EXPECT_EQ(variables.getCount(), 0);
}

}  // namespace

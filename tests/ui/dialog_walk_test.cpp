#include "ui/dialog_walk.h"

#include "walk_fixture.h"

namespace {

class DialogWalkTest : public Walk {};

TEST_F(DialogWalkTest, GivesTheNumbersOfTheContract) {
    setGate(addDialog("Held"), {false, false, false, true});
    addDialog("Next", kDialogAutoNext);
    placeAt(0);
    EXPECT_EQ(walk.checkCondition(&ui), 0);
    EXPECT_EQ(walk.next(&ui, 1), -1);
    EXPECT_EQ(walk.checkCondition(&ui), 1);
    EXPECT_EQ(walk.next(&ui, 0), 0);
    EXPECT_EQ(walk.goToDialog(1, &ui), 1);
    EXPECT_EQ(walk.checkCondition(&ui), 2);
    EXPECT_EQ(walk.goToDialog(0, &ui), 0);
    EXPECT_EQ(walk.goToDialog(2, &ui), -1);
    EXPECT_EQ(walk.goToSubdialog(0, 0, &ui), -1);
    EXPECT_EQ(walk.back(&ui, 0), 0);
    EXPECT_EQ(walk.cancel(&ui), 0);
}

TEST_F(DialogWalkTest, RefusesWithoutAFrontEnd) {
    DialogDesc& frame = addFrame("Frame", {"Sub"});
    addTrigger(frame, kTriggerOnStart, kTriggerRunActions, "", "Section");
    placeAt(0);
    EXPECT_EQ(walk.shift(nullptr, 1), -1);
    EXPECT_EQ(walk.shift(nullptr, -1), -1);
    EXPECT_EQ(walk.shift(nullptr, 0), 0);
    EXPECT_EQ(walk.next(nullptr, 1), -1);
    EXPECT_EQ(walk.back(nullptr, 1), -1);
    EXPECT_EQ(walk.goToDialog(0, nullptr), -1);
    EXPECT_EQ(walk.goToSubdialog(0, 0, nullptr), -1);
    EXPECT_EQ(walk.checkCondition(nullptr), -1);
    EXPECT_EQ(walk.cancel(nullptr), -1);
    walk.performAction(nullptr, "Cancel");
    walk.performAction(nullptr, "Help");
    walk.showHelp(nullptr);
    walk.runTriggers(nullptr, kTriggerOnStart, 0, -1);
    walk.refreshTasks(nullptr);
    walk.updateTask(nullptr, 0, 0, kTaskCurrent);
    EXPECT_FALSE(state.cancelled);
    EXPECT_TRUE(actions.calls.empty());
    EXPECT_EQ(frame.tasks[0].state, kTaskNotReached);
    expectAt(0);
}

TEST_F(DialogWalkTest, AssignsWithoutAFrontEnd) {
    walk.performAction(nullptr, "[A]='1'");
    EXPECT_EQ(valueOf("A"), "1");
}

TEST_F(DialogWalkTest, ShowsTheHelp) {
    walk.showHelp(&ui);
    EXPECT_EQ(ui.calls, Calls{"showHelp()"});
}

TEST_F(DialogWalkTest, FindsWhatDependsOnAVariable) {
    addFrame("Frame", {"Sub"}).tasks[0].enableCondition.assign("[A]==1");
    EXPECT_EQ(walk.refreshFlags("A", 0, -1), kRefreshTasks);
    EXPECT_EQ(walk.refreshFlags("B", 0, -1), 0U);
}

}  // namespace

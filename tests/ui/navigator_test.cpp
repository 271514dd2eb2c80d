#include "ui/navigator.h"

#include "walk_fixture.h"

namespace {

class NavigatorTest : public Walk {
protected:
    void expectNextError(int dialog, int sub) {
        EXPECT_TRUE(log.hasLine("ERROR: Bad dialog next shifting. Current dialog: " + std::to_string(dialog) +
                                ", current subdialog: " + std::to_string(sub)));
        EXPECT_TRUE(state.finished);
        EXPECT_TRUE(state.lastWorkFailed);
    }
    void expectBackError(int dialog, int sub) {
        EXPECT_TRUE(log.hasLine("ERROR: Bad dialog back shifting. Current dialog: " + std::to_string(dialog) +
                                ", current subdialog: " + std::to_string(sub)));
        EXPECT_TRUE(state.finished);
        EXPECT_TRUE(state.lastWorkFailed);
    }
};

TEST_F(NavigatorTest, ShiftsInBothDirections) {
    for (int i = 0; i < 4; ++i) {
        addDialog("Page");
    }
    placeAt(0);
    EXPECT_EQ(walk.shift(&ui, 2), 0);
    expectAt(2);
    EXPECT_EQ(ui.callsOf("showDialog"), (Calls{"showDialog(1)", "showDialog(2)"}));
    EXPECT_EQ(walk.shift(&ui, -2), 0);
    expectAt(0);
    EXPECT_EQ(ui.callsOf("showDialog").size(), 3U);  // steps back show the last page only
    ui.take();
    EXPECT_EQ(walk.shift(&ui, 0), 0);
    EXPECT_TRUE(ui.calls.empty());
}

TEST_F(NavigatorTest, RefusesToWalkWithoutAFrontEnd) {
    addDialog("Page");
    placeAt(0);
    EXPECT_EQ(walk.next(nullptr, 1), -1);
    EXPECT_EQ(walk.back(nullptr, 1), -1);
    expectAt(0);
}

TEST_F(NavigatorTest, FinishesOnTheLastPageAndShowsNothingNew) {
    addDialog("Finish", kDialogFinish);
    addDialog("Never");
    placeAt(0);
    EXPECT_EQ(walk.next(&ui, 1), 0);
    EXPECT_TRUE(state.finished);
    EXPECT_FALSE(state.lastWorkFailed);
    EXPECT_TRUE(ui.calls.empty());
    expectAt(0);
}

TEST_F(NavigatorTest, FinishesOnALastSubDialog) {
    DialogDesc& frame = addFrame("Frame", {"One", "Two"});
    frame.subDialogs[1].special = kDialogFinish;
    addDialog("Never");
    placeAt(0, 0);
    walk.next(&ui, 1);
    expectAt(0, 1);
    EXPECT_FALSE(state.finished);
    walk.next(&ui, 1);
    expectAt(0, 1);
    EXPECT_TRUE(state.finished);
}

TEST_F(NavigatorTest, FinishesInTheMiddleOfAWalk) {
    addDialog("Page");
    addDialog("Finish", kDialogFinish);
    addDialog("Never");
    placeAt(0);
    EXPECT_EQ(walk.next(&ui, 5), 0);
    expectAt(1);
    EXPECT_TRUE(state.finished);
    EXPECT_FALSE(state.lastWorkFailed);
}

TEST_F(NavigatorTest, MovesNowhereForNoCount) {
    addDialog("Page");
    addDialog("Next");
    placeAt(0);
    EXPECT_EQ(walk.next(&ui, 0), 0);
    EXPECT_EQ(walk.next(&ui, -3), 0);
    EXPECT_EQ(walk.back(&ui, 0), 0);
    expectAt(0);
    EXPECT_TRUE(ui.calls.empty());
}

TEST_F(NavigatorTest, EntersAPageWithAnUnmetGateAgainAndStays) {
    const auto gate = setGate(addDialog("Held"), {0});
    addDialog("Next");
    placeAt(0);
    EXPECT_EQ(walk.next(&ui, 1), -1);
    expectAt(0);
    EXPECT_EQ(gate->questions, 2);
    EXPECT_EQ(ui.callsOf("showDialog"), Calls{"showDialog(0)"});
    EXPECT_FALSE(state.finished);
}

TEST_F(NavigatorTest, MovesOnWhenEnteringAgainOpensTheGate) {
    setGate(addDialog("Held"), {0, 1});
    addDialog("Next");
    placeAt(0);
    EXPECT_EQ(walk.next(&ui, 1), 0);
    expectAt(1);
}

TEST_F(NavigatorTest, MovesOnFromAWeakConditionThatIsUnmet) {
    const auto gate = setGate(addDialog("Weak", kDialogWeakCondition), {0});
    addDialog("Next");
    placeAt(0);
    EXPECT_EQ(walk.next(&ui, 1), 0);
    expectAt(1);
    EXPECT_EQ(gate->questions, 1);
    EXPECT_EQ(ui.callsOf("showDialog"), Calls{"showDialog(1)"});
}

TEST_F(NavigatorTest, AsksTheGateOfTheSubDialogAsWell) {
    DialogDesc& frame = addFrame("Frame", {"Held", "Next"});
    const auto gate = setGate(frame.subDialogs[0], {0});
    placeAt(0, 0);
    EXPECT_EQ(walk.next(&ui, 1), -1);
    expectAt(0, 0);
    EXPECT_EQ(gate->questions, 2);
    EXPECT_EQ(ui.callsOf("show"), (Calls{"showSubDialog(0, 0)", "showPage(0, 0, 1)"}));
    frame.subDialogs[0].special = kDialogWeakCondition;
    EXPECT_EQ(walk.next(&ui, 1), 0);
    expectAt(0, 1);
}

TEST_F(NavigatorTest, IgnoresGatesWhenItGoesBack) {
    addDialog("First");
    const auto gate = setGate(addDialog("Held"), {0});
    placeAt(1);
    EXPECT_EQ(walk.back(&ui, 1), 0);
    expectAt(0);
    EXPECT_EQ(gate->questions, 0);
}

TEST_F(NavigatorTest, PassesAGateThatIsOpenOnArrival) {
    addDialog("First");
    DialogDesc& open = addDialog("Open");
    setGate(open, {1});
    addTrigger(open, kTriggerOnStart, kTriggerRunActions, "", "entered");
    addDialog("Behind");
    placeAt(0);
    EXPECT_EQ(walk.next(&ui, 1), 0);
    expectAt(2);
    EXPECT_EQ(actions.calls, Calls{"runActions(entered)"});
}

TEST_F(NavigatorTest, StopsAtAGateThatIsClosedOnArrival) {
    addDialog("First");
    setGate(addDialog("Held"), {0});
    addDialog("Behind");
    placeAt(0);
    EXPECT_EQ(walk.next(&ui, 2), 0);
    expectAt(1);
}

TEST_F(NavigatorTest, RunsThroughAChainOfPagesThatMoveOnByThemselves) {
    addDialog("First");
    addDialog("CopyProgress", kDialogAutoNext);
    addDialog("PostInstall");
    addDialog("Report", kDialogAutoNext);
    addDialog("Finish", kDialogFinish);
    placeAt(0);
    EXPECT_EQ(walk.shift(&ui, 1), 0);
    expectAt(4);
    EXPECT_FALSE(state.finished);
    EXPECT_EQ(actions.calls, (Calls{"normalizeDirectoryFields", "installProduct", "finishInstallation"}));
}

TEST_F(NavigatorTest, WalksIntoAFrameAndThroughItsSubDialogs) {
    addDialog("First");
    DialogDesc& frame = addFrame("Frame", {"One", "Two"});
    addDialog("Last");
    placeAt(0);
    walk.shift(&ui, 1);
    expectAt(1, 0);
    EXPECT_EQ(ui.callsOf("show"),
              (Calls{"showDialog(1)", "showPage(1, -1, 1)", "showSubDialog(1, 0)", "showPage(1, 0, 1)"}));
    ui.take();
    walk.shift(&ui, 1);
    expectAt(1, 1);
    EXPECT_EQ(ui.callsOf("setTaskState"),
              (Calls{"setTaskState(\"One\", \"One\", 2)", "setTaskState(\"Two\", \"Two\", 1)"}));
    EXPECT_EQ(frame.tasks[0].state, kTaskFinished);
    walk.shift(&ui, 1);
    expectAt(2);
}

TEST_F(NavigatorTest, MarksATaskThatFailed) {
    DialogDesc& frame = addFrame("Frame", {"One", "Two"});
    placeAt(0, 0);
    state.lastWorkFailed = true;
    walk.shift(&ui, 1);
    EXPECT_EQ(frame.tasks[0].state, kTaskFinishedWithError);
}

TEST_F(NavigatorTest, WalksThroughAFrameWhosePagesMoveOnByThemselves) {
    addDialog("First");
    DialogDesc& frame = addFrame("Frame", {"One", "Two", "Three"});
    frame.subDialogs[0].special = kDialogAutoNext;
    frame.subDialogs[1].special = kDialogAutoNext;
    placeAt(0);
    walk.shift(&ui, 1);
    expectAt(1, 2);
}

TEST_F(NavigatorTest, SkipsHiddenDialogsWithoutTheirTriggers) {
    addDialog("First");
    DialogDesc& hidden = addDialog("CopyProgress");
    hidden.conditionText.assign("0");
    addTrigger(hidden, kTriggerOnStart | kTriggerOnEnd, kTriggerRunActions, "", "never");
    addDialog("Last");
    placeAt(0);
    walk.shift(&ui, 1);
    expectAt(2);
    walk.shift(&ui, -1);
    expectAt(0);
    EXPECT_TRUE(actions.calls.empty());
}

TEST_F(NavigatorTest, SkipsHiddenSubDialogs) {
    DialogDesc& frame = addFrame("Frame", {"One", "Hidden", "Three"});
    frame.subDialogs[1].conditionText.assign("0");
    placeAt(0, 0);
    walk.shift(&ui, 1);
    expectAt(0, 2);
    EXPECT_EQ(frame.tasks[1].state, kTaskNotReached);
    walk.shift(&ui, -1);
    expectAt(0, 0);
}

TEST_F(NavigatorTest, SkipsAHiddenFrameWithAllItsSubDialogs) {
    addDialog("First");
    addFrame("Hidden", {"One", "Two"}).conditionText.assign("0");
    addFrame("Empty", {}).conditionText.assign("0");
    addDialog("Last");
    placeAt(0);
    walk.shift(&ui, 1);
    expectAt(3);
    walk.shift(&ui, -1);
    expectAt(0);
    EXPECT_EQ(log.lines().size(), 2U);  // the two pages that were entered
}

TEST_F(NavigatorTest, TakesABrokenConditionForATrueOne) {
    addDialog("First");
    addDialog("Second").conditionText.assign("broken");
    placeAt(0);
    walk.shift(&ui, 1);
    expectAt(1);
}

TEST_F(NavigatorTest, DoesNotTestTheFirstSubDialogOnTheWayIn) {
    addDialog("First");
    DialogDesc& frame = addFrame("Frame", {"Hidden", "Two"});
    frame.subDialogs[0].conditionText.assign("0");
    placeAt(0);
    walk.shift(&ui, 1);
    expectAt(1, 0);
    EXPECT_EQ(ui.countOf("showSubDialog(1, 0)"), 1);
}

TEST_F(NavigatorTest, FinishesWithAnErrorAfterTheLastDialog) {
    addDialog("Only");
    placeAt(0);
    EXPECT_EQ(walk.shift(&ui, 1), 0);
    expectNextError(0, -1);
    expectAt(0);
}

TEST_F(NavigatorTest, FinishesWithAnErrorWhenAllThatFollowsIsHidden) {
    addDialog("Only");
    addDialog("Hidden").conditionText.assign("0");
    placeAt(0);
    walk.shift(&ui, 1);
    expectNextError(0, -1);
}

TEST_F(NavigatorTest, FinishesWithAnErrorAfterTheLastSubDialog) {
    addFrame("Frame", {"One"});
    placeAt(0, 0);
    walk.shift(&ui, 1);
    expectNextError(0, 0);
}

TEST_F(NavigatorTest, FinishesWithAnErrorOnAPositionThatIsNotThere) {
    addFrame("Frame", {"One"});
    placeAt(0, 1);
    walk.shift(&ui, 1);
    expectNextError(0, 1);
    state.finished = 0;
    placeAt(7);
    walk.shift(&ui, 1);
    expectNextError(7, -1);
}

TEST_F(NavigatorTest, FinishesAnEmptyListWithAnError) {
    placeAt(0);
    walk.shift(&ui, 1);
    expectNextError(0, -1);
    EXPECT_TRUE(ui.calls.empty());
}

TEST_F(NavigatorTest, NeedsNoLogForAnError) {
    debugLog.setTarget(nullptr, 0);
    placeAt(0);
    walk.shift(&ui, 1);
    EXPECT_TRUE(state.finished);
}

TEST_F(NavigatorTest, EntersAFrameWithoutSubDialogs) {
    addDialog("First");
    addFrame("Empty", {});
    addDialog("Last");
    placeAt(0);
    EXPECT_EQ(walk.shift(&ui, 1), 0);
    expectAt(1);
    EXPECT_EQ(walk.shift(&ui, 1), 0);
    expectAt(2);
}

TEST_F(NavigatorTest, GoesBackThroughAFrame) {
    addDialog("First");
    DialogDesc& frame = addFrame("Frame", {"One", "Two"});
    addDialog("Last");
    placeAt(2);
    walk.shift(&ui, -1);
    expectAt(1, 1);
    EXPECT_EQ(ui.callsOf("show"),
              (Calls{"showDialog(1)", "showPage(1, -1, 1)", "showSubDialog(1, 1)", "showPage(1, 1, 1)"}));
    ui.take();
    walk.shift(&ui, -1);
    expectAt(1, 0);
    EXPECT_EQ(ui.callsOf("setTaskState"),
              (Calls{"setTaskState(\"Two\", \"Two\", 0)", "setTaskState(\"One\", \"One\", 1)"}));
    EXPECT_EQ(frame.tasks[1].state, kTaskNotReached);
    walk.shift(&ui, -1);
    expectAt(0);
}

TEST_F(NavigatorTest, GoesBackSeveralStepsAtOnce) {
    addDialog("First");
    addFrame("Frame", {"One", "Two"});
    addDialog("Last");
    placeAt(2);
    walk.shift(&ui, -2);
    expectAt(1, 0);
    EXPECT_EQ(ui.callsOf("show"), (Calls{"showSubDialog(1, 0)", "showPage(1, 0, 1)"}));
}

TEST_F(NavigatorTest, GoesBackOverHiddenSubDialogsAtTheEndOfAFrame) {
    DialogDesc& frame = addFrame("Frame", {"One", "Hidden"});
    frame.subDialogs[1].conditionText.assign("0");
    addDialog("Last");
    placeAt(1);
    walk.shift(&ui, -1);
    expectAt(0, 0);
    EXPECT_EQ(ui.callsOf("show"), (Calls{"showSubDialog(0, 0)", "showPage(0, 0, 1)"}));
}

TEST_F(NavigatorTest, IgnoresPagesThatMoveOnByThemselvesWhenItGoesBack) {
    addDialog("First");
    addDialog("Auto", kDialogAutoNext);
    addDialog("Last");
    placeAt(2);
    walk.shift(&ui, -1);
    expectAt(1);
}

TEST_F(NavigatorTest, FinishesWithAnErrorBeforeTheFirstDialog) {
    addDialog("Hidden").conditionText.assign("0");
    addDialog("Second");
    placeAt(1);
    EXPECT_EQ(walk.shift(&ui, -1), 0);
    expectBackError(1, -1);
    expectAt(1);
    EXPECT_TRUE(ui.calls.empty());
}

TEST_F(NavigatorTest, FinishesWithAnErrorWhenThereIsNoPositionToGoBackFrom) {
    placeAt(-1);
    EXPECT_EQ(walk.back(&ui, 1), 0);
    expectBackError(-1, -1);
}

TEST_F(NavigatorTest, FinishesWithAnErrorBackFromAFrameWithoutPosition) {
    addDialog("First");
    addFrame("Frame", {"One"});
    placeAt(1, -1);
    walk.shift(&ui, -1);
    expectBackError(1, -1);
}

TEST_F(NavigatorTest, EntersNoFurtherPageOnceCancelled) {
    addDialog("First");
    addDialog("Auto", kDialogAutoNext);
    addDialog("CopyProgress", kDialogAutoNext);
    placeAt(0);
    ui.onCall = [this](const std::string& call) {
        if (call == "showDialog(1)") {
            state.cancelled = true;
        }
    };
    EXPECT_EQ(walk.shift(&ui, 1), 0);
    expectAt(1);
    EXPECT_TRUE(actions.calls.empty());
    EXPECT_EQ(walk.shift(&ui, -1), 0);
    expectAt(1);
}

TEST_F(NavigatorTest, EntersNoSubDialogOfAFrameThatWasCancelled) {
    addDialog("First");
    addFrame("Frame", {"CopyProgress"});
    placeAt(0);
    ui.onCall = [this](const std::string& call) {
        if (call == "showDialog(1)") {
            state.cancelled = true;
        }
    };
    walk.shift(&ui, 1);
    expectAt(1);
    EXPECT_TRUE(actions.calls.empty());
}

TEST_F(NavigatorTest, StepsOverManyHiddenDialogs) {
    addDialog("First");
    for (int i = 0; i < 10000; ++i) {
        addDialog("Hidden").conditionText.assign("0");
    }
    addDialog("Last");
    placeAt(0);
    walk.shift(&ui, 1);
    expectAt(10001);
    walk.shift(&ui, -1);
    expectAt(0);
}

TEST_F(NavigatorTest, RunsThroughManyPagesThatMoveOnByThemselves) {
    addDialog("First");
    for (int i = 0; i < 10000; ++i) {
        addDialog("Auto", kDialogAutoNext);
    }
    addDialog("Last");
    placeAt(0);
    walk.shift(&ui, 1);
    expectAt(10001);
    EXPECT_EQ(ui.countOf("showDialog"), 10001);
}

TEST_F(NavigatorTest, BringsTheErrorPagesIntoPlayAfterAFailure) {
    addDialog("First");
    addDialog("CopyProgress", kDialogAutoNext);
    addDialog("RevertInstallation", kDialogAutoNext).conditionText.assign("[ERROR]==1");
    addDialog("Finish", kDialogFinish).conditionText.assign("[ERROR]==0");
    addDialog("BadFinish", kDialogFinish | kDialogBadFinish);
    variables.set("ERROR", "0");
    actions.failing.insert("installProduct");
    actions.onCall = [this](const std::string& call) {
        if (call == "installProduct") {
            variables.set("ERROR", "1");
        }
    };
    placeAt(0);
    walk.shift(&ui, 1);
    expectAt(4);
    EXPECT_EQ(actions.calls, (Calls{"normalizeDirectoryFields", "installProduct", "revertInstallation"}));
}

}  // namespace

#include "ui/navigator.h"

#include "walk_fixture.h"

namespace {

class NavigatorTest : public Walk {
protected:
    void expectNextError(int dialog, int sub) {
        EXPECT_TRUE(log.hasLine("ERROR: Bad dialog next shifting. Current dialog: " + std::to_string(dialog) +
                                ", current subdialog: " + std::to_string(sub)));
        EXPECT_EQ(state.finished, 1);
        EXPECT_EQ(state.lastResult, 1);
    }
    void expectBackError(int dialog, int sub) {
        EXPECT_TRUE(log.hasLine("ERROR: Bad dialog back shifting. Current dialog: " + std::to_string(dialog) +
                                ", current subdialog: " + std::to_string(sub)));
        EXPECT_EQ(state.finished, 1);
        EXPECT_EQ(state.lastResult, 1);
    }
};

TEST_F(NavigatorTest, ShiftsInBothDirections) {
    for (int i = 0; i < 4; ++i) {
        addDialog("Page");
    }
    stand(0);
    EXPECT_EQ(navigator.shift(&ui, 2), 0);
    expectAt(2);
    EXPECT_EQ(ui.callsOf("showDialog"), (Calls{"showDialog(1)", "showDialog(2)"}));
    EXPECT_EQ(navigator.shift(&ui, -2), 0);
    expectAt(0);
    EXPECT_EQ(ui.callsOf("showDialog").size(), 3U);  // steps back show the last page only
    ui.take();
    EXPECT_EQ(navigator.shift(&ui, 0), 0);
    EXPECT_TRUE(ui.calls.empty());
}

TEST_F(NavigatorTest, RefusesToWalkWithoutAFrontEnd) {
    addDialog("Page");
    stand(0);
    EXPECT_EQ(navigator.dialogNext(nullptr, 1), -1);
    EXPECT_EQ(navigator.dialogBack(nullptr, 1), -1);
    expectAt(0);
}

TEST_F(NavigatorTest, FinishesOnTheLastPageAndShowsNothingNew) {
    addDialog("Finish", kDialogFinish);
    addDialog("Never");
    stand(0);
    EXPECT_EQ(navigator.dialogNext(&ui, 1), 0);
    EXPECT_EQ(state.finished, 1);
    EXPECT_EQ(state.lastResult, 0);
    EXPECT_TRUE(ui.calls.empty());
    expectAt(0);
}

TEST_F(NavigatorTest, FinishesOnALastSubDialog) {
    DialogDesc& frame = addFrame("Frame", {"One", "Two"});
    frame.subDialogs[1].special = kDialogFinish;
    addDialog("Never");
    stand(0, 0);
    navigator.dialogNext(&ui, 1);
    expectAt(0, 1);
    EXPECT_EQ(state.finished, 0);
    navigator.dialogNext(&ui, 1);
    expectAt(0, 1);
    EXPECT_EQ(state.finished, 1);
}

TEST_F(NavigatorTest, FinishesInTheMiddleOfAWalk) {
    addDialog("Page");
    addDialog("Finish", kDialogFinish);
    addDialog("Never");
    stand(0);
    EXPECT_EQ(navigator.dialogNext(&ui, 5), 0);
    expectAt(1);
    EXPECT_EQ(state.finished, 1);
    EXPECT_EQ(state.lastResult, 0);
}

TEST_F(NavigatorTest, MovesNowhereForNoCount) {
    addDialog("Page");
    addDialog("Next");
    stand(0);
    EXPECT_EQ(navigator.dialogNext(&ui, 0), 0);
    EXPECT_EQ(navigator.dialogNext(&ui, -3), 0);
    EXPECT_EQ(navigator.dialogBack(&ui, 0), 0);
    expectAt(0);
    EXPECT_TRUE(ui.calls.empty());
}

TEST_F(NavigatorTest, EntersAPageWithAnUnmetGateAgainAndStays) {
    const auto gate = setGate(addDialog("Held"), {0});
    addDialog("Next");
    stand(0);
    EXPECT_EQ(navigator.dialogNext(&ui, 1), -1);
    expectAt(0);
    EXPECT_EQ(gate->evaluations, 2);
    EXPECT_EQ(ui.callsOf("showDialog"), Calls{"showDialog(0)"});
    EXPECT_EQ(state.finished, 0);
}

TEST_F(NavigatorTest, MovesOnWhenEnteringAgainOpensTheGate) {
    setGate(addDialog("Held"), {0, 1});
    addDialog("Next");
    stand(0);
    EXPECT_EQ(navigator.dialogNext(&ui, 1), 0);
    expectAt(1);
}

TEST_F(NavigatorTest, MovesOnFromAWeakConditionThatIsUnmet) {
    const auto gate = setGate(addDialog("Weak", kDialogWeakCondition), {0});
    addDialog("Next");
    stand(0);
    EXPECT_EQ(navigator.dialogNext(&ui, 1), 0);
    expectAt(1);
    EXPECT_EQ(gate->evaluations, 1);
    EXPECT_EQ(ui.callsOf("showDialog"), Calls{"showDialog(1)"});
}

TEST_F(NavigatorTest, AsksTheGateOfTheSubDialogAsWell) {
    DialogDesc& frame = addFrame("Frame", {"Held", "Next"});
    const auto gate = setGate(frame.subDialogs[0], {0});
    stand(0, 0);
    EXPECT_EQ(navigator.dialogNext(&ui, 1), -1);
    expectAt(0, 0);
    EXPECT_EQ(gate->evaluations, 2);
    EXPECT_EQ(ui.callsOf("show"), (Calls{"showSubDialog(0, 0)", "showPage(0, 0, 1)"}));
    frame.subDialogs[0].special = kDialogWeakCondition;
    EXPECT_EQ(navigator.dialogNext(&ui, 1), 0);
    expectAt(0, 1);
}

TEST_F(NavigatorTest, IgnoresGatesWhenItGoesBack) {
    addDialog("First");
    const auto gate = setGate(addDialog("Held"), {0});
    stand(1);
    EXPECT_EQ(navigator.dialogBack(&ui, 1), 0);
    expectAt(0);
    EXPECT_EQ(gate->evaluations, 0);
}

TEST_F(NavigatorTest, PassesAGateThatIsOpenOnArrival) {
    addDialog("First");
    DialogDesc& open = addDialog("Open");
    setGate(open, {1});
    addTrigger(open, kTriggerOnStart, kTriggerRunActions, "", "entered");
    addDialog("Behind");
    stand(0);
    EXPECT_EQ(navigator.dialogNext(&ui, 1), 0);
    expectAt(2);
    EXPECT_EQ(actions.calls, Calls{"runActions(entered)"});
}

TEST_F(NavigatorTest, StopsAtAGateThatIsClosedOnArrival) {
    addDialog("First");
    setGate(addDialog("Held"), {0});
    addDialog("Behind");
    stand(0);
    EXPECT_EQ(navigator.dialogNext(&ui, 2), 0);
    expectAt(1);
}

TEST_F(NavigatorTest, RunsThroughAChainOfPagesThatMoveOnByThemselves) {
    addDialog("First");
    addDialog("CopyProgress", kDialogAutoNext);
    addDialog("PostInstall");
    addDialog("Report", kDialogAutoNext);
    addDialog("Finish", kDialogFinish);
    stand(0);
    EXPECT_EQ(navigator.shift(&ui, 1), 0);
    expectAt(4);
    EXPECT_EQ(state.finished, 0);
    EXPECT_EQ(actions.calls, (Calls{"normalizeDirectoryFields", "installProduct", "finishInstallation"}));
}

TEST_F(NavigatorTest, WalksIntoAFrameAndThroughItsSubDialogs) {
    addDialog("First");
    DialogDesc& frame = addFrame("Frame", {"One", "Two"});
    addDialog("Last");
    stand(0);
    navigator.shift(&ui, 1);
    expectAt(1, 0);
    EXPECT_EQ(ui.callsOf("show"),
              (Calls{"showDialog(1)", "showPage(1, -1, 1)", "showSubDialog(1, 0)", "showPage(1, 0, 1)"}));
    ui.take();
    navigator.shift(&ui, 1);
    expectAt(1, 1);
    EXPECT_EQ(ui.callsOf("setTaskState"),
              (Calls{"setTaskState(\"One\", \"One\", 2)", "setTaskState(\"Two\", \"Two\", 1)"}));
    EXPECT_EQ(frame.tasks[0].state, kTaskFinished);
    navigator.shift(&ui, 1);
    expectAt(2);
}

TEST_F(NavigatorTest, MarksATaskThatFailed) {
    DialogDesc& frame = addFrame("Frame", {"One", "Two"});
    stand(0, 0);
    state.lastResult = -1;
    navigator.shift(&ui, 1);
    EXPECT_EQ(frame.tasks[0].state, kTaskFinishedWithError);
}

TEST_F(NavigatorTest, WalksThroughAFrameWhosePagesMoveOnByThemselves) {
    addDialog("First");
    DialogDesc& frame = addFrame("Frame", {"One", "Two", "Three"});
    frame.subDialogs[0].special = kDialogAutoNext;
    frame.subDialogs[1].special = kDialogAutoNext;
    stand(0);
    navigator.shift(&ui, 1);
    expectAt(1, 2);
}

TEST_F(NavigatorTest, SkipsHiddenDialogsWithoutTheirTriggers) {
    addDialog("First");
    DialogDesc& hidden = addDialog("CopyProgress");
    hidden.conditionText.assign("0");
    addTrigger(hidden, kTriggerOnStart | kTriggerOnEnd, kTriggerRunActions, "", "never");
    addDialog("Last");
    stand(0);
    navigator.shift(&ui, 1);
    expectAt(2);
    navigator.shift(&ui, -1);
    expectAt(0);
    EXPECT_TRUE(actions.calls.empty());
}

TEST_F(NavigatorTest, SkipsHiddenSubDialogs) {
    DialogDesc& frame = addFrame("Frame", {"One", "Hidden", "Three"});
    frame.subDialogs[1].conditionText.assign("0");
    stand(0, 0);
    navigator.shift(&ui, 1);
    expectAt(0, 2);
    EXPECT_EQ(frame.tasks[1].state, kTaskNotReached);
    navigator.shift(&ui, -1);
    expectAt(0, 0);
}

TEST_F(NavigatorTest, SkipsAHiddenFrameWithAllItsSubDialogs) {
    addDialog("First");
    addFrame("Hidden", {"One", "Two"}).conditionText.assign("0");
    addFrame("Empty", {}).conditionText.assign("0");
    addDialog("Last");
    stand(0);
    navigator.shift(&ui, 1);
    expectAt(3);
    navigator.shift(&ui, -1);
    expectAt(0);
    EXPECT_EQ(log.lines().size(), 2U);  // the two pages that were entered
}

TEST_F(NavigatorTest, TakesABrokenConditionForATrueOne) {
    addDialog("First");
    addDialog("Second").conditionText.assign("broken");
    stand(0);
    navigator.shift(&ui, 1);
    expectAt(1);
}

TEST_F(NavigatorTest, DoesNotTestTheFirstSubDialogOnTheWayIn) {
    addDialog("First");
    DialogDesc& frame = addFrame("Frame", {"Hidden", "Two"});
    frame.subDialogs[0].conditionText.assign("0");
    stand(0);
    navigator.shift(&ui, 1);
    expectAt(1, 0);
    EXPECT_EQ(ui.countOf("showSubDialog(1, 0)"), 1);
}

TEST_F(NavigatorTest, FinishesWithAnErrorBehindTheLastDialog) {
    addDialog("Only");
    stand(0);
    EXPECT_EQ(navigator.shift(&ui, 1), 0);
    expectNextError(0, -1);
    expectAt(0);
}

TEST_F(NavigatorTest, FinishesWithAnErrorWhenAllThatFollowsIsHidden) {
    addDialog("Only");
    addDialog("Hidden").conditionText.assign("0");
    stand(0);
    navigator.shift(&ui, 1);
    expectNextError(0, -1);
}

TEST_F(NavigatorTest, FinishesWithAnErrorBehindTheLastSubDialog) {
    addFrame("Frame", {"One"});
    stand(0, 0);
    navigator.shift(&ui, 1);
    expectNextError(0, 0);
}

TEST_F(NavigatorTest, FinishesWithAnErrorOnAPositionThatIsNotThere) {
    addFrame("Frame", {"One"});
    stand(0, 1);
    navigator.shift(&ui, 1);
    expectNextError(0, 1);
    state.finished = 0;
    stand(7);
    navigator.shift(&ui, 1);
    expectNextError(7, -1);
}

TEST_F(NavigatorTest, FinishesAnEmptyListWithAnError) {
    stand(0);
    navigator.shift(&ui, 1);
    expectNextError(0, -1);
    EXPECT_TRUE(ui.calls.empty());
}

TEST_F(NavigatorTest, NeedsNoLogForAnError) {
    console.setTarget(nullptr, 0);
    stand(0);
    navigator.shift(&ui, 1);
    EXPECT_EQ(state.finished, 1);
}

TEST_F(NavigatorTest, EntersAFrameWithoutSubDialogs) {
    addDialog("First");
    addFrame("Empty", {});
    addDialog("Last");
    stand(0);
    EXPECT_EQ(navigator.shift(&ui, 1), 0);
    expectAt(1);
    EXPECT_EQ(navigator.shift(&ui, 1), 0);
    expectAt(2);
}

TEST_F(NavigatorTest, GoesBackThroughAFrame) {
    addDialog("First");
    DialogDesc& frame = addFrame("Frame", {"One", "Two"});
    addDialog("Last");
    stand(2);
    navigator.shift(&ui, -1);
    expectAt(1, 1);
    EXPECT_EQ(ui.callsOf("show"),
              (Calls{"showDialog(1)", "showPage(1, -1, 1)", "showSubDialog(1, 1)", "showPage(1, 1, 1)"}));
    ui.take();
    navigator.shift(&ui, -1);
    expectAt(1, 0);
    EXPECT_EQ(ui.callsOf("setTaskState"),
              (Calls{"setTaskState(\"Two\", \"Two\", 0)", "setTaskState(\"One\", \"One\", 1)"}));
    EXPECT_EQ(frame.tasks[1].state, kTaskNotReached);
    navigator.shift(&ui, -1);
    expectAt(0);
}

TEST_F(NavigatorTest, GoesBackSeveralStepsAtOnce) {
    addDialog("First");
    addFrame("Frame", {"One", "Two"});
    addDialog("Last");
    stand(2);
    navigator.shift(&ui, -2);
    expectAt(1, 0);
    EXPECT_EQ(ui.callsOf("show"), (Calls{"showSubDialog(1, 0)", "showPage(1, 0, 1)"}));
}

TEST_F(NavigatorTest, GoesBackOverHiddenSubDialogsAtTheEndOfAFrame) {
    DialogDesc& frame = addFrame("Frame", {"One", "Hidden"});
    frame.subDialogs[1].conditionText.assign("0");
    addDialog("Last");
    stand(1);
    navigator.shift(&ui, -1);
    expectAt(0, 0);
    EXPECT_EQ(ui.callsOf("show"), (Calls{"showSubDialog(0, 0)", "showPage(0, 0, 1)"}));
}

TEST_F(NavigatorTest, IgnoresPagesThatMoveOnByThemselvesWhenItGoesBack) {
    addDialog("First");
    addDialog("Auto", kDialogAutoNext);
    addDialog("Last");
    stand(2);
    navigator.shift(&ui, -1);
    expectAt(1);
}

TEST_F(NavigatorTest, FinishesWithAnErrorAheadOfTheFirstDialog) {
    addDialog("Hidden").conditionText.assign("0");
    addDialog("Second");
    stand(1);
    EXPECT_EQ(navigator.shift(&ui, -1), 0);
    expectBackError(1, -1);
    expectAt(1);
    EXPECT_TRUE(ui.calls.empty());
}

TEST_F(NavigatorTest, FinishesWithAnErrorWhenThereIsNoPositionToGoBackFrom) {
    stand(-1);
    EXPECT_EQ(navigator.dialogBack(&ui, 1), 0);
    expectBackError(-1, -1);
}

TEST_F(NavigatorTest, FinishesWithAnErrorBackFromAFrameWithoutPosition) {
    addDialog("First");
    addFrame("Frame", {"One"});
    stand(1, -1);
    navigator.shift(&ui, -1);
    expectBackError(1, -1);
}

TEST_F(NavigatorTest, EntersNoFurtherPageOnceCancelled) {
    addDialog("First");
    addDialog("Auto", kDialogAutoNext);
    addDialog("CopyProgress", kDialogAutoNext);
    stand(0);
    ui.onCall = [this](const std::string& call) {
        if (call == "showDialog(1)") {
            state.cancelled = 1;
        }
    };
    EXPECT_EQ(navigator.shift(&ui, 1), 0);
    expectAt(1);
    EXPECT_TRUE(actions.calls.empty());
    EXPECT_EQ(navigator.shift(&ui, -1), 0);
    expectAt(1);
}

TEST_F(NavigatorTest, EntersNoSubDialogOfAFrameThatWasCancelled) {
    addDialog("First");
    addFrame("Frame", {"CopyProgress"});
    stand(0);
    ui.onCall = [this](const std::string& call) {
        if (call == "showDialog(1)") {
            state.cancelled = 1;
        }
    };
    navigator.shift(&ui, 1);
    expectAt(1);
    EXPECT_TRUE(actions.calls.empty());
}

TEST_F(NavigatorTest, StepsOverManyHiddenDialogs) {
    addDialog("First");
    for (int i = 0; i < 10000; ++i) {
        addDialog("Hidden").conditionText.assign("0");
    }
    addDialog("Last");
    stand(0);
    navigator.shift(&ui, 1);
    expectAt(10001);
    navigator.shift(&ui, -1);
    expectAt(0);
}

TEST_F(NavigatorTest, RunsThroughAManyPagesThatMoveOnByThemselves) {
    addDialog("First");
    for (int i = 0; i < 10000; ++i) {
        addDialog("Auto", kDialogAutoNext);
    }
    addDialog("Last");
    stand(0);
    navigator.shift(&ui, 1);
    expectAt(10001);
    EXPECT_EQ(ui.countOf("showDialog"), 10001);
}

TEST_F(NavigatorTest, BringsTheErrorPagesIntoPlayAfterAFailure) {
    addDialog("First");
    addDialog("CopyProgress", kDialogAutoNext);
    addDialog("RevertInstallation", kDialogAutoNext).conditionText.assign("[ERROR]==1");
    addDialog("Finish", kDialogFinish).conditionText.assign("[ERROR]==0");
    addDialog("BadFinish", kDialogFinish | kDialogBadFinish);
    variables.setVariable("ERROR", "0");
    actions.results["installProduct"] = -1;
    actions.onCall = [this](const std::string& call) {
        if (call == "installProduct") {
            variables.setVariable("ERROR", "1");
        }
    };
    stand(0);
    navigator.shift(&ui, 1);
    expectAt(4);
    EXPECT_EQ(actions.calls, (Calls{"normalizeDirectoryFields", "installProduct", "revertInstallation"}));
}

}  // namespace

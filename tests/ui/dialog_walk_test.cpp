#include "ui/dialog_walk.h"

#include <algorithm>
#include <iterator>

#include "base/errors.h"
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

// A walk through pages of every kind, in which each call to the front end and each piece of work may be the
// moment when the user presses something.
class PressedWalk : public Walk {
public:
    PressedWalk() {
        DialogDesc& frame = addFrame("Frame", {"One", "RunningApps", "Two"});
        addTrigger(addDialog("Busy", kDialogBusy), kTriggerOnDlgEval, kTriggerRunActions, "", "Evaluate");
        for (const std::string_view name : PageEntry::pageNames()) {
            addTriggers(addDialog(std::string(name).c_str(), kDialogAutoNext));
        }
        addDialog("Last", kDialogFinish);
        addTriggers(frame);
        addTriggers(frame.subDialogs[0]);
        actions.products = {{"Old", false}};
        ui.confirmCancelResult = 0;
    }

    static void addTriggers(DialogDesc& page) {
        for (const std::uint32_t when : {kTriggerOnStart, kTriggerOnDynamic, kTriggerOnEnd}) {
            addTrigger(page, when, kTriggerRunActions, "", "Section");
            addTrigger(page, when, kTriggerVarChange, "MOMENT", std::to_string(when).c_str());
        }
    }

    void pressEverything() {
        if (isPressing_) {
            return;
        }
        isPressing_ = true;
        EXPECT_EQ(walk.shift(&ui, 1), -1);
        EXPECT_EQ(walk.shift(&ui, -1), -1);
        EXPECT_EQ(walk.next(&ui, 3), -1);
        EXPECT_EQ(walk.back(&ui, 2), -1);
        EXPECT_EQ(walk.goToDialog(0, &ui), -1);
        EXPECT_EQ(walk.goToSubdialog(0, 1, &ui), -1);
        walk.performAction(&ui, "[PRESSED]='1'");
        walk.runTriggers(&ui, kTriggerOnDynamic, state.currentDialog, state.currentSubdialog);
        walk.cancel(&ui);
        ++presses;
        isPressing_ = false;
    }

    // All that the front end, the engine and the log got to know.
    Calls walkThrough(bool isPressed) {
        if (isPressed) {
            ui.onCall = [this](const std::string&) { pressEverything(); };
            actions.onCall = ui.onCall;
        }
        walk.goToDialog(0, &ui);
        for (int i = 0; i < 30 && !state.finished; ++i) {
            // As the window does it about once a second.
            walk.runTriggers(&ui, kTriggerOnDynamic, state.currentDialog, state.currentSubdialog);
            walk.shift(&ui, 1);
        }
        EXPECT_TRUE(state.finished);
        Calls all;
        std::ranges::copy_if(ui.calls, std::back_inserter(all),
                             [](const std::string& call) { return call != "confirmCancel()"; });
        std::ranges::copy(actions.calls, std::back_inserter(all));
        std::ranges::copy(log.lines(), std::back_inserter(all));
        all.push_back(valueOf("PRESSED") + valueOf("MOMENT") + valueOf("GATE"));
        return all;
    }

    void TestBody() override {}

    int presses = 0;

private:
    bool isPressing_ = false;
};

TEST(DialogWalkPressed, PressesWhileTheEngineWorksChangeNothing) {
    PressedWalk undisturbed;
    PressedWalk pressed;
    EXPECT_EQ(pressed.walkThrough(true), undisturbed.walkThrough(false));
    EXPECT_GT(pressed.presses, 100);
}

TEST_F(DialogWalkTest, CancelAndHelpAreHeardDuringAStep) {
    addDialog("Here");
    addDialog("CopyProgress");
    placeAt(0);
    actions.onCall = [&](const std::string& call) {
        if (call == "installProduct") {
            walk.performAction(&ui, "Help");
            walk.performAction(&ui, "Cancel");
        }
    };
    walk.next(&ui, 1);
    EXPECT_EQ(ui.countOf("showHelp"), 1);
    EXPECT_EQ(ui.countOf("confirmCancel"), 1);
}

TEST_F(DialogWalkTest, AYesInTheBoxEndsAChainOfPages) {
    addDialog("Here");
    addTrigger(addDialog("Going", kDialogAutoNext), kTriggerOnStart, kTriggerRunActions, "", "Long");
    addDialog("CopyProgress", kDialogAutoNext);
    placeAt(0);
    actions.onCall = [&](const std::string&) { walk.cancel(&ui); };
    EXPECT_EQ(walk.next(&ui, 1), 0);
    EXPECT_TRUE(state.cancelled);
    EXPECT_EQ(actions.calls, Calls{"runActions(Long)"});
    expectAt(1);
}

TEST_F(DialogWalkTest, TheStatesOfWorkAreSeenByWhoAsksToCancel) {
    addDialog("Here");
    addDialog("Evaluating", kDialogBusy | kDialogAutoNext);
    addTrigger(dialogs.getDialogs().back(), kTriggerOnDlgEval, kTriggerRunActions, "", "Evaluate");
    addDialog("CopyProgress");
    placeAt(0);
    std::vector<std::int32_t> states;
    ui.confirmCancelResult = 0;
    ui.onCall = [&](const std::string& call) {
        if (call == "confirmCancel()") {
            states.push_back(state.uiState);
        }
    };
    actions.onCall = [&](const std::string& call) {
        if (call != "normalizeDirectoryFields") {
            walk.cancel(&ui);
        }
    };
    walk.next(&ui, 1);
    EXPECT_EQ(states, (std::vector<std::int32_t>{kUiBusy, kUiInstallationRunning}));
    EXPECT_FALSE(state.cancelled);
    EXPECT_EQ(state.uiState, kUiReady);
}

TEST_F(DialogWalkTest, TriggersThatAWindowAsksForDoNotStartAStep) {
    DialogDesc& page = addDialog("Here");
    addTrigger(page, kTriggerOnDynamic, kTriggerRunActions, "", "Long");
    addTrigger(page, kTriggerOnDynamic, kTriggerVarChange, "AFTER", "1");
    addDialog("Next");
    placeAt(0);
    int result = 0;
    actions.onCall = [&](const std::string&) { result = walk.next(&ui, 1); };
    walk.runTriggers(&ui, kTriggerOnDynamic, 0, -1);
    EXPECT_EQ(result, -1);
    EXPECT_EQ(valueOf("AFTER"), "1");
    expectAt(0);
    EXPECT_EQ(walk.next(&ui, 1), 0);
    expectAt(1);
}

TEST_F(DialogWalkTest, IsAtWorkOnlyOnAPageThatWorks) {
    addDialog("Here");
    addDialog("CopyProgress");
    placeAt(0);
    std::vector<bool> found;
    ui.onCall = [&](const std::string& call) {
        if (call.starts_with("showPage") || call == "updateNavigationState()") {
            found.push_back(walk.isAtWork());
        }
    };
    walk.next(&ui, 1);
    EXPECT_EQ(found, (std::vector<bool>{false, true, false}));
    EXPECT_FALSE(walk.isAtWork());
}

TEST_F(DialogWalkTest, AnExceptionLeavesTheWalkReadyForItsEnd) {
    addDialog("Here");
    addDialog("CopyProgress");
    addDialog("Next");
    placeAt(0);
    actions.onCall = [](const std::string& call) {
        if (call == "installProduct") {
            throw InstallerError("lost");
        }
    };
    EXPECT_THROW(walk.next(&ui, 1), InstallerError);
    EXPECT_EQ(state.uiState, kUiReady);
    EXPECT_FALSE(walk.isAtWork());
    expectAt(1);
    EXPECT_EQ(walk.next(&ui, 1), 0);
    expectAt(2);
}

}  // namespace

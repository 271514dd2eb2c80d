#include "ui/page_turner.h"

#include "walk_fixture.h"

namespace {

class PageTurnerTest : public Walk {
protected:
    // Triggers record where they ran and when, between the calls of the front end.
    void traceTriggers(DialogDesc& page, const char* name) {
        addTrigger(page, kTriggerOnEnd, kTriggerRunActions, "", (std::string("leave ") + name).c_str());
        addTrigger(page, kTriggerOnStart, kTriggerRunActions, "", (std::string("enter ") + name).c_str());
    }
    void mergeActionsIntoCalls() {
        actions.onCall = [this](const std::string& call) {
            ui.calls.push_back(call + " at " + std::to_string(state.currentDialog) + ", " +
                               std::to_string(state.currentSubdialog));
        };
    }
};

TEST_F(PageTurnerTest, EntersADialogInTheAgreedOrder) {
    DialogDesc& from = addDialog("From");
    from.retain = {"A", "B"};
    traceTriggers(from, "from");
    traceTriggers(addDialog("To"), "to");
    mergeActionsIntoCalls();
    placeAt(0);
    EXPECT_EQ(walk.goToDialog(1, &ui), 0);
    EXPECT_EQ(ui.calls,
              (Calls{"keepElement(\"A\")", "keepElement(\"B\")", "leaveDialog(0)", "clearTaskList()",
                     "destroySubPage()", "runActions(leave from) at 0, -1", "runActions(enter to) at 1, -1",
                     "prepareDialog(1)", "showDialog(1)", "showPage(1, -1, 1)"}));
    expectAt(1);
    EXPECT_EQ(log.lines(), Calls{"Setting dialog \"To\" (1, -1)"});
}

TEST_F(PageTurnerTest, EntersASubDialogInTheAgreedOrder) {
    DialogDesc& frame = addFrame("Frame", {"One", "Two"});
    frame.subDialogs[0].retain = {"A"};
    traceTriggers(frame.subDialogs[0], "one");
    traceTriggers(frame.subDialogs[1], "two");
    mergeActionsIntoCalls();
    placeAt(0, 0);
    EXPECT_EQ(walk.goToSubdialog(0, 1, &ui), 0);
    EXPECT_EQ(ui.calls, (Calls{"keepElement(\"A\")", "leaveSubDialog(0, 0)", "runActions(leave one) at 0, 0",
                               "runActions(enter two) at 0, 1", "setTaskState(\"Two\", \"Two\", 1)",
                               "prepareSubDialog(0, 1)", "showSubDialog(0, 1)", "showPage(0, 1, 1)"}));
    expectAt(0, 1);
    EXPECT_EQ(frame.tasks[1].state, kTaskCurrent);
}

TEST_F(PageTurnerTest, LeavesASubDialogForADialog) {
    DialogDesc& frame = addFrame("Frame", {"One"});
    frame.retain = {"frame"};
    frame.subDialogs[0].retain = {"sub"};
    traceTriggers(frame, "frame");
    traceTriggers(frame.subDialogs[0], "one");
    addDialog("To");
    placeAt(0, 0);
    walk.goToDialog(1, &ui);
    EXPECT_EQ(ui.callsOf("keepElement"), Calls{"keepElement(\"sub\")"});
    EXPECT_EQ(ui.callsOf("leave"), Calls{"leaveDialog(0)"});
    EXPECT_EQ(actions.calls, Calls{"runActions(leave one)"});
}

TEST_F(PageTurnerTest, LeavesDialogZeroWhenTheWalkBegins) {
    traceTriggers(addDialog("First"), "first");
    placeAt(0);
    walk.goToDialog(0, &ui);
    EXPECT_EQ(actions.calls, (Calls{"runActions(leave first)", "runActions(enter first)"}));
}

TEST_F(PageTurnerTest, DoesNothingForAPageThatIsNotThere) {
    addDialog("Page");
    addFrame("Frame", {"One"});
    placeAt(0);
    EXPECT_EQ(walk.goToDialog(-1, &ui), -1);
    EXPECT_EQ(walk.goToDialog(2, &ui), -1);
    EXPECT_EQ(walk.goToDialog(0, nullptr), -1);
    EXPECT_EQ(walk.goToSubdialog(1, 1, &ui), -1);
    EXPECT_EQ(walk.goToSubdialog(1, -1, &ui), -1);
    EXPECT_EQ(walk.goToSubdialog(0, 0, &ui), -1);
    EXPECT_EQ(walk.goToSubdialog(1, 0, nullptr), -1);
    EXPECT_TRUE(ui.calls.empty());
    expectAt(0);
}

TEST_F(PageTurnerTest, ReportsAPageThatMovesOnByItself) {
    DialogDesc& frame = addFrame("Frame", {"One"});
    frame.subDialogs[0].special = kDialogAutoNext;
    placeAt(0);
    EXPECT_EQ(walk.goToDialog(0, &ui), 0);
    EXPECT_EQ(walk.goToSubdialog(0, 0, &ui), 1);
}

TEST_F(PageTurnerTest, DoesNotStartTheWorkOfAPageThatWasCancelledWhileShown) {
    addDialog("CopyProgress", kDialogAutoNext);
    placeAt(0);
    ui.onCall = [this](const std::string& call) {
        if (call == "showDialog(0)") {
            state.cancelled = true;
        }
    };
    EXPECT_EQ(walk.goToDialog(0, &ui), 0);
    EXPECT_TRUE(actions.calls.empty());
}

}  // namespace

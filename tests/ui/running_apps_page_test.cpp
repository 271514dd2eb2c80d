#include "ui/running_apps_page.h"

#include "walk_fixture.h"

namespace {

constexpr const char* kReport =
    "addFileLine(\"The installation can not continue, because the processes listed above are running.\", 1)";

class RunningAppsPageTest : public Walk {
protected:
    RunningAppsPageTest() { page.node = 7; }

    PageVisit enter() {
        PageVisit visit{0, -1, ui, page, state};
        runningApps.enter(visit);
        return visit;
    }

    bool isOpen() { return page.gate->isOpen(ui); }

    DialogDesc& page = addDialog("RunningApps");
    RunningAppsPage runningApps{actions, debugLog};
};

TEST_F(RunningAppsPageTest, LetsTheUserGoOnWhenNothingRuns) {
    actions.programs = {{"demo.exe", false}};
    const PageVisit visit = enter();
    EXPECT_TRUE(visit.shown);
    EXPECT_FALSE(visit.oneMoreStep);
    EXPECT_TRUE(ui.calls.empty());
    EXPECT_EQ(state.uiState, kUiReady);
    ASSERT_NE(page.gate, nullptr);
    EXPECT_TRUE(isOpen());
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(RunningAppsPageTest, HoldsTheUserWhileAProgramRuns) {
    actions.programs = {{"demo.exe", true}, {"other.exe", false}};
    enter();
    EXPECT_EQ(ui.calls, (Calls{"clearFileLines()", "addFileLine(\"demo.exe\", 0)", "addFileLine(null, 1)",
                               "isGraphical()", kReport, "showPage(0, -1, 1)", "updateNavigationState()"}));
    EXPECT_EQ(state.uiState, kUiConditionUnmet);
    EXPECT_FALSE(isOpen());
    EXPECT_TRUE(log.hasLine("Running applications found"));
}

TEST_F(RunningAppsPageTest, ReportsNothingInAGraphicalFrontEnd) {
    actions.programs = {{"demo.exe", true}};
    ui.graphical = 1;
    enter();
    EXPECT_EQ(ui.countOf(kReport), 0);
    EXPECT_EQ(state.uiState, kUiConditionUnmet);
}

TEST_F(RunningAppsPageTest, NamesTheProgramsInAQuietRunOnce) {
    actions.programs = {{"a.exe", true}, {"b.exe", false}, {"c.exe", true}};
    ui.quiet = true;
    enter();
    enter();
    EXPECT_EQ(ui.callsOf("addMessage"), Calls{"addMessage(\"Still running: a.exe, c.exe\")"});
    actions.programs[0].isRunning = false;
    EXPECT_FALSE(isOpen());
    actions.programs[2].isRunning = false;
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(ui.callsOf("addMessage"),
              (Calls{"addMessage(\"Still running: a.exe, c.exe\")", "addMessage(\"Still running: c.exe\")"}));
}

TEST_F(RunningAppsPageTest, HasNothingMoreToSayThanItsListInOtherRuns) {
    actions.programs = {{"a.exe", true}};
    enter();
    EXPECT_EQ(ui.countOf("addMessage"), 0);
}

TEST_F(RunningAppsPageTest, LeadsOnWhileAProgramRunsWhereThePageIsWeak) {
    addDialog("Next");
    page.special = kDialogWeakCondition;
    dialogs.getDialogs().insert(dialogs.getDialogs().begin(), makePage("First", 0));
    actions.programs = {{"demo.exe", true}};
    placeAt(0);
    walk.shift(&ui, 1);
    expectAt(1);
    EXPECT_EQ(walk.shift(&ui, 1), 0);
    expectAt(2);
}

TEST_F(RunningAppsPageTest, PreparesThePageBeforeItLooks) {
    actions.programs = {{"demo.exe", true}};
    actions.onCall = [this](const std::string&) { actions.programs[0].isRunning = false; };
    enter();
    EXPECT_EQ(actions.calls, Calls{"prepareProgramWatch(7)"});
    EXPECT_EQ(state.uiState, kUiReady);
}

TEST_F(RunningAppsPageTest, ListsTheProgramsAnewOnlyWhenSomethingChanges) {
    actions.programs = {{"a.exe", true}, {"b.exe", true}};
    enter();
    ui.take();
    EXPECT_FALSE(isOpen());
    EXPECT_TRUE(ui.calls.empty());

    actions.programs[0].isRunning = false;
    EXPECT_FALSE(isOpen());
    EXPECT_EQ(ui.take(), (Calls{"clearFileLines()", "addFileLine(\"b.exe\", 0)", "addFileLine(null, 1)"}));

    actions.programs[1].isRunning = false;
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(ui.take(), (Calls{"clearFileLines()", "addFileLine(null, 1)"}));
}

TEST_F(RunningAppsPageTest, ListsTheProgramsAnewWhenThePageIsEnteredAgain) {
    actions.programs = {{"a.exe", true}};
    enter();
    enter();
    EXPECT_EQ(ui.countOf("addFileLine(\"a.exe\", 0)"), 2);
}

TEST_F(RunningAppsPageTest, SharesOneGateAmongItsPages) {
    actions.programs = {{"a.exe", true}};
    enter();
    const auto gate = page.gate;
    DialogDesc& second = addDialog("RunningApps");
    PageVisit visit{1, -1, ui, second, state};
    actions.programs.clear();
    runningApps.enter(visit);
    EXPECT_EQ(second.gate, gate);
    EXPECT_TRUE(gate->isOpen(ui));
}

TEST_F(RunningAppsPageTest, LeadsToTheNextPageWhenNothingRuns) {
    addTrigger(page, kTriggerOnStart, kTriggerRunActions, "", "entered");
    addTrigger(page, kTriggerOnEnd, kTriggerRunActions, "", "left");
    dialogs.getDialogs().insert(dialogs.getDialogs().begin(), makePage("First", 0));
    addDialog("Next");
    placeAt(0);
    EXPECT_EQ(walk.shift(&ui, 1), 0);
    expectAt(2);
    EXPECT_EQ(ui.countOf("showDialog(1)"), 1);
    EXPECT_EQ(actions.calls, (Calls{"runActions(entered)", "prepareProgramWatch(7)", "runActions(left)"}));
}

TEST_F(RunningAppsPageTest, StopsTheWalkUntilTheProgramIsGone) {
    addDialog("Next");
    dialogs.getDialogs().insert(dialogs.getDialogs().begin(), makePage("First", 0));
    actions.programs = {{"demo.exe", true}};
    placeAt(0);
    EXPECT_EQ(walk.shift(&ui, 1), 0);
    expectAt(1);
    EXPECT_EQ(walk.shift(&ui, 1), -1);
    expectAt(1);
    EXPECT_EQ(ui.countOf("showDialog(1)"), 2);
    actions.programs[0].isRunning = false;
    EXPECT_EQ(walk.shift(&ui, 1), 0);
    expectAt(2);
}

}  // namespace

#include "ui/running_apps_page.h"

#include "walk_fixture.h"

namespace {

constexpr const char* kReport =
    "addFileLine(\"The installation can not continue, because the processes listed above are running.\", 1)";

class RunningAppsPageTest : public Walk {
protected:
    DialogDesc& page = addDialog("RunningApps");

    void describe(const std::string& elements) {
        page.node = addXml("RunningApps", "<RunningApps>" + elements + "</RunningApps>");
    }
    PageVisit enter() {
        PageVisit visit{0, -1, ui, page, state};
        runningApps.enter(visit);
        return visit;
    }
};

TEST_F(RunningAppsPageTest, LetsTheUserGoOnWhenNothingRuns) {
    describe("<TestApp>demo.exe</TestApp>");
    const PageVisit visit = enter();
    EXPECT_TRUE(visit.shown);
    EXPECT_FALSE(visit.oneMoreStep);
    EXPECT_EQ(ui.countOf("showPage"), 0);
    EXPECT_EQ(state.uiState, kUiReady);
    ASSERT_NE(page.condition, nullptr);
    EXPECT_EQ(page.condition->evaluate(&system, &ui), 1);
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(RunningAppsPageTest, HoldsTheUserWhileAProgramRuns) {
    describe("<TestApp>demo.exe</TestApp><TestApp>other.exe</TestApp>");
    system.running = {"demo.exe"};
    enter();
    EXPECT_EQ(ui.callsOf("addFileLine(\"demo"), Calls{"addFileLine(\"demo.exe\", 0)"});
    EXPECT_EQ(ui.countOf("addFileLine(\"other"), 0);
    EXPECT_EQ(ui.countOf(kReport), 1);
    EXPECT_EQ(ui.countOf("showPage(0, -1, 1)"), 1);
    EXPECT_EQ(ui.calls.back(), "updateNavigationState()");
    EXPECT_EQ(state.uiState, kUiConditionUnmet);
    EXPECT_TRUE(log.hasLine("Running applications found"));
}

TEST_F(RunningAppsPageTest, ReportsNothingInAGraphicalFrontEnd) {
    describe("<TestApp>demo.exe</TestApp>");
    system.running = {"demo.exe"};
    ui.graphical = 1;
    enter();
    EXPECT_EQ(ui.countOf(kReport), 0);
    EXPECT_EQ(state.uiState, kUiConditionUnmet);
}

TEST_F(RunningAppsPageTest, LooksInTheExpandedDirectory) {
    variables.setVariable("DIR", "C:/apps");
    describe("<TestApp Directory=\"[DIR]/demo\">demo.exe</TestApp>");
    system.running = {"demo.exe"};
    enter();
    EXPECT_EQ(state.uiState, kUiReady);
    system.running = {"demo.exe@C:/apps/demo"};
    enter();
    EXPECT_EQ(state.uiState, kUiConditionUnmet);
}

TEST_F(RunningAppsPageTest, StopsProgramsAndServicesAheadOfTheTests) {
    variables.setVariable("DIR", "C:/apps");
    describe(
        "<TestApp>demo.exe</TestApp>"
        "<TerminateApp>demo.exe</TerminateApp>"
        "<TerminateApp Service=\"TRUE\" Directory=\"[DIR]\">service.exe</TerminateApp>"
        "<TerminateApp Service=\"1\">tool.exe</TerminateApp>"
        "<TerminateSequence>Stop</TerminateSequence>");
    system.running = {"demo.exe"};
    actions.onCall = [this](const std::string&) { system.running.clear(); };
    enter();
    EXPECT_EQ(actions.calls, (Calls{"closeApplication(demo.exe, program, null)",
                                    "closeApplication(service.exe, service, C:/apps)",
                                    "closeApplication(tool.exe, program, null)", "runActions(Stop)"}));
    EXPECT_EQ(state.uiState, kUiReady);
}

TEST_F(RunningAppsPageTest, PassesOverElementsWhoseConditionIsFalse) {
    describe(
        "<TestApp Condition=\"0\">demo.exe</TestApp>"
        "<TerminateApp Condition=\"0\">demo.exe</TerminateApp>"
        "<TerminateSequence Condition=\"0\">Stop</TerminateSequence>"
        "<Field>demo.exe</Field><TestApp/>");
    system.running = {"demo.exe"};
    enter();
    EXPECT_TRUE(actions.calls.empty());
    EXPECT_EQ(state.uiState, kUiReady);
}

TEST_F(RunningAppsPageTest, SharesOneGateAndEmptiesItEachTime) {
    describe("<TestApp Condition=\"[A]==1\">demo.exe</TestApp>");
    variables.setVariable("A", "1");
    system.running = {"demo.exe"};
    enter();
    const auto gate = page.condition;
    EXPECT_EQ(gate->evaluate(&system, &ui), 0);
    variables.setVariable("A", "0");
    enter();
    EXPECT_EQ(page.condition, gate);
    EXPECT_EQ(gate->evaluate(&system, &ui), 1);
}

TEST_F(RunningAppsPageTest, WalksOntoThePageBehindWhenNothingRuns) {
    describe("<TestApp>demo.exe</TestApp>");
    addTrigger(page, kTriggerOnStart, kTriggerRunActions, "", "entered");
    addTrigger(page, kTriggerOnEnd, kTriggerRunActions, "", "left");
    dialogs.getDialogs().insert(dialogs.getDialogs().begin(), makePage("First", 0));
    addDialog("Behind");
    stand(0);
    EXPECT_EQ(navigator.shift(&ui, 1), 0);
    expectAt(2);
    EXPECT_EQ(ui.countOf("showDialog(1)"), 1);
    EXPECT_EQ(actions.calls, (Calls{"runActions(entered)", "runActions(left)"}));
}

TEST_F(RunningAppsPageTest, StopsTheWalkUntilTheProgramIsGone) {
    describe("<TestApp>demo.exe</TestApp>");
    addDialog("Behind");
    dialogs.getDialogs().insert(dialogs.getDialogs().begin(), makePage("First", 0));
    system.running = {"demo.exe"};
    stand(0);
    EXPECT_EQ(navigator.shift(&ui, 1), 0);
    expectAt(1);
    EXPECT_EQ(navigator.shift(&ui, 1), -1);
    expectAt(1);
    EXPECT_EQ(ui.countOf("showDialog(1)"), 2);
    system.running.clear();
    EXPECT_EQ(navigator.shift(&ui, 1), 0);
    expectAt(2);
}

}  // namespace

#include "ui/page_entry.h"

#include <algorithm>

#include "base/errors.h"
#include "walk_fixture.h"

namespace {

class PageEntryTest : public Walk {
protected:
    // Enters a page of that name; the calls of the front end are in ui.calls.
    Onward enter(const char* name, std::uint32_t special = 0) {
        page = makePage(name, special);
        return enterPage();
    }
    Onward enterPage() {
        PageVisit visit{3, 1, ui, page, state};
        return entry.enterPage(visit);
    }
    // What work on a page looks like to the front end.
    static Calls workCalls() {
        return {"showPage(3, 1, 1)", "updateNavigationState()", "updateNavigationState()"};
    }

    ControlValues controls{controlNames, variables};
    Triggers triggers{dialogs, variables, expressions, actions, files, debugLog};
    PageEntry entry{controls, triggers, actions, debugLog};
    DialogDesc page;
};

TEST_F(PageEntryTest, KnowsEachNameOnce) {
    std::vector<std::string_view> names = PageEntry::pageNames();
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<std::string_view>{
                         "BadFinish", "CopyProgress", "ExternalUninstall", "Finish", "PostInstall",
                         "PreUninstall", "RegisterApplication", "RevertInstallation", "RevertUninstallation",
                         "RunningApps", "Uninstall", "UnregisterApplication"}));
}

TEST_F(PageEntryTest, ShowsAnOrdinaryPage) {
    EXPECT_EQ(enter("Welcome"), Onward::kWait);
    EXPECT_EQ(ui.calls, Calls{"showPage(3, 1, 1)"});
    EXPECT_TRUE(actions.calls.empty());
    EXPECT_EQ(log.lines(), Calls{"Setting dialog \"Welcome\" (3, 1)"});
}

TEST_F(PageEntryTest, NeedsNoLog) {
    debugLog.setTarget(nullptr, 0);
    EXPECT_EQ(enter("Welcome"), Onward::kWait);
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(PageEntryTest, ComparesNamesExactly) {
    for (const char* name : {"copyprogress", "CopyProgress2", "Copy", "COPYPROGRESS"}) {
        enter(name);
    }
    EXPECT_TRUE(actions.calls.empty());
}

TEST_F(PageEntryTest, ClearsTheConditionVariable) {
    variables.set("GATE", "1");
    enter("Welcome");
    EXPECT_EQ(valueOf("GATE"), "0");
}

TEST_F(PageEntryTest, AsksForAStepOnAPageThatMovesOnByItself) {
    EXPECT_EQ(enter("Welcome", kDialogAutoNext), Onward::kGoOn);
    EXPECT_EQ(enter("CopyProgress", kDialogAutoNext), Onward::kGoOn);
    EXPECT_EQ(enter("CopyProgress"), Onward::kWait);
}

TEST_F(PageEntryTest, IsBusyWhileItsTriggersRun) {
    dialogs.add(makePage("0", 0));
    dialogs.add(makePage("1", 0));
    dialogs.add(makePage("2", 0));
    DialogDesc& frame = addFrame("Frame", {"A", "B"});
    DialogDesc& busy = frame.subDialogs[1];
    busy.special = kDialogBusy;
    addTrigger(busy, kTriggerOnDlgEval, kTriggerRunActions, "", "Section");
    std::vector<std::int32_t> states;
    actions.onCall = [&](const std::string&) { states.push_back(state.uiState); };
    PageVisit visit{3, 1, ui, busy, state};
    EXPECT_EQ(entry.enterPage(visit), Onward::kWait);
    EXPECT_EQ(states, std::vector<std::int32_t>{kUiBusy});
    EXPECT_EQ(state.uiState, kUiReady);
    EXPECT_EQ(ui.calls, (Calls{"updateNavigationState()", "showPage(3, 1, 1)", "updateNavigationState()"}));
}

TEST_F(PageEntryTest, LeavesTheStateOfABusyPageThatGotAnother) {
    page = makePage("RunningApps", kDialogBusy);
    actions.programs = {{"demo", true}};
    enterPage();
    EXPECT_EQ(state.uiState, kUiConditionUnmet);
}

TEST_F(PageEntryTest, ShowsABusyPageWithWorkOnce) {
    enter("CopyProgress", kDialogBusy);
    EXPECT_EQ(ui.countOf("showPage"), 1);
    EXPECT_EQ(state.uiState, kUiReady);
}

TEST_F(PageEntryTest, InstallsOnCopyProgress) {
    std::vector<std::int32_t> states;
    actions.onCall = [&](const std::string&) { states.push_back(state.uiState); };
    actions.failing.insert("installProduct");
    EXPECT_EQ(enter("CopyProgress"), Onward::kWait);
    EXPECT_EQ(actions.calls, (Calls{"normalizeDirectoryFields", "installProduct"}));
    EXPECT_EQ(states, (std::vector<std::int32_t>{kUiInstallationRunning, kUiInstallationRunning}));
    EXPECT_EQ(ui.calls, workCalls());
    EXPECT_EQ(state.uiState, kUiReady);
    EXPECT_TRUE(state.lastWorkFailed);
}

TEST_F(PageEntryTest, UninstallsOnCopyProgressInAnActionLogSession) {
    actions.actionLogSession = true;
    state.lastWorkFailed = true;
    enter("CopyProgress");
    EXPECT_EQ(actions.calls, (Calls{"normalizeDirectoryFields", "uninstallCurrentProduct"}));
    EXPECT_FALSE(state.lastWorkFailed);
}

TEST_F(PageEntryTest, LetsAnUninstallationSeeThatItIsAskedToEnd) {
    actions.actionLogSession = true;
    actions.onCall = [this](const std::string& call) { state.cancelled = call == "uninstallCurrentProduct"; };
    enter("CopyProgress");
    EXPECT_TRUE(state.lastWorkFailed);
}

TEST_F(PageEntryTest, UninstallsAnEarlierProduct) {
    variables.set("UNINSTALL_ERROR", "0");
    EXPECT_EQ(enter("Uninstall"), Onward::kWait);
    EXPECT_EQ(actions.calls, Calls{"uninstallPrevious"});
    EXPECT_EQ(ui.calls, workCalls());
    EXPECT_FALSE(state.lastWorkFailed);
    EXPECT_EQ(valueOf("UNINSTALL_ERROR"), "0");
}

TEST_F(PageEntryTest, ReportsAFailedUninstallationToTheDescription) {
    actions.failing.insert("uninstallPrevious");
    enter("Uninstall");
    EXPECT_TRUE(state.lastWorkFailed);
    EXPECT_EQ(valueOf("UNINSTALL_ERROR"), "1");
}

TEST_F(PageEntryTest, Reverts) {
    actions.failing.insert("revertInstallation");
    actions.failing.insert("revertUninstallation");
    enter("RevertInstallation");
    EXPECT_EQ(ui.take(), workCalls());
    EXPECT_TRUE(state.lastWorkFailed);
    enter("RevertUninstallation");
    EXPECT_EQ(ui.take(), workCalls());
    EXPECT_TRUE(state.lastWorkFailed);
    EXPECT_EQ(actions.calls, (Calls{"revertInstallation", "revertUninstallation"}));
}

TEST_F(PageEntryTest, RegistersTheApplicationWithoutShowingAPage) {
    state.lastWorkFailed = true;
    EXPECT_EQ(enter("RegisterApplication"), Onward::kWait);
    EXPECT_EQ(actions.take(), Calls{"registerApplication"});
    EXPECT_FALSE(state.lastWorkFailed);
    actions.failing = {"registerApplication"};
    enter("RegisterApplication");
    EXPECT_TRUE(state.lastWorkFailed);
    EXPECT_TRUE(ui.calls.empty());
}

TEST_F(PageEntryTest, FailsToRegisterInAnActionLogSession) {
    actions.actionLogSession = true;
    enter("RegisterApplication");
    EXPECT_TRUE(state.lastWorkFailed);
    EXPECT_TRUE(actions.calls.empty());
    EXPECT_TRUE(ui.calls.empty());
}

TEST_F(PageEntryTest, UnregistersTheApplicationInAnActionLogSession) {
    actions.actionLogSession = true;
    state.lastWorkFailed = true;
    enter("UnregisterApplication");
    EXPECT_EQ(actions.take(), Calls{"unregisterApplication"});
    EXPECT_FALSE(state.lastWorkFailed);
    actions.failing = {"unregisterApplication"};
    enter("UnregisterApplication");
    EXPECT_TRUE(state.lastWorkFailed);
    EXPECT_TRUE(ui.calls.empty());
}

TEST_F(PageEntryTest, UnregistersNothingInAnotherSession) {
    state.lastWorkFailed = true;
    enter("UnregisterApplication");
    EXPECT_TRUE(actions.calls.empty());
    EXPECT_TRUE(state.lastWorkFailed);
    EXPECT_TRUE(ui.calls.empty());
}

TEST_F(PageEntryTest, RunsTheActionsBeforeAnUninstallation) {
    state.lastWorkFailed = true;
    EXPECT_EQ(enter("PreUninstall"), Onward::kWait);
    EXPECT_EQ(actions.calls, Calls{"prepareUninstall"});
    EXPECT_EQ(ui.calls, Calls{"showPage(3, 1, 1)"});
    EXPECT_FALSE(state.lastWorkFailed);
}

TEST_F(PageEntryTest, FinishesTheInstallationAndAsksForAStep) {
    state.lastWorkFailed = true;
    EXPECT_EQ(enter("PostInstall"), Onward::kGoOn);
    EXPECT_EQ(actions.calls, Calls{"finishInstallation"});
    EXPECT_EQ(ui.calls, Calls{"showPage(3, 1, 1)"});
    EXPECT_FALSE(state.lastWorkFailed);
}

TEST_F(PageEntryTest, KeepsTheFailureOfAnEarlierPageForTheWholeRun) {
    actions.failing = {"installProduct"};
    enter("CopyProgress");
    actions.failing.clear();
    enter("RegisterApplication");
    enter("PostInstall");
    EXPECT_FALSE(state.lastWorkFailed);
    EXPECT_FALSE(state.hasSucceeded());
}

TEST_F(PageEntryTest, SucceedsWhenAllWorkDid) {
    for (const char* name : {"Uninstall", "CopyProgress", "RegisterApplication", "PostInstall"}) {
        enter(name);
    }
    EXPECT_TRUE(state.hasSucceeded());
    state.cancelled = true;
    EXPECT_FALSE(state.hasSucceeded());
}

TEST_F(PageEntryTest, SucceedsAtNothingBeforeTheMainWork) {
    for (const char* name : {"Uninstall", "RegisterApplication", "PostInstall", "Finish"}) {
        enter(name);
        EXPECT_FALSE(state.hasSucceeded()) << name;
    }
}

TEST_F(PageEntryTest, FailsWhenTheUninstallationCannotBePrepared) {
    actions.failing.insert("prepareUninstall");
    enter("PreUninstall");
    EXPECT_TRUE(state.lastWorkFailed);
}

TEST_F(PageEntryTest, FinishesWithoutASummaryWhenThereAreNoErrors) {
    const std::vector<std::string> none;
    enter("Finish");
    EXPECT_EQ(ui.take(), Calls{"showPage(3, 1, 1)"});
    state.errorSummary = &none;
    enter("BadFinish");
    EXPECT_EQ(ui.take(), Calls{"showPage(3, 1, 1)"});
}

TEST_F(PageEntryTest, SummarisesTheErrorsOfAnInstallation) {
    const std::vector<std::string> errors = {"one", "two"};
    state.errorSummary = &errors;
    for (const char* name : {"Finish", "BadFinish"}) {
        EXPECT_EQ(enter(name), Onward::kWait);
        EXPECT_EQ(ui.take(), (Calls{"showPage(3, 1, 1)", "pumpEvents()",
                                    "addFileLine(\"Installation errors summary:\", 0)", "pumpEvents()",
                                    "addFileLine(\"one\", 1)", "pumpEvents()", "addFileLine(\"two\", 0)",
                                    "addFileLine(null, 1)"}));
    }
}

TEST_F(PageEntryTest, SummarisesTheErrorsOfAnUninstallation) {
    const std::vector<std::string> errors = {"one"};
    state.errorSummary = &errors;
    actions.actionLogSession = true;
    enter("Finish");
    EXPECT_EQ(ui.callsOf("addFileLine").front(), "addFileLine(\"Uninstallation errors summary:\", 0)");
}

TEST_F(PageEntryTest, FlushesTheSummaryAtEvery32ndError) {
    const std::vector<std::string> errors(65, "error");
    state.errorSummary = &errors;
    enter("BadFinish");
    const Calls lines = ui.callsOf("addFileLine");
    ASSERT_EQ(lines.size(), 67U);
    for (std::size_t i = 0; i < errors.size(); ++i) {
        const bool flush = i == 0 || i == 32 || i == 64;
        EXPECT_EQ(lines[i + 1], flush ? "addFileLine(\"error\", 1)" : "addFileLine(\"error\", 0)") << i;
    }
    EXPECT_EQ(lines.back(), "addFileLine(null, 1)");
}

TEST_F(PageEntryTest, LeavesTheStatesOfWorkWhenTheWorkThrows) {
    for (const char* name : {"Uninstall", "CopyProgress", "RevertInstallation", "RevertUninstallation"}) {
        std::vector<std::int32_t> during;
        actions.onCall = [&](const std::string& call) {
            if (call != "normalizeDirectoryFields") {
                during.push_back(state.uiState);
                throw InstallerError("lost");
            }
        };
        EXPECT_THROW(enter(name), InstallerError) << name;
        EXPECT_EQ(during, std::vector<std::int32_t>{kUiInstallationRunning}) << name;
        EXPECT_EQ(state.uiState, kUiReady) << name;
    }
}

TEST_F(PageEntryTest, LeavesTheBusyStateWhenATriggerThrows) {
    actions.onCall = [](const std::string&) { throw InstallerError("lost"); };
    page = makePage("Evaluating", kDialogBusy);
    addTrigger(page, kTriggerOnDlgEval, kTriggerRunActions, "", "Section");
    dialogs.add(page);
    PageVisit visit{0, -1, ui, dialogs.getDialogs().back(), state};
    EXPECT_THROW(entry.enterPage(visit), InstallerError);
    EXPECT_EQ(state.uiState, kUiReady);
}

TEST_F(PageEntryTest, KeepsAStateThatAnotherOneSetBeforeTheException) {
    actions.onCall = [this](const std::string&) {
        state.uiState = kUiConditionUnmet;
        throw InstallerError("lost");
    };
    EXPECT_THROW(enter("PostInstall", kDialogBusy), InstallerError);
    EXPECT_EQ(state.uiState, kUiConditionUnmet);
}

}  // namespace

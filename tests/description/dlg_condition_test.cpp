#include "description/dlg_condition.h"

#include <gtest/gtest.h>

#include "fakes/fake_system_operations.h"
#include "fakes/recording_ui.h"

namespace {

using Calls = std::vector<std::string>;

class DlgConditions : public testing::Test {
protected:
    FakeSystemOperations system_;
    RecordingUI ui_;
    RunningAppsCondition apps_;
    ExternalInstallationCondition external_;
};

TEST_F(DlgConditions, ReportAddsALineWhenBothSidesArePresent) {
    apps_.report(&system_, &ui_, "text");
    EXPECT_EQ(ui_.take(), (Calls{"addFileLine(\"text\", 1)"}));
    apps_.report(nullptr, &ui_, "text");
    apps_.report(&system_, nullptr, "text");
    EXPECT_TRUE(ui_.calls.empty());
}

TEST_F(DlgConditions, NoRunningProcessMeansFree) {
    apps_.add("a.exe", nullptr);
    EXPECT_EQ(apps_.evaluate(&system_, &ui_), 1);
    EXPECT_TRUE(ui_.calls.empty());
}

TEST_F(DlgConditions, RunningProcessesAreListedOnceUntilSomethingChanges) {
    apps_.add("a.exe", nullptr);
    apps_.add("b.exe", "");
    system_.running = {"a.exe", "b.exe"};
    EXPECT_EQ(apps_.evaluate(&system_, &ui_), 0);
    EXPECT_EQ(ui_.take(), (Calls{"clearFileLines()", "addFileLine(\"a.exe\", 0)", "addFileLine(\"b.exe\", 0)",
                                 "addFileLine(null, 1)"}));
    EXPECT_EQ(apps_.evaluate(&system_, &ui_), 0);
    EXPECT_TRUE(ui_.calls.empty());

    system_.running = {"b.exe"};
    EXPECT_EQ(apps_.evaluate(&system_, &ui_), 0);
    EXPECT_EQ(ui_.take(), (Calls{"clearFileLines()", "addFileLine(\"b.exe\", 0)", "addFileLine(null, 1)"}));

    system_.running.clear();
    EXPECT_EQ(apps_.evaluate(&system_, &ui_), 1);
    EXPECT_EQ(ui_.take(), (Calls{"clearFileLines()", "addFileLine(null, 1)"}));
}

TEST_F(DlgConditions, DirectoryNarrowsTheProcess) {
    apps_.add("a.exe", "C:\\P");
    system_.running = {"a.exe"};
    EXPECT_EQ(apps_.evaluate(&system_, &ui_), 1);
    system_.running = {"a.exe@C:\\P"};
    EXPECT_EQ(apps_.evaluate(&system_, &ui_), 0);
}

TEST_F(DlgConditions, WithoutSystemOrFrontEndTheWayIsFree) {
    apps_.add("a.exe", nullptr);
    external_.add("Other");
    system_.running = {"a.exe"};
    system_.installed = {{"Other", "", false, ""}};
    EXPECT_EQ(apps_.evaluate(nullptr, &ui_), 1);
    EXPECT_EQ(apps_.evaluate(&system_, nullptr), 1);
    EXPECT_EQ(external_.evaluate(nullptr, &ui_), 1);
    EXPECT_EQ(external_.evaluate(&system_, nullptr), 1);
}

TEST_F(DlgConditions, ClearedListIsFree) {
    apps_.add("a.exe", nullptr);
    apps_.clear();
    system_.running = {"a.exe"};
    EXPECT_EQ(apps_.evaluate(&system_, &ui_), 1);
}

TEST_F(DlgConditions, RegisteredApplicationHoldsTheUser) {
    EXPECT_TRUE(external_.isEmpty());
    EXPECT_EQ(external_.evaluate(&system_, &ui_), 1);
    external_.add("One");
    external_.add("Two");
    EXPECT_FALSE(external_.isEmpty());
    EXPECT_EQ(external_.evaluate(&system_, &ui_), 1);
    system_.installed = {{"Two", "", false, ""}};
    EXPECT_EQ(external_.evaluate(&system_, &ui_), 0);
    EXPECT_TRUE(ui_.calls.empty());
}

TEST_F(DlgConditions, ApplicationsAreLookedForInTheChosenView) {
    system_.installed = {{"Two", "", true, ""}};
    external_.add("Two");
    EXPECT_EQ(external_.evaluate(&system_, &ui_), 1);
    external_.setIn32BitView(true);
    EXPECT_EQ(external_.evaluate(&system_, &ui_), 0);
}

}  // namespace

#include "engine/report.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <future>
#include <string>
#include <thread>
#include <utility>

#include "description/pxml.h"
#include "fakes/recording_ui.h"
#include "platform/error_text.h"
#include "platform/registry.h"

namespace {

TEST(ReportTest, PassesEverythingToTheFrontEnd) {
    RecordingUI ui;
    ErrorList errors;
    Report report(&ui, &errors);
    report.begin();
    report.setStatus("status");
    report.setProgress(7);
    report.pumpEventsWhileCopying();
    report.addLine("line", true);
    report.flushLines();
    report.end();
    EXPECT_EQ(ui.calls.size(), 7U);
    EXPECT_EQ(ui.countOf("pumpEventsWhileCopying"), 1);
    EXPECT_EQ(ui.countOf("addFileLine(null"), 1);
}

TEST(ReportTest, ShowsTheStatusInTheWordsOfTheDescription) {
    RecordingUI ui;
    Report report(&ui, nullptr);
    report.setStatusWord("StatusDone");
    EXPECT_EQ(ui.countOf("setStatusText(\"The installation was successful.\""), 1);
    PXML description;
    description.parseText("<R><Words><Word Name='StatusDone'>Fertig.</Word></Words></R>");
    const WizardWords words(description);
    report.setWords(&words);
    report.setStatusWord("StatusDone");
    EXPECT_EQ(ui.countOf("setStatusText(\"Fertig.\""), 1);
}

TEST(ReportTest, KeepsErrorsUpToTheirLimitAndShowsThem) {
    RecordingUI ui;
    ErrorList errors;
    Report report(&ui, &errors);
    report.showErrors("heading");
    EXPECT_EQ(ui.countOf("addFileLine(\"heading\""), 1);
    ui.take();
    report.addError(std::string(2000, 'e'));
    EXPECT_EQ(errors, std::vector<std::string>{std::string(1559, 'e')});
    report.showErrors("heading");
    EXPECT_EQ(ui.countOf("addFileLine(\"heading\""), 1);
    EXPECT_EQ(ui.countOf("addFileLine(\"eee"), 1);
}

TEST(ReportTest, DoesNothingWithoutFrontEndAndList) {
    Report report(nullptr, nullptr);
    report.begin();
    report.setStatus("status");
    report.setProgress(7);
    report.pumpEventsWhileCopying();
    report.addLine("line", true);
    report.addError("error");
    report.note("note");
    report.addReason("subject", 2);
    report.showErrors("heading");
    report.flushLines();
    report.end();
    EXPECT_FALSE(report.ignoresErrors());
}

TEST(ReportTest, HandlesTheEventsOfAWindowWhileWorkIsDone) {
    RecordingUI ui;
    ui.graphical = 1;
    std::promise<void> handled;
    ui.onCall = [&handled, isFirst = true](const std::string& call) mutable {
        if (call == "pumpEvents()" && std::exchange(isFirst, false)) {
            handled.set_value();
        }
    };
    Report report(&ui, nullptr);
    EXPECT_EQ(report.pumpEventsDuring([seen = handled.get_future().share()] {
        seen.wait();
        return 7;
    }),
              7);
    EXPECT_GE(ui.countOf("pumpEvents()"), 1);
}

TEST(ReportTest, WorksOnTheSameThreadWithoutAWindow) {
    RecordingUI console;
    for (RecordingUI* const ui : {&console, static_cast<RecordingUI*>(nullptr)}) {
        Report report(ui, nullptr);
        std::thread::id worker;
        EXPECT_EQ(report.pumpEventsDuring([&worker] {
            worker = std::this_thread::get_id();
            return 7;
        }),
                  7);
        EXPECT_EQ(worker, std::this_thread::get_id());
    }
    EXPECT_EQ(console.countOf("pumpEvents()"), 0);
}

TEST(ReportTest, AddsTheLineOfAChangeAndAnErrorWhenItFailed) {
    RecordingUI ui;
    ErrorList errors;
    Report report(&ui, &errors);
    EXPECT_TRUE(report.addOutcome(true, "made"));
    EXPECT_TRUE(errors.empty());
    EXPECT_FALSE(report.addOutcome(false, "failed"));
    EXPECT_EQ(errors, ErrorList{"failed"});
    EXPECT_EQ(ui.calls, (std::vector<std::string>{"addFileLine(\"made\", 0)", "addFileLine(\"failed\", 0)"}));
}

TEST(ReportTest, GivesAReasonOnceInALineOfItsOwn) {
    RecordingUI ui;
    ErrorList errors;
    Report report(&ui, &errors);
    report.addOutcome(false, "failed");
    report.addReason("/opt/a", ENOSPC);
    report.showErrors("heading");
    EXPECT_EQ(ui.callsOf("addMessage"),
              (std::vector<std::string>{"addMessage(\"/opt/a: " + platform::errorText(ENOSPC) + "\")"}));
    EXPECT_EQ(errors, ErrorList{"failed"});
}

TEST(ReportTest, TakesTheReasonsOfTheRegistryByItsOwnNumbers) {
    RecordingUI ui;
    Report report(&ui, nullptr);
    report.addRegistryReason("Software\\X", platform::kRegDiskFull);
    report.addReason("a.txt", "the package lacks it");
    EXPECT_EQ(ui.calls,
              (std::vector<std::string>{
                  "addMessage(\"Software\\X: " + platform::registryErrorText(platform::kRegDiskFull) + "\")",
                  "addMessage(\"a.txt: the package lacks it\")"}));
}

TEST(ReportTest, KnowsWhatStandsInTheWayOfAFile) {
    RecordingUI ui;
    Report report(&ui, nullptr);
    report.addFileReason("/opt/a", -1);
    report.addFileReason("/opt/a", ENOSPC);
    report.addFileReason("/opt/a", 0);
    EXPECT_EQ(ui.calls,
              (std::vector<std::string>{"addMessage(\"/opt/a: something else than a file is in its place\")",
                                        "addMessage(\"/opt/a: " + platform::errorText(ENOSPC) + "\")"}));
}

TEST(ReportTest, HasNoReasonForASuccess) {
    RecordingUI ui;
    Report report(&ui, nullptr);
    report.addReason("/opt/a", 0);
    report.addRegistryReason("Software\\X", 0);
    EXPECT_TRUE(ui.calls.empty());
}

TEST(ReportTest, ShowsTheShareOfTheStepsBeforeTheFinishedOne) {
    RecordingUI ui;
    Report report(&ui, nullptr);
    report.finishStep();  // nothing is expected yet
    EXPECT_TRUE(ui.calls.empty());
    report.expectSteps(2);
    report.finishStep();
    report.expectSteps(1);
    report.finishStep();
    EXPECT_EQ(ui.calls, (std::vector<std::string>{"setCurrentProgress(50)", "setCurrentProgress(67)"}));
}

TEST(ReportTest, AsksForAFlushAtEach32ndStep) {
    Report report(nullptr, nullptr);
    for (int step = 0; step < 65; ++step) {
        EXPECT_EQ(report.isFlushDue(), step % 32 == 0) << step;
        report.finishStep();
    }
}

TEST(ReportTest, PassesBothWaysOfHandlingEventsOn) {
    RecordingUI ui;
    Report report(&ui, nullptr);
    report.pumpEvents();
    report.pumpEventsWhileCopying();
    EXPECT_EQ(ui.calls, (std::vector<std::string>{"pumpEvents()", "pumpEventsWhileCopying()"}));
}

TEST(ReportTest, AsksTheFrontEndWhetherErrorsAreIgnored) {
    RecordingUI ui;
    Report report(&ui, nullptr);
    EXPECT_FALSE(report.ignoresErrors());
    ui.ignoreErrors = 1;
    EXPECT_TRUE(report.ignoresErrors());
}

TEST(ReportNotes, AreCopiedToTheReceiverThatAsksForThem) {
    RecordingUI ui;
    std::string copy;
    Report report(&ui, nullptr);
    report.note("before");
    report.copyNotesTo([&copy](std::string_view line) { copy += line; });
    report.addReason("path", "why");
    EXPECT_EQ(copy, "path: why");
    EXPECT_EQ(ui.countOf("addMessage"), 2);
}

}  // namespace

#include "engine/report.h"

#include <gtest/gtest.h>

#include "fakes/recording_ui.h"

namespace {

TEST(ReportTest, passesEverythingToTheFrontEnd) {
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

TEST(ReportTest, keepsErrorsUpToTheirLimitAndShowsThem) {
    RecordingUI ui;
    ErrorList errors;
    Report report(&ui, &errors);
    report.showErrors("heading");
    EXPECT_TRUE(ui.calls.empty());
    report.addError(std::string(2000, 'e'));
    EXPECT_EQ(errors, std::vector<std::string>{std::string(1559, 'e')});
    report.showErrors("heading");
    EXPECT_EQ(ui.countOf("addFileLine(\"heading\""), 1);
    EXPECT_EQ(ui.countOf("addFileLine(\"eee"), 1);
}

TEST(ReportTest, doesNothingWithoutFrontEndAndList) {
    Report report(nullptr, nullptr);
    report.begin();
    report.setStatus("status");
    report.setProgress(7);
    report.pumpEventsWhileCopying();
    report.addLine("line", true);
    report.addError("error");
    report.showErrors("heading");
    report.flushLines();
    report.end();
    EXPECT_FALSE(report.ignoresErrors());
    EXPECT_FALSE(report.hasErrorList());
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

TEST(ReportTest, asksTheFrontEndWhetherErrorsAreIgnored) {
    RecordingUI ui;
    Report report(&ui, nullptr);
    EXPECT_FALSE(report.ignoresErrors());
    ui.ignoreErrors = 1;
    EXPECT_TRUE(report.ignoresErrors());
}

}  // namespace

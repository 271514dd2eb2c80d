#include "support/run_outcome.h"

#include <gtest/gtest.h>

#include <set>

namespace {

TEST(RunOutcome, WithoutAReasonTheRunIsDone) {
    const RunOutcome outcome;
    EXPECT_EQ(outcome.end(), RunEnd::kDone);
    EXPECT_EQ(outcome.exitCode(0), 0);
}

TEST(RunOutcome, TheFirstReasonCounts) {
    RunOutcome outcome;
    outcome.note(RunEnd::kRefused, "Refuse");
    outcome.note(RunEnd::kFailed, "CopyProgress");
    EXPECT_EQ(outcome.end(), RunEnd::kRefused);
    EXPECT_EQ(outcome.why(), "Refuse");
    EXPECT_EQ(outcome.exitCode(0), static_cast<int>(RunEnd::kRefused));
}

TEST(RunOutcome, AFailureWithoutAReasonHasNotStarted) {
    EXPECT_EQ(RunOutcome().exitCode(-1), static_cast<int>(RunEnd::kNotStarted));
}

TEST(RunOutcome, OnlyARunThatIsDoneAsksForARestart) {
    RunOutcome outcome;
    outcome.noteRestart();
    EXPECT_EQ(outcome.end(), RunEnd::kRestartWanted);
    EXPECT_EQ(outcome.exitCode(0), static_cast<int>(RunEnd::kRestartWanted));
    EXPECT_EQ(outcome.exitCode(-1), static_cast<int>(RunEnd::kNotStarted));
    outcome.note(RunEnd::kFailed);
    EXPECT_EQ(outcome.end(), RunEnd::kFailed);
}

TEST(RunOutcome, OnlyAFailureIsTakenBack) {
    RunOutcome failed;
    failed.note(RunEnd::kFailed);
    failed.noteTakenBack();
    EXPECT_EQ(failed.end(), RunEnd::kTakenBack);
    RunOutcome refused;
    refused.note(RunEnd::kNoSpace);
    refused.noteTakenBack();
    EXPECT_EQ(refused.end(), RunEnd::kNoSpace);
    RunOutcome done;
    done.noteTakenBack();
    EXPECT_EQ(done.end(), RunEnd::kDone);
}

TEST(RunOutcome, AddsWhatALaterOneKnows) {
    RunOutcome session;
    session.note(RunEnd::kCancelled, "Ask");
    RunOutcome outcome;
    outcome.add(RunOutcome());
    EXPECT_EQ(outcome.end(), RunEnd::kDone);
    outcome.add(session);
    EXPECT_EQ(outcome.end(), RunEnd::kCancelled);
    EXPECT_EQ(outcome.why(), "Ask");
    RunOutcome restart;
    restart.noteRestart();
    RunOutcome other;
    other.add(restart);
    EXPECT_EQ(other.end(), RunEnd::kRestartWanted);
}

TEST(RunOutcome, EachEndHasARowAndACodeThatShellsUnderstand) {
    std::set<std::string_view> names;
    int number = 0;
    for (const RunEndRow& row : kRunEnds) {
        EXPECT_EQ(static_cast<int>(row.end), number) << row.name;
        EXPECT_EQ(rowOf(row.end).name, row.name);
        EXPECT_LE(number++, 125);
        EXPECT_TRUE(names.insert(row.name).second) << row.name;
        EXPECT_FALSE(row.meaning.empty()) << row.name;
    }
    EXPECT_EQ(number, static_cast<int>(RunEnd::kNoFrontEnd) + 1) << "the last end has no row";
}

}  // namespace

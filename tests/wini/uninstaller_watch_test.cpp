#include "wini/uninstaller_watch.h"

#include <gtest/gtest.h>

#include "platform/memory/memory_named_events.h"
#include "platform/memory/memory_processes.h"

namespace {

using Phase = UninstallerWatch::Phase;

constexpr char kStart[] = "start";
constexpr char kEnd[] = "end";
constexpr int kNever = 1000000;

class UninstallerWatchTest : public testing::Test {
protected:
    // A program that ends after so many looks, with that code.
    UninstallerWatch watchProgram(int looks, int exitCode = 0) {
        processes_.waitsBeforeEnd = looks;
        processes_.exitCodes = {exitCode};
        int error = 0;
        program_ = processes_.start("un", "", error);
        return {*program_, start_.get(), end_.get(), {}, [this] { return time_ += 100; }};
    }
    static void look(UninstallerWatch& watch, int times) {
        for (int i = 0; i < times; ++i) {
            watch.look();
        }
    }
    // How many looks lead to the limit; 0 where it was there before.
    static int looksToLimit(UninstallerWatch& watch) {
        int looks = 0;
        for (; !watch.isOverdue() && looks < kNever; ++looks) {
            watch.look();
        }
        return looks;
    }

    std::uint64_t time_ = 0;  // each look lasts 100 ms
    MemoryProcesses processes_;
    MemoryNamedEvents events_;
    std::unique_ptr<platform::NamedEvent> start_ = events_.create(kStart);
    std::unique_ptr<platform::NamedEvent> end_ = events_.create(kEnd);
    std::unique_ptr<platform::ChildProcess> program_;
};

TEST_F(UninstallerWatchTest, FollowsAProgramThatSignalsNothing) {
    UninstallerWatch watch = watchProgram(2);
    look(watch, 2);
    EXPECT_EQ(watch.phase(), Phase::kRunning);
    EXPECT_EQ(watch.waited(), 200U);
    watch.look();
    EXPECT_EQ(watch.phase(), Phase::kUnclear);
    EXPECT_EQ(watch.exitCode(), 0);
    EXPECT_EQ(watch.waited(), 0U);
}

TEST_F(UninstallerWatchTest, IsOverWhenTheProgramFails) {
    UninstallerWatch watch = watchProgram(0, 3);
    watch.look();
    EXPECT_EQ(watch.phase(), Phase::kOver);
    EXPECT_EQ(watch.exitCode(), 3);
}

TEST_F(UninstallerWatchTest, FollowsASecondProgramFromItsStartToItsEnd) {
    UninstallerWatch watch = watchProgram(0);
    look(watch, 5);
    EXPECT_EQ(watch.phase(), Phase::kUnclear);
    events_.signal(kStart);
    watch.look();
    EXPECT_EQ(watch.phase(), Phase::kSignalled);
    look(watch, 5);
    EXPECT_EQ(watch.phase(), Phase::kSignalled);
    events_.signal(kEnd);
    watch.look();
    EXPECT_EQ(watch.phase(), Phase::kOver);
    EXPECT_EQ(watch.exitCode(), 0);
}

TEST_F(UninstallerWatchTest, HearsTheSignalsWhileTheFirstProgramRuns) {
    UninstallerWatch watch = watchProgram(3);
    events_.signal(kStart);
    watch.look();
    EXPECT_EQ(watch.phase(), Phase::kSignalled);
    events_.signal(kEnd);
    watch.look();
    EXPECT_EQ(watch.phase(), Phase::kSignalled);  // the program is still there
    look(watch, 2);
    EXPECT_EQ(watch.phase(), Phase::kOver);
}

TEST_F(UninstallerWatchTest, IsOverWithTheEndAlone) {
    UninstallerWatch watch = watchProgram(0);
    watch.look();
    events_.signal(kEnd);
    watch.look();
    EXPECT_EQ(watch.phase(), Phase::kOver);
}

// Each wait takes a signal away, so that a second one would never see it.
TEST_F(UninstallerWatchTest, RemembersASignalThatTheEventForgets) {
    UninstallerWatch watch = watchProgram(2);
    events_.signal(kStart);
    watch.look();
    events_.signals.clear();
    watch.look();
    EXPECT_EQ(watch.phase(), Phase::kSignalled);
    events_.signal(kEnd);
    watch.look();
    events_.signals.clear();
    watch.look();
    EXPECT_EQ(watch.phase(), Phase::kOver);
}

TEST_F(UninstallerWatchTest, TakesTheEndOfTheProgramForTheEndWithoutEvents) {
    start_.reset();
    UninstallerWatch watch = watchProgram(1);
    watch.look();
    EXPECT_EQ(watch.phase(), Phase::kRunning);
    watch.look();
    EXPECT_EQ(watch.phase(), Phase::kOver);
}

TEST_F(UninstallerWatchTest, GivesTheProgramFiveMinutes) {
    UninstallerWatch watch = watchProgram(kNever);
    EXPECT_EQ(looksToLimit(watch), 3000);
    EXPECT_EQ(watch.waited(), 300000U);
}

TEST_F(UninstallerWatchTest, GivesASecondProgramOneMinuteToSignalItsStart) {
    UninstallerWatch watch = watchProgram(10);
    look(watch, 11);
    ASSERT_EQ(watch.phase(), Phase::kUnclear);
    EXPECT_EQ(looksToLimit(watch), 600);
}

TEST_F(UninstallerWatchTest, CountsFiveMinutesFromTheSignalOfTheStart) {
    UninstallerWatch watch = watchProgram(0);
    look(watch, 500);
    events_.signal(kStart);
    watch.look();
    ASSERT_EQ(watch.phase(), Phase::kSignalled);
    EXPECT_EQ(looksToLimit(watch), 3000);
}

TEST_F(UninstallerWatchTest, GivesTheSameTimeAgainWhenAsked) {
    UninstallerWatch watch = watchProgram(kNever);
    looksToLimit(watch);
    watch.extend();
    EXPECT_EQ(looksToLimit(watch), 3000);
    EXPECT_EQ(watch.waited(), 600000U);
}

TEST_F(UninstallerWatchTest, ForgetsMoreTimeWithThePhaseThatItWasGivenTo) {
    UninstallerWatch watch = watchProgram(kNever);
    watch.extend();
    events_.signal(kStart);
    watch.look();
    EXPECT_EQ(looksToLimit(watch), 3000);
}

}  // namespace

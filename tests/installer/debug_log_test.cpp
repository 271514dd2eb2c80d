#include "installer/debug_log.h"

#include <gtest/gtest.h>

#include "platform/clock.h"
#include "platform/memory/memory_platform.h"
#include "platform/written_path.h"
#include "support/p_file_console.h"

namespace {

class DebugLogTest : public testing::Test {
protected:
    int open(int requested) {
        return openDebugLog(log_, requested, machine_.environment, machine_.files, machine_.console);
    }

    MemoryPlatform machine_;
    PFileConsole log_{machine_.files};
};

constexpr platform::LocalTime kTime = {2016, 3, 5, 7, 8, 9};

TEST(DebugLogFileNameTest, LevelOneHasOneStableName) {
    EXPECT_EQ(debugLogFileName(1, kTime), "installer_debug.log");
}

TEST(DebugLogFileNameTest, LevelTwoHasTheMinute) {
    EXPECT_EQ(debugLogFileName(2, kTime), "installer_debug_2016_03_05_07_08.log");
}

TEST(DebugLogFileNameTest, FromLevelThreeOnItHasTheSeconds) {
    EXPECT_EQ(debugLogFileName(3, kTime), "installer_debug_2016_03_05_07_08_09.log");
    EXPECT_EQ(debugLogFileName(9, kTime), "installer_debug_2016_03_05_07_08_09.log");
}

TEST_F(DebugLogTest, LevelZeroLeavesTheLogUnopened) {
    EXPECT_EQ(open(0), 0);
    EXPECT_FALSE(log_.isOpen());
    EXPECT_EQ(machine_.console.output, "");
    EXPECT_TRUE(machine_.files.allFiles().empty());
}

TEST_F(DebugLogTest, LevelOneSaysWhereTheLogIs) {
    EXPECT_EQ(open(1), 1);
    EXPECT_TRUE(log_.isOpen());
    EXPECT_EQ(machine_.console.output,
              "Installer debug log file:\n\t" + platform::writtenPath("/tmp\\installer_debug.log") + "\n");
    EXPECT_EQ(machine_.console.pending, "");
    EXPECT_TRUE(machine_.files.isPrivate("/tmp/installer_debug.log"));
}

TEST_F(DebugLogTest, AnEarlierLogIsReplaced) {
    machine_.files.addFile("/tmp/installer_debug.log", "old lines");
    open(1);
    log_.close();
    EXPECT_EQ(machine_.files.content("/tmp/installer_debug.log"), "");
}

TEST_F(DebugLogTest, ALinkOfThatNameIsNotFollowed) {
    machine_.files.addFile("/home/precious", "mine");
    machine_.files.addLink("/tmp/installer_debug.log", "/home/precious");
    open(1);
    log_.print("line");
    log_.close();
    EXPECT_EQ(machine_.files.content("/home/precious"), "mine");
}

TEST_F(DebugLogTest, TheLevelIsCutToFour) {
    EXPECT_EQ(open(9), 4);
}

TEST_F(DebugLogTest, ANegativeLevelIsZero) {
    EXPECT_EQ(open(-3), 0);
}

TEST_F(DebugLogTest, TheEnvironmentCanAskForALog) {
    machine_.environment.variables["TANDREL_INSTALLER_DEBUG"] = "true";
    EXPECT_EQ(open(0), 1);
}

TEST_F(DebugLogTest, TheLargerLevelWins) {
    machine_.environment.variables["TANDREL_INSTALLER_DEBUG"] = "3";
    EXPECT_EQ(open(1), 3);
    EXPECT_EQ(open(4), 4);
}

TEST_F(DebugLogTest, AnEnvironmentTextThatIsNoNumberIsZero) {
    machine_.environment.variables["TANDREL_INSTALLER_DEBUG"] = "yes";
    EXPECT_EQ(open(0), 0);
}

TEST_F(DebugLogTest, WithoutATemporaryDirectoryTheRunGoesOnWithoutLog) {
    machine_.files.setTemporaryDirectory("");
    EXPECT_EQ(open(1), 1);
    EXPECT_FALSE(log_.isOpen());
    EXPECT_EQ(machine_.console.output, "ERROR: Failed to obtain temp directory for Installer debug log");
}

TEST_F(DebugLogTest, ALogThatCannotBeMadeIsTold) {
    machine_.files.setReadOnly("/tmp");
    EXPECT_EQ(open(1), 1);
    EXPECT_FALSE(log_.isOpen());
    EXPECT_EQ(machine_.console.output, "ERROR: Failed to create installer debug log file:\n\t" +
                                           platform::writtenPath("/tmp\\installer_debug.log") + "\n");
}

}  // namespace

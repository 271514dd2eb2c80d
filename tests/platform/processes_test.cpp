#include "platform/processes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "base/path_functions.h"
#include "fakes/temporary_directory.h"
#include "platform/clock.h"
#include "platform/file_system.h"
#include "platform/program.h"

namespace {

constexpr std::uint32_t kLongEnough = 60000;
constexpr int kChildExitCode = 42;

// What a started copy of this test program does; runs only when a test asks for it.
TEST(ChildProgram, DISABLED_ExitsWithACode) {
    std::_Exit(kChildExitCode);
}

TEST(ChildProgram, DISABLED_Sleeps) {
    platform::sleepMilliseconds(kLongEnough);
}

TEST(ChildProgram, DISABLED_LeavesAFileInItsDirectory) {
    platform::OpenOptions options;
    options.access = platform::kWrite;
    options.disposition = platform::Disposition::kCreateNew;
    std::unique_ptr<platform::File> file;
    ASSERT_EQ(platform::systemFileSystem().open("left behind", options, file), 0);
}

// The command line of a copy of this program that runs one of these parts.
std::string commandLineOf(const std::string& childTest) {
    std::string image;
    EXPECT_TRUE(platform::ownImagePath(image));
    return "\"" + image +
           "\" --gtest_brief=1 --gtest_also_run_disabled_tests --gtest_filter=\"ChildProgram.DISABLED_" +
           childTest + "\"";
}

TEST(ChildProgram, DISABLED_TriesToEndItsLine) {
    platform::Processes& processes = platform::systemProcesses();
    const std::vector<std::uint32_t> line = processes.ownLine();
    ASSERT_GE(line.size(), 3U);
    EXPECT_EQ(line[0], processes.currentId());
    std::string image;
    ASSERT_TRUE(platform::ownImagePath(image));
    std::vector<platform::ProcessInfo> list;
    ASSERT_TRUE(processes.list(list));
    for (const platform::ProcessInfo& process : list) {
        if (process.id == line[1] || process.id == line[2]) {
            EXPECT_EQ(process.path, image);
        }
    }
    for (const std::uint32_t id : line) {
        EXPECT_FALSE(processes.terminate(id, 0)) << id;
    }
}

TEST(ChildProgram, DISABLED_StartsOneThatTriesToEndItsLine) {
    int error = 0;
    const auto child =
        platform::systemProcesses().start(commandLineOf("TriesToEndItsLine").c_str(), "", error);
    ASSERT_NE(child, nullptr);
    ASSERT_TRUE(child->wait(kLongEnough));
    EXPECT_EQ(child->exitCode(), 0);
}

class ProcessesTest : public testing::Test {
protected:
    std::unique_ptr<platform::ChildProcess> startChild(const std::string& childTest,
                                                       const char* directory = "") {
        int error = 77;
        auto child = processes_.start(commandLineOf(childTest).c_str(), directory, error);
        EXPECT_NE(child, nullptr);
        EXPECT_EQ(error, 0);
        return child;
    }

    // The numbers of the running processes with this program's path.
    std::vector<std::uint32_t> ownCopies() {
        std::string image;
        EXPECT_TRUE(platform::ownImagePath(image));
        std::vector<platform::ProcessInfo> list;
        EXPECT_TRUE(processes_.list(list));
        std::vector<std::uint32_t> ids;
        for (const platform::ProcessInfo& process : list) {
            if (process.path == image) {
                EXPECT_EQ(process.name, OUtils::lastPathComponent(image));
                ids.push_back(process.id);
            }
        }
        return ids;
    }

    platform::Processes& processes_ = platform::systemProcesses();
};

TEST_F(ProcessesTest, TheListHoldsThisProcess) {
    const std::vector<std::uint32_t> copies = ownCopies();
    EXPECT_EQ(std::count(copies.begin(), copies.end(), processes_.currentId()), 1);
}

TEST_F(ProcessesTest, GivesTheExitCodeOfAStartedProgram) {
    const auto child = startChild("ExitsWithACode");
    ASSERT_NE(child, nullptr);
    ASSERT_TRUE(child->wait(kLongEnough));
    EXPECT_EQ(child->exitCode(), kChildExitCode);
    EXPECT_TRUE(child->wait(0));
}

TEST_F(ProcessesTest, StartsInTheWorkDirectory) {
    const TemporaryDirectory directory;
    const auto child = startChild("LeavesAFileInItsDirectory", directory.path().c_str());
    ASSERT_NE(child, nullptr);
    ASSERT_TRUE(child->wait(kLongEnough));
    EXPECT_EQ(child->exitCode(), 0);
    EXPECT_TRUE(testFileExists(directory.file("left behind")));
}

TEST_F(ProcessesTest, AMissingProgramOrDirectoryIsAnError) {
    const TemporaryDirectory directory;
    int error = 0;
    EXPECT_EQ(processes_.start(directory.file("none").c_str(), "", error), nullptr);
    EXPECT_NE(error, 0);
    error = 0;
    EXPECT_EQ(processes_.start("", "", error), nullptr);
    EXPECT_NE(error, 0);
    error = 0;
    EXPECT_EQ(
        processes_.start(commandLineOf("ExitsWithACode").c_str(), directory.file("none").c_str(), error),
        nullptr);
    EXPECT_NE(error, 0);
}

TEST_F(ProcessesTest, TerminateEndsARunningProgram) {
    const std::vector<std::uint32_t> before = ownCopies();
    const auto child = startChild("Sleeps");
    ASSERT_NE(child, nullptr);
    EXPECT_FALSE(child->wait(0));
    int ended = 0;
    for (const std::uint32_t id : ownCopies()) {
        if (std::find(before.begin(), before.end(), id) == before.end()) {
            EXPECT_TRUE(processes_.terminate(id, 10000));
            ++ended;
        }
    }
    EXPECT_EQ(ended, 1);
    EXPECT_TRUE(child->wait(kLongEnough));
}

TEST_F(ProcessesTest, TheOwnLineBeginsWithThisProcess) {
    const std::vector<std::uint32_t> line = processes_.ownLine();
    ASSERT_FALSE(line.empty());
    EXPECT_EQ(line[0], processes_.currentId());
}

TEST_F(ProcessesTest, NoProcessEndsTheOnesThatStartedIt) {
    const auto child = startChild("StartsOneThatTriesToEndItsLine");
    ASSERT_NE(child, nullptr);
    ASSERT_TRUE(child->wait(kLongEnough));
    EXPECT_EQ(child->exitCode(), 0);
}

TEST_F(ProcessesTest, TerminateOfNobodyFails) {
    EXPECT_FALSE(processes_.terminate(0, 0));
    EXPECT_FALSE(processes_.terminate(0xFFFFFFFEU, 0));
}

TEST_F(ProcessesTest, WhoeverDoesNotRunIsNoAdministrator) {
    const auto child = startChild("ExitsWithACode");
    ASSERT_NE(child, nullptr);
    ASSERT_TRUE(child->wait(kLongEnough));
    EXPECT_FALSE(processes_.isAdministrators(0xFFFFFFF0U));
}

TEST(AddWord, KeepsBlanksTogetherAndRefusesQuotes) {
    std::string line;
    EXPECT_TRUE(platform::addWord(line, "/a b/program"));
    EXPECT_TRUE(platform::addWord(line, ""));
    EXPECT_TRUE(platform::addWord(line, "x"));
    EXPECT_FALSE(platform::addWord(line, "a\"b"));
    EXPECT_EQ(line, "\"/a b/program\" \"\" \"x\"");
}

TEST(CommandLineOf, HasAllWordsOrSaysWhichOneCantBeHandedOn) {
    EXPECT_EQ(platform::commandLineOf({"/a b/program", "x"}), "\"/a b/program\" \"x\"");
    try {
        platform::commandLineOf({"program", "a\"b"});
        FAIL() << "a double quote was handed on";
    } catch (const InstallerError& error) {
        EXPECT_STREQ(error.what(), "a\"b: a name with a double quote can't be handed on");
    }
}

}  // namespace

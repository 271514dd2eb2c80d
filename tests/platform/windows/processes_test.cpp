#include "platform/processes.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>

#include "fakes/temporary_directory.h"
#include "platform/named_events.h"
#include "platform/program.h"
#include "platform/windows/wide_text.h"

namespace {

using platform::ChildProcess;
using platform::ProcessInfo;
using platform::systemNamedEvents;
using platform::systemPath;
using platform::systemProcesses;

constexpr std::uint32_t kLong = 60000;  // ms; only a broken system takes so long

std::unique_ptr<ChildProcess> start(const std::string& command, const std::string& directory = "") {
    int error = 0;
    std::unique_ptr<ChildProcess> child = systemProcesses().start(command.c_str(), directory.c_str(), error);
    EXPECT_EQ(error != 0, child == nullptr) << error;
    return child;
}

TEST(WindowsProcesses, ListThisOneWithItsPath) {
    std::string image;
    ASSERT_TRUE(platform::ownImagePath(image));
    std::vector<ProcessInfo> all;
    ASSERT_TRUE(systemProcesses().list(all));
    const auto own = std::find_if(all.begin(), all.end(),
                                  [](const ProcessInfo& p) { return p.id == systemProcesses().currentId(); });
    ASSERT_NE(own, all.end());
    EXPECT_EQ(own->path, image);
    EXPECT_EQ(own->name, "platform_test.exe");
}

TEST(WindowsProcesses, GiveTheExitCode) {
    const auto child = start("cmd.exe /c exit 7");
    ASSERT_NE(child, nullptr);
    ASSERT_TRUE(child->wait(kLong));
    EXPECT_EQ(child->exitCode(), 7);
}

TEST(WindowsProcesses, GiveNegativeExitCodes) {
    const auto child = start("cmd.exe /c exit -1");
    ASSERT_NE(child, nullptr);
    ASSERT_TRUE(child->wait(kLong));
    EXPECT_EQ(child->exitCode(), -1);
}

TEST(WindowsProcesses, StartInTheirWorkDirectory) {
    const TemporaryDirectory directory;
    const auto child = start("cmd.exe /c echo x> made.txt", directory.path());
    ASSERT_NE(child, nullptr);
    ASSERT_TRUE(child->wait(kLong));
    EXPECT_TRUE(testFileExists(directory.file("made.txt")));
}

TEST(WindowsProcesses, ReportWhyAProgramDoesNotStart) {
    const TemporaryDirectory directory;
    int error = 0;
    EXPECT_EQ(systemProcesses().start((directory.file("none.exe")).c_str(), "", error), nullptr);
    EXPECT_EQ(error, ERROR_FILE_NOT_FOUND);
    writeTestFile(directory.file("text.exe"), "no program at all");
    EXPECT_EQ(systemProcesses().start(directory.file("text.exe").c_str(), "", error), nullptr);
    EXPECT_EQ(error, ERROR_BAD_EXE_FORMAT);
    EXPECT_EQ(systemProcesses().start("cmd.exe /c exit 0", directory.file("none").c_str(), error), nullptr);
    EXPECT_EQ(error, ERROR_DIRECTORY);
}

// The current directory of this process, for one test.
class CurrentDirectory {
public:
    explicit CurrentDirectory(const std::string& path) {
        EXPECT_NE(GetCurrentDirectoryW(MAX_PATH, before_), 0U);
        EXPECT_NE(SetCurrentDirectoryW(systemPath(path).c_str()), 0);
    }
    ~CurrentDirectory() { EXPECT_NE(SetCurrentDirectoryW(before_), 0); }
    CurrentDirectory(const CurrentDirectory&) = delete;
    CurrentDirectory& operator=(const CurrentDirectory&) = delete;

private:
    wchar_t before_[MAX_PATH]{};
};

TEST(WindowsProcesses, DoNotStartAProgramOfTheCurrentDirectoryByItsName) {
    const TemporaryDirectory directory;
    std::string image;
    ASSERT_TRUE(platform::ownImagePath(image));
    const std::string copy = directory.file("tandrel-planted.exe");
    ASSERT_NE(CopyFileW(systemPath(image).c_str(), systemPath(copy).c_str(), TRUE), 0);
    const CurrentDirectory current(directory.path());
    for (const char* command :
         {"tandrel-planted.exe --gtest_list_tests", "tandrel-planted --gtest_list_tests",
          "\"tandrel-planted.exe\" --gtest_list_tests"}) {
        int error = 0;
        EXPECT_EQ(systemProcesses().start(command, "", error), nullptr) << command;
        EXPECT_EQ(error, ERROR_FILE_NOT_FOUND) << command;
    }
    const auto child = start(".\\tandrel-planted.exe --gtest_filter=None.*");
    ASSERT_NE(child, nullptr);
    EXPECT_TRUE(child->wait(kLong));
}

// Not a test: what the copy of this program does that the next test starts and ends.
TEST(WaitingChild, DISABLED_waitsForAnEventThatNobodySignals) {
    ASSERT_TRUE(systemNamedEvents().signal("TandrelWaitingChildRuns"));
    const auto never = systemNamedEvents().create("TandrelWaitingChildNever");
    ASSERT_NE(never, nullptr);
    EXPECT_FALSE(never->wait(kLong));
}

TEST(WindowsProcesses, EndOnRequestWithCodeZero) {
    const TemporaryDirectory directory;
    std::string image;
    ASSERT_TRUE(platform::ownImagePath(image));
    // Under a name of its own, so that no other process can be hit.
    const std::string copy = directory.file("tandrel-waiting-child.exe");
    ASSERT_NE(CopyFileW(systemPath(image.c_str()).c_str(), systemPath(copy.c_str()).c_str(), TRUE), 0);
    const auto running = systemNamedEvents().create("TandrelWaitingChildRuns");
    const auto child = start(
        "\"" + copy + "\" --gtest_brief=1 --gtest_also_run_disabled_tests --gtest_filter=WaitingChild.*");
    ASSERT_NE(child, nullptr);
    ASSERT_TRUE(running->wait(kLong));
    EXPECT_FALSE(child->wait(0));
    std::vector<ProcessInfo> all;
    ASSERT_TRUE(systemProcesses().list(all));
    const auto found = std::find_if(all.begin(), all.end(), [](const ProcessInfo& process) {
        return process.name == "tandrel-waiting-child.exe";
    });
    ASSERT_NE(found, all.end());
    EXPECT_TRUE(systemProcesses().terminate(found->id, 0));
    EXPECT_TRUE(child->wait(kLong));
    EXPECT_EQ(child->exitCode(), 0);
    EXPECT_FALSE(systemProcesses().terminate(found->id, 0));
}

TEST(WindowsProcesses, NeverEndThisOneOrTheSystem) {
    EXPECT_FALSE(systemProcesses().terminate(systemProcesses().currentId(), 0));
    EXPECT_FALSE(systemProcesses().terminate(0, 0));
    EXPECT_FALSE(systemProcesses().terminate(4, 0));
}

}  // namespace

#include "rehearsal/rehearsed_processes.h"

#include <gtest/gtest.h>

namespace {

class RehearsedProcessesTest : public testing::Test {
protected:
    RehearsedProcessesTest() {
        machine_.running = {"C:\\a\\run.exe"};
        machine_.results = {{"three*", 3}, {"lost.exe", std::nullopt}};
        files_.addFile("/opt/x y", "");
    }
    // The exit code, or -1 when the program doesn't start.
    int run(const std::string& commandLine, const std::string& directory = "") {
        int error = 0;
        const auto child = processes().start(commandLine, directory, error);
        EXPECT_EQ(child == nullptr, error != 0);
        return child == nullptr ? -1 : child->exitCode();
    }
    RehearsedProcesses& processes() {
        if (processes_ == nullptr) {
            processes_ = std::make_unique<RehearsedProcesses>(machine_, files_, registry_, actions_);
        }
        return *processes_;
    }

    MachineDescription machine_;
    MemoryFileSystem files_;
    MemoryRegistry registry_;
    std::vector<std::string> actions_;
    std::unique_ptr<RehearsedProcesses> processes_;
};

TEST_F(RehearsedProcessesTest, GivesWhatTheMachineFileSays) {
    EXPECT_EQ(run("\"C:\\no where\\three.exe\" -x", "C:\\w"), 3);
    EXPECT_EQ(run("LOST.exe"), -1);
    EXPECT_EQ(actions_, (std::vector<std::string>{"run \"C:\\no where\\three.exe\" -x in C:\\w -> 3",
                                                  "run LOST.exe -> cannot start"}));
}

TEST_F(RehearsedProcessesTest, StartsOnlyWhatIsThere) {
    EXPECT_EQ(run("\"/opt/x y\" -a"), 0);
    EXPECT_EQ(run("/opt/z"), -1);
    EXPECT_EQ(run("tool -a"), 0);
}

TEST_F(RehearsedProcessesTest, TakesUninstallersOffTheListThatSucceed) {
    const std::string list = "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\";
    const auto root = platform::RegistryRoot::kLocalMachine;
    registry_.addText(root, list + "A", "UninstallString", "remove-a");
    registry_.addText(root, list + "B", "UninstallString", "three -u");
    registry_.addKey(root, list + "C");
    EXPECT_EQ(run("remove-a -quiet"), 0);
    EXPECT_EQ(run("three -u"), 3);
    EXPECT_FALSE(registry_.hasKey(root, list + "A"));
    EXPECT_TRUE(registry_.hasKey(root, list + "B"));
    EXPECT_TRUE(registry_.hasKey(root, list + "C"));
}

TEST_F(RehearsedProcessesTest, EndsWhatRuns) {
    std::vector<platform::ProcessInfo> running;
    ASSERT_TRUE(processes().list(running));
    ASSERT_EQ(running.size(), 1U);
    EXPECT_EQ(running[0].name, "run.exe");
    EXPECT_TRUE(processes().terminate(running[0].id, 0));
    EXPECT_FALSE(processes().terminate(running[0].id, 0));
    EXPECT_EQ(actions_, std::vector<std::string>{"end C:\\a\\run.exe"});
}

}  // namespace

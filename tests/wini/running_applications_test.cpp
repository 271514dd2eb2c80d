#include "wini/running_applications.h"

#include <gtest/gtest.h>

#include "fakes/fake_console.h"
#include "fakes/fake_processes.h"
#include "fakes/fake_system_modifications.h"

namespace {

class RunningApplicationsTest : public testing::Test {
protected:
    RunningApplicationsTest() {
        processes_.ownId = 100;
        processes_.running = {{1, "init", "/sbin/init"},
                              {10, "Tool.exe", "C:\\app\\bin\\Tool.exe"},
                              {11, "tool.exe", "C:\\other\\tool.exe"},
                              {12, "hidden", ""},
                              {100, "setup", "/tmp/setup"}};
    }
    std::vector<std::uint32_t> terminated() const {
        std::vector<std::uint32_t> ids;
        for (const auto& process : processes_.terminated) {
            ids.push_back(process.id);
        }
        return ids;
    }

    FakeProcesses processes_;
    FakeConsole log_;
    FakeSystemModifications programs_;
    RunningApplications applications_{processes_, programs_, log_};
};

TEST_F(RunningApplicationsTest, findsAProcessByItsNameInAnyCase) {
    EXPECT_TRUE(applications_.isApplicationRunning("TOOL.EXE", nullptr));
    EXPECT_TRUE(applications_.isApplicationRunning("tool.exe", ""));
    EXPECT_FALSE(applications_.isApplicationRunning("tool", nullptr));
    EXPECT_FALSE(applications_.isApplicationRunning("", nullptr));
    EXPECT_FALSE(applications_.isApplicationRunning(nullptr, nullptr));
}

TEST_F(RunningApplicationsTest, looksAtTheDirectoryWithItsCase) {
    EXPECT_TRUE(applications_.isApplicationRunning("tool.exe", "C:\\other"));
    EXPECT_TRUE(applications_.isApplicationRunning("tool.exe", "C:/other"));
    EXPECT_FALSE(applications_.isApplicationRunning("tool.exe", "c:\\other"));
}

TEST_F(RunningApplicationsTest, saysThatAProcessRunsFromElsewhere) {
    EXPECT_FALSE(applications_.isApplicationRunning("tool.exe", "D:\\none"));
    EXPECT_EQ(
        log_.lines(),
        (std::vector<std::string>{
            "App \"tool.exe\" running in separate dir: \"C:\\app\\bin\\Tool.exe\" - searched: \"D:\\none\"",
            "App \"tool.exe\" running in separate dir: \"C:\\other\\tool.exe\" - searched: \"D:\\none\""}));
}

TEST_F(RunningApplicationsTest, countsAProcessWithAnUnknownPathAsAMatch) {
    EXPECT_TRUE(applications_.isApplicationRunning("hidden", "D:\\none"));
    EXPECT_EQ(log_.lines(),
              std::vector<std::string>{"ERROR: Wini::isAppRunning(..) could not obtain the full "
                                       "file name of the running module: \"hidden\""});
}

TEST_F(RunningApplicationsTest, stopsAllProcessesOfAName) {
    EXPECT_TRUE(applications_.closeApplication("tool.exe", false, nullptr));
    EXPECT_EQ(terminated(), (std::vector<std::uint32_t>{10, 11}));
    EXPECT_TRUE(programs_.calls.empty());
}

TEST_F(RunningApplicationsTest, stopsOnlyThoseOfTheDirectory) {
    EXPECT_TRUE(applications_.closeApplication("tool.exe", false, "C:\\app"));
    EXPECT_EQ(terminated(), std::vector<std::uint32_t>{10});
}

TEST_F(RunningApplicationsTest, asksAServiceToStopFirst) {
    EXPECT_TRUE(applications_.closeApplication("tool.exe", true, "C:\\app"));
    EXPECT_EQ(programs_.calls,
              std::vector<std::string>{"runAssociatedProgram(C:\\app\\bin\\Tool.exe, -stop, 8, null, 100)"});
    EXPECT_EQ(terminated(), std::vector<std::uint32_t>{10});
}

TEST_F(RunningApplicationsTest, stopsAServiceThatDoesNotStopItself) {
    programs_.failing = {"runAssociatedProgram"};
    EXPECT_TRUE(applications_.closeApplication("tool.exe", true, "C:\\app"));
    EXPECT_TRUE(log_.hasLine("WARNING: The service \"C:\\app\\bin\\Tool.exe\" did not stop itself"));
}

TEST_F(RunningApplicationsTest, asksNoServiceWhoseProgramIsUnknown) {
    EXPECT_TRUE(applications_.closeApplication("hidden", true, nullptr));
    EXPECT_TRUE(programs_.calls.empty());
    EXPECT_EQ(terminated(), std::vector<std::uint32_t>{12});
}

TEST_F(RunningApplicationsTest, goesOnWhereAServiceIsGoneAlready) {
    processes_.unkillable = {10};
    EXPECT_TRUE(applications_.closeApplication("tool.exe", true, nullptr));
    EXPECT_EQ(terminated(), (std::vector<std::uint32_t>{10, 11}));
}

TEST_F(RunningApplicationsTest, neverStopsTheProcessesThatStartedIt) {
    processes_.parents = {11, 5};
    EXPECT_TRUE(applications_.closeApplication("tool.exe", true, nullptr));
    EXPECT_EQ(terminated(), std::vector<std::uint32_t>{10});
    EXPECT_EQ(programs_.calls.size(), 1U);
    EXPECT_TRUE(log_.hasLine("WARNING: \"tool.exe\" (11) is not stopped: it started this program"));
    EXPECT_TRUE(applications_.isApplicationRunning("tool.exe", nullptr));
}

TEST_F(RunningApplicationsTest, tellsThatNothingWasStopped) {
    EXPECT_FALSE(applications_.closeApplication("none", false, nullptr));
    processes_.unkillable = {10, 11};
    EXPECT_FALSE(applications_.closeApplication("tool.exe", false, nullptr));
    processes_.listFails = true;
    EXPECT_FALSE(applications_.closeApplication("tool.exe", false, nullptr));
    EXPECT_FALSE(applications_.isApplicationRunning("tool.exe", nullptr));
}

TEST_F(RunningApplicationsTest, neverStopsItselfOrTheFirstProcess) {
    EXPECT_FALSE(applications_.closeApplication("setup", false, nullptr));
    EXPECT_FALSE(applications_.closeApplication("init", false, nullptr));
    EXPECT_TRUE(processes_.terminated.empty());
}

}  // namespace

#include "wini/running_applications.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "engine/changes/program_run.h"
#include "fakes/fake_console.h"
#include "fakes/recording_ui.h"
#include "platform/memory/memory_file_system.h"
#include "platform/memory/memory_processes.h"
#include "platform/memory/memory_shell_objects.h"

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
        processes_.administrators = {10, 11, 12};
        files_.addFile("C:\\app\\bin\\Tool.exe", "");
        files_.addFile("C:\\other\\tool.exe", "");
    }
    // Closes the service and says whether it was asked to stop before. It has to be ended in any case.
    bool isAsked(std::string_view directory) {
        EXPECT_TRUE(applications_.closeApplication("tool.exe", true, directory));
        EXPECT_EQ(terminated(), std::vector<std::uint32_t>{10});
        return !processes_.started.empty();
    }
    std::vector<std::uint32_t> terminated() const {
        std::vector<std::uint32_t> ids;
        for (const auto& process : processes_.terminated) {
            ids.push_back(process.id);
        }
        return ids;
    }

    MemoryFileSystem files_;
    MemoryProcesses processes_;
    FakeConsole log_;
    MemoryShellObjects shell_;
    ProgramRun programs_{processes_, shell_, log_};
    RunningApplications applications_{files_, processes_, programs_, log_};
};

TEST_F(RunningApplicationsTest, FindsAProcessByItsNameInAnyCase) {
    EXPECT_TRUE(applications_.isApplicationRunning("TOOL.EXE", ""));
    EXPECT_FALSE(applications_.isApplicationRunning("tool", ""));
    EXPECT_FALSE(applications_.isApplicationRunning("", ""));
}

TEST_F(RunningApplicationsTest, LooksAtTheDirectoryWithItsCase) {
    EXPECT_TRUE(applications_.isApplicationRunning("tool.exe", "C:\\other"));
    EXPECT_TRUE(applications_.isApplicationRunning("tool.exe", "C:/other"));
    EXPECT_FALSE(applications_.isApplicationRunning("tool.exe", "c:\\other"));
}

TEST_F(RunningApplicationsTest, SaysThatAProcessRunsFromElsewhere) {
    EXPECT_FALSE(applications_.isApplicationRunning("tool.exe", "D:\\none"));
    EXPECT_EQ(
        log_.lines(),
        (std::vector<std::string>{
            "App \"tool.exe\" running in separate dir: \"C:\\app\\bin\\Tool.exe\" - searched: \"D:\\none\"",
            "App \"tool.exe\" running in separate dir: \"C:\\other\\tool.exe\" - searched: \"D:\\none\""}));
}

TEST_F(RunningApplicationsTest, CountsAProcessWithAnUnknownPathAsAMatch) {
    EXPECT_TRUE(applications_.isApplicationRunning("hidden", "D:\\none"));
    EXPECT_EQ(log_.lines(),
              std::vector<std::string>{"ERROR: Wini::isAppRunning(..) could not obtain the full "
                                       "file name of the running module: \"hidden\""});
}

TEST_F(RunningApplicationsTest, StopsAllProcessesOfAName) {
    EXPECT_TRUE(applications_.closeApplication("tool.exe", false, ""));
    EXPECT_EQ(terminated(), (std::vector<std::uint32_t>{10, 11}));
    EXPECT_TRUE(processes_.started.empty());
}

TEST_F(RunningApplicationsTest, StopsOnlyThoseOfTheDirectory) {
    EXPECT_TRUE(applications_.closeApplication("tool.exe", false, "C:\\app"));
    EXPECT_EQ(terminated(), std::vector<std::uint32_t>{10});
}

TEST_F(RunningApplicationsTest, AsksAServiceToStopFirst) {
    EXPECT_TRUE(applications_.closeApplication("tool.exe", true, "C:\\app"));
    ASSERT_EQ(processes_.started.size(), 1U);
    EXPECT_EQ(processes_.started[0].commandLine, "\"C:/app/bin/Tool.exe\" -stop");
    EXPECT_EQ(processes_.started[0].workDirectory, "");
    EXPECT_EQ(terminated(), std::vector<std::uint32_t>{10});
}

TEST_F(RunningApplicationsTest, StopsAServiceThatDoesNotStopItself) {
    processes_.exitCodes = {1};
    EXPECT_TRUE(applications_.closeApplication("tool.exe", true, "C:\\app"));
    EXPECT_TRUE(log_.hasLine("WARNING: The service \"C:/app/bin/Tool.exe\" did not stop itself"));
}

TEST_F(RunningApplicationsTest, AsksAServiceInADirectoryThatALinkLeadsTo) {
    processes_.running.push_back({13, "linked", "/mnt/app/bin/Tool.exe"});
    processes_.administrators.insert(13);
    files_.addLink("/mnt/app", "C:\\app");
    EXPECT_TRUE(applications_.closeApplication("linked", true, "/mnt/app"));
    ASSERT_EQ(processes_.started.size(), 1U);
    EXPECT_EQ(processes_.started[0].commandLine, "\"C:/app/bin/Tool.exe\" -stop");
}

TEST_F(RunningApplicationsTest, OnlyEndsAServiceWhoseDirectoryOnlyLooksLikeTheNamedOne) {
    files_.addDirectory("C:\\ap");
    EXPECT_FALSE(isAsked("C:\\ap"));
    EXPECT_TRUE(
        log_.hasLine("WARNING: The service \"C:\\app\\bin\\Tool.exe\" is not asked to stop, only ended"));
}

TEST_F(RunningApplicationsTest, OnlyEndsAServiceThatHoldsTheDirectoryFurtherDown) {
    files_.addDirectory("/app");  // an "/app" that has nothing to do with "C:/app"
    EXPECT_FALSE(isAsked("/app"));
}

TEST_F(RunningApplicationsTest, OnlyEndsAServiceOfADirectoryThatIsNotThere) {
    EXPECT_FALSE(isAsked("C:\\app\\bin\\T"));
}

TEST_F(RunningApplicationsTest, OnlyEndsAServiceThatALinkLeadsOutOfTheDirectory) {
    files_.addFile("/home/bob/Tool.exe", "");
    files_.addLink("C:\\app\\bin", "/home/bob");
    EXPECT_FALSE(isAsked("C:\\app"));
}

TEST_F(RunningApplicationsTest, OnlyEndsAServiceThatIsNoAdministrators) {
    processes_.administrators.clear();
    EXPECT_FALSE(isAsked("C:\\app"));
}

TEST_F(RunningApplicationsTest, OnlyEndsAServiceWhoseProgramOthersCanChange) {
    files_.setUnprotected("C:\\app\\bin");
    EXPECT_FALSE(isAsked("C:\\app"));
}

TEST_F(RunningApplicationsTest, OnlyEndsServicesWithoutANamedDirectory) {
    EXPECT_TRUE(applications_.closeApplication("tool.exe", true, ""));
    EXPECT_TRUE(processes_.started.empty());
    EXPECT_EQ(terminated(), (std::vector<std::uint32_t>{10, 11}));
}

TEST_F(RunningApplicationsTest, FindsAndStopsTheProgramOfAFileAlone) {
    EXPECT_TRUE(applications_.isProgramRunning("c:/app/bin/tool.exe"));
    EXPECT_TRUE(applications_.closeProgram("C:\\app\\bin\\Tool.exe"));
    EXPECT_EQ(terminated(), std::vector<std::uint32_t>{10});
    EXPECT_FALSE(applications_.isProgramRunning("C:\\app\\bin\\Tool.exe"));
    EXPECT_FALSE(applications_.closeProgram("C:\\app\\bin\\Tool.exe"));
}

TEST_F(RunningApplicationsTest, FindsTheProgramOfALinkAtItsTarget) {
    files_.addLink("/usr/bin/t", "C:\\app\\bin\\Tool.exe");
    EXPECT_TRUE(applications_.isProgramRunning("/usr/bin/t"));
}

TEST_F(RunningApplicationsTest, TakesNoProcessOfAnUnknownPathForTheProgramOfAFile) {
    files_.addFile("/opt/hidden", "");
    EXPECT_FALSE(applications_.isProgramRunning("/opt/hidden"));
    EXPECT_FALSE(applications_.closeProgram("/opt/none"));
}

TEST_F(RunningApplicationsTest, AsksNoServiceWhoseProgramIsUnknown) {
    EXPECT_TRUE(applications_.closeApplication("hidden", true, "C:\\app"));
    EXPECT_TRUE(processes_.started.empty());
    EXPECT_EQ(terminated(), std::vector<std::uint32_t>{12});
}

TEST_F(RunningApplicationsTest, GoesOnWhereAServiceIsGoneAlready) {
    processes_.unkillable = {10};
    EXPECT_TRUE(applications_.closeApplication("tool.exe", true, ""));
    EXPECT_EQ(terminated(), (std::vector<std::uint32_t>{10, 11}));
}

TEST_F(RunningApplicationsTest, NeverStopsTheProcessesThatStartedIt) {
    processes_.parents = {11, 5};
    EXPECT_TRUE(applications_.closeApplication("tool.exe", true, "C:\\"));
    EXPECT_EQ(terminated(), std::vector<std::uint32_t>{10});
    EXPECT_EQ(processes_.started.size(), 1U);
    EXPECT_TRUE(log_.hasLine("WARNING: \"tool.exe\" (11) is not stopped: it started this program"));
    EXPECT_TRUE(applications_.isApplicationRunning("tool.exe", ""));
}

TEST_F(RunningApplicationsTest, SaysThatNothingWasStopped) {
    EXPECT_FALSE(applications_.closeApplication("none", false, ""));
    processes_.unkillable = {10, 11};
    EXPECT_FALSE(applications_.closeApplication("tool.exe", false, ""));
    processes_.listFails = true;
    EXPECT_FALSE(applications_.closeApplication("tool.exe", false, ""));
    EXPECT_FALSE(applications_.isApplicationRunning("tool.exe", ""));
}

TEST_F(RunningApplicationsTest, NeverStopsItselfOrTheFirstProcess) {
    EXPECT_FALSE(applications_.closeApplication("setup", false, ""));
    EXPECT_FALSE(applications_.closeApplication("init", false, ""));
    EXPECT_TRUE(processes_.terminated.empty());
}

TEST_F(RunningApplicationsTest, HandlesEventsWhileAServiceStopsItself) {
    std::atomic<int> pumps = 0;
    RecordingUI ui;
    ui.onCall = [&](const std::string& call) { pumps += call == "pumpEvents()" ? 1 : 0; };
    applications_.setFrontEnd(&ui);
    // The service, on the thread that waits for it, ends only after events were handled.
    processes_.onStart = [&](const std::string&) {
        while (pumps == 0) {
            std::this_thread::yield();
        }
    };
    EXPECT_TRUE(applications_.closeApplication("tool.exe", true, "C:\\app"));
    EXPECT_GT(pumps, 0);
    applications_.setFrontEnd(nullptr);
}

}  // namespace

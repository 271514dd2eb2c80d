#include "installer/relaunch.h"

#include <gtest/gtest.h>

#include "fakes/fake_console.h"
#include "fakes/fake_platform.h"
#include "installer/run_options.h"
#include "wini/uninstaller_events.h"

namespace {

class RelaunchTest : public testing::Test {
protected:
    RelaunchTest() {
        machine_.environment.program = "/product/uninstall";
        machine_.files.addFile("/product/uninstall", "the program");
        machine_.files.addFile("/product/install.log", "the log");
        options_.uninstallApp = "My Product";
    }

    bool relaunch() {
        platform::Platform bundle = machine_.bundle();
        return UninstallRelaunch(bundle, log_).run(logPath_, options_);
    }

    void expectFailure() {
        EXPECT_FALSE(relaunch());
        EXPECT_EQ(machine_.events.signals, std::vector<std::string>{kUninstallerEndEvent});
        EXPECT_TRUE(machine_.processes.started.empty() || machine_.processes.startError != 0);
    }

    FakePlatform machine_;
    FakeConsole log_;
    RunOptions options_;
    std::string logPath_ = "/product/install.log";
};

TEST_F(RelaunchTest, CopiesLogAndImageAndStartsTheCopy) {
    EXPECT_TRUE(relaunch());
    EXPECT_EQ(machine_.files.content("/tmp/ormeluninst.log"), "the log");
    EXPECT_EQ(machine_.files.content("/tmp/ormeluninst.dll"), "the program");
    EXPECT_TRUE(machine_.files.isExecutable("/tmp/ormeluninst.dll"));
    ASSERT_EQ(machine_.processes.started.size(), 1U);
    EXPECT_EQ(
        machine_.processes.started[0].commandLine,
        "\"/tmp\\ormeluninst.dll\" -uninstallFile=\"/tmp\\ormeluninst.log\" -uninstallApp=\"My Product\"");
    EXPECT_EQ(machine_.processes.started[0].workDirectory, "/tmp");
    EXPECT_TRUE(machine_.events.signals.empty());
}

TEST_F(RelaunchTest, PassesTheConsoleSilenceAndDebugLevelOn) {
    options_.gui = 0;
    options_.quiet = 5;
    EXPECT_EQ(UninstallRelaunch::commandLine("i", "l", options_, 3),
              "\"i\" -uninstallFile=\"l\" -uninstallApp=\"My Product\" -gui=0 -quiet=1 -debug=3");
}

TEST_F(RelaunchTest, WithoutAnApplicationTheOptionIsEmpty) {
    options_.uninstallApp.clear();
    EXPECT_EQ(UninstallRelaunch::commandLine("i", "l", options_, 0),
              "\"i\" -uninstallFile=\"l\" -uninstallApp=\"\"");
}

TEST_F(RelaunchTest, CopiesGoOverLinksAndNotThroughThem) {
    machine_.files.addFile("/home/precious", "mine");
    machine_.files.addLink("/tmp/ormeluninst.dll", "/home/precious");
    EXPECT_TRUE(relaunch());
    EXPECT_EQ(machine_.files.content("/home/precious"), "mine");
}

TEST_F(RelaunchTest, OnlyTheCopyIsTakenForOne) {
    for (const char* path : {"/tmp/ormeluninst.dll", "/tmp\\ormeluninst.dll", "C:\\Temp\\ormeluninst.dll"}) {
        EXPECT_TRUE(UninstallRelaunch::isCopy(path)) << path;
    }
    for (const char* path : {"/opt/product/installer", "/tmp/ormeluninst.log", "/tmp/my-ormeluninst.dll",
                             "/tmp/ormeluninst.dll/setup", ""}) {
        EXPECT_FALSE(UninstallRelaunch::isCopy(path)) << path;
    }
}

TEST_F(RelaunchTest, WithoutATemporaryDirectoryItFails) {
    machine_.files.setTemporaryDirectory("");
    expectFailure();
}

TEST_F(RelaunchTest, WithoutTheLogItFails) {
    logPath_ = "/product/none.log";
    expectFailure();
}

TEST_F(RelaunchTest, WithoutSpaceForTheImageItFails) {
    machine_.files.setFreeSpace(10);
    expectFailure();
}

TEST_F(RelaunchTest, ACopyThatDoesNotStartIsAFailure) {
    machine_.processes.startError = 5;
    expectFailure();
}

}  // namespace

#include "installer/relaunch.h"

#include <gtest/gtest.h>

#include "engine/removal_journal.h"
#include "engine/work_notes.h"
#include "fakes/fake_console.h"
#include "installer/run_options.h"
#include "installer/start_messages.h"
#include "platform/memory/memory_platform.h"
#include "platform/processes.h"
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
        return UninstallRelaunch(bundle, messages_, log_).run(logPath_, options_);
    }

    // Fails, says why, and leaves nothing.
    void expectFailure(const std::string& reason) {
        const std::vector<std::string> before = machine_.files.allFiles();
        EXPECT_FALSE(relaunch());
        EXPECT_EQ(machine_.files.allFiles(), before);
        EXPECT_FALSE(machine_.files.hasDirectory("/tmp/ormeluninst-1"));
        EXPECT_TRUE(machine_.console.errors.starts_with("ERROR: The uninstallation can't start: " + reason))
            << machine_.console.errors;
        EXPECT_TRUE(machine_.console.errors.ends_with("\n"));
        EXPECT_EQ(machine_.console.output, "");
        EXPECT_EQ(machine_.events.signals, std::vector<std::string>{kUninstallerEndEvent});
        EXPECT_TRUE(machine_.processes.started.empty() || machine_.processes.startError != 0);
    }

    MemoryPlatform machine_;
    StartMessages messages_{machine_.console, platform::showMessage};
    FakeConsole log_;
    RunOptions options_;
    std::string logPath_ = "/product/install.log";
};

TEST_F(RelaunchTest, CopiesLogAndImageAndStartsTheCopy) {
    std::string held;
    machine_.processes.onStart = [&](const std::string&) {
        held = std::to_string(machine_.files.openFileCount());
    };
    EXPECT_TRUE(relaunch());
    EXPECT_EQ(machine_.files.content("/tmp/ormeluninst-1/ormeluninst.log"), "the log");
    EXPECT_EQ(machine_.files.content("/tmp/ormeluninst-1/ormeluninst.dll"), "the program");
    EXPECT_TRUE(machine_.files.isExecutable("/tmp/ormeluninst-1/ormeluninst.dll"));
    EXPECT_TRUE(machine_.files.isPrivate("/tmp/ormeluninst-1"));
    EXPECT_EQ(held, "1");  // the image, while it is started
    ASSERT_EQ(machine_.processes.started.size(), 1U);
    EXPECT_EQ(
        machine_.processes.started[0].commandLine,
        "\"/tmp/ormeluninst-1\\ormeluninst.dll\" -uninstallFile=\"/tmp/ormeluninst-1\\ormeluninst.log\" "
        "-uninstallApp=\"My Product\"");
    EXPECT_EQ(machine_.processes.started[0].workDirectory, "/tmp");
    EXPECT_TRUE(machine_.events.signals.empty());
    EXPECT_EQ(machine_.console.errors, "");
}

TEST_F(RelaunchTest, TwoAtOnceDoNotMeet) {
    EXPECT_TRUE(relaunch());
    EXPECT_TRUE(relaunch());
    EXPECT_TRUE(machine_.files.hasFile("/tmp/ormeluninst-1/ormeluninst.dll"));
    EXPECT_TRUE(machine_.files.hasFile("/tmp/ormeluninst-2/ormeluninst.dll"));
}

TEST_F(RelaunchTest, PassesTheConsoleSilenceAndDebugLevelOn) {
    options_.gui = 0;
    options_.quiet = 5;
    EXPECT_EQ(UninstallRelaunch::commandLine("i", "l", options_, 3),
              "\"i\" -uninstallFile=\"l\" -uninstallApp=\"My Product\" -gui=0 -quiet=1 -debug=3");
}

TEST_F(RelaunchTest, PassesTheReceiptOnWithThePathOfTheLog) {
    options_.receipt = "/receipts/my receipt.json";
    options_.receiptLog = "/product/install.log";
    EXPECT_EQ(UninstallRelaunch::commandLine("i", "l", options_, 0),
              "\"i\" -uninstallFile=\"l\" -uninstallApp=\"My Product\" "
              "-receipt=\"/receipts/my receipt.json\" -receiptLog=\"/product/install.log\"");
}

TEST_F(RelaunchTest, PassesTheWishForExitCodesOn) {
    options_.exitCodes = true;
    EXPECT_TRUE(UninstallRelaunch::commandLine("i", "l", options_, 0).ends_with(" -exitCodes=1"));
}

TEST_F(RelaunchTest, KnowsWhenThereIsNothingToUninstall) {
    platform::Platform bundle = machine_.bundle();
    EXPECT_FALSE(UninstallRelaunch::isNothingThere(bundle, logPath_));
    EXPECT_TRUE(UninstallRelaunch::isNothingThere(bundle, "/product/none.log"));
}

TEST_F(RelaunchTest, GivesTheSecondStageAway) {
    platform::Platform bundle = machine_.bundle();
    UninstallRelaunch relaunch(bundle, messages_, log_);
    EXPECT_EQ(relaunch.takeSecondStage(), nullptr);
    EXPECT_TRUE(relaunch.run(logPath_, options_));
    EXPECT_NE(relaunch.takeSecondStage(), nullptr);
}

TEST_F(RelaunchTest, WhereTheSystemKeepsItTheImageStepsAside) {
    platform::Platform bundle = machine_.bundle();
    UninstallRelaunch relaunch(bundle, messages_, log_);
    relaunch.moveImageAside();
    EXPECT_TRUE(relaunch.run(logPath_, options_));
    EXPECT_EQ(machine_.files.content("/product/uninstall"), "the program");
    EXPECT_EQ(machine_.files.content("/tmp/ormeluninst-2/ormelformer.dll"), "the program");
}

TEST_F(RelaunchTest, AnImageThatCannotStepAsideIsNotUninstalled) {
    platform::Platform bundle = machine_.bundle();
    UninstallRelaunch relaunch(bundle, messages_, log_);
    relaunch.moveImageAside();
    machine_.files.setReadOnly("/product");
    EXPECT_FALSE(relaunch.run(logPath_, options_));
    EXPECT_NE(machine_.console.errors.find("can't be moved out of the way"), std::string::npos);
    EXPECT_TRUE(machine_.processes.started.empty());
}

TEST_F(RelaunchTest, WithoutAnApplicationTheOptionIsEmpty) {
    options_.uninstallApp.clear();
    EXPECT_EQ(UninstallRelaunch::commandLine("i", "l", options_, 0),
              "\"i\" -uninstallFile=\"l\" -uninstallApp=\"\"");
}

TEST_F(RelaunchTest, LeavesQuotesOutOfTheName) {
    options_.uninstallApp = "Big 12\" Screen";
    EXPECT_EQ(UninstallRelaunch::commandLine("i", "l", options_, 0),
              "\"i\" -uninstallFile=\"l\" -uninstallApp=\"Big 12 Screen\"");
}

TEST_F(RelaunchTest, TouchesNothingUnderTheNamesThatAnybodyCanTake) {
    machine_.files.addFile("/home/precious", "mine");
    machine_.files.addLink("/tmp/ormeluninst.dll", "/home/precious");
    machine_.files.addDirectory("/tmp/ormeluninst.log");
    EXPECT_TRUE(relaunch());
    EXPECT_EQ(machine_.files.content("/home/precious"), "mine");
    EXPECT_TRUE(machine_.files.hasDirectory("/tmp/ormeluninst.log"));
}

TEST_F(RelaunchTest, WhereNoProgramMayRunFromAnotherPlaceIsTaken) {
    machine_.files.setOtherPrivatePlaces({"/none", "/var/tmp"});
    machine_.files.addDirectory("/var/tmp");
    machine_.processes.startErrors = {13};
    EXPECT_TRUE(relaunch());
    EXPECT_EQ(machine_.processes.started.size(), 2U);
    EXPECT_EQ(machine_.processes.started[1].workDirectory, "/var/tmp");
    EXPECT_FALSE(machine_.files.hasDirectory("/tmp/ormeluninst-1"));
    EXPECT_TRUE(machine_.events.signals.empty());
    EXPECT_EQ(machine_.console.errors, "");
}

TEST_F(RelaunchTest, WhereOthersCanChangeThePlaceAnotherOneIsTaken) {
    machine_.files.setOtherPrivatePlaces({"/var/tmp"});
    machine_.files.addDirectory("/var/tmp");
    machine_.files.setUnprotected("/tmp");
    EXPECT_TRUE(relaunch());
    ASSERT_EQ(machine_.processes.started.size(), 1U);
    EXPECT_EQ(machine_.processes.started[0].workDirectory, "/var/tmp");
}

TEST_F(RelaunchTest, WithoutATemporaryDirectoryAnotherPlaceIsTaken) {
    machine_.files.setTemporaryDirectory("");
    machine_.files.setOtherPrivatePlaces({"/var/tmp"});
    machine_.files.addDirectory("/var/tmp");
    EXPECT_TRUE(relaunch());
}

TEST_F(RelaunchTest, WhenNoPlaceWillDoTheFirstIsNamed) {
    machine_.files.setOtherPrivatePlaces({"/var/tmp"});
    machine_.files.setUnprotected("/tmp");
    expectFailure("others can change what lies in \"/tmp\"\n");
}

TEST_F(RelaunchTest, WithoutAnyPlaceItFails) {
    machine_.files.setTemporaryDirectory("");
    expectFailure("there is no directory for temporary files\n");
    EXPECT_TRUE(log_.hasLine("ERROR: Unable to obtain temporary path for uninstaller log. Exiting!"));
}

TEST_F(RelaunchTest, WithoutItsOwnPathItFails) {
    machine_.environment.program.clear();
    expectFailure("the program doesn't know its own path\n");
    EXPECT_TRUE(log_.hasLine("ERROR: Unable to obtain module file name. Exiting!"));
}

TEST_F(RelaunchTest, WithoutTheLogItFails) {
    logPath_ = "/product/none.log";
    expectFailure("\"/product/none.log\" can't be read: ");
    EXPECT_TRUE(log_.hasLine(
        "ERROR: Unable to copy uninstaller log to /tmp/ormeluninst-1\\ormeluninst.log. Exiting!"));
}

TEST_F(RelaunchTest, WithoutSpaceForTheImageItFails) {
    machine_.files.setFreeSpace(10);
    expectFailure("\"/tmp/ormeluninst-1\\ormeluninst.dll\" can't be written: ");
    EXPECT_TRUE(log_.hasLine("Error copying file /tmp/ormeluninst-1\\ormeluninst.dll - Error Number = 112"));
}

TEST_F(RelaunchTest, ACopyThatDoesNotStartIsAFailure) {
    machine_.processes.startError = 5;
    expectFailure("\"/tmp/ormeluninst-1\\ormeluninst.dll\" can't be run: ");
    EXPECT_TRUE(log_.hasLine("ERROR: Unable to create uninstall process. Exiting!"));
}

TEST_F(RelaunchTest, StartsFromTheLogOfAnInterruptedRunWhereThereIsNoOther) {
    machine_.files.removeFile("/product/install.log");
    RemovalJournal journal(machine_.files, machine_.environment);
    ASSERT_EQ(journal.open(), 0);
    const std::string directory = journal.directory();
    machine_.files.addFile(directory + "/description.xml", "<x/>");
    machine_.files.addFile(directory + "/log", "/product/x.xml\r\n/product/b.bin\r\nNUMVARS\t0\r\n");
    WorkNotes notes(journal);
    ASSERT_EQ(notes.begin("My Product", directory + "/description.xml"), 0);
    ASSERT_EQ(notes.installing({directory + "/log", "", logPath_, "", false}), 0);
    EXPECT_TRUE(relaunch());
    EXPECT_EQ(machine_.files.content("/tmp/ormeluninst-2/ormeluninst.log"),
              directory + "/description.xml\r\n/product/b.bin\r\nNUMVARS\t0\r\n");
}

}  // namespace

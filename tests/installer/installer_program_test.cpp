#include "installer/installer_program.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "engine/journaled_machine.h"
#include "engine/removal_journal.h"
#include "fakes/fake_platform.h"
#include "installer/console_control.h"
#include "platform/program.h"
#include "wini/uninstaller_events.h"

namespace {

using platform::RegistryRoot;

constexpr char kCurrentVersion[] = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion";

// The program on a machine in memory. Its own image is the test's, which is no package.
class InstallerProgramTest : public testing::Test {
protected:
    InstallerProgramTest() {
        machine_.files.addDirectory("/opt");
        machine_.files.addDirectory("C:\\Programs");
        machine_.registry.addText(RegistryRoot::kLocalMachine, kCurrentVersion, "ProgramFilesDir",
                                  "C:\\Programs");
        machine_.files.addFile(machine_.environment.program, "an image without a package");
    }

    int run(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "setup");
        platform::Platform bundle = machine_.bundle();
        return InstallerProgram(bundle).run(arguments);
    }
    // A product with its description and the copy of its log.
    void addProduct(const std::string& records) {
        machine_.files.addFile(
            "/app/install.xml",
            "<TandrelGroupInstallation><ProductDesc><Fullname>Demo</Fullname></ProductDesc><DefValues/>"
            "<UninstallDialogs><CopyProgress Special='AutoNext'/><End Special='Finish'/></UninstallDialogs>"
            "<Installation><Uninstall><InstallLogFile>/app/install.log</InstallLogFile></Uninstall>"
            "</Installation></TandrelGroupInstallation>");
        machine_.files.addFile("/copy.log", "/app/install.xml\r\n\r\nNUMVARS\t0\r\n" + records);
    }
    // What a setup leaves that was killed after it had removed a file.
    void removeAsAnInterruptedRun(const std::string& path) {
        RemovalJournal journal(machine_.files, machine_.environment);
        ASSERT_EQ(journal.open(), 0);
        ASSERT_EQ(
            journal.note({{"product", "Demo"}, {"application 1", "Demo"}, {"log 1", "/app/install.log"}}), 0);
        JournaledMachine machine(machine_.bundle(), journal);
        ASSERT_EQ(machine.bundle().files.removeFile(path), 0);
    }
    std::string debugLog() const { return machine_.files.content("/tmp/installer_debug.log"); }
    bool logHolds(const std::string& text) const { return debugLog().find(text) != std::string::npos; }

    FakePlatform machine_;
};

TEST_F(InstallerProgramTest, AWordThatBelongsToNoOptionIsRefusedBeforeThereIsALog) {
    EXPECT_EQ(run({"-gui=0", "alpha", "-debug=1"}), -1);
    EXPECT_EQ(machine_.console.output, "ERROR: Command line couldn't be parsed. Exiting!\n");
    EXPECT_EQ(machine_.console.pending, "");
    EXPECT_FALSE(machine_.files.hasFile("/tmp/installer_debug.log"));
}

TEST_F(InstallerProgramTest, WithoutRightsNeitherInstallingNorUninstallingStarts) {
    machine_.files.setReadOnly("/opt");
    machine_.files.setReadOnly("C:\\Programs");
    for (const char* mode : {"-auto", "-uninstall=/log", "-uninstallFile=/log"}) {
        machine_.console.output.clear();
        EXPECT_EQ(run({"-gui=0", mode}), -1) << mode;
        EXPECT_EQ(machine_.console.output, "This program requires administrative privileges.\n") << mode;
    }
    EXPECT_TRUE(machine_.events.signals.empty());
    EXPECT_TRUE(machine_.processes.started.empty());
}

TEST_F(InstallerProgramTest, AFailedChecksumIsToldAndTheExitCodeStaysZero) {
    EXPECT_EQ(run({"-auto", "-debug=1"}), 0);
    EXPECT_NE(machine_.console.output.find(
                  "The checksum of the installer doesn't match. This could indicate a broken download.\n"
                  "Please, try downloading again!\n"),
              std::string::npos);
    EXPECT_TRUE(logHolds("ERROR: The installer checksum failed!"));
    EXPECT_TRUE(logHolds("Installation finished (res=-1)"));
}

TEST_F(InstallerProgramTest, ASeparateFileThatIsNoPackageIsTold) {
    machine_.files.addFile("/payload.bin", "no package at all");
    EXPECT_EQ(run({"-auto", "-bin=/payload.bin", "-debug=1"}), 0);
    EXPECT_NE(
        machine_.console.output.find("The installer failed to initialize with the supplied binary file!\n"),
        std::string::npos);
    EXPECT_TRUE(logHolds("Initializing with bin file: /payload.bin"));
    EXPECT_TRUE(logHolds("ERROR: Initialization with bin file failed with result: -"));
}

TEST_F(InstallerProgramTest, FromLevelTwoOnTheArgumentsAreLogged) {
    run({"-auto", "-debug=2", "-x=a b"});
    std::string log;
    for (const std::string& file : machine_.files.allFiles()) {
        if (file.find("installer_debug_") != std::string::npos) {
            log = machine_.files.content(file);
        }
    }
    for (const char* line : {"Insatllation was called with arguments:\r\n", "  [ARG 00] -auto=\"\"\r\n",
                             "  [ARG 01] -debug=\"2\"\r\n", "  [ARG 02] -x=\"a b\"\r\n"}) {
        EXPECT_NE(log.find(line), std::string::npos) << line << log;
    }
}

TEST_F(InstallerProgramTest, TheRelaunchWinsOverTheSecondStage) {
    machine_.files.addFile("/product/log", "log");
    EXPECT_EQ(run({"-uninstallFile=/copy", "-uninstall=/product/log", "-gui=0"}), 0);
    ASSERT_EQ(machine_.processes.started.size(), 1U);
    EXPECT_NE(machine_.processes.started[0].commandLine.find("-gui=0"), std::string::npos);
    EXPECT_TRUE(machine_.events.signals.empty());
}

TEST_F(InstallerProgramTest, TheSecondStageSignalsBothEventsAndTellsItsOutcome) {
    machine_.files.addFile("/copy.log", "/missing/install.xml\r\n\r\nNUMVARS\t0\r\n");
    EXPECT_EQ(run({"-uninstallFile=/copy.log", "-gui=0"}), -1);
    EXPECT_EQ(machine_.events.signals,
              (std::vector<std::string>{kUninstallerStartEvent, kUninstallerEndEvent}));
    EXPECT_FALSE(machine_.files.hasFile("/copy.log"));
    EXPECT_TRUE(machine_.files.hasFile(machine_.environment.program));  // which is no copy of a first stage
}

TEST_F(InstallerProgramTest, TheSecondStageRemovesItsOwnCopies) {
    machine_.environment.program = "/tmp/ormeluninst-7/ormeluninst.dll";
    machine_.files.addFile(machine_.environment.program, "the program");
    machine_.files.addFile("/tmp/ormeluninst-7/ormeluninst.log",
                           "/missing/install.xml\r\n\r\nNUMVARS\t0\r\n");
    EXPECT_EQ(run({"-uninstallFile=/tmp/ormeluninst-7/ormeluninst.log", "-gui=0"}), -1);
    EXPECT_FALSE(machine_.files.hasDirectory("/tmp/ormeluninst-7"));
}

TEST_F(InstallerProgramTest, AProgramThatOnlyHasTheNameOfTheCopyStays) {
    machine_.environment.program = "/home/bob/ormeluninst.dll";
    machine_.files.addFile(machine_.environment.program, "my program");
    machine_.files.addFile("/home/bob/ormeluninst.log", "/missing/install.xml\r\n\r\nNUMVARS\t0\r\n");
    EXPECT_EQ(run({"-uninstallFile=/home/bob/ormeluninst.log", "-gui=0"}), -1);
    EXPECT_TRUE(machine_.files.hasFile("/home/bob/ormeluninst.dll"));
}

TEST_F(InstallerProgramTest, WhileAnotherUninstallationWorksNothingIsUninstalled) {
    machine_.files.addFile("/app/file", "");
    machine_.files.addFile("/copy.log", "/app/install.xml\r\n\r\nNUMVARS\t0\r\nFILE\tCREATE\t/app/file\r\n");
    machine_.events.lockResults = {platform::LockResult::kBusy, platform::LockResult::kBusy};
    EXPECT_EQ(run({"-uninstallFile=/copy.log", "-gui=0"}), -1);
    EXPECT_NE(machine_.console.errors.find("Another uninstallation is still at work"), std::string::npos);
    EXPECT_EQ(machine_.console.output, "");
    EXPECT_TRUE(machine_.files.hasFile("/app/file"));
    EXPECT_FALSE(machine_.files.hasFile("/copy.log"));
    EXPECT_EQ(machine_.events.signals,
              (std::vector<std::string>{kUninstallerStartEvent, kUninstallerEndEvent}));
}

TEST_F(InstallerProgramTest, AnUninstallationOfAProductAtWorkEndsWithACodeOfItsOwn) {
    addProduct("FILE\tCREATE\t/app/file\r\n");
    machine_.files.addFile("/app/file", "");
    machine_.events.lockResults = {platform::LockResult::kTaken, platform::LockResult::kBusy};
    EXPECT_EQ(run({"-uninstallFile=/copy.log", "-gui=0"}), 2);
    EXPECT_NE(machine_.console.errors.find("Another setup or uninstallation of Demo is at work"),
              std::string::npos);
    EXPECT_TRUE(machine_.files.hasFile("/app/file"));
}

TEST_F(InstallerProgramTest, AnUninstallationTakesAnInterruptedRunBackAndUninstallsWhatCameBack) {
    addProduct("");
    machine_.files.addFile("/app/install.log",
                           machine_.files.content("/copy.log") + "FILE\tCREATE\t/app/file\r\n");
    machine_.files.addFile("/app/file", "");
    removeAsAnInterruptedRun("/app/file");
    EXPECT_EQ(run({"-uninstallFile=/copy.log", "-gui=0"}), 0) << machine_.console.errors;
    EXPECT_NE(machine_.console.errors.find("An earlier run of the setup of Demo was interrupted."),
              std::string::npos);
    EXPECT_NE(machine_.console.output.find("Delete /app/file"), std::string::npos) << machine_.console.output;
    EXPECT_FALSE(machine_.files.hasFile("/app/file"));
    EXPECT_FALSE(machine_.files.hasFile("/copy.log"));
}

TEST_F(InstallerProgramTest, AnUninstallationIsOverWhenTheInterruptedRunWasAllThereWas) {
    addProduct("");
    machine_.files.addFile("/app/file", "mine");
    removeAsAnInterruptedRun("/app/file");
    EXPECT_EQ(run({"-uninstallFile=/copy.log", "-gui=0"}), 0) << machine_.console.errors;
    EXPECT_EQ(machine_.files.content("/app/file"), "mine");
}

TEST_F(InstallerProgramTest, WhatCannotBeTakenBackEndsTheUninstallationWithACodeOfItsOwn) {
    addProduct("");
    machine_.files.addFile("/app/file", "mine");
    removeAsAnInterruptedRun("/app/file");
    machine_.files.addFile("/app/file", "somebody else's");
    EXPECT_EQ(run({"-uninstallFile=/copy.log", "-gui=0"}), 3) << machine_.console.errors;
    EXPECT_TRUE(machine_.files.hasFile("/app/install.xml"));
}

TEST_F(InstallerProgramTest, TheNextUninstallationMayStartBeforeTheEndIsSignalled) {
    machine_.files.addFile("/copy.log", "/missing/install.xml\r\n\r\nNUMVARS\t0\r\n");
    run({"-uninstallFile=/copy.log", "-gui=0"});
    EXPECT_EQ(machine_.events.lockings.size(), 1U);
    EXPECT_EQ(machine_.events.heldLocksAtSignals, (std::vector<int>{0, 0}));
}

TEST_F(InstallerProgramTest, WithADebugLogTheCopiedActionLogStays) {
    machine_.files.addFile("/copy.log", "/missing/install.xml\r\n\r\nNUMVARS\t0\r\n");
    EXPECT_EQ(run({"-uninstallFile=/copy.log", "-gui=0", "-debug=1"}), -1);
    EXPECT_TRUE(machine_.files.hasFile("/copy.log"));
    EXPECT_TRUE(logHolds("Real uninstall"));
}

TEST_F(InstallerProgramTest, AMissingActionLogFailsTheSecondStage) {
    EXPECT_EQ(run({"-uninstallFile=/none.log", "-gui=0"}), -1);
    EXPECT_EQ(machine_.events.signals,
              (std::vector<std::string>{kUninstallerStartEvent, kUninstallerEndEvent}));
}

TEST_F(InstallerProgramTest, NobodyIsReachableByTheControlHandlerAfterwards) {
    run({"-auto"});
    EXPECT_TRUE(handleConsoleControl(platform::ControlEvent::kInterrupt));
}

TEST_F(InstallerProgramTest, SaysWhyTheSecondStageCannotStart) {
    EXPECT_EQ(run({"-uninstallFile=/none.log", "-gui=0"}), -1);
    EXPECT_TRUE(machine_.console.errors.starts_with("The uninstallation can't start: /none.log: "))
        << machine_.console.errors;
    EXPECT_EQ(std::count(machine_.console.errors.begin(), machine_.console.errors.end(), '\n'), 1);
}

TEST_F(InstallerProgramTest, SaysWhyASeparateFileCannotBeUsed) {
    machine_.files.addFile("/payload.bin", "no package at all");
    EXPECT_EQ(run({"-auto", "-bin=/payload.bin"}), 0);
    EXPECT_TRUE(machine_.console.errors.starts_with("/payload.bin: the package can't be read (-"))
        << machine_.console.errors;
    EXPECT_EQ(machine_.console.output.find("successful"), std::string::npos);
}

TEST_F(InstallerProgramTest, ReportsOptionsThatTheSecondStageDoesNotGet) {
    machine_.files.addFile("/product/log", "log");
    EXPECT_EQ(run({"-uninstall=/product/log", "-gui=0", "-VARIABLE_X=1", "-GUI=0"}), 0);
    EXPECT_EQ(machine_.console.errors,
              "-VARIABLE_X: this option has no effect on an uninstallation\n"
              "-GUI: this option has no effect on an uninstallation\n");
}

}  // namespace

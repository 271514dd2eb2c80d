#include "installer/installer_program.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "engine/journaled_machine.h"
#include "engine/removal_journal.h"
#include "fakes/recording_window.h"
#include "installer/console_control.h"
#include "installer/help_text.h"
#include "installer/version_option.h"
#include "package/package_writer.h"
#include "platform/memory/memory_platform.h"
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
        const auto box = [this](std::string_view text, std::string_view caption, platform::MessageIcon icon) {
            boxes_.push_back({std::string(text), std::string(caption), icon});
        };
        return InstallerProgram(bundle, windows_, box).run(arguments);
    }
    // A package that the test's own image isn't, and the option that names it.
    std::string packageOption(const std::string& description) {
        machine_.files.addFile("/src/install.xml", description);
        PackageOptions options;
        options.stripes = 1;
        options.level = 1;
        PackageWriter(machine_.files)
            .write({{"/src/install.xml", "install.xml", "install.xml"}}, options, "/payload.bin");
        return "-bin=/payload.bin";
    }
    std::string packageOption() {
        return packageOption(
            "<TandrelGroupInstallation><ProductDesc><Fullname>Demo</Fullname></ProductDesc><DefValues/>"
            "<Dialogs><Hello Special='Finish'/></Dialogs></TandrelGroupInstallation>");
    }
    std::vector<std::string> boxTexts() const {
        std::vector<std::string> texts;
        for (const Box& box : boxes_) {
            EXPECT_EQ(box.caption, "Tandrel Software installer");
            texts.push_back(box.text);
        }
        return texts;
    }
    void expectInOrder(const std::vector<std::string>& lines) const {
        const std::string log = debugLog();
        std::size_t place = 0;
        for (const std::string& line : lines) {
            const std::size_t found = log.find("    " + line + "\r\n", place);
            EXPECT_NE(found, std::string::npos) << line << " isn't in its place in\n" << log;
            place = found == std::string::npos ? place : found;
        }
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

    struct Box {
        std::string text;
        std::string caption;
        platform::MessageIcon icon;
    };

    MemoryPlatform machine_;
    FakeWindows windows_;
    std::vector<Box> boxes_;
};

TEST_F(InstallerProgramTest, AWordThatBelongsToNoOptionIsRefusedBeforeThereIsALog) {
    EXPECT_EQ(run({"-gui=0", "alpha", "-debug=1"}), -1);
    EXPECT_EQ(machine_.console.output, "ERROR: Command line couldn't be parsed. Exiting!\n");
    EXPECT_EQ(machine_.console.pending, "");
    EXPECT_FALSE(machine_.files.hasFile("/tmp/installer_debug.log"));
}

TEST_F(InstallerProgramTest, SaysItsVersionWithoutRightsOrALog) {
    machine_.files.setReadOnly("/opt");
    machine_.files.setReadOnly("C:\\Programs");
    EXPECT_EQ(run({"-version", "-debug=1", "-uninstall=/log"}), 0);
    EXPECT_EQ(machine_.console.output, versionLine());
    EXPECT_EQ(machine_.console.pending, "");
    EXPECT_EQ(machine_.console.errors, "");
    EXPECT_FALSE(machine_.files.hasFile("/tmp/installer_debug.log"));
    EXPECT_TRUE(boxes_.empty());
}

TEST_F(InstallerProgramTest, HelpsWithoutRightsOrALog) {
    machine_.files.setReadOnly("/opt");
    machine_.files.setReadOnly("C:\\Programs");
    const std::string package = packageOption(
        "<TandrelGroupInstallation><ProductDesc><Fullname>Demo</Fullname></ProductDesc><DefValues>"
        "<Value Name='HELP' DataType='cmdlinearg'>none</Value></DefValues>"
        "<Dialogs><Hello Special='Finish'/></Dialogs></TandrelGroupInstallation>");
    for (const char* const option : {"-help", "--help", "-h", "-?"}) {
        machine_.console.output.clear();
        EXPECT_EQ(run({option, "-debug=1", package}), 0) << option;
        EXPECT_NE(machine_.console.output.find("This is the setup of Demo.\n"), std::string::npos) << option;
        EXPECT_EQ(machine_.console.errors, "");
    }
    EXPECT_FALSE(machine_.files.hasFile("/tmp/installer_debug.log"));
    EXPECT_TRUE(boxes_.empty());
    EXPECT_TRUE(windows_.made.empty());
}

TEST_F(InstallerProgramTest, ADescriptionMayReadAnOptionOfTheNameOfTheVersion) {
    const std::string package = packageOption(
        "<TandrelGroupInstallation><ProductDesc><Fullname>Demo</Fullname></ProductDesc><DefValues>"
        "<Value Name='VERSION' DataType='cmdlinearg'>none</Value></DefValues>"
        "<Dialogs><Hello Special='Finish'><Text x='1' y='1'>Hello.</Text></Hello></Dialogs>"
        "</TandrelGroupInstallation>");
    EXPECT_EQ(run({"-version", "-auto", package}), 0);
    EXPECT_NE(machine_.console.output.find("Hello."), std::string::npos) << machine_.console.output;
    EXPECT_EQ(machine_.console.output.find(versionLine()), std::string::npos);
}

TEST_F(InstallerProgramTest, VerifiesWithoutRightsAWindowOrALog) {
    addProduct("FILE\tCREATE\t/app/a\r\n");
    machine_.files.setReadOnly("/");
    const auto before = machine_.files.everything();
    EXPECT_EQ(run({"-verify=/copy.log", "-debug=1"}), 1);
    EXPECT_TRUE(
        machine_.console.output.starts_with("verification: 0 complete, 0 changed, 1 missing, 0 unknown\n"))
        << machine_.console.output;
    EXPECT_EQ(machine_.console.pending, "");
    EXPECT_EQ(run({"-verify=/none.log"}), -1);
    EXPECT_EQ(machine_.files.everything(), before);
    EXPECT_TRUE(boxes_.empty());
}

TEST_F(InstallerProgramTest, AnUninstallationLeavesTheReceiptThatItIsAskedFor) {
    addProduct("FILE\tCREATE\t/app/a\r\n");
    machine_.files.addFile("/app/a", "a");
    EXPECT_EQ(run({"-uninstallFile=/copy.log", "-gui=0", "-receipt=/r.json", "-receiptLog=/app/install.log"}),
              0);
    EXPECT_TRUE(machine_.console.output.ends_with(
        "uninstallation: 1 gone, 0 put back, 0 changed and left, 0 foreign and left, 0 failed\n"))
        << machine_.console.output;
    EXPECT_NE(machine_.files.content("/r.json").find("\"good\": true"), std::string::npos);
    EXPECT_FALSE(machine_.files.hasFile("/copy.log"));
}

TEST_F(InstallerProgramTest, AnUninstallationWithoutTheReceiptHasFailed) {
    addProduct("FILE\tCREATE\t/app/a\r\n");
    machine_.files.addFile("/app/a", "a");
    machine_.files.addFile("/receipts/r.txt", "before");
    machine_.files.setReadOnly("/receipts");
    EXPECT_EQ(run({"-uninstallFile=/copy.log", "-gui=0", "-receipt=/receipts/r.txt"}), -1);
    EXPECT_FALSE(machine_.files.hasFile("/app/a"));
    EXPECT_NE(machine_.console.errors.find("ERROR: The receipt /receipts/r.txt can't be written: "),
              std::string::npos)
        << machine_.console.errors;
}

TEST_F(InstallerProgramTest, AReceiptThatWouldGoWithTheProductIsRefusedInBothStages) {
    addProduct("DIR\t1\t/app/\r\nFILE\tCREATE\t/app/a\r\n");
    machine_.files.addFile("/app/a", "a");
    for (const char* const stage : {"-uninstall=/copy.log", "-uninstallFile=/copy.log"}) {
        machine_.events.signals.clear();
        machine_.console.errors.clear();
        EXPECT_EQ(run({stage, "-gui=0", "-receipt=/app/r.txt"}), -1);
        EXPECT_EQ(machine_.console.errors,
                  "The uninstallation can't start: the receipt /app/r.txt would lie in /app, which is to be "
                  "removed\n");
        EXPECT_EQ(machine_.events.signals.back(), kUninstallerEndEvent);
        EXPECT_TRUE(machine_.files.hasFile("/app/a"));
        EXPECT_TRUE(machine_.processes.started.empty());
    }
}

TEST_F(InstallerProgramTest, TheFirstStageHandsTheReceiptOn) {
    addProduct("FILE\tCREATE\t/app/a\r\n");
    machine_.environment.current = "/app";
    EXPECT_EQ(run({"-uninstall=/copy.log", "-gui=0", "-receipt=r.txt"}), 0);
    ASSERT_EQ(machine_.processes.started.size(), 1U);
    EXPECT_TRUE(machine_.processes.started[0].commandLine.ends_with(
        " -gui=0 -receipt=\"/app/r.txt\" -receiptLog=\"/copy.log\""))
        << machine_.processes.started[0].commandLine;
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

TEST_F(InstallerProgramTest, AMissingPackageIsToldAndTheExitCodeStaysZero) {
    EXPECT_EQ(run({"-auto", "-debug=1"}), 0);
    EXPECT_NE(machine_.console.output.find(noPackageText() + "\n"), std::string::npos);
    EXPECT_TRUE(logHolds("ERROR: This program has no package"));
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

TEST_F(InstallerProgramTest, TheRelaunchHandsOnTheCodeOfTheSecondStage) {
    machine_.files.addFile("/product/log", "log");
    machine_.processes.waitsBeforeEnd = 3;
    machine_.processes.exitCodes = {static_cast<int>(RunEnd::kRefused), -1};
    EXPECT_EQ(run({"-uninstall=/product/log", "-gui=0", "-exitCodes=1"}), static_cast<int>(RunEnd::kRefused));
    ASSERT_EQ(machine_.processes.started.size(), 1U);
    EXPECT_NE(machine_.processes.started[0].commandLine.find(" -exitCodes=1"), std::string::npos);
    EXPECT_EQ(run({"-uninstall=/product/log", "-gui=0", "-exitCodes=1"}), static_cast<int>(RunEnd::kFailed))
        << "no code of a second stage that came to its end";
}

TEST_F(InstallerProgramTest, ExitCodesTellWhatHappenedBeforeASession) {
    const auto code = [](RunEnd end) { return static_cast<int>(end); };
    EXPECT_EQ(run({"-exitCodes=1", "-gui=0", "alpha"}), code(RunEnd::kBadCommandLine));
    EXPECT_EQ(run({"-exitCodes=1", "-auto"}), code(RunEnd::kPackageDamaged));
    EXPECT_EQ(run({"-exitCodes=1", "-version"}), 0);
    EXPECT_EQ(run({"-exitCodes=1", "-gui=0", "-uninstall=/none.log"}), code(RunEnd::kNothingToDo));
    machine_.files.setReadOnly("/opt");
    machine_.files.setReadOnly("C:\\Programs");
    EXPECT_EQ(run({"-exitCodes=1", "-auto"}), code(RunEnd::kNoRights));
    windows_.available = false;
    EXPECT_EQ(run({"-exitCodes=1"}), code(RunEnd::kNoFrontEnd));
}

TEST_F(InstallerProgramTest, ExitCodesTellHowASessionEnded) {
    EXPECT_EQ(run({"-exitCodes=1", "-auto", packageOption()}), static_cast<int>(RunEnd::kRefused));
    EXPECT_EQ(run({"-auto", packageOption()}), 0);
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

TEST_F(InstallerProgramTest, AnUninstallationThatHasNoTurnLeavesAReceipt) {
    addProduct("FILE\tCREATE\t/app/a\r\n");
    machine_.files.addFile("/app/a", "a");
    machine_.events.lockResults = {platform::LockResult::kBusy, platform::LockResult::kBusy};
    EXPECT_EQ(run({"-uninstallFile=/copy.log", "-gui=0", "-receipt=/r.txt"}), -1);
    EXPECT_NE(machine_.files.content("/r.txt").find(" 1 failed\n"), std::string::npos);
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

TEST_F(InstallerProgramTest, TheReceiptIsOfTheLogThatCameBack) {
    addProduct("");
    machine_.files.addFile("/app/install.log",
                           machine_.files.content("/copy.log") + "FILE\tCREATE\t/app/file\r\n");
    machine_.files.addFile("/app/file", "");
    removeAsAnInterruptedRun("/app/file");
    EXPECT_EQ(run({"-uninstallFile=/copy.log", "-gui=0", "-receipt=/r.txt", "-receiptLog=/app/install.log"}),
              0)
        << machine_.console.errors;
    EXPECT_TRUE(machine_.files.content("/r.txt").starts_with("uninstallation: 1 gone, "))
        << machine_.files.content("/r.txt");
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

TEST_F(InstallerProgramTest, RunsAnInstallationInAWindow) {
    windows_.script = [](InstallExchangeInfo& engine, InstallerUI& ui) { return engine.shift(&ui, 1); };
    EXPECT_EQ(run({packageOption(), "-debug=1"}), 0);
    expectInOrder({"Installation started", "Initializing with bin file: /payload.bin", "Running installation",
                   "Decompressing installation file", "Getting GUI colour theme info",
                   "Initializing GUI colour theme", "Starting installation UI", "Ending installation UI",
                   "Installation finished (res=0)"});
    EXPECT_FALSE(logHolds("Running uninstallation"));
    EXPECT_FALSE(logHolds("Initializing with input"));
    EXPECT_EQ(windows_.made, std::vector<bool>{false});
    EXPECT_EQ(windows_.record.callsOf("run"), std::vector<std::string>{"run()"});
    EXPECT_EQ(windows_.record.callsOf("finish"), std::vector<std::string>{"finish()"});
    EXPECT_EQ(machine_.console.output.find("***"), std::string::npos) << machine_.console.output;
    EXPECT_TRUE(boxes_.empty());
}

TEST_F(InstallerProgramTest, AConsoleInstallationLogsTheUninstallWording) {
    EXPECT_EQ(run({packageOption(), "-auto", "-debug=1"}), 0);
    expectInOrder({"Initializing with input: \"autoInstall\"", "Running uninstallation",
                   "Installation finished (res=0)"});
    EXPECT_FALSE(logHolds("Running installation"));
    EXPECT_EQ(windows_.questions, 0);
}

TEST_F(InstallerProgramTest, AWindowNeverSeesThatErrorsAreToBeIgnored) {
    int ignores = -1;
    windows_.script = [&](InstallExchangeInfo&, InstallerUI& ui) {
        ignores = ui.getIgnoreErrors();
        return 0;
    };
    run({packageOption(), "-ignoreErrors=1"});
    EXPECT_EQ(ignores, 0);
}

TEST_F(InstallerProgramTest, AnUnattendedRunNeedsNoWindow) {
    windows_.available = false;
    machine_.files.addFile("/answers.xml", "<Answers><DefValues/></Answers>");
    for (const std::string mode : {"-auto", "-auto=0", "-configFile=/answers.xml"}) {
        run({packageOption(), "-gui=1", mode});
    }
    EXPECT_EQ(windows_.questions, 0);
    EXPECT_TRUE(windows_.made.empty());
}

TEST_F(InstallerProgramTest, AWindowThatCannotBeMadeIsToldInABox) {
    windows_.makes = false;
    EXPECT_EQ(run({packageOption(), "-debug=1"}), 0);
    expectInOrder({"ERROR: Unable to initialize GUI installation", "Installation finished (res=-1)"});
    EXPECT_EQ(boxTexts(), std::vector<std::string>{"The installation can't start: the window can't be made"});
}

TEST_F(InstallerProgramTest, AWindowIsNotMadeWithoutAPackage) {
    EXPECT_EQ(run({"-debug=1"}), 0);
    EXPECT_EQ(windows_.questions, 1);
    EXPECT_TRUE(windows_.made.empty());
    EXPECT_EQ(boxTexts(), std::vector<std::string>{noPackageText()});
    EXPECT_TRUE(logHolds("ERROR: This program has no package"));
}

TEST_F(InstallerProgramTest, TheConsoleTakesOverWhereAPersonIsAtATerminal) {
    windows_.available = false;
    machine_.console.inputIsTerminal = true;
    EXPECT_EQ(run({packageOption(), "-debug=1"}), 0);
    EXPECT_EQ(machine_.console.errors.substr(0, machine_.console.errors.find('\n') + 1),
              "No window can be shown, so the console is used: there is no display\n");
    expectInOrder({"WARNING: No window can be shown, so the console is used: there is no display",
                   "Initializing with input: \"\"", "Running uninstallation"});
    EXPECT_NE(machine_.console.output.find("Tandrel Group installer"), std::string::npos);
}

TEST_F(InstallerProgramTest, WithoutAWindowOrATerminalNothingIsDone) {
    windows_.available = false;
    EXPECT_EQ(run({packageOption()}), -1);
    EXPECT_EQ(machine_.console.errors,
              "No window can be shown (there is no display), and standard input is no terminal: nothing was "
              "done. The option -gui=0 uses the console all the same.\n");
    EXPECT_EQ(machine_.console.output, "");
    EXPECT_TRUE(boxes_.empty());
}

TEST_F(InstallerProgramTest, AnUninstallationWithoutAWindowOrATerminalDoesNotStart) {
    windows_.available = false;
    machine_.files.addFile("/product/log", "log");
    EXPECT_EQ(run({"-uninstall=/product/log"}), -1);
    EXPECT_TRUE(machine_.processes.started.empty());
    EXPECT_EQ(machine_.events.signals, std::vector<std::string>{kUninstallerEndEvent});
}

TEST_F(InstallerProgramTest, ASecondStageWithoutAWindowOrATerminalRemovesItsCopies) {
    windows_.available = false;
    machine_.environment.program = "/tmp/ormeluninst-7/ormeluninst.dll";
    machine_.files.addFile(machine_.environment.program, "the program");
    machine_.files.addFile("/tmp/ormeluninst-7/ormeluninst.log", "");
    EXPECT_EQ(run({"-uninstallFile=/tmp/ormeluninst-7/ormeluninst.log"}), -1);
    EXPECT_FALSE(machine_.files.hasDirectory("/tmp/ormeluninst-7"));
    EXPECT_EQ(machine_.events.signals, std::vector<std::string>{kUninstallerEndEvent});
}

TEST_F(InstallerProgramTest, TheSecondStageGetsTheConsoleThatTookOver) {
    windows_.available = false;
    machine_.console.inputIsTerminal = true;
    machine_.files.addFile("/product/log", "log");
    EXPECT_EQ(run({"-uninstall=/product/log"}), 0);
    ASSERT_EQ(machine_.processes.started.size(), 1U);
    EXPECT_NE(machine_.processes.started[0].commandLine.find(" -gui=0"), std::string::npos);
}

TEST_F(InstallerProgramTest, TheSecondStageGetsNoFrontEndOptionWhereThereIsAWindow) {
    machine_.files.addFile("/product/log", "log");
    EXPECT_EQ(run({"-uninstall=/product/log", "-uninstallApp=Demo", "-VARIABLE_A=1", "-B=2"}), 0);
    ASSERT_EQ(machine_.processes.started.size(), 1U);
    EXPECT_TRUE(machine_.processes.started[0].commandLine.ends_with(" -uninstallApp=\"Demo\""));
    EXPECT_EQ(boxTexts(),
              std::vector<std::string>{"-VARIABLE_A: this option has no effect on an uninstallation\n"
                                       "-B: this option has no effect on an uninstallation"});
}

TEST_F(InstallerProgramTest, ARelaunchThatFailsIsToldInABox) {
    EXPECT_EQ(run({"-uninstall=/product/log"}), -1);
    ASSERT_EQ(boxes_.size(), 1U);
    EXPECT_TRUE(boxes_[0].text.starts_with("ERROR: The uninstallation can't start: "));
    EXPECT_EQ(machine_.console.errors, "");
}

TEST_F(InstallerProgramTest, UninstallsInAWindow) {
    addProduct("FILE\tCREATE\t/app/file\r\n");
    machine_.files.addFile("/app/file", "");
    windows_.script = [](InstallExchangeInfo& engine, InstallerUI& ui) {
        EXPECT_TRUE(engine.isUninstalling());
        return engine.goToDialog(0, &ui) == 1 ? engine.shift(&ui, 1) : -1;
    };
    EXPECT_EQ(run({"-uninstallFile=/copy.log", "-debug=1"}), 0) << debugLog();
    expectInOrder({"Real uninstall", "Running uninstallation", "Getting GUI colour theme info"});
    EXPECT_EQ(windows_.made, std::vector<bool>{true});
    EXPECT_FALSE(machine_.files.hasFile("/app/file"));
    EXPECT_EQ(machine_.events.signals,
              (std::vector<std::string>{kUninstallerStartEvent, kUninstallerEndEvent}));
}

TEST_F(InstallerProgramTest, AnUninstallationWhoseWindowCannotBeMadeFails) {
    addProduct("");
    windows_.makes = false;
    EXPECT_EQ(run({"-uninstallFile=/copy.log", "-debug=1"}), -1);
    EXPECT_TRUE(logHolds("ERROR: Unable to start GUI uninstall"));
    EXPECT_FALSE(logHolds("Running uninstallation"));
    EXPECT_EQ(boxes_.size(), 1U);
}

TEST_F(InstallerProgramTest, WithoutRightsAGraphicalRunSaysSoInABox) {
    machine_.files.setReadOnly("/opt");
    machine_.files.setReadOnly("C:\\Programs");
    EXPECT_EQ(run({}), -1);
    EXPECT_EQ(boxTexts(), std::vector<std::string>{
                              "This program requires Administrative privileges.\nPlease right-click the "
                              "installer and select \"Run as Administrator...\""});
    EXPECT_EQ(boxes_[0].icon, platform::MessageIcon::kWarning);
    EXPECT_EQ(machine_.console.output, "");
}

TEST_F(InstallerProgramTest, AMissingPackageIsToldInABoxOfAGraphicalRun) {
    EXPECT_EQ(run({"-debug=1"}), 0);
    EXPECT_EQ(boxTexts(), std::vector<std::string>{noPackageText()});
    EXPECT_EQ(boxes_[0].icon, platform::MessageIcon::kError);
    EXPECT_EQ(machine_.console.output.find("package"), std::string::npos);
    expectInOrder({"ERROR: This program has no package", "Installation finished (res=-1)"});
}

TEST_F(InstallerProgramTest, ASeparateFileThatIsNoPackageIsToldInABoxOfAGraphicalRun) {
    machine_.files.addFile("/payload.bin", "no package at all");
    EXPECT_EQ(run({"-bin=/payload.bin"}), 0);
    ASSERT_EQ(boxes_.size(), 2U);
    EXPECT_EQ(boxes_[0].text, "The installer failed to initialize with the supplied binary file!");
    EXPECT_TRUE(windows_.made.empty());
}

TEST_F(InstallerProgramTest, ASessionThatCannotStartTellsItsWindow) {
    run({packageOption("<TandrelGroupInstallation><DefValues/></TandrelGroupInstallation>")});
    EXPECT_EQ(windows_.record.callsOf("setFatalMessage"),
              std::vector<std::string>{"setFatalMessage(\"The installation can't start: the description "
                                       "doesn't name a product\", \"Installation\")"});
    EXPECT_EQ(windows_.record.countOf("showFatalMessage"), 1);
    EXPECT_EQ(windows_.record.countOf("run"), 0);
}

TEST_F(InstallerProgramTest, TheControlHandlerReachesTheWindowWhileItRuns) {
    windows_.script = [](InstallExchangeInfo& engine, InstallerUI&) {
        handleConsoleControl(platform::ControlEvent::kClose);
        EXPECT_TRUE(engine.isCancelled());
        return 0;
    };
    run({packageOption()});
    EXPECT_EQ(windows_.record.countOf("confirmCancel"), 1);
    handleConsoleControl(platform::ControlEvent::kClose);
    EXPECT_EQ(windows_.record.countOf("confirmCancel"), 1);
}

TEST_F(InstallerProgramTest, WhatCannotBeTakenBackIsShownInABox) {
    addProduct("");
    machine_.files.addFile("/app/file", "mine");
    removeAsAnInterruptedRun("/app/file");
    machine_.files.addFile("/app/file", "somebody else's");
    EXPECT_EQ(run({"-uninstallFile=/copy.log"}), 3);
    EXPECT_EQ(windows_.record.countOf("messageBox(\"An earlier run of the setup of Demo was interrupted."),
              1);
    ASSERT_EQ(windows_.record.countOf("setFatalMessage"), 1);
    EXPECT_NE(windows_.record.callsOf("setFatalMessage")[0].find("/app/file"), std::string::npos);
    EXPECT_EQ(windows_.record.countOf("showFatalMessage"), 1);
    EXPECT_EQ(windows_.record.countOf("run"), 0);
}

TEST_F(InstallerProgramTest, AnInterruptedRunIsTakenBackBeforeTheWindowOfTheUninstallation) {
    addProduct("");
    machine_.files.addFile("/app/install.log",
                           machine_.files.content("/copy.log") + "FILE\tCREATE\t/app/file\r\n");
    machine_.files.addFile("/app/file", "");
    removeAsAnInterruptedRun("/app/file");
    windows_.script = [](InstallExchangeInfo& engine, InstallerUI& ui) {
        return engine.goToDialog(0, &ui) == 1 ? engine.shift(&ui, 1) : -1;
    };
    EXPECT_EQ(run({"-uninstallFile=/copy.log"}), 0) << debugLog();
    EXPECT_EQ(windows_.made, (std::vector<bool>{true, true}));
    EXPECT_EQ(windows_.record.countOf("showFatalMessage"), 1);
    EXPECT_EQ(windows_.record.countOf("run"), 1);
    EXPECT_FALSE(machine_.files.hasFile("/app/file"));
}

}  // namespace

#include "engine/uninstaller.h"

#include <gmock/gmock.h>

#include "base/errors.h"
#include "engine/additional_actions.h"
#include "engine/alias_extractor.h"
#include "engine/file_contents.h"
#include "package/backup_file.h"
#include "support/p_file_stream.h"
#include "tags_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class UninstallerTest : public TagsTest {
protected:
    UninstallerTest() {
        files_.addDirectory("/app");
        describe(
            "<InstallerControlVariables><UninstallError>ERR</UninstallError></InstallerControlVariables>");
    }

    void openLog(const std::string& content) {
        files_.addFile("/app/install.log", content);
        log_file_ = std::make_unique<PFileStream>(files_);
        ASSERT_EQ(log_file_->openFile("/app/install.log", PFileStream::kGenericRead, PFileStream::kShareRead,
                                      PFileStream::kOpenExisting),
                  0);
    }
    // Undoes a log with these records behind its head.
    int undo(const std::string& records) {
        openLog("/app/install.xml\r\n/app/backup.bin\r\nNUMVARS\t1\r\nVAR\tFILE\tCREATE\r\n" + records);
        return uninstaller_.uninstallFromLog(ui_, nullptr);
    }
    std::string errorVariable() {
        char value[64] = "(none)";
        variables_.getVariable("ERR", value, sizeof value);
        return value;
    }
    void backUp(const std::string& path, const std::string& former, const std::string& installed) {
        files_.addFile(path, installed);
        BackupFile archive(files_);
        const std::uint32_t sum = archive.fileCheckSum(path);
        files_.addFile(path, former);
        ASSERT_TRUE(archive.openForWriting("/app/backup.bin"));
        ASSERT_EQ(archive.addFile(path, sum), std::nullopt);
        ASSERT_EQ(archive.close(), 0);
        files_.addFile(path, installed);
    }

    FileContents contents_{cabinet_, expressions_, console_};
    AliasExtractor extractor_{cabinet_, contents_, files_};
    AdditionalActions actions_{{context_, product_, extractor_, system_, files_}};
    std::unique_ptr<PFileStream> log_file_;
    UninstallState state_;
    Uninstaller uninstaller_{{context_, actions_, system_, files_, variables_, controls_}, log_file_, state_};
};

TEST_F(UninstallerTest, DeletesTheFilesOfTheLogAndTellsHowThatWent) {
    files_.addFile("/app/a", "");
    EXPECT_EQ(undo("FILE\tCREATE\t/app/a\r\nFILE\tCREATE\t/app/gone\r\nFILE\tOTHER\t/app/b\r\n"), 0);
    EXPECT_FALSE(files_.hasFile("/app/a"));
    EXPECT_THAT(ui_.callsOf("addFileLine(\""),
                ElementsAre("addFileLine(\"Delete /app/a\", 1)", "addFileLine(\"Missing /app/gone\", 0)"));
    EXPECT_THAT(errors_, IsEmpty());
    EXPECT_EQ(errorVariable(), "(none)");
}

TEST_F(UninstallerTest, ShowsItsStepsInOrder) {
    EXPECT_EQ(undo("ENV\tCREATE\tX\r\nDIR\t1\t/none/\r\n"), 0);
    EXPECT_THAT(ui_.callsOf("set"),
                ElementsAre("setStatusText(\"Uninstalling\")", "setCurrentProgress(0)",
                            "setCurrentProgress(34)", "setCurrentProgress(67)", "setCurrentProgress(100)",
                            "setStatusText(\"Updating environment\")",
                            "setStatusText(\"The uninstall was successful.\")"));
    EXPECT_EQ(ui_.countOf("beginProgress"), 1);
    EXPECT_EQ(ui_.countOf("endProgress"), 1);
}

TEST_F(UninstallerTest, GoesOnBehindAFileThatCannotBeDeleted) {
    files_.addFile("/app/a", "");
    files_.addFile("/app/b", "");
    files_.failFrom(MemoryFileSystem::Operation::kRemoveFile, "/app/a", 1);
    EXPECT_EQ(undo("FILE\tCREATE\t/app/a\r\nFILE\tCREATE\t/app/b\r\n"), -1);
    EXPECT_FALSE(files_.hasFile("/app/b"));
    EXPECT_THAT(errors_, ElementsAre("FAILED to delete /app/a"));
    EXPECT_EQ(errorVariable(), "1");
    EXPECT_EQ(ui_.callsOf("setStatusText").back(),
              "setStatusText(\"There were errors during the uninstall.\")");
}

TEST_F(UninstallerTest, StopsAProgramWhoseFileCannotBeDeleted) {
    files_.addFile("/app/run.exe", "");
    files_.failAt(MemoryFileSystem::Operation::kRemoveFile, "/app/run.exe", 1);
    system_.running.insert("run.exe");
    system_.looksBeforeEnd = 3;
    EXPECT_EQ(undo("FILE\tCREATE\t/app/run.exe\r\n"), 0);
    EXPECT_FALSE(files_.hasFile("/app/run.exe"));
    EXPECT_LE(system_.slept, Uninstaller::kWaitMilliseconds + 100);
}

TEST_F(UninstallerTest, PutsFormerContentBackAndKeepsIt) {
    backUp("/app/readme", "former", "installed");
    EXPECT_EQ(undo("FILE\tOVER\t/app/readme\r\nFILE\tCREATE\t/app/backup.bin\r\n"), 0);
    EXPECT_EQ(files_.content("/app/readme"), "former");
    EXPECT_FALSE(files_.hasFile("/app/backup.bin"));
}

TEST_F(UninstallerTest, DeletesRestorableFilesWhenTheArchiveIsGone) {
    files_.addFile("/app/readme", "installed");
    EXPECT_EQ(undo("FILE\tOVER\t/app/readme\r\n"), 0);
    EXPECT_FALSE(files_.hasFile("/app/readme"));
}

TEST_F(UninstallerTest, TakesTheArchiveThatItIsGiven) {
    backUp("/app/readme", "former", "installed");
    ASSERT_EQ(files_.moveFile("/app/backup.bin", "/app/other.bin"), 0);
    openLog("/app/install.xml\r\n/app/backup.bin\r\nNUMVARS\t0\r\nFILE\tOVER\t/app/readme\r\n");
    EXPECT_EQ(uninstaller_.uninstallFromLog(ui_, "/app/other.bin"), 0);
    EXPECT_EQ(files_.content("/app/readme"), "former");
}

TEST_F(UninstallerTest, UndoesModificationsAheadOfAllOtherRecords) {
    EXPECT_EQ(undo("ENV\tCREATE\tX\r\nMODIFYFILE\tADDAFTER\tf\td\r\n"), 0);
    EXPECT_THAT(changes_.calls,
                ElementsAre("undoFileModification(ADDAFTER\tf\td)", "removeEnvironmentEntry(CREATE\tX)",
                            "broadcastEnvironmentChange()"));
    changes_.failing = {"undoFileModification"};
    EXPECT_EQ(undo("MODIFYFILE\tADDAFTER\tf\td\r\n"), -1);
}

TEST_F(UninstallerTest, UndoesEachKindOfRecordAndKeysLast) {
    EXPECT_EQ(undo("REGKEY\t1\tHKEY_USERS\tfirst\r\nREGKEY\t2\tHKEY_USERS\tsecond\\key\r\n"
                   "INI\tCREATE\tf\ts\tk\tv\r\nSHORTCUT\tCREATE\t/m/l.lnk\r\n"
                   "FIREWALL\tAPP\t/app/s\r\nFIREWALL\tPORT\t80\tTCP;UDP\tName\r\n"
                   "REGVAL\tHKEY_USERS\tfirst\tv\r\n"),
              0);
    EXPECT_THAT(changes_.calls,
                ElementsAre("removeIniEntry(CREATE\tf\ts\tk\tv)", "removeShortcut(CREATE\t/m/l.lnk)",
                            "firewallRemoveApplication(/app/s)", "firewallRemovePort(80\tTCP;UDP\tName)",
                            "deleteRegistryValue(HKEY_USERS, first, v)",
                            "deleteRegistryKeys(HKEY_USERS, second\\key, 2)",
                            "deleteRegistryKeys(HKEY_USERS, first, 1)"));
    EXPECT_THAT(ui_.callsOf("addFileLine(\""),
                ElementsAre("addFileLine(\"Removed application from firewall: /app/s\", 0)",
                            "addFileLine(\"Removed port from firewall: 80\", 0)"));
}

TEST_F(UninstallerTest, FailsOnlyForARuleThatStays) {
    changes_.failing = {"removeEnvironmentEntry", "removeIniEntry", "removeShortcut", "deleteRegistryValue",
                        "deleteRegistryKeys"};
    EXPECT_EQ(
        undo("ENV\tx\r\nINI\tx\r\nSHORTCUT\tx\r\nREGVAL\ta\tb\tc\r\nREGKEY\t1\tb\tc\r\nFIREWALL\tX\r\n"), 0);
    changes_.failing = {"firewallRemovePort"};
    EXPECT_EQ(undo("FIREWALL\tPORT\t80\tTCP\tName\r\n"), -1);
    EXPECT_THAT(errors_, ElementsAre("FAILED to remove port from firewall: 80"));
    EXPECT_TRUE(log_.hasLine("ERROR: Uninstall: Failed to undo a FirwallAction (PORT\t80\tTCP\tName)!"));
}

TEST_F(UninstallerTest, DoesNotFailWhenTheFirewallIsSwitchedOff) {
    changes_.firewall = FirewallResult::kNotAvailable;
    EXPECT_EQ(undo("FIREWALL\tAPP\t/app/s\r\n"), 0);
    EXPECT_THAT(errors_,
                ElementsAre("Firewall: Service is NOT switched on and no exceptions can be removed!"));
}

TEST_F(UninstallerTest, WarnsAboutRegistryRecordsOfAnotherForm) {
    EXPECT_EQ(undo("REGKEY\t1\tHKEY_USERS\r\nREGVAL\ta\tb\tc\td\r\n"), 0);
    EXPECT_THAT(changes_.calls, IsEmpty());
    EXPECT_TRUE(log_.hasLine("WARNING: (Dev) Wrong number of tokens in the install.log for REGKEY"));
    EXPECT_TRUE(log_.hasLine("WARNING: (Dev) Wrong number of tokens in the install.log for REGVAL"));
}

TEST_F(UninstallerTest, RemovesDirectoriesLastFirstAndBehindTheWildcards) {
    describe(
        "<UninstallWildcards><WC Dest='/app/d' DeleteDirs='1==2'>*.tmp</WC>"
        "<WC Dest='/app/d' Condition='1==2'>*</WC><WC Dest=''>*</WC></UninstallWildcards>");
    files_.addFile("/app/d/e/left.tmp", "");
    files_.addFile("/app/keep", "");
    EXPECT_EQ(undo("DIR\t1\t/app/d\\\r\nDIR\t1\t/app/d/e\\\r\n"), 0);
    EXPECT_FALSE(files_.hasDirectory("/app/d"));
    EXPECT_TRUE(files_.hasFile("/app/keep"));
    EXPECT_THAT(ui_.callsOf("addFileLine(\""),
                ElementsAre("addFileLine(\"Delete: /app/d/*.tmp\", 1)", "addFileLine(\"Delete: /*\", 0)",
                            "addFileLine(\"Remove /app/d/e\", 0)", "addFileLine(\"Remove /app/d\", 0)"));
    EXPECT_TRUE(log_.hasLine("WARNING: Nothing is cleaned in \"\" by \"*\""));
}

TEST_F(UninstallerTest, FailsForADirectoryThatHoldsForeignFiles) {
    files_.addFile("/app/d/mine", "");
    EXPECT_EQ(undo("DIR\t1\t/app/d/\r\n"), -1);
    EXPECT_TRUE(files_.hasFile("/app/d/mine"));
    EXPECT_THAT(errors_, ElementsAre("FAILED to remove /app/d"));
}

TEST_F(UninstallerTest, WalksALogWithoutACountOfVariablesFromItsFirstLine) {
    files_.addFile("/app/a", "");
    openLog("FILE\tCREATE\t/app/a\r\nsomething else\r\n");
    EXPECT_EQ(uninstaller_.uninstallFromLog(ui_, ""), 0);
    EXPECT_FALSE(files_.hasFile("/app/a"));
}

TEST_F(UninstallerTest, DoesNotTakeVariablesForRecords) {
    files_.addFile("CREATE", "");
    openLog("x\r\ny\r\nNUMVARS\t2\r\nFILE\tCREATE\t/app/a\r\nVAR\tA\tb\r\nFILE\tCREATE\t/app/b\r\n");
    files_.addFile("/app/a", "");
    files_.addFile("/app/b", "");
    EXPECT_EQ(uninstaller_.uninstallFromLog(ui_, nullptr), 0);
    EXPECT_TRUE(files_.hasFile("/app/a"));
    EXPECT_FALSE(files_.hasFile("/app/b"));
}

TEST_F(UninstallerTest, UndoesALogThatIsCutAnywhereAsFarAsItGoes) {
    const std::string records =
        "DIR\t1\t/app/d/\r\nFILE\tCREATE\t/app/d/file\r\nENV\tADD\tPATH\t/"
        "app\r\nREGKEY\t1\tHKEY_USERS\tk\r\n";
    const std::string whole = "/app/install.xml\r\n/app/backup.bin\r\nNUMVARS\t1\r\nVAR\tA\tb\r\n" + records;
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        files_.addFile("/mine/file", "kept");
        files_.addFile("/app/d/file", "");
        openLog(whole.substr(0, length));
        state_ = {};
        uninstaller_.uninstallFromLog(ui_, nullptr);
        EXPECT_TRUE(files_.hasFile("/mine/file")) << length;
        EXPECT_TRUE(files_.hasFile("/app/install.log")) << length;
        const bool isNamed = length >= whole.find("/file\r\n") + 5;
        EXPECT_EQ(files_.hasFile("/app/d/file"), !isNamed) << length;
    }
}

TEST_F(UninstallerTest, LeavesDirectoriesInTheNameOfFilesAlone) {
    files_.addFile("/home/me/letter", "dear");
    EXPECT_EQ(undo("FILE\tCREATE\t/home/me\r\nFILE\tCREATE\t\r\nFILE\r\nDIR\r\nDIR\t99999999999\t/\r\n"), -1);
    EXPECT_EQ(files_.content("/home/me/letter"), "dear");
}

TEST_F(UninstallerTest, RunsItsActionsOnceAheadOfTheWalk) {
    describe("<PreUninstall><RunProgram>stop</RunProgram></PreUninstall>");
    openLog("a\r\n /app/my backup.bin \t\r\n");
    EXPECT_EQ(uninstaller_.PrepareUninstall(&ui_, nullptr), 0);
    EXPECT_EQ(state_.backupFileName.view(), " /app/my backup.bin");
    EXPECT_EQ(uninstaller_.PrepareUninstall(&ui_, "/other"), 0);
    EXPECT_EQ(uninstaller_.uninstallFromLog(ui_, "/other"), 0);
    EXPECT_EQ(state_.backupFileName.view(), " /app/my backup.bin");
    EXPECT_THAT(changes_.calls, ElementsAre("runAssociatedProgram(stop, null, 0, null, 0)"));
}

TEST_F(UninstallerTest, WarnsWithoutALogAndAnArchive) {
    uninstaller_.PrepareUninstall(&ui_, nullptr);
    EXPECT_TRUE(log_.hasLine(
        "WARNING: PrepareUninstall called without open action log and no specified backup file!"));
    EXPECT_EQ(uninstaller_.uninstallFromLog(ui_, nullptr), -1);
}

}  // namespace

#include "engine/uninstallation.h"

#include <gmock/gmock.h>

#include "engine/file_in_use.h"
#include "engine_fixture.h"
#include "package/backup_file.h"
#include "support/p_file_stream.h"
#include "support/text_mode.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class UninstallationTest : public EngineTest {
protected:
    UninstallationTest() {
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
    // Undoes a log with these records after its head.
    bool undo(const std::string& records) {
        openLog("/app/install.xml\r\n/app/backup.bin\r\nNUMVARS\t1\r\nVAR\tFILE\tCREATE\r\n" + records);
        return run();
    }
    bool run(const std::optional<std::string>& backupPath = std::nullopt) {
        Report report(&ui_, &errors_);
        return uninstallation_.run(log_file_.get(), backupPath, report);
    }
    void prepare(const std::optional<std::string>& backupPath = std::nullopt) {
        Report report(&ui_, &errors_);
        uninstallation_.prepare(log_file_.get(), backupPath, report);
    }
    std::string errorVariable() { return valueOf("ERR"); }
    // Puts `former` into the archive, as an installation does that replaces it by `installed`.
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
    std::vector<std::string> lines() const { return ui_.callsOf("addFileLine(\""); }

    std::unique_ptr<PFileStream> log_file_;
    Uninstallation uninstallation_{parts_};
};

TEST_F(UninstallationTest, DeletesTheFilesOfTheLogAndReportsEach) {
    files_.addFile("/app/a", "");
    EXPECT_TRUE(undo("FILE\tCREATE\t/app/a\r\nFILE\tCREATE\t/app/gone\r\nFILE\tOTHER\t/app/b\r\n"));
    EXPECT_FALSE(files_.hasFile("/app/a"));
    EXPECT_THAT(lines(),
                ElementsAre("addFileLine(\"Delete /app/a\", 1)", "addFileLine(\"Missing /app/gone\", 0)"));
    EXPECT_THAT(errors_, IsEmpty());
    EXPECT_EQ(errorVariable(), "(none)");
}

TEST_F(UninstallationTest, ShowsItsStepsInOrder) {
    EXPECT_TRUE(undo("ENV\tCREATE\tX\r\nDIR\t1\t/none/\r\n"));
    EXPECT_THAT(ui_.callsOf("set"),
                ElementsAre("setStatusText(\"Uninstalling\")", "setCurrentProgress(0)",
                            "setCurrentProgress(34)", "setCurrentProgress(67)", "setCurrentProgress(100)",
                            "setStatusText(\"Updating environment\")",
                            "setStatusText(\"The uninstall was successful.\")"));
    EXPECT_EQ(ui_.countOf("beginProgress"), 1);
    EXPECT_EQ(ui_.countOf("endProgress"), 1);
}

TEST_F(UninstallationTest, GoesOnAfterAFileThatCannotBeDeleted) {
    files_.addFile("/app/a", "");
    files_.addFile("/app/b", "");
    files_.failFrom(MemoryFileSystem::Operation::kRemoveFile, "/app/a", 1);
    EXPECT_FALSE(undo("FILE\tCREATE\t/app/a\r\nFILE\tCREATE\t/app/b\r\n"));
    EXPECT_FALSE(files_.hasFile("/app/b"));
    EXPECT_THAT(errors_, ElementsAre("FAILED to delete /app/a"));
    EXPECT_EQ(errorVariable(), "1");
    EXPECT_EQ(ui_.callsOf("setStatusText").back(),
              "setStatusText(\"There were errors during the uninstall.\")");
}

TEST_F(UninstallationTest, StopsAProgramWhoseFileCannotBeDeleted) {
    files_.addFile("/app/run.exe", "");
    files_.failAt(MemoryFileSystem::Operation::kRemoveFile, "/app/run.exe", 1);
    system_.runningFrom.insert("/app/run.exe");
    system_.looksBeforeEnd = 3;
    EXPECT_TRUE(undo("FILE\tCREATE\t/app/run.exe\r\n"));
    EXPECT_FALSE(files_.hasFile("/app/run.exe"));
    EXPECT_LE(system_.slept, FileInUse::kProgramEndMilliseconds + 100);
}

TEST_F(UninstallationTest, RestoresFormerContentAndKeepsIt) {
    backUp("/app/readme", "former", "installed");
    EXPECT_TRUE(undo("FILE\tOVER\t/app/readme\r\nFILE\tCREATE\t/app/backup.bin\r\n"));
    EXPECT_EQ(files_.content("/app/readme"), "former");
    EXPECT_FALSE(files_.hasFile("/app/backup.bin"));
}

TEST_F(UninstallationTest, DeletesRestorableFilesWhenTheArchiveIsGone) {
    files_.addFile("/app/readme", "installed");
    EXPECT_TRUE(undo("FILE\tOVER\t/app/readme\r\n"));
    EXPECT_FALSE(files_.hasFile("/app/readme"));
}

TEST_F(UninstallationTest, UsesTheArchiveThatItIsGiven) {
    backUp("/app/readme", "former", "installed");
    ASSERT_EQ(files_.moveFile("/app/backup.bin", "/app/other.bin"), 0);
    openLog("/app/install.xml\r\n/app/backup.bin\r\nNUMVARS\t0\r\nFILE\tOVER\t/app/readme\r\n");
    EXPECT_TRUE(run("/app/other.bin"));
    EXPECT_EQ(files_.content("/app/readme"), "former");
}

TEST_F(UninstallationTest, UndoesEditsBeforeAllOtherRecords) {
    files_.addFile("/app/f", "line\nadded\n");
    files_.addFile("/app/changes", "1\nline\n1\nadded\n");
    std::string edited;
    ui_.onCall = [&](const std::string& call) {
        if (call == "beginProgress()") {
            edited = files_.content("/app/f");
        }
    };
    EXPECT_TRUE(
        undo("FILE\tCREATE\t/app/f\r\nFILE\tCREATE\t/app/changes\r\n"
             "MODIFYFILE\tADDAFTER\t/app/f\t/app/changes\r\n"));
    EXPECT_EQ(edited, std::string("line") + OUtils::textLineEnd());
    EXPECT_FALSE(files_.hasFile("/app/f"));
}

TEST_F(UninstallationTest, FailsForAnEditThatCannotBeUndone) {
    EXPECT_FALSE(undo("MODIFYFILE\tADDAFTER\t/app/f\t/none\r\n"));
}

TEST_F(UninstallationTest, UndoesEachKindOfRecordAndKeysLast) {
    machine_.registry.addText(platform::RegistryRoot::kUsers, "first", "v", "x");
    machine_.registry.addKey(platform::RegistryRoot::kUsers, "second\\key");
    files_.addFile("/app/f.ini", "[s]\nk=v\n");
    files_.addFile("/m/l.lnk", "");
    EXPECT_TRUE(
        undo("REGKEY\t1\tHKEY_USERS\tfirst\r\nREGKEY\t2\tHKEY_USERS\tsecond\\key\r\n"
             "INI\tCREATE\t/app/f.ini\ts\tk\tv\r\nSHORTCUT\tCREATE\t/m/l.lnk\r\n"
             "FIREWALL\tAPP\t/app/s\r\nFIREWALL\tPORT\t80\tTCP;UDP\tName\r\n"
             "REGVAL\tHKEY_USERS\tfirst\tv\r\n"));
    EXPECT_FALSE(files_.hasFile("/m/l.lnk"));
    EXPECT_EQ(files_.content("/app/f.ini").find("k=v"), std::string::npos);
    EXPECT_THAT(machine_.registry.operations,
                ElementsAre("deleteValue HKU\\first:v", "deleteKey HKU\\second\\key", "deleteKey HKU\\second",
                            "deleteKey HKU\\first"));
}

TEST_F(UninstallationTest, FailsForNoRecordThatOnlyLeavesSomethingBehind) {
    EXPECT_TRUE(
        undo("ENV\tx\r\nINI\tx\r\nSHORTCUT\tx\r\nREGVAL\ta\tb\tc\r\nREGKEY\t1\tb\tc\r\nFIREWALL\tX\r\n"));
}

TEST_F(UninstallationTest, IgnoresRegistryRecordsOfAnotherForm) {
    EXPECT_TRUE(undo("REGKEY\t1\tHKEY_USERS\r\nREGVAL\ta\tb\tc\td\r\n"));
    EXPECT_TRUE(log_.hasLine("WARNING: (Dev) Wrong number of tokens in the install.log for REGKEY"));
    EXPECT_TRUE(log_.hasLine("WARNING: (Dev) Wrong number of tokens in the install.log for REGVAL"));
}

TEST_F(UninstallationTest, RemovesDirectoriesLastFirstAndAfterTheWildcards) {
    describe(
        "<UninstallWildcards><WC Dest='/app/d' DeleteDirs='1==2'>*.tmp</WC>"
        "<WC Dest='/app/d' Condition='1==2'>*</WC><WC Dest=''>*</WC></UninstallWildcards>");
    files_.addFile("/app/d/e/left.tmp", "");
    files_.addFile("/app/keep", "");
    EXPECT_TRUE(undo("DIR\t1\t/app/d\\\r\nDIR\t1\t/app/d/e\\\r\n"));
    EXPECT_FALSE(files_.hasDirectory("/app/d"));
    EXPECT_TRUE(files_.hasFile("/app/keep"));
    EXPECT_THAT(lines(),
                ElementsAre("addFileLine(\"Delete: /app/d/*.tmp\", 1)", "addFileLine(\"Delete: /*\", 0)",
                            "addFileLine(\"Remove /app/d/e\", 0)", "addFileLine(\"Remove /app/d\", 0)"));
    EXPECT_TRUE(log_.hasLine("WARNING: Nothing is cleaned in \"\" by \"*\""));
}

TEST_F(UninstallationTest, FailsForADirectoryThatHoldsForeignFiles) {
    files_.addFile("/app/d/mine", "");
    EXPECT_FALSE(undo("DIR\t1\t/app/d/\r\n"));
    EXPECT_TRUE(files_.hasFile("/app/d/mine"));
    EXPECT_THAT(errors_, ElementsAre("FAILED to remove /app/d"));
}

TEST_F(UninstallationTest, WalksALogWithoutACountOfVariablesFromItsFirstLine) {
    files_.addFile("/app/a", "");
    openLog("FILE\tCREATE\t/app/a\r\nsomething else\r\n");
    EXPECT_TRUE(run(""));
    EXPECT_FALSE(files_.hasFile("/app/a"));
}

TEST_F(UninstallationTest, TakesNoVariableForARecord) {
    files_.addFile("CREATE", "");
    openLog("x\r\ny\r\nNUMVARS\t2\r\nFILE\tCREATE\t/app/a\r\nVAR\tA\tb\r\nFILE\tCREATE\t/app/b\r\n");
    files_.addFile("/app/a", "");
    files_.addFile("/app/b", "");
    EXPECT_TRUE(run());
    EXPECT_TRUE(files_.hasFile("/app/a"));
    EXPECT_FALSE(files_.hasFile("/app/b"));
}

TEST_F(UninstallationTest, UndoesALogThatIsCutAnywhereAsFarAsItGoes) {
    const std::string records =
        "DIR\t1\t/app/d/\r\nFILE\tCREATE\t/app/d/file\r\nENV\tADD\tPATH\t/"
        "app\r\nREGKEY\t1\tHKEY_USERS\tk\r\n";
    const std::string whole = "/app/install.xml\r\n/app/backup.bin\r\nNUMVARS\t1\r\nVAR\tA\tb\r\n" + records;
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        files_.addFile("/mine/file", "kept");
        files_.addFile("/app/d/file", "");
        openLog(whole.substr(0, length));
        Report report(&ui_, &errors_);
        Uninstallation(parts_).run(log_file_.get(), std::nullopt, report);
        EXPECT_TRUE(files_.hasFile("/mine/file")) << length;
        EXPECT_TRUE(files_.hasFile("/app/install.log")) << length;
        const bool isNamed = length >= whole.find("/file\r\n") + 5;
        EXPECT_EQ(files_.hasFile("/app/d/file"), !isNamed) << length;
    }
}

TEST_F(UninstallationTest, LeavesDirectoriesAloneThatFileRecordsName) {
    files_.addFile("/home/me/letter", "dear");
    EXPECT_FALSE(undo("FILE\tCREATE\t/home/me\r\nFILE\tCREATE\t\r\nFILE\r\nDIR\r\nDIR\t99999999999\t/\r\n"));
    EXPECT_EQ(files_.content("/home/me/letter"), "dear");
}

TEST_F(UninstallationTest, RunsItsActionsOnceBeforeTheWalk) {
    describe("<PreUninstall><RunProgram>stop</RunProgram></PreUninstall>");
    openLog("a\r\n /app/my backup.bin \t\r\n");
    prepare();
    EXPECT_EQ(uninstallation_.backupPath(), " /app/my backup.bin");
    prepare("/other");
    EXPECT_TRUE(run("/other"));
    EXPECT_EQ(uninstallation_.backupPath(), " /app/my backup.bin");
    EXPECT_EQ(machine_.processes.started.size(), 1U);
}

TEST_F(UninstallationTest, WarnsWithoutALogAndAnArchive) {
    prepare();
    EXPECT_TRUE(log_.hasLine(
        "WARNING: PrepareUninstall called without open action log and no specified backup file!"));
    EXPECT_FALSE(run());
    EXPECT_TRUE(log_.hasLine("ERROR: There is no action log to uninstall from"));
    EXPECT_EQ(errorVariable(), "1");
}

}  // namespace

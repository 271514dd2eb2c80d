#include "engine/changes/file_change.h"

#include "engine/action_log_writer.h"
#include "engine/backup_restore.h"
#include "engine/changes/change_table.h"
#include "engine/changes/former_state.h"
#include "engine/installation_fixture.h"
#include "platform/error_text.h"

namespace {

using Operation = MemoryFileSystem::Operation;

class FileChangeTest : public InstallationTest {
protected:
    void describeFiles(const std::string& files) {
        describe(kUninstall + ("<FileSet Name='S'>" + files + "</FileSet>"));
    }
    std::vector<std::string> lines() {
        std::vector<std::string> found;
        for (const std::string& call : ui_.callsOf("addFileLine(\"")) {
            found.push_back(call.substr(13, call.rfind('"') - 13));
        }
        return found;
    }
};

TEST_F(FileChangeTest, InstallsFilesInListOrderAndRecordsThem) {
    pack({{"one", "one", "1"}, {"two", "two", "22"}});
    describeFiles("<FN Dest='/app'>two</FN><FN Dest='/app/sub'>one</FN>");
    EXPECT_TRUE(install());
    EXPECT_EQ(files_.content("/app/sub/one"), "1");
    EXPECT_EQ(files_.content("/app/two"), "22");
    EXPECT_EQ(installLog(),
              "/app/product.xml\r\n/app/backup.bin\r\nNUMVARS\t0\r\n"
              "DIR\t2\t/app/sub\\\r\nFILE\tCREATE\t/app/sub\\one\r\nFILE\tCREATE\t/app\\two\r\n");
    EXPECT_EQ(lines(), (std::vector<std::string>{"Create " + writtenPath("/app/sub\\one"),
                                                 "Create " + writtenPath("/app\\two")}));
    EXPECT_EQ(log_.lines(),
              std::vector<std::string>{"Running Files for installation tag: <AdditionalInstall>"});
}

TEST_F(FileChangeTest, WritesNothingOnASecondRunAndStillRecordsEachFile) {
    pack({{"one", "one", "1"}, {"two", "two", "22"}});
    describeFiles("<FN Dest='/app' BackupExisting='1'>two</FN><FN Dest='/app'>one</FN>");
    EXPECT_TRUE(install());
    files_.clearOperations();
    ui_.take();
    EXPECT_TRUE(install());
    EXPECT_EQ(installLog(),
              "/app/product.xml\r\n/app/backup.bin\r\nNUMVARS\t0\r\nDIR\t1\t/app\\\r\n"
              "FILE\tCREATE\t/app\\one\r\nFILE\tOVER\t/app\\two\r\n");
    EXPECT_EQ(lines(), (std::vector<std::string>{"Create " + writtenPath("/app\\one"),
                                                 "Create " + writtenPath("/app\\two")}));
    for (const std::string& operation : files_.operations()) {
        EXPECT_NE(operation, "truncate /app/one");
    }
    EXPECT_EQ(files_.content("/app/backup.bin").size(), 42U);  // an archive without entries
}

TEST_F(FileChangeTest, BacksUpADifferentFileThatIsToBeRestorable) {
    pack({{"one", "one", "new"}});
    describeFiles("<FN Dest='/app' BackupExisting='1'>one</FN>");
    files_.addFile("/app/one", "old content");
    EXPECT_TRUE(install());
    EXPECT_EQ(files_.content("/app/one"), "new");
    EXPECT_EQ(lines(), (std::vector<std::string>{"Back up " + writtenPath("/app\\one"),
                                                 "Overwrite " + writtenPath("/app\\one")}));
    EXPECT_NE(installLog().find("FILE\tOVER\t/app\\one\r\n"), std::string::npos);
    // The archive restores it, since the file on the disk is what the installation put there.
    EXPECT_EQ(restoreBackupFile("/app/backup.bin", files_, report_), RestoreResult::kDone);
    EXPECT_EQ(files_.content("/app/one"), "old content");
}

TEST_F(FileChangeTest, BringsTheUsersFileBackInThePlaceOfAnExpandedOne) {
    variables_.set("NAME", "value");
    pack({{"one", "one", "[NAME]"}});
    describeFiles("<FN Dest='/app' BackupExisting='1' ExpandVarsInFile='1'>one</FN>");
    files_.addFile("/app/one", "old content");
    EXPECT_TRUE(install());
    EXPECT_EQ(files_.content("/app/one"), "value");
    EXPECT_EQ(restoreBackupFile("/app/backup.bin", files_, report_), RestoreResult::kDone);
    EXPECT_EQ(files_.content("/app/one"), "old content");
}

TEST_F(FileChangeTest, RecordsAMissingRestorableFileAsOver) {
    pack({{"one", "one", "new"}});
    describeFiles("<FN Dest='/app' BackupExisting='1'>one</FN>");
    EXPECT_TRUE(install());
    EXPECT_NE(installLog().find("FILE\tOVER\t/app\\one\r\n"), std::string::npos);
    EXPECT_EQ(lines(), std::vector<std::string>{"Create " + writtenPath("/app\\one")});
}

TEST_F(FileChangeTest, OverwritesOtherFilesWithoutABackupAndRecordsThemAsCreated) {
    pack({{"one", "one", "new"}});
    describeFiles("<FN Dest='/app'>one</FN>");
    files_.addFile("/app/one", "old");
    EXPECT_TRUE(install());
    EXPECT_EQ(lines(), std::vector<std::string>{"Overwrite " + writtenPath("/app\\one")});
    EXPECT_NE(installLog().find("FILE\tCREATE\t/app\\one\r\n"), std::string::npos);
}

TEST_F(FileChangeTest, LeavesAFileThatCannotBeBackedUp) {
    pack({{"one", "one", "new"}, {"two", "two", "22"}});
    describeFiles("<FN Dest='/app'>two</FN><FN Dest='/app' BackupExisting='1'>one</FN>");
    files_.addFile("/app/one", "old");
    files_.failAt(Operation::kOpen, "/app/one", 3);  // the comparison, the test for an archive, the copy
    EXPECT_FALSE(install());
    EXPECT_EQ(files_.content("/app/one"), "old");
    EXPECT_EQ(files_.content("/app/two"), "22");
    EXPECT_EQ(errors_, (std::vector<std::string>{
                           "FAILED to back up " + writtenPath("/app\\one") + ": Error opening file",
                           "FAILED to Overwrite " + writtenPath("/app\\one")}));
    EXPECT_EQ(lines()[0], "FAILED to back up " + writtenPath("/app\\one") + ": Error opening file");
    // Without a record no uninstallation touches it either.
    EXPECT_EQ(installLog().find("/app\\one"), std::string::npos);
}

TEST_F(FileChangeTest, LeavesAFileThatCannotBeReadAndHasToBeBackedUp) {
    pack({{"one", "one", "new"}, {"two", "two", "new"}});
    describeFiles("<FN Dest='/app' BackupExisting='1'>two</FN><FN Dest='/app' BackupExisting='1'>one</FN>");
    files_.addFile("/app/one", "old");
    files_.addFile("/app/two", "old");
    files_.failFrom(Operation::kOpen, "/app/one", 1);
    EXPECT_FALSE(install());
    EXPECT_EQ(files_.content("/app/one"), "old");
    EXPECT_EQ(files_.content("/app/two"), "new");
    EXPECT_EQ(errors_[0], "FAILED to back up " + writtenPath("/app\\one") + ": Error opening file");
    EXPECT_EQ(ui_.callsOf("addMessage")[0], "addMessage(\"" + writtenPath("/app\\one") + ": " +
                                                platform::errorText(MemoryFileSystem::kAccessDenied) + "\")");
}

TEST_F(FileChangeTest, BacksUpAPathOnlyOnce) {
    pack({{"one", "one", "first"}, {"subone", "one", "second"}});
    describeFiles(
        "<FN Dest='/app' BackupExisting='1'>sub/one</FN><FN Dest='/app' BackupExisting='1'>one</FN>");
    files_.addFile("/app/one", "the user's");
    EXPECT_TRUE(install());
    EXPECT_EQ(restoreBackupFile("/app/backup.bin", files_, report_), RestoreResult::kDone);
    EXPECT_EQ(files_.content("/app/one"), "the user's");
}

TEST_F(FileChangeTest, FailsAFileThatItsRecordCannotHold) {
    const std::string name = std::string(250, 'n');
    pack({{"one", "one", "1"}, {name, name, "22"}});
    std::string directory = "/app";
    for (int i = 0; i < 7; ++i) {
        directory += "/" + std::string(115, 'd');
    }
    files_.addDirectory(directory);
    describeFiles("<FN Dest='/app'>one</FN><FN Dest='" + directory + "'>" + name + "</FN>");
    EXPECT_FALSE(install());
    EXPECT_EQ(files_.content("/app/one"), "1");
    ASSERT_EQ(errors_.size(), 1U);
    EXPECT_TRUE(errors_[0].starts_with("FAILED to Create /app/ddd"));
    EXPECT_EQ(installLog().find("ddd"), std::string::npos);
    for (const std::string& file : files_.allFiles()) {
        EXPECT_EQ(file.find("nnn"), std::string::npos) << file;
    }
}

TEST_F(FileChangeTest, ExpandsVariablesAndCountsTheFileAsDifferentAtEachRun) {
    variables_.set("NAME", "value");
    pack({{"one", "one", "a=[NAME]"}});
    describeFiles("<FN Dest='/app' ExpandVarsInFile='0'>one</FN>");
    EXPECT_TRUE(install());
    EXPECT_EQ(files_.content("/app/one"), "a=value");
    ui_.take();
    EXPECT_TRUE(install());
    EXPECT_EQ(lines(), std::vector<std::string>{"Overwrite " + writtenPath("/app\\one")});
}

TEST_F(FileChangeTest, LeavesAnExpandedFileWithoutReferencesAlone) {
    pack({{"one", "one", "plain"}});
    describeFiles("<FN Dest='/app' ExpandVarsInFile='1'>one</FN>");
    EXPECT_TRUE(install());
    ui_.take();
    EXPECT_TRUE(install());
    EXPECT_EQ(lines(), std::vector<std::string>{"Create " + writtenPath("/app\\one")});
}

TEST_F(FileChangeTest, LogsThatAFileIsMissingFromTheCabinet) {
    pack({{"one", "one", "1"}});
    describeFiles(
        "<FN Dest='/app'>one</FN><FN Dest='/app' OkIfMissing='1'>lost</FN><FN Dest='/app'>gone</FN>");
    EXPECT_FALSE(install());
    EXPECT_TRUE(log_.hasLine("ERROR: File missing from the compressed cabinet! (alias: gone)"));
    EXPECT_FALSE(log_.hasLine("ERROR: File missing from the compressed cabinet! (alias: lost)"));
    EXPECT_EQ(lines(), (std::vector<std::string>{
                           "ERROR: File missing from the compressed cabinet! (alias: gone)",
                           "Create " + writtenPath("/app\\one"), "Encountered errors during installation:",
                           "ERROR: File missing from the compressed cabinet! (alias: gone)"}));
    EXPECT_EQ(errors_, ErrorList{"ERROR: File missing from the compressed cabinet! (alias: gone)"});
    EXPECT_EQ(installLog().find("gone"), std::string::npos);
    EXPECT_EQ(installLog().find("lost"), std::string::npos);
}

TEST_F(FileChangeTest, GoesOnAfterAFileThatCannotBeWritten) {
    pack({{"one", "one", "1"}, {"two", "two", "22"}});
    describeFiles("<FN Dest='/app'>two</FN><FN Dest='/app'>one</FN>");
    files_.addDirectory("/app/one");
    EXPECT_FALSE(install());
    EXPECT_EQ(files_.content("/app/two"), "22");
    EXPECT_EQ(
        lines(),
        (std::vector<std::string>{
            "FAILED to Create " + writtenPath("/app\\one"), "Create " + writtenPath("/app\\two"),
            "Encountered errors during installation:", "FAILED to Create " + writtenPath("/app\\one")}));
    EXPECT_EQ(errors_, std::vector<std::string>{"FAILED to Create " + writtenPath("/app\\one")});
    // The record is written before the attempt, so that a part of a file is undone as well.
    EXPECT_NE(installLog().find("FILE\tCREATE\t/app\\one\r\n"), std::string::npos);
}

TEST_F(FileChangeTest, ReportsAReadOnlyFileThatCannotBeOverwritten) {
    pack({{"one", "one", "1"}});
    describeFiles("<FN Dest='/app'>one</FN>");
    files_.addFile("/app/one", "old");
    files_.setReadOnly("/app/one");
    EXPECT_FALSE(install());
    EXPECT_EQ(files_.content("/app/one"), "old");
    EXPECT_EQ(errors_, std::vector<std::string>{"FAILED to Overwrite " + writtenPath("/app\\one")});
}

TEST_F(FileChangeTest, FailsWhereADirectoryCannotBeCreated) {
    pack({{"one", "one", "1"}});
    describeFiles("<FN Dest='/app/sub/deep'>one</FN>");
    files_.failFrom(Operation::kCreateDirectory, "/app/sub/deep", 1);
    EXPECT_FALSE(install());
    EXPECT_NE(installLog().find("DIR\t3\t/app/sub/deep\\\r\n"), std::string::npos);
    EXPECT_EQ(errors_, std::vector<std::string>{"FAILED to Create " + writtenPath("/app/sub/deep\\one")});
}

TEST_F(FileChangeTest, MarksProgramsAlsoWhenTheyAreThereAlready) {
    pack({{"one", "one", "1"}, {"two", "two", "22"}});
    describeFiles("<FN Dest='/app' Executable='1'>two</FN><FN Dest='/app'>one</FN>");
    for (int run = 0; run < 2; ++run) {
        files_.clearOperations();
        EXPECT_TRUE(install());
        EXPECT_TRUE(files_.didOperation("makeExecutable /app/two"));
        EXPECT_FALSE(files_.didOperation("makeExecutable /app/one"));
    }
}

TEST_F(FileChangeTest, MarksNoProgramThatCouldNotBeWritten) {
    pack({{"two", "two", "22"}});
    describeFiles("<FN Dest='/app' Executable='1'>two</FN>");
    files_.addDirectory("/app/two");
    EXPECT_FALSE(install());
    EXPECT_FALSE(files_.didOperation("makeExecutable /app/two"));
}

TEST_F(FileChangeTest, FailsWhenAProgramCannotBeMarkedAndSaysWhy) {
    pack({{"two", "two", "22"}});
    describeFiles("<FN Dest='/app' Executable='1'>two</FN>");
    files_.failAt(Operation::kMakeExecutable, "/app/two", 1);
    EXPECT_FALSE(install());
    EXPECT_EQ(ui_.countOf("addMessage(\"" + writtenPath("/app\\two") + " could not be marked as a program: "),
              1);
    EXPECT_EQ(files_.content("/app/two"), "22");
    EXPECT_TRUE(log_.hasLine("WARNING: /app\\two could not be marked as a program"));
}

TEST_F(FileChangeTest, ReportsStatusProgressAndFlushes) {
    std::vector<Packed> packed;
    std::string files;
    for (int i = 0; i < 40; ++i) {
        const std::string name = "f" + std::to_string(i);
        packed.push_back({name, name, name});
        files = "<FN Dest='/app' Condition='" + std::string(i == 1 ? "1==2" : "1==1") + "'>" + name +
                "</FN>" + files;
    }
    pack(packed);
    describeFiles(files);
    EXPECT_TRUE(install());
    const std::vector<std::string> progress = ui_.callsOf("setCurrentProgress");
    ASSERT_EQ(progress.size(), 40U);  // 39 files and the end
    EXPECT_EQ(progress[0], "setCurrentProgress(0)");
    EXPECT_EQ(progress[1], "setCurrentProgress(5)");  // 2 of 40; the skipped one counts
    EXPECT_EQ(progress[2], "setCurrentProgress(8)");  // 7.5 rounded up
    EXPECT_EQ(progress[38], "setCurrentProgress(98)");
    EXPECT_EQ(ui_.callsOf("setStatusText")[0], "setStatusText(\"" + writtenPath("/app\\f0") + "\")");
    std::vector<std::string> flushed;
    for (const std::string& call : ui_.callsOf("addFileLine(\"")) {
        if (call.find("true") != std::string::npos || call.find(", 1)") != std::string::npos) {
            flushed.push_back(call.substr(13, call.rfind('"') - 13));
        }
    }
    EXPECT_EQ(flushed, (std::vector<std::string>{"Create " + writtenPath("/app\\f0"),
                                                 "Create " + writtenPath("/app\\f32")}));
}

TEST_F(FileChangeTest, StopsARunningProgramButNotALibrary) {
    pack({{"tool.exe", "tool.exe", "new"}, {"lib.dll", "lib.dll", "new"}});
    describeFiles("<FN Dest='/app'>tool.exe</FN><FN Dest='/app'>lib.dll</FN>");
    files_.addFile("/app/tool.exe", "old");
    files_.addFile("/app/lib.dll", "old");
    files_.failAt(Operation::kReplaceFile, "", 1, 32);  // the program, until it has ended
    files_.failAt(Operation::kReplaceFile, "", 3, 32);  // the library
    system_.running = {"tool.exe", "lib.dll"};
    EXPECT_FALSE(install());
    EXPECT_EQ(files_.content("/app/tool.exe"), "new");
    EXPECT_EQ(errors_, std::vector<std::string>{"FAILED to Overwrite " + writtenPath("/app\\lib.dll")});
}

TEST_F(FileChangeTest, NoticesThatTheDiskFillsUpInTheMiddleOfAFile) {
    pack({{"big", "big", std::string(5000, 'x')}, {"small", "small", "s"}});
    describeFiles("<FN Dest='/app'>small</FN><FN Dest='/app'>big</FN>");
    files_.addDirectory("/app");
    ui_.onCall = [this](const std::string& call) {
        if (call == "setStatusText(\"" + writtenPath("/app\\big") + "\")") {
            files_.setFreeSpace(1000);
        } else if (call == "setStatusText(\"" + writtenPath("/app\\small") + "\")") {
            files_.setFreeSpace(-1);
        }
    };
    EXPECT_FALSE(install());
    EXPECT_EQ(errors_, std::vector<std::string>{"FAILED to Create " + writtenPath("/app\\big")});
    const std::vector<std::string> reasons = ui_.callsOf("addMessage");
    ASSERT_EQ(reasons.size(), 1U);
    EXPECT_TRUE(reasons[0].starts_with("addMessage(\"" + writtenPath("/app\\big") + ": ")) << reasons[0];
    EXPECT_EQ(files_.content("/app/small"), "s");
    EXPECT_NE(installLog().find("FILE\tCREATE\t/app\\small\r\n"), std::string::npos);
}

TEST_F(FileChangeTest, NeedsNoFrontEndAndNoErrorList) {
    pack({{"one", "one", "1"}});
    describeFiles("<FN Dest='/app'>one</FN><FN Dest='/app'>gone</FN>");
    Report report(nullptr, nullptr);
    EXPECT_FALSE(installation_.run(report));
    EXPECT_EQ(files_.content("/app/one"), "1");
}

// Undoes one record.
class FileUndoTest : public EngineTest {
protected:
    bool undo(std::string_view fields, std::string_view former = {}) {
        return change_.undo({"FILE", fields, former});
    }

    PFileConsole logFile_{files_};
    ActionLogWriter writer_{logFile_};
    ChangeJob job_{parts_, writer_, report_};
    FileChange change_{job_.context, parts_, job_.replaced};
};

TEST_F(FileUndoTest, DeletesTheFileAndReportsIt) {
    files_.addFile("/app/a", "");
    EXPECT_TRUE(undo("CREATE\t/app/a"));
    EXPECT_FALSE(files_.hasFile("/app/a"));
    EXPECT_EQ(ui_.calls,
              (std::vector<std::string>{"pumpEventsWhileCopying()", "addFileLine(\"Delete /app/a\", 1)"}));
}

TEST_F(FileUndoTest, ReportsAMissingFileAndSucceeds) {
    EXPECT_TRUE(undo("CREATE\t/app/gone"));
    EXPECT_EQ(ui_.countOf("addFileLine(\"Missing /app/gone\""), 1);
    EXPECT_TRUE(errors_.empty());
}

TEST_F(FileUndoTest, FailsForAFileThatStays) {
    files_.addFile("/app/a", "");
    files_.failFrom(Operation::kRemoveFile, "/app/a", 1);
    EXPECT_FALSE(undo("CREATE\t/app/a"));
    EXPECT_EQ(errors_, ErrorList{"FAILED to delete /app/a"});
    EXPECT_EQ(ui_.callsOf("addMessage(\"/app/a: ").size(), 1U);
    EXPECT_TRUE(ui_.calls.back().starts_with("addMessage"));  // after the line of the failure
}

TEST_F(FileUndoTest, LeavesWhatBelongsToTheArchive) {
    files_.addFile("/app/a", "former");
    EXPECT_TRUE(undo("OVER\t/app/a"));
    EXPECT_TRUE(files_.hasFile("/app/a"));
    EXPECT_TRUE(ui_.calls.empty());
}

TEST_F(FileUndoTest, LeavesAnyLinkWhereOneWasReplaced) {
    files_.addLink("/app/again", "/elsewhere");
    files_.addFile("/app/ours", "installed");
    const std::string former = "LINK" + FormerState::ofBytes("/somewhere");
    EXPECT_TRUE(undo("CREATE\t/app/again", former));
    EXPECT_TRUE(undo("CREATE\t/app/ours", former));
    EXPECT_EQ(files_.linkTarget("/app/again"), "/elsewhere");
    EXPECT_FALSE(files_.exists("/app/ours"));
}

TEST_F(FileUndoTest, NamesWhatStaysWithoutAnArchive) {
    files_.addFile("/app/a", "");
    job_.replaced.isArchiveMissing = true;
    EXPECT_TRUE(undo("OVER\t/app/a"));
    EXPECT_TRUE(undo("OVER\t/app/gone"));
    EXPECT_TRUE(files_.hasFile("/app/a"));
    EXPECT_EQ(ui_.calls, std::vector<std::string>{"addFileLine(\"Left /app/a\", 1)"});
}

TEST_F(FileUndoTest, DeletesWithoutAnArchiveWhatIsStillInstalled) {
    const std::string content(300000, 'x');  // more than one block
    for (const char* const path : {"/app/same", "/app/other", "/app/longer", "/app/unknown"}) {
        files_.addFile(path, content);
        if (std::string_view(path) != "/app/unknown") {
            job_.replaced.written.add(path, md5Of(content.data(), content.size()));
        }
    }
    files_.addFile("/app/other", "changed");
    files_.addFile("/app/longer", content + "y");
    job_.replaced.isArchiveMissing = true;
    for (const char* const path : {"/app/same", "/app/other", "/app/longer", "/app/unknown"}) {
        EXPECT_TRUE(undo(std::string("OVER\t") + path));
        EXPECT_EQ(files_.hasFile(path), std::string_view(path) != "/app/same") << path;
    }
}

TEST_F(FileUndoTest, LeavesWithoutAnArchiveWhatCannotBeCompared) {
    files_.addFile("/app/a", "x");
    files_.addFile("/app/target", "x");
    files_.addLink("/app/link", "/app/target");
    for (const char* const path : {"/app/a", "/app/link"}) {
        job_.replaced.written.add(path, md5Of("x", 1));
    }
    job_.replaced.isArchiveMissing = true;
    files_.failFrom(Operation::kRead, "/app/a", 1);
    EXPECT_TRUE(undo("OVER\t/app/a"));
    EXPECT_TRUE(undo("OVER\t/app/link"));
    EXPECT_TRUE(files_.hasFile("/app/a"));
    EXPECT_TRUE(files_.exists("/app/link"));
}

TEST_F(FileUndoTest, GivesThePathOfAFileThatItWouldDelete) {
    EXPECT_EQ(FileChange::createdFile({"FILE", "CREATE\t/app/a"}), "/app/a");
    EXPECT_EQ(FileChange::createdFile({"FILE", "OVER\t/app/a"}), "");
    EXPECT_EQ(FileChange::createdFile({"FILE", ""}), "");
    EXPECT_EQ(FileChange::replacedFile({"FILE", "OVER\t/app/a"}), "/app/a");
    EXPECT_EQ(FileChange::replacedFile({"FILE", "CREATE\t/app/a"}), "");
}

TEST_F(FileUndoTest, IgnoresRecordsOfAnotherForm) {
    files_.addFile("/app/a", "");
    for (const char* fields : {"OTHER\t/app/a", "CREATE\t", "CREATE", ""}) {
        EXPECT_TRUE(undo(fields));
    }
    EXPECT_TRUE(files_.hasFile("/app/a"));
    EXPECT_TRUE(ui_.calls.empty());
}

TEST_F(FileChangeTest, HasTheFormerContentOnTheDiskBeforeItReplacesAFile) {
    pack({{"one", "one", "new"}, {"two", "two", "new"}});
    describeFiles("<FN Dest='/app' BackupExisting='1'>one</FN><FN Dest='/app' BackupExisting='1'>two</FN>");
    files_.addFile("/app/one", "old one");
    files_.addFile("/app/two", "old two");
    int looked = 0;
    for (const char* const name : {"two", "one"}) {
        files_.runBefore(Operation::kReplaceFile, "/app/.tandrel-1.tmp", ++looked, [&, name] {
            EXPECT_NE(files_.content("/tmp/orinstall2").find(std::string("old ") + name), std::string::npos);
            EXPECT_NE(files_.content("/tmp/orinstall1").find(std::string("FILE\tOVER\t/app\\") + name),
                      std::string::npos);
            EXPECT_TRUE(files_.didOperation("flush /tmp/orinstall2"));
        });
    }
    EXPECT_TRUE(install());
    EXPECT_EQ(files_.content("/app/two"), "new");
}

TEST_F(FileChangeTest, ReplacesNoFileWhoseFormerContentDoesNotReachTheDisk) {
    pack({{"one", "one", "new"}, {"two", "two", "new"}});
    describeFiles("<FN Dest='/app'>two</FN><FN Dest='/app' BackupExisting='1'>one</FN>");
    files_.addFile("/app/one", "old content");
    files_.failAt(Operation::kFlush, "/tmp/orinstall2", 1);
    EXPECT_FALSE(install());
    EXPECT_EQ(files_.content("/app/one"), "old content");
    EXPECT_EQ(files_.content("/app/two"), "new");
    EXPECT_EQ(lines()[0], "FAILED to back up " + writtenPath("/app\\one") + ": Error writing to the disk");
}

TEST_F(FileChangeTest, WritesNoFileWhoseRecordCannotBeWritten) {
    pack({{"one", "one", "new"}, {"two", "two", "new"}});
    describeFiles("<FN Dest='/app'>two</FN><FN Dest='/app'>one</FN>");
    files_.addFile("/app/one", "old content");
    // After the lines of the head.
    files_.failAt(Operation::kWrite, "/tmp/orinstall1", 4);
    EXPECT_FALSE(install());
    EXPECT_EQ(files_.content("/app/one"), "old content");
    EXPECT_EQ(files_.content("/app/two"), "new");
    EXPECT_EQ(
        ui_.countOf("addMessage(\"" + writtenPath("/app\\one") + ": the action log can't take its record"),
        1);
    EXPECT_EQ(installLog().find("/app\\one"), std::string::npos);
}

TEST_F(FileChangeTest, SaysWhatItReplacesForGood) {
    pack({{"one", "one", "new"}, {"two", "two", "same"}, {"three", "three", "[NAME]"}});
    describeFiles(
        "<FN Dest='/app'>one</FN><FN Dest='/app'>two</FN><FN Dest='/app' ExpandVarsInFile='1'>three</FN>");
    variables_.set("NAME", "value");
    files_.addFile("/app/one", "abc");
    files_.addFile("/app/two", "same");
    files_.addFile("/app/three", "value");
    EXPECT_TRUE(install());
    EXPECT_NE(
        installLog().find("\r\nBEFORE\t900150983cd24fb0d6963f7d28e17f72\r\nFILE\tCREATE\t/app\\one\r\n"),
        std::string::npos);
    EXPECT_EQ(installLog().find("BEFORE"), installLog().rfind("BEFORE"));
}

TEST_F(FileChangeTest, SaysNothingOfItsOwnFilesThatANewVersionReplaces) {
    pack({{"one", "one", "new"}});
    describeFiles("<FN Dest='/app'>one</FN>");
    files_.addFile("/app/one", "old");
    files_.addFile("/app/install.log", "/app/product.xml\r\n\r\nNUMVARS\t0\r\nFILE\tCREATE\t/app\\one\r\n");
    EXPECT_TRUE(install());
    EXPECT_EQ(installLog().find("BEFORE"), std::string::npos);
}

}  // namespace

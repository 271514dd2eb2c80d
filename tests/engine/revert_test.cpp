#include "engine/revert.h"

#include <gmock/gmock.h>

#include "engine/installed_files_backup.h"
#include "engine/uninstallation.h"
#include "engine/work_notes.h"
#include "engine_fixture.h"
#include "package/backup_file.h"
#include "platform/error_text.h"
#include "support/utilities.h"

namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;

// An installation in /app whose log is /app/install.log, made over version 1 of it.
class RevertTest : public EngineTest {
protected:
    RevertTest() {
        describe(
            "<InstallerControlVariables><UninstallError>ERR</UninstallError></InstallerControlVariables>"
            "<ProductDesc><Fullname>Demo</Fullname></ProductDesc>");
    }

    // The backup of an application that had these files below `directory`.
    UninstallBackup backUp(const std::string& name, const std::string& directory,
                           const std::vector<std::pair<std::string, std::string>>& content) {
        std::string log = "/x\r\n/y\r\nNUMVARS\t0\r\nDIR\t1\t" + directory + "/\r\n";
        for (const auto& [file, text] : content) {
            files_.addFile(file, text);
            log += "FILE\tCREATE\t" + file + "\r\n";
        }
        files_.addFile("/tmp/old.log", log);
        const UninstallBackup backup = {name, "/tmp/" + name + ".bin", "/tmp/" + name + ".dirs"};
        InstalledFilesBackup saved(
            files_, [this] { return system_.temporaryFileName(); }, report_, DebugLog());
        EXPECT_TRUE(saved.make("/tmp/old.log", backup));
        for (const auto& [file, text] : content) {
            files_.removeFile(file);
        }
        files_.removeDirectory(directory);
        files_.removeFile("/tmp/old.log");
        ui_.take();
        errors_.clear();
        backups_.uninstallBackups.push_back(backup);
        return backup;
    }
    // Publishes a log with these records.
    void publish(const std::string& records) {
        files_.addFile("/app/install.log", "/app/product.xml\r\n/app/backup.bin\r\nNUMVARS\t0\r\n" + records);
    }
    bool revertInstallation(const std::string& log = "/app/install.log") {
        Report report(&ui_, &errors_);
        return revert_.revertInstallation(log, undo_, report);
    }
    bool revertUninstallation() {
        Report report(&ui_, &errors_);
        return revert_.revertUninstallation(report);
    }
    bool hasTemporary(const std::string& part) const {
        for (const std::string& path : files_.allFiles()) {
            if (path.find("/tmp/" + part) == 0) {
                return true;
            }
        }
        return false;
    }

    RemovalBackups backups_{machine_.bundle()};
    Uninstallation undo_{parts_};
    Revert revert_{parts_, backups_};
};

TEST_F(RevertTest, UndoesWhatTheSessionInstalled) {
    files_.addFile("/app/tool", "new");
    publish("FILE\tCREATE\t/app/tool\r\n");
    EXPECT_TRUE(revertInstallation());
    EXPECT_FALSE(files_.hasFile("/app/tool"));
    EXPECT_EQ(log_.lines()[0], "Reverting installation!");
    EXPECT_TRUE(log_.hasLine("Uninstalling current installation (Revert)"));
    EXPECT_TRUE(log_.hasLine("Reverting uninstallation"));
    EXPECT_FALSE(hasTemporary("orinstall"));
}

TEST_F(RevertTest, LeavesNoRecordsOfWhatItUndid) {
    publish("");
    BackupFile archive(files_);
    ASSERT_TRUE(archive.openForWriting("/app/backup.bin"));
    ASSERT_EQ(archive.close(), 0);
    EXPECT_TRUE(revertInstallation());
    EXPECT_FALSE(files_.hasFile("/app/install.log"));
    EXPECT_FALSE(files_.hasFile("/app/backup.bin"));
}

TEST_F(RevertTest, RestoresWhatWasReplacedFromTheArchiveOfItsLog) {
    undo_.prepare(nullptr, std::nullopt, report_);  // a page before the installation
    files_.addDirectory("/app");
    files_.addFile("/mine/letter", "new");
    BackupFile archive(files_);
    const std::uint32_t sum = archive.fileCheckSum("/mine/letter");
    files_.addFile("/mine/letter", "dear");
    ASSERT_TRUE(archive.openForWriting("/app/backup.bin"));
    ASSERT_EQ(archive.addFile("/mine/letter", sum), std::nullopt);
    ASSERT_EQ(archive.close(), 0);
    files_.addFile("/mine/letter", "new");
    publish("FILE\tOVER\t/mine/letter\r\n");
    EXPECT_TRUE(revertInstallation());
    EXPECT_EQ(files_.content("/mine/letter"), "dear");
}

TEST_F(RevertTest, OnlyUnpacksWhereNoLogWasPublished) {
    backUp("Demo", "/app", {{"/app/tool", "old"}});
    EXPECT_FALSE(revertInstallation(""));
    EXPECT_EQ(files_.content("/app/tool"), "old");
    EXPECT_FALSE(log_.hasLine("Uninstalling current installation (Revert)"));
}

TEST_F(RevertTest, FailsWithoutALogAndABackup) {
    EXPECT_FALSE(revertInstallation(""));
    EXPECT_FALSE(revertInstallation("/app/none.log"));
}

TEST_F(RevertTest, BringsTheEarlierVersionBackAfterTheNewOneHasGone) {
    backUp("Demo", "/app", {{"/app/tool", "old"}, {"/app/bin/more", "old too"}});
    files_.addFile("/app/tool", "new");
    publish("DIR\t1\t/app/\r\nFILE\tCREATE\t/app/tool\r\n");
    backups_.isOnlyCopy = true;
    EXPECT_FALSE(revertInstallation());
    EXPECT_EQ(files_.content("/app/tool"), "old");
    EXPECT_FALSE(backups_.isOnlyCopy);
    EXPECT_TRUE(log_.hasLine("Unpacking backup of previous installation and legacy applications"));
    EXPECT_TRUE(log_.hasLine("Unpacking backup for application: \"Demo\""));
}

TEST_F(RevertTest, HasNothingToDoWithoutBackups) {
    EXPECT_TRUE(revertUninstallation());
    EXPECT_EQ(log_.lines(), std::vector<std::string>{"Reverting uninstallation"});
}

TEST_F(RevertTest, MakesTheDirectoriesAgain) {
    const UninstallBackup backup = backUp("Demo", "/app", {{"/app/tool", "old"}});
    files_.addFile(backup.directoriesPath, "/app/a/b/\r\n/app/empty/\r\n");
    EXPECT_FALSE(revertUninstallation());
    EXPECT_TRUE(files_.hasDirectory("/app/a/b"));
    EXPECT_TRUE(files_.hasDirectory("/app/empty"));
}

TEST_F(RevertTest, GoesOnWithTheNextApplicationWithoutAListOfDirectories) {
    const UninstallBackup first = backUp("One", "/one", {{"/one/a", "1"}});
    backUp("Two", "/two", {{"/two/a", "2"}});
    files_.removeFile(first.directoriesPath);
    backups_.isOnlyCopy = true;
    EXPECT_FALSE(revertUninstallation());
    EXPECT_FALSE(files_.hasFile("/one/a"));
    EXPECT_EQ(files_.content("/two/a"), "2");
    EXPECT_TRUE(log_.hasLine("ERROR: Could not open backup dirs file (" + first.directoriesPath + ")!"));
    EXPECT_TRUE(backups_.isOnlyCopy);
}

TEST_F(RevertTest, SkipsAnEntryWithoutAllItsTexts) {
    backups_.uninstallBackups = {{"", "/tmp/a", "/tmp/d"}, {"One", "", "/tmp/d"}, {"One", "/tmp/a", ""}};
    EXPECT_TRUE(revertUninstallation());
    EXPECT_FALSE(log_.hasLine("Unpacking backup for application: \"One\""));
}

TEST_F(RevertTest, SaysThatAnArchiveCannotBeUnpacked) {
    const UninstallBackup backup = backUp("Demo", "/app", {{"/app/tool", "old"}});
    files_.addFile(backup.archivePath, "damaged");
    backups_.isOnlyCopy = true;
    EXPECT_TRUE(revertUninstallation());
    EXPECT_TRUE(log_.hasLine("ERROR: Unpacking backup file (" + backup.archivePath + ")!"));
    EXPECT_TRUE(backups_.isOnlyCopy);
}

TEST_F(RevertTest, LeavesAFileThatSomebodyHasPutThereSince) {
    backUp("Demo", "/app", {{"/app/tool", "old"}});
    files_.addFile("/app/tool", "somebody's");
    revertUninstallation();
    EXPECT_TRUE(backups_.isOnlyCopy);
    EXPECT_EQ(files_.content("/app/tool"), "somebody's");
    EXPECT_THAT(ui_.callsOf("addFileLine(\"Left"), testing::SizeIs(1));
    EXPECT_TRUE(files_.hasFile("/tmp/Demo.bin"));
}

TEST_F(RevertTest, CopiesArchivesBack) {
    backUp("Demo", "/app", {{"/app/tool", "old"}});
    files_.addFile("/tmp/nested", "archive");
    backups_.nestedBackups = {{"/app/backup.bin", "/tmp/nested"}};
    revertUninstallation();
    EXPECT_EQ(files_.content("/app/backup.bin"), "archive");
}

TEST_F(RevertTest, SaysWhichArchiveItCannotCopyBack) {
    backUp("Demo", "/app", {{"/app/tool", "old"}});
    backups_.nestedBackups = {{"/app/backup.bin", "/tmp/none"}};
    revertUninstallation();
    EXPECT_THAT(ui_.callsOf("addMessage"),
                Contains("addMessage(\"FAILED to restore " + writtenPath("/app/backup.bin") + "\")"));
    EXPECT_TRUE(backups_.isOnlyCopy);
}

TEST_F(RevertTest, TakesBackWhatTheJournalKnows) {
    files_.addFile("/app/tool", "old");
    files_.addFile("/app/backup.bin", "old archive");
    const platform::Platform machine = backups_.openMachine();
    machine.files.removeFile("/app/tool");
    machine.files.removeFile("/app/backup.bin");
    machine.files.removeDirectory("/app");
    EXPECT_FALSE(revertUninstallation());
    EXPECT_EQ(files_.content("/app/tool"), "old");
    EXPECT_EQ(files_.content("/app/backup.bin"), "old archive");
    EXPECT_FALSE(backups_.isOnlyCopy);
}

// The removal gave the user's file back, whose place is wanted again.
TEST_F(RevertTest, UnpacksOverWhatTheRemovalPutInThePlace) {
    backUp("Demo", "/app", {{"/app/shared", "old"}});
    files_.addFile("/app/shared", "old");
    const platform::Platform machine = backups_.openMachine();
    backups_.journal().noteArchived({"/app/shared"});
    OUtils::writeWholeFile("/app/shared", "the user's", machine.files);
    EXPECT_FALSE(revertUninstallation());
    EXPECT_EQ(files_.content("/app/shared"), "old");
    EXPECT_FALSE(backups_.isOnlyCopy);
}

// The copy is for later runs; this one has the log.
TEST_F(RevertTest, UndoesWhatItCannotCopyTheLogOf) {
    backUp("Demo", "/app", {{"/app/tool", "old"}});
    files_.addFile("/app/tool", "new");
    publish("FILE\tCREATE\t/app/tool\r\n");
    system_.temporaryNamesLeft = 0;
    EXPECT_FALSE(revertInstallation());
    EXPECT_TRUE(log_.hasLine("ERROR: Unable to copy the installation log file for temporary use ()!"));
    EXPECT_EQ(files_.content("/app/tool"), "old");
    EXPECT_FALSE(backups_.isOnlyCopy);
}

TEST_F(RevertTest, SaysThatNothingRecordsWhatItCouldNotUndo) {
    backUp("Demo", "/app", {{"/app/tool", "old"}});
    files_.addFile("/app/sub/mine", "");
    publish("DIR\t1\t/app/sub/\r\n");
    system_.temporaryNamesLeft = 0;
    EXPECT_FALSE(revertInstallation());
    EXPECT_EQ(files_.content("/app/tool"), "old");
    EXPECT_THAT(ui_.callsOf("addMessage"), Contains(HasSubstr("There is no record of what could not")));
}

TEST_F(RevertTest, TouchesNothingWhenSomethingThatItNeedsCannotBeRead) {
    const UninstallBackup backup = backUp("Demo", "/app", {{"/app/tool", "old"}});
    files_.addFile("/app/tool", "new");
    files_.addFile("/app/backup.bin", "an archive");
    publish("FILE\tCREATE\t/app/tool\r\n");
    backups_.openMachine();
    const std::string journal = backups_.journal().directory() + "/journal";
    using Operation = MemoryFileSystem::Operation;
    for (const std::string& path : {std::string("/app/install.log"), std::string("/app/backup.bin"), journal,
                                    backup.archivePath, backup.directoriesPath}) {
        for (const Operation operation : {Operation::kOpen, Operation::kRead}) {
            ui_.take();
            files_.failAt(operation, path, 1);
            EXPECT_FALSE(revertInstallation()) << path;
            EXPECT_EQ(files_.content("/app/tool"), "new") << path;
            EXPECT_TRUE(files_.hasFile("/app/install.log"));
            EXPECT_TRUE(backups_.isOnlyCopy);
            EXPECT_TRUE(backups_.isToBeContinued);
            EXPECT_THAT(ui_.callsOf("addMessage"),
                        Contains(HasSubstr(platform::errorText(MemoryFileSystem::kAccessDenied))))
                << path;
            EXPECT_THAT(ui_.callsOf("addMessage"),
                        Contains("addMessage(\"Nothing is taken back now. The same setup, run again, tries "
                                 "once more.\")"));
        }
    }
    EXPECT_FALSE(revertInstallation());
    EXPECT_EQ(files_.content("/app/tool"), "old");
    EXPECT_FALSE(backups_.isOnlyCopy);
}

TEST_F(RevertTest, LeavesWhatCannotComeBackToTheNextRun) {
    backUp("Demo", "/app", {{"/app/tool", "old"}});
    backups_.openMachine();
    files_.setReadOnly("/app/tool", 13);
    EXPECT_FALSE(revertUninstallation());
    EXPECT_TRUE(backups_.isOnlyCopy);
    EXPECT_TRUE(backups_.isToBeContinued);
    const std::string directory = backups_.journal().directory();
    backups_.release();
    RemovalBackups next(machine_.bundle());
    ASSERT_TRUE(next.resume(directory));
    EXPECT_NE(WorkNotes(next.journal()).read().stage, WorkStage::kEnded);
    EXPECT_EQ(WorkNotes(next.journal()).read().attempts, 1);
}

TEST_F(RevertTest, LeavesTheRecordsOfWhatItCouldNotUndo) {
    files_.addFile("/app/sub/mine", "");
    publish("DIR\t1\t/app/sub/\r\n");
    EXPECT_FALSE(revertInstallation());
    EXPECT_TRUE(files_.hasFile("/app/install.log"));
    EXPECT_FALSE(hasTemporary("orinstall"));
}

TEST_F(RevertTest, KeepsTheRecordsOfWhatItCouldNotUndoApartFromThoseThatComeBack) {
    backUp("Demo", "/app", {{"/app/install.log", "log of version 1"}});
    files_.addFile("/app/sub/mine", "");
    publish("DIR\t1\t/app/sub/\r\n");
    EXPECT_FALSE(revertInstallation());
    EXPECT_EQ(files_.content("/app/install.log"), "log of version 1");
    EXPECT_THAT(ui_.callsOf("addMessage"),
                Contains("addMessage(\"What could not be taken back of the new version is recorded in " +
                         writtenPath("/tmp/orinstall1") + "\")"));
    EXPECT_THAT(files_.content("/tmp/orinstall1"), HasSubstr("/app/sub/"));
}

// A file of the user keeps the walk from its end.
TEST_F(RevertTest, AWalkThatFailsLeavesNothingInThePlacesOfWhatComesBack) {
    backUp("Demo", "/app", {{"/app/edit.txt", "script of version 1"}, {"/app/product.xml", "version 1"}});
    files_.addFile("/mine/text", "mine\n");
    files_.addFile("/app/edit.txt", "1\nmissing\n1\nadded by version 2\n");
    files_.addFile("/app/product.xml", "version 2");
    files_.addFile("/app/sub/mine", "");
    publish(
        "DIR\t1\t/app/sub/\r\nFILE\tCREATE\t/app/edit.txt\r\nFILE\tCREATE\t/app/product.xml\r\n"
        "MODIFYFILE\tADDAFTER\t/mine/text\t/app/edit.txt\r\n");
    EXPECT_FALSE(revertInstallation());
    EXPECT_EQ(files_.content("/app/edit.txt"), "script of version 1");
    EXPECT_EQ(files_.content("/app/product.xml"), "version 1");
    EXPECT_FALSE(backups_.isOnlyCopy);
}

TEST_F(RevertTest, AWalkThatFailsKeepsWhatTheNewVersionHadReplaced) {
    backUp("Demo", "/app", {{"/app/tool", "old"}});
    files_.addDirectory("/app");
    BackupFile archive(files_);
    ASSERT_TRUE(archive.openForWriting("/app/backup.bin"));
    ASSERT_EQ(archive.close(), 0);
    const std::string content = files_.content("/app/backup.bin");
    files_.addFile("/app/sub/mine", "");
    publish("DIR\t1\t/app/sub/\r\nFILE\tCREATE\t/app/backup.bin\r\n");
    EXPECT_FALSE(revertInstallation());
    EXPECT_THAT(ui_.callsOf("addMessage"), Contains(HasSubstr("What the new version had replaced is in")));
    bool isKept = false;
    for (const std::string& path : files_.allFiles()) {
        isKept = isKept || (path.starts_with("/tmp/orinstall") && files_.content(path) == content);
    }
    EXPECT_TRUE(isKept);
}

}  // namespace

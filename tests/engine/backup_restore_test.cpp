#include "engine/backup_restore.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "engine/report.h"
#include "fakes/recording_ui.h"
#include "package/backup_file.h"
#include "platform/memory/memory_file_system.h"

namespace {

constexpr const char* kArchive = "/p/backup";

class BackupRestoreTest : public testing::Test {
protected:
    BackupRestoreTest() { files_.addDirectory("/p"); }
    // Backs up the files, then changes them to "new", as an installation does.
    void backUp(const std::vector<std::string>& paths) {
        BackupFile archive(files_);
        ASSERT_TRUE(archive.openForWriting(kArchive));
        for (const std::string& path : paths) {
            files_.addFile(path, "new");
            const std::uint32_t checkSum = archive.fileCheckSum(path);
            files_.addFile(path, "old");
            ASSERT_EQ(archive.addFile(path, checkSum), std::nullopt);
            files_.addFile(path, "new");
        }
        ASSERT_EQ(archive.close(), 0);
    }
    RestoreResult restore() { return restoreBackupFile(kArchive, files_, report_); }

    MemoryFileSystem files_;
    RecordingUI ui_;
    ErrorList errors_;
    Report report_{&ui_, &errors_};
};

TEST_F(BackupRestoreTest, ShowsEachFileAndTheProgress) {
    backUp({"/a/replaced"});
    EXPECT_EQ(restore(), RestoreResult::kDone);
    EXPECT_EQ(files_.content("/a/replaced"), "old");
    EXPECT_EQ(ui_.calls, (std::vector<std::string>{"setCurrentProgress(0)", "pumpEvents()",
                                                   "addFileLine(\"Restore /a/replaced\", 0)",
                                                   "setCurrentProgress(99)", "addFileLine(null, 1)"}));
}

TEST_F(BackupRestoreTest, ShowsFilesThatTheUserChanged) {
    backUp({"/a/edited"});
    files_.addFile("/a/edited", "edited by the user");
    EXPECT_EQ(restore(), RestoreResult::kDone);
    EXPECT_EQ(ui_.countOf("addFileLine(\"Left /a/edited\""), 1);
}

TEST_F(BackupRestoreTest, ShowsFilesThatCannotBeWritten) {
    backUp({"/ro/file"});
    files_.setReadOnly("/ro", 13);
    EXPECT_EQ(restore(), RestoreResult::kFailed);
    EXPECT_EQ(ui_.countOf("addFileLine(\"FAILED to restore /ro/file\""), 1);
    EXPECT_EQ(errors_, (ErrorList{"FAILED to restore /ro/file"}));
    const std::vector<std::string> notes = ui_.callsOf("addMessage");
    ASSERT_EQ(notes.size(), 2U);
    EXPECT_TRUE(notes[0].starts_with("addMessage(\"/ro/file: ")) << notes[0];
    EXPECT_EQ(notes[1], "addMessage(\"1 file could not be restored. The uninstallation can be repeated.\")");
}

TEST_F(BackupRestoreTest, CountsTheFilesThatCannotBeWritten) {
    backUp({"/p/a/x", "/p/b", "/p/c/y"});
    for (const char* const path : {"/p/a/x", "/p/c/y"}) {
        files_.removeFile(path);
        files_.addDirectory(path);
    }
    EXPECT_EQ(restore(), RestoreResult::kFailed);
    EXPECT_EQ(files_.content("/p/b"), "old");
    EXPECT_EQ(errors_, (ErrorList{"FAILED to restore /p/a/x", "FAILED to restore /p/c/y"}));
    EXPECT_EQ(ui_.callsOf("addMessage").back(),
              "addMessage(\"2 files could not be restored. The uninstallation can be repeated.\")");
}

TEST_F(BackupRestoreTest, FlushesEach32ndLine) {
    std::vector<std::string> paths;
    for (int i = 1; i <= 64; ++i) {
        paths.push_back("/p/f" + std::to_string(i));
    }
    backUp(paths);
    EXPECT_EQ(restore(), RestoreResult::kDone);
    const std::vector<std::string> lines = ui_.callsOf("addFileLine(\"Restore");
    ASSERT_EQ(lines.size(), 64U);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        EXPECT_EQ(lines[i].ends_with(" 1)"), i == 31 || i == 63) << lines[i];
    }
}

TEST_F(BackupRestoreTest, ShowsNothingWithoutAnArchive) {
    EXPECT_EQ(restore(), RestoreResult::kNoArchive);
    EXPECT_TRUE(ui_.calls.empty());
}

TEST_F(BackupRestoreTest, FailsForWhatIsNoArchive) {
    for (const char* const content : {"", "another file", "Tandrel Software installer backup file."}) {
        files_.addFile(kArchive, content);
        EXPECT_EQ(restore(), RestoreResult::kFailed) << content;
    }
    files_.removeFile(kArchive);
    files_.addDirectory(kArchive);
    EXPECT_EQ(restore(), RestoreResult::kFailed);
    EXPECT_EQ(ui_.countOf("addMessage(\"The backup archive /p/backup can't be read to its end."), 4);
}

TEST_F(BackupRestoreTest, FailsForADamagedArchiveAndKeepsWhatWasRestored) {
    backUp({"/a/first", "/a/second"});
    const std::string archive = files_.content(kArchive);
    files_.addFile(kArchive, archive.substr(0, archive.size() - 2));
    EXPECT_EQ(restore(), RestoreResult::kFailed);
    EXPECT_EQ(files_.content("/a/first"), "old");
    EXPECT_EQ(files_.content("/a/second"), "new");
    EXPECT_EQ(ui_.countOf("addFileLine(null"), 0);
    EXPECT_EQ(files_.openFileCount(), 0);
}

TEST_F(BackupRestoreTest, RestoresAnArchiveWithoutItsEnd) {
    backUp({"/a/first"});
    const std::string archive = files_.content(kArchive);
    files_.addFile(kArchive, archive.substr(0, archive.size() - 1));
    EXPECT_EQ(restore(), RestoreResult::kDone);
    EXPECT_EQ(files_.content("/a/first"), "old");
}

TEST_F(BackupRestoreTest, CreatesNoFileThatNoInstallationReplaced) {
    backUp({"/a/first"});
    files_.removeFile("/a/first");
    RestoreQuestions questions;
    questions.wasReplaced = [](std::string_view path) { return path != "/a/first"; };
    EXPECT_EQ(restoreBackupFile(kArchive, files_, report_, questions), RestoreResult::kFailed);
    EXPECT_FALSE(files_.hasFile("/a/first"));
}

TEST_F(BackupRestoreTest, EndsWhenItIsAskedTo) {
    backUp({"/a/first", "/a/second"});
    int left = 1;
    RestoreQuestions questions;
    questions.isToEnd = [&left] { return left-- < 1; };
    EXPECT_EQ(restoreBackupFile(kArchive, files_, report_, questions), RestoreResult::kFailed);
    EXPECT_EQ(files_.content("/a/first"), "old");
    EXPECT_EQ(files_.content("/a/second"), "new");
    EXPECT_EQ(ui_.countOf("addMessage"), 0);
}

}  // namespace

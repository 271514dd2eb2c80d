#include "engine/installed_files_backup.h"

#include <gmock/gmock.h>

#include "engine_fixture.h"
#include "package/backup_file.h"
#include "package/backup_reader.h"
#include "platform/error_text.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr char kHead[] = "/app/product.xml\r\n/app/backup.bin\r\nNUMVARS\t1\r\nVAR\tA\t1\r\n";

class InstalledFilesBackupTest : public EngineTest {
protected:
    bool backUp(const std::string& records) {
        files_.addFile("/tmp/log", kHead + records);
        return backup_.make("/tmp/log", {"Demo", "/tmp/archive", "/tmp/dirs"});
    }
    void makeArchive(const std::string& path) {
        files_.addDirectory("/app");
        BackupFile archive(files_);
        ASSERT_TRUE(archive.openForWriting(path));
        ASSERT_EQ(archive.close(), 0);
    }
    // The names of the entries, in their order.
    std::vector<std::string> entries() {
        std::vector<std::string> names;
        BackupFile archive(files_);
        if (!archive.openForReading("/tmp/archive")) {
            return {"(no archive)"};
        }
        BackupReader reader(archive);
        BackupEntry entry;
        reader.start();
        auto found = reader.next(entry);
        for (; found == BackupReader::Found::kEntry; found = reader.next(entry)) {
            names.push_back(entry.name);
            reader.skip(entry.size);
        }
        names.emplace_back(found == BackupReader::Found::kEnd ? "(end)" : "(damage)");
        return names;
    }
    std::vector<std::string> lines() const { return ui_.callsOf("addFileLine(\""); }

    InstalledFilesBackup backup_{files_, [this] { return system_.temporaryFileName(); }, report_, console_};
};

TEST_F(InstalledFilesBackupTest, SavesTheFilesAndShortcutsOfTheLog) {
    files_.addFile("/app/a", "content of a");
    files_.addFile("/app/b", "");
    files_.addFile("/menu/Demo.lnk", "link");
    EXPECT_TRUE(
        backUp("DIR\t1\t/app/\r\nFILE\tCREATE\t/app/a\r\nFILE\tOVER\t/app/b\r\nENV\tCREATE\tX\r\n"
               "SHORTCUT\tCREATE\t/menu/Demo.lnk\r\n"));
    EXPECT_THAT(entries(), ElementsAre("/app/a", "/app/b", "/menu/Demo.lnk", "(end)"));
    EXPECT_THAT(backup_.archivedFiles(), ElementsAre("/app/a", "/app/b", "/menu/Demo.lnk"));
    EXPECT_THAT(lines(),
                ElementsAre("addFileLine(\"Back up /app/a\", 1)", "addFileLine(\"Back up /app/b\", 0)",
                            "addFileLine(\"Back up /menu/Demo.lnk\", 0)"));
    EXPECT_THAT(
        ui_.callsOf("setStatusText"),
        ElementsAre("setStatusText(\"Creating backup of old files, in case the installation fails\")"));
    EXPECT_THAT(ui_.callsOf("setCurrentProgress"), Contains("setCurrentProgress(100)"));
    EXPECT_THAT(errors_, IsEmpty());
}

TEST_F(InstalledFilesBackupTest, KeepsTheDirectoriesAsTheRecordsNameThem) {
    EXPECT_TRUE(backUp("DIR\t2\tC:\\app\\bin\\\r\nFILE\tCREATE\t/gone\r\nDIR\t1\t/other dir/\r\nDIR\t1\r\n"));
    EXPECT_EQ(files_.content("/tmp/dirs"), "C:\\app\\bin\\\r\n/other dir/\r\n");
}

TEST_F(InstalledFilesBackupTest, StoresTheSumOfEachFileItself) {
    files_.addFile("/app/a", "content");
    EXPECT_TRUE(backUp("FILE\tCREATE\t/app/a\r\n"));
    files_.addFile("/app/a", "changed since");
    BackupFile archive(files_);
    ASSERT_TRUE(archive.openForReading("/tmp/archive"));
    BackupReader reader(archive);
    BackupEntry entry;
    reader.start();
    ASSERT_EQ(reader.next(entry), BackupReader::Found::kEntry);
    files_.addFile("/app/a", "content");
    EXPECT_EQ(entry.checkSum, BackupFile(files_).fileCheckSum("/app/a"));
}

TEST_F(InstalledFilesBackupTest, MakesFilesOfThisUserAlone) {
    makeArchive("/app/backup.bin");
    EXPECT_TRUE(backUp("FILE\tCREATE\t/app/backup.bin\r\n"));
    ASSERT_EQ(backup_.archives().size(), 1U);
    EXPECT_TRUE(files_.isPrivate("/tmp/archive"));
    EXPECT_TRUE(files_.isPrivate("/tmp/dirs"));
    EXPECT_TRUE(files_.isPrivate(backup_.archives()[0].copyPath));  // like the installed one
}

TEST_F(InstalledFilesBackupTest, PutsTheArchiveOnTheDisk) {
    files_.addFile("/app/a", "a");
    EXPECT_TRUE(backUp("FILE\tCREATE\t/app/a\r\n"));
    EXPECT_TRUE(files_.didOperation("flush /tmp/archive"));
    EXPECT_TRUE(files_.didOperation("flush /tmp/dirs"));
}

TEST_F(InstalledFilesBackupTest, ReportsAMissingFileAndGoesOn) {
    files_.addFile("/app/b", "b");
    EXPECT_TRUE(backUp("FILE\tCREATE\t/app/gone\r\nFILE\tCREATE\t\r\nFILE\tCREATE\t/app/b\r\n"));
    EXPECT_THAT(entries(), ElementsAre("/app/b", "(end)"));
    EXPECT_THAT(errors_, ElementsAre("FAILED to back up /app/gone: File does not exist"));
    EXPECT_THAT(lines(), Contains("addFileLine(\"FAILED to back up /app/gone: File does not exist\", 1)"));
}

TEST_F(InstalledFilesBackupTest, SaysWhyAFileCannotBeRead) {
    files_.addFile("/app/a", "a");
    files_.failFrom(MemoryFileSystem::Operation::kOpen, "/app/a", 1);
    EXPECT_TRUE(backUp("FILE\tCREATE\t/app/a\r\n"));
    EXPECT_THAT(ui_.callsOf("addMessage"),
                ElementsAre(HasSubstr(platform::errorText(MemoryFileSystem::kAccessDenied))));
}

TEST_F(InstalledFilesBackupTest, SaysWhyAFileCannotBeSaved) {
    files_.addFile("/app/a", "a");
    files_.failAt(MemoryFileSystem::Operation::kRead, "/app/a",
                  5);  // after two looks for an archive's banner
    EXPECT_FALSE(backUp("FILE\tCREATE\t/app/a\r\n"));
    EXPECT_THAT(ui_.callsOf("addMessage"),
                ElementsAre(HasSubstr(platform::errorText(MemoryFileSystem::kAccessDenied))));
}

TEST_F(InstalledFilesBackupTest, FollowsNoLink) {
    files_.addFile("/home/secret", "dear");
    files_.addLink("/app/a", "/home/secret");
    EXPECT_TRUE(backUp("FILE\tCREATE\t/app/a\r\n"));
    EXPECT_THAT(entries(), ElementsAre("(end)"));
}

TEST_F(InstalledFilesBackupTest, SavesAPathOnceWhateverItsSpelling) {
    files_.addFile("/app/a", "a");
    EXPECT_TRUE(backUp("FILE\tCREATE\t/app/a\r\nFILE\tCREATE\t\\app\\\\a\r\n"));
    EXPECT_THAT(entries(), ElementsAre("/app/a", "(end)"));
}

TEST_F(InstalledFilesBackupTest, CopiesAnArchiveThatWasInstalled) {
    makeArchive("/app/backup.bin");
    const std::string content = files_.content("/app/backup.bin");
    EXPECT_TRUE(backUp("FILE\tCREATE\t/app/backup.bin\r\n"));
    ASSERT_EQ(backup_.archives().size(), 1U);
    EXPECT_EQ(backup_.archives()[0].originalPath, "/app/backup.bin");
    EXPECT_EQ(files_.content(backup_.archives()[0].copyPath), content);
    EXPECT_THAT(entries(), ElementsAre("(end)"));
}

TEST_F(InstalledFilesBackupTest, FailsWithoutANameForTheCopyOfAnArchive) {
    makeArchive("/app/backup.bin");
    system_.temporaryNamesLeft = 0;
    EXPECT_FALSE(backUp("FILE\tCREATE\t/app/backup.bin\r\n"));
    EXPECT_TRUE(log_.hasLine("ERROR: Obtaining temp filename for copying a backup file! (/app/backup.bin)"));
}

TEST_F(InstalledFilesBackupTest, StopsAtAFailureAndLeavesNothing) {
    files_.addFile("/app/a", std::string(1000, 'a'));
    files_.addFile("/app/b", "b");
    makeArchive("/app/backup.bin");
    files_.setFreeSpace(400);
    EXPECT_FALSE(
        backUp("DIR\t1\t/app/\r\nFILE\tCREATE\t/app/backup.bin\r\nFILE\tCREATE\t/app/a\r\n"
               "FILE\tCREATE\t/app/b\r\n"));
    ASSERT_EQ(errors_.size(), 2U);
    EXPECT_THAT(errors_[0], HasSubstr("FAILED to back up /app/a: Error copying stream"));
    EXPECT_EQ(errors_[1], "Error in backup: stopping process");
    EXPECT_EQ(lines().back(), "addFileLine(\"Error in backup: stopping process\", 1)");
    EXPECT_FALSE(files_.hasFile("/tmp/archive"));
    EXPECT_FALSE(files_.hasFile("/tmp/dirs"));
    EXPECT_THAT(files_.allFiles(), Not(Contains(HasSubstr("orinstall"))));
    EXPECT_THAT(backup_.archives(), IsEmpty());
    EXPECT_THAT(backup_.archivedFiles(), IsEmpty());
}

TEST_F(InstalledFilesBackupTest, FailsWithoutTheLog) {
    EXPECT_FALSE(backup_.make("/tmp/none", {"Demo", "/tmp/archive", "/tmp/dirs"}));
    EXPECT_FALSE(files_.hasFile("/tmp/archive"));
}

TEST_F(InstalledFilesBackupTest, LeavesAFileAloneThatHasItsName) {
    for (const char* taken : {"/tmp/archive", "/tmp/dirs"}) {
        files_.addFile(taken, "somebody else's");
        EXPECT_FALSE(backUp(""));
        EXPECT_EQ(files_.content(taken), "somebody else's");
        files_.removeFile(taken);
        EXPECT_FALSE(files_.hasFile("/tmp/archive"));
    }
}

TEST_F(InstalledFilesBackupTest, TakesNoPieceOfALongLineForARecord) {
    files_.addFile("/home/secret", "dear");
    const std::string line = "VAR\tX\t" + std::string(1559 - 6, 'x');
    EXPECT_TRUE(backUp(line + "FILE\tCREATE\t/home/secret\r\n"));
    EXPECT_THAT(entries(), ElementsAre("(end)"));
}

}  // namespace

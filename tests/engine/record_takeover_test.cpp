#include "engine/record_takeover.h"

#include <gmock/gmock.h>

#include "engine/changes/change_table.h"
#include "engine/changes/text_lines.h"
#include "engine/engine_fixture.h"
#include "package/backup_reader.h"

namespace {

constexpr char kHead[] = "/app/product.xml\r\n/app/backup.bin\r\nNUMVARS\t0\r\n";

class RecordTakeoverTest : public EngineTest {
protected:
    RecordTakeoverTest() { files_.addDirectory("/app"); }

    bool read(const std::string& records) {
        files_.addFile("/app/install.log", kHead + records);
        return takeover_.read("/app/install.log", "/app/backup.bin");
    }
    // The records that a new log gets.
    std::string write() {
        EXPECT_TRUE(writer_.openNew("/tmp/log"));
        takeover_.writeRecords(writer_);
        takeover_.revertEdits(writer_);
        takeover_.writeRemainingFiles(writer_);
        EXPECT_TRUE(writer_.close());
        return files_.content("/tmp/log");
    }
    void makeArchive(const std::vector<std::string>& paths) {
        BackupFile archive(files_);
        ASSERT_TRUE(archive.openForWriting("/app/backup.bin"));
        for (const std::string& path : paths) {
            files_.addFile(path, "former " + path);
            ASSERT_EQ(archive.addFile(path, 7), std::nullopt);
        }
        ASSERT_EQ(archive.close(), 0);
    }
    std::string entriesOf(const std::string& path) {
        BackupFile archive(files_);
        EXPECT_TRUE(archive.openForReading(path));
        BackupReader reader(archive);
        BackupEntry entry;
        std::string all;
        EXPECT_TRUE(reader.start());
        while (reader.next(entry) == BackupReader::Found::kEntry) {
            all += entry.name + "=" + std::string(reader.read(entry.size)) + "(" +
                   std::to_string(entry.checkSum) + ");";
        }
        return all;
    }

    PFileConsole logFile_{files_};
    ActionLogWriter writer_{logFile_};
    ChangeJob job_{parts_, writer_, report_};
    FileHistory history_;
    RecordTakeover takeover_{job_.context, history_};
};

TEST_F(RecordTakeoverTest, HasNothingWithoutAnEarlierLog) {
    EXPECT_TRUE(takeover_.read("/app/install.log", "/app/backup.bin"));
    EXPECT_EQ(write(), "");
    EXPECT_EQ(takeover_.archivePath(), "");
    EXPECT_TRUE(ui_.calls.empty());
}

TEST_F(RecordTakeoverTest, WritesRecordsInTheirOrderAndThoseOfFilesLast) {
    ASSERT_TRUE(read("FILE\tCREATE\t/app/a\r\nDIR\t1\t/app/\r\nFILE\tOVER\t/app/b\r\nENV\tCREATE\tX\r\n"));
    history_.noteRecord("/app/b");
    EXPECT_EQ(write(), "DIR\t1\t/app/\r\nENV\tCREATE\tX\r\nFILE\tCREATE\t/app/a\r\n");
    EXPECT_EQ(history_.kindOf("/app/a"), FileHistory::Kind::kCreated);
    EXPECT_EQ(history_.kindOf("/app/b"), FileHistory::Kind::kReplaced);
}

TEST_F(RecordTakeoverTest, KeepsRecordsThatItDoesNotKnow) {
    ASSERT_TRUE(read("FUTURE\tthing\r\nFILE\tODD\t/app/a\r\n"));
    EXPECT_EQ(write(), "FUTURE\tthing\r\nFILE\tODD\t/app/a\r\n");
}

TEST_F(RecordTakeoverTest, TakesAddedLinesOutWithoutAWord) {
    files_.addFile("/app/script", "1\nanchor\n1\nadded\n");
    files_.addFile("/app/list", "anchor\nadded\nend\n");
    ASSERT_TRUE(read("MODIFYFILE\tADDAFTER\t/app/list\t/app/script\r\n"));
    EXPECT_EQ(write(), "");
    EXPECT_EQ(files_.content("/app/list"), textOf({"anchor", "end"}));
    EXPECT_TRUE(ui_.calls.empty());
}

TEST_F(RecordTakeoverTest, KeepsTheRecordOfLinesThatItCannotTakeOut) {
    files_.addFile("/app/list", "anchor\nadded\nend\n");
    ASSERT_TRUE(read("MODIFYFILE\tADDAFTER\t/app/list\t/app/script\r\n"));
    EXPECT_EQ(write(), "MODIFYFILE\tADDAFTER\t/app/list\t/app/script\r\n");
    EXPECT_EQ(files_.content("/app/list"), "anchor\nadded\nend\n");
}

TEST_F(RecordTakeoverTest, CopiesTheArchiveWithItsCheckSumsEachPathOnce) {
    makeArchive({"/app/a", "/app/b", "/app\\a"});
    ASSERT_TRUE(read(""));
    BackupFile archive(files_);
    ASSERT_TRUE(archive.openForWriting("/tmp/archive"));
    EXPECT_TRUE(takeover_.copyArchive(archive));
    EXPECT_TRUE(archive.holdsEntry("/app/a"));
    EXPECT_FALSE(archive.holdsEntry("/app/c"));
    ASSERT_EQ(archive.close(), 0);
    EXPECT_EQ(entriesOf("/tmp/archive"), "/app/a=former /app/a(7);/app/b=former /app/b(7);");
}

TEST_F(RecordTakeoverTest, SavesTheUsersFilesOutOfAnArchiveWhoseLogIsLost) {
    makeArchive({"/app/a", "/app/b", "/app/c"});  // a check sum of 7 is that of no content here
    files_.addFile("/app/a", "edited");
    files_.removeFile("/app/b");
    std::string sum(7, '\0');  // the size and, behind an exclusive or with zeros, the check sum
    files_.addFile("/app/c", sum);
    ASSERT_TRUE(takeover_.read("/app/install.log", "/app/backup.bin"));
    EXPECT_EQ(takeover_.archivePath(), "/app/backup.bin");
    BackupFile archive(files_);
    ASSERT_TRUE(archive.openForWriting("/tmp/archive"));
    EXPECT_TRUE(takeover_.copyArchive(archive));
    ASSERT_EQ(archive.close(), 0);
    EXPECT_EQ(entriesOf("/tmp/archive"), "/app/b=former /app/b(7);/app/c=former /app/c(7);");
}

TEST_F(RecordTakeoverTest, UsesTheDescribedArchiveWhereTheLogNamesNoneThatIsThere) {
    makeArchive({"/app/a"});
    files_.addFile("/app/install.log", "/app/product.xml\r\n/app/backuq.bin\r\nNUMVARS\t0\r\n");
    ASSERT_TRUE(takeover_.read("/app/install.log", "/app/backup.bin"));
    EXPECT_EQ(takeover_.archivePath(), "/app/backup.bin");
}

TEST_F(RecordTakeoverTest, SaysThatAnArchiveHasBeenChanged) {
    makeArchive({"/app/a"});
    WrittenSums sums;
    sums.add("/app/backup.bin", md5Of("x", 1));
    history_.setEarlierSums(sums);
    ASSERT_TRUE(read(""));
    BackupFile archive(files_);
    ASSERT_TRUE(archive.openForWriting("/tmp/archive"));
    EXPECT_TRUE(takeover_.copyArchive(archive));
    EXPECT_TRUE(archive.holdsEntry("/app/a"));
    EXPECT_EQ(ui_.countOf("addMessage(\"The backup archive /app/backup.bin has been changed since"), 1);
}

TEST_F(RecordTakeoverTest, FailsWhereTheNewArchiveCannotBeWritten) {
    makeArchive({"/app/a"});
    ASSERT_TRUE(read(""));
    BackupFile archive(files_);
    ASSERT_TRUE(archive.openForWriting("/tmp/archive"));
    files_.setFreeSpace(10);
    EXPECT_FALSE(takeover_.copyArchive(archive));
}

TEST_F(RecordTakeoverTest, SaysThatAnArchiveIsNone) {
    files_.addFile("/app/backup.bin", "something else");
    ASSERT_TRUE(read(""));
    BackupFile archive(files_);
    ASSERT_TRUE(archive.openForWriting("/tmp/archive"));
    EXPECT_TRUE(takeover_.copyArchive(archive));
    EXPECT_EQ(ui_.countOf("addMessage(\"The backup archive /app/backup.bin"), 1);
}

TEST_F(RecordTakeoverTest, RefusesALogThatCannotBeOpened) {
    files_.addDirectory("/app/install.log");
    EXPECT_FALSE(takeover_.read("/app/install.log", "/app/backup.bin"));
    EXPECT_EQ(ui_.callsOf("addMessage(").size(), 2U);
}

TEST_F(RecordTakeoverTest, TakesNothingOverThatBelongsToOneMomentOfTheEarlierRun) {
    EXPECT_TRUE(read("BEFORE\t0123\r\nSHORTCUT\tCREATE\t/a\r\nBEFORE\t4567\r\nFILE\tCREATE\t/b\r\n"));
    EXPECT_EQ(write(), "SHORTCUT\tCREATE\t/a\r\nFILE\tCREATE\t/b\r\n");
}

}  // namespace

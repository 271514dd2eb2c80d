#include "package/backup_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "fakes/fake_console.h"
#include "fakes/temporary_directory.h"
#include "package/backup_format.h"
#include "package/little_endian.h"
#include "platform/memory/memory_file_system.h"
#include "support/debug_log.h"

namespace {

using testing::Contains;

constexpr const char* kArchive = "/p/backup";

std::string banner() {
    return std::string("Tandrel Software installer backup file.\n") + '\0';
}

std::uint32_t sumOf(std::string_view content) {
    // One pass, byte by byte: byte i of the content is combined with byte i mod 4 of the value, and each byte
    // after the last whole word with byte 0.
    auto value = static_cast<std::uint32_t>(content.size());
    const std::size_t whole = content.size() / 4 * 4;
    for (std::size_t i = 0; i < content.size(); ++i) {
        value ^= static_cast<std::uint32_t>(static_cast<unsigned char>(content[i]))
                 << (i < whole ? 8 * (i % 4) : 0);
    }
    return value;
}

std::string entryOf(const std::string& name, std::int64_t size, std::uint32_t checkSum,
                    const std::string& content) {
    unsigned char fields[12];
    LittleEndian::writeSigned64(fields, size);
    LittleEndian::writeUnsigned(fields + 8, checkSum);
    return name + '\0' + std::string(reinterpret_cast<char*>(fields), sizeof(fields)) + content;
}

std::string entryOf(const std::string& name, const std::string& content) {
    return entryOf(name, static_cast<std::int64_t>(content.size()), sumOf(content), content);
}

const std::string kEnd(1, '\0');

// Records each call as a line.
class RecordingObserver : public BackupRestoreObserver {
public:
    void beforeFile() override { calls.emplace_back("before"); }
    void fileDone(std::string_view path, RestoreOutcome outcome, std::int64_t number, int status) override {
        const char* const names[] = {"restored", "failed", "left"};
        calls.push_back(std::to_string(number) + " " + names[static_cast<int>(outcome)] + " " +
                        std::string(path) + (status == 0 ? "" : " " + std::to_string(status)));
    }
    void progress(int percent) override { calls.push_back(std::to_string(percent) + " %"); }
    bool isToEnd() override { return filesBeforeEnd-- == 0; }
    bool wasReplaced(std::string_view path) override { return !unknown.contains(std::string(path)); }

    std::vector<std::string> calls;
    int filesBeforeEnd = -1;
    std::set<std::string> unknown;
};

class BackupFileTest : public testing::Test {
protected:
    enum class Restored { kNotOpened, kDamaged, kWhole };

    BackupFileTest() { files_.addDirectory("/p"); }
    std::optional<std::string> add(BackupFile& backup, const std::string& path) {
        return backup.addFile(path, std::nullopt);
    }
    Restored restore(const std::string& archive) {
        files_.addFile(kArchive, archive);
        BackupFile backup(files_);
        if (!backup.openForReading(kArchive)) {
            return Restored::kNotOpened;
        }
        return backup.restoreAll(debugLog_, observer_) ? Restored::kWhole : Restored::kDamaged;
    }

    MemoryFileSystem files_;
    FakeConsole console_;
    DebugLog debugLog_{console_};
    RecordingObserver observer_;
};

TEST_F(BackupFileTest, WritesBannerAndEndByteOnly) {
    BackupFile backup(files_);
    ASSERT_TRUE(backup.openForWriting(kArchive));
    EXPECT_EQ(backup.mode(), BackupFile::kWriting);
    EXPECT_EQ(backup.close(), 0);
    EXPECT_EQ(backup.mode(), BackupFile::kClosed);
    EXPECT_EQ(files_.content(kArchive), banner() + kEnd);
}

TEST_F(BackupFileTest, WritesTheEndByteWhenItIsDestroyed) {
    {
        BackupFile backup(files_);
        ASSERT_TRUE(backup.openForWriting(kArchive));
    }
    EXPECT_EQ(files_.content(kArchive), banner() + kEnd);
    EXPECT_EQ(files_.openFileCount(), 0);
}

TEST_F(BackupFileTest, MakesArchivesPrivate) {
    BackupFile backup(files_);
    ASSERT_TRUE(backup.openForWriting(kArchive));
    EXPECT_TRUE(files_.isPrivate(kArchive));
}

TEST_F(BackupFileTest, StoresNameSizeCheckSumAndContent) {
    files_.addFile("/a/file", "0123456789");
    files_.addFile("/a/empty", "");
    BackupFile backup(files_);
    ASSERT_TRUE(backup.openForWriting(kArchive));
    EXPECT_EQ(add(backup, "/a/file"), std::nullopt);
    EXPECT_EQ(backup.addFile("/a/empty", 0x11223344), std::nullopt);
    backup.close();
    EXPECT_EQ(files_.content(kArchive),
              banner() + entryOf("/a/file", "0123456789") + entryOf("/a/empty", 0, 0x11223344, "") + kEnd);
}

TEST_F(BackupFileTest, TakesAPathWithoutATerminator) {
    files_.addFile("/a/file", "x");
    BackupFile backup(files_);
    ASSERT_TRUE(backup.openForWriting(kArchive));
    EXPECT_EQ(backup.addFile(std::string_view("/a/fileAndMore", 7), std::nullopt), std::nullopt);
    backup.close();
    EXPECT_EQ(files_.content(kArchive), banner() + entryOf("/a/file", "x") + kEnd);
}

TEST_F(BackupFileTest, RefusesNamesThatCannotBeReadBack) {
    const std::string longest = "/" + std::string(1558, 'n');
    files_.addFile(longest, "x");
    files_.addFile(longest + "n", "x");
    {
        BackupFile backup(files_);
        ASSERT_TRUE(backup.openForWriting(kArchive));
        EXPECT_EQ(add(backup, longest), std::nullopt);
        EXPECT_EQ(add(backup, longest + "n"), "Error writing file name");
        backup.close();
        EXPECT_EQ(files_.content(kArchive), banner() + entryOf(longest, "x") + kEnd);
    }
    BackupFile backup(files_);
    ASSERT_TRUE(backup.openForWriting("/p/other"));
    EXPECT_EQ(add(backup, ""), "Error writing file name");
}

TEST_F(BackupFileTest, RefusesToAddInAnyOtherMode) {
    files_.addFile("/a/file", "x");
    BackupFile backup(files_);
    EXPECT_EQ(add(backup, "/a/file"), "Not in write mode");
    files_.addFile(kArchive, banner() + kEnd);
    ASSERT_TRUE(backup.openForReading(kArchive));
    EXPECT_EQ(add(backup, "/a/file"), "Not in write mode");
}

TEST_F(BackupFileTest, NeverPutsAnArchiveIntoAnArchive) {
    files_.addFile("/a/old", banner() + "whatever");
    files_.addFile("/a/withoutTerminator", banner().substr(0, 40));
    BackupFile backup(files_);
    ASSERT_TRUE(backup.openForWriting(kArchive));
    EXPECT_EQ(add(backup, "/a/old"), std::nullopt);
    EXPECT_EQ(add(backup, "/a/withoutTerminator"), std::nullopt);
    backup.close();
    EXPECT_EQ(files_.content(kArchive), banner() + kEnd);
    EXPECT_TRUE(backup.isBackupFile("/a/old"));
    EXPECT_FALSE(backup.isBackupFile("/a/none"));
    files_.addFile("/a/other", "Tandrel Software installer backup file\n");
    EXPECT_FALSE(backup.isBackupFile("/a/other"));
}

// What a link leads to may be another's secret, and the link itself couldn't be given back.
TEST_F(BackupFileTest, TakesNothingThroughALinkAndGoesOn) {
    files_.addFile("/victim", "secret");
    files_.addLink("/a/link", "/victim");
    files_.addDevice("/a/device");
    files_.addFile("/a/file", "abc");
    BackupFile backup(files_);
    ASSERT_TRUE(backup.openForWriting(kArchive));
    EXPECT_EQ(add(backup, "/a/link"), "Not a plain file");
    EXPECT_EQ(add(backup, "/a/device"), "Not a plain file");
    EXPECT_FALSE(backup.hasError());
    EXPECT_EQ(add(backup, "/a/file"), std::nullopt);
    EXPECT_EQ(backup.fileCheckSum("/a/link"), 0U);
    backup.close();
    EXPECT_EQ(files_.content(kArchive), banner() + entryOf("/a/file", "abc") + kEnd);
}

TEST_F(BackupFileTest, LeavesAnArchiveThatHasItsNameToItsOwner) {
    files_.addFile(kArchive, "another's");
    BackupFile backup(files_);
    EXPECT_FALSE(backup.openForWriting(kArchive));
    EXPECT_EQ(files_.content(kArchive), "another's");
}

TEST_F(BackupFileTest, FailsForAMissingFileAndKeepsItsLastGoodEntry) {
    files_.addFile("/a/file", "content");
    BackupFile backup(files_);
    ASSERT_TRUE(backup.openForWriting(kArchive));
    EXPECT_EQ(add(backup, "/a/file"), std::nullopt);
    EXPECT_EQ(backup.addFileFault(), 0);
    EXPECT_EQ(add(backup, "/a/none"), "Error opening file");
    EXPECT_EQ(backup.addFileFault(), MemoryFileSystem::kNotFound);
    EXPECT_TRUE(backup.hasError());
    EXPECT_EQ(add(backup, "/a/file"), "There is a previous error");
    backup.close();
    EXPECT_EQ(files_.content(kArchive), banner() + entryOf("/a/file", "content") + kEnd);
}

TEST_F(BackupFileTest, NamesTheStepThatFailed) {
    files_.addFile("/a/file", "content");
    const char* const texts[] = {"Error writing file name", "Error writing file size",
                                 "Error writing check sum", "Error copying stream (5)"};
    const std::int64_t bytesLeft[] = {3, 10, 17};  // of a name of 8, a size of 8, and a sum of 4
    for (int step = 0; step < 4; ++step) {
        BackupFile backup(files_);
        ASSERT_TRUE(backup.openForWriting(kArchive));
        if (step < 3) {
            files_.setFreeSpace(bytesLeft[step]);
        } else {
            files_.failAt(MemoryFileSystem::Operation::kWrite, kArchive, 2, 5);
        }
        EXPECT_EQ(add(backup, "/a/file"), texts[step]);
        EXPECT_EQ(backup.addFileFault(), step < 3 ? MemoryFileSystem::kDiskFull : 5);
        files_.clearFaults();
        files_.setFreeSpace(-1);
        EXPECT_EQ(backup.close(), 0);
        EXPECT_EQ(files_.content(kArchive), banner() + kEnd) << step;
        EXPECT_EQ(files_.removeFile(kArchive), 0);
    }
}

// Written at a place that isn't known, the rest would go over contents of the user's.
TEST_F(BackupFileTest, NeverWritesWhereItDoesNotKnowItsPlace) {
    files_.addFile("/a/one", "the first");
    files_.addFile("/a/two", "the second");
    for (int call = 1; call <= 8; ++call) {
        files_.removeFile(kArchive);
        BackupFile backup(files_);
        ASSERT_TRUE(backup.openForWriting(kArchive));
        files_.failAt(MemoryFileSystem::Operation::kSeek, kArchive, call, 5);
        const bool hasOne = add(backup, "/a/one") == std::nullopt;
        backup.setCheckSum("/a/one", sumOf("the first"));
        const bool hasTwo = add(backup, "/a/two") == std::nullopt;
        backup.setCheckSum("/a/one", sumOf("the first"));
        backup.close();
        files_.clearFaults();
        BackupFile written(files_);
        ASSERT_TRUE(written.openForReading(kArchive)) << call;
        EXPECT_TRUE(written.restoreAll(debugLog_, observer_)) << call;
        EXPECT_EQ(files_.content("/a/one"), "the first") << call;
        EXPECT_EQ(files_.content("/a/two"), "the second") << call;
        const std::string archive = files_.content(kArchive);
        EXPECT_EQ(archive.find("the first") != std::string::npos, hasOne) << call;
        EXPECT_EQ(archive.find("the second") != std::string::npos, hasTwo) << call;
    }
}

TEST_F(BackupFileTest, ReportsReadingThatFailsOrComesShort) {
    files_.addFile("/a/file", "content");
    BackupFile backup(files_);
    ASSERT_TRUE(backup.openForWriting(kArchive));
    // The first two reads look for a banner.
    files_.failAt(MemoryFileSystem::Operation::kRead, "/a/file", 3, 9);
    EXPECT_EQ(backup.addFile("/a/file", 1), "Error copying stream (9)");
    EXPECT_EQ(backup.addFileFault(), 9);
}

// A file system where a file has become shorter than its directory entry says.
class ShrunkFiles : public MemoryFileSystem {
public:
    std::int64_t fileSize(std::string_view path) override { return MemoryFileSystem::fileSize(path) + 3; }
};

TEST(BackupFileMismatch, ReportsAFileThatIsShorterThanItsSize) {
    ShrunkFiles files;
    files.addFile("/a/file", "content");
    BackupFile backup(files);
    ASSERT_TRUE(backup.openForWriting("/a/backup"));
    EXPECT_EQ(backup.addFile("/a/file", 1), "Copy stream mismatch: wanted 10 bytes, read 7, written 7");
    backup.close();
    EXPECT_EQ(files.content("/a/backup"), banner() + kEnd);
}

TEST_F(BackupFileTest, ReportsAFullDiskAtTheEnd) {
    BackupFile backup(files_);
    ASSERT_TRUE(backup.openForWriting(kArchive));
    files_.setFreeSpace(0);
    EXPECT_NE(backup.close(), 0);
}

TEST_F(BackupFileTest, FailsToOpenForWritingWhereItCannot) {
    files_.setReadOnly("/ro");
    BackupFile backup(files_);
    EXPECT_FALSE(backup.openForWriting("/ro/backup"));
    EXPECT_TRUE(backup.hasError());
    ASSERT_TRUE(backup.openForWriting(kArchive));
    EXPECT_FALSE(backup.openForWriting("/p/other"));  // not closed
    EXPECT_FALSE(backup.openForReading(kArchive));
}

TEST_F(BackupFileTest, RefusesAnotherBannerAtEveryByte) {
    for (std::size_t i = 0; i < banner().size(); ++i) {
        std::string changed = banner() + kEnd;
        changed[i] ^= 1;
        EXPECT_EQ(restore(changed), Restored::kNotOpened) << i;
        EXPECT_EQ(restore(banner().substr(0, i)), Restored::kNotOpened) << i;
    }
    BackupFile backup(files_);
    EXPECT_FALSE(backup.openForReading("/p/none"));
    EXPECT_EQ(files_.openFileCount(), 0);
}

TEST_F(BackupFileTest, FoldsTheCheckSumOverAllLengths) {
    BackupFile backup(files_);
    std::string content;
    for (std::size_t size = 0; size < 70; ++size) {
        files_.addFile("/a/file", content);
        EXPECT_EQ(backup.fileCheckSum("/a/file"), sumOf(content)) << size;
        content += static_cast<char>(size * 37 + 11);
    }
    std::string large;
    while (large.size() < 300003) {
        large += std::to_string(large.size());
    }
    files_.addFile("/a/file", large);
    EXPECT_EQ(backup.fileCheckSum("/a/file"), sumOf(large));
    EXPECT_EQ(backup.fileCheckSum("/a/none"), 0U);
}

TEST_F(BackupFileTest, KeepsTheCheckSumSoFarWhenAReadFails) {
    BackupFile backup(files_);
    files_.addFile("/a/file", "content");
    files_.failAt(MemoryFileSystem::Operation::kRead, "/a/file", 1);
    EXPECT_EQ(backup.fileCheckSum("/a/file"), 7U);
}

TEST_F(BackupFileTest, FoldsPiecesAsOnePass) {
    const std::string content = "0123456789abcdefghijklmnopqrstuvwxyzABCDEFG";
    std::uint32_t value = static_cast<std::uint32_t>(content.size());
    value = BackupFile::foldCheckSum(value, content.substr(0, 8));
    value = BackupFile::foldCheckSum(value, content.substr(8));
    EXPECT_EQ(value, sumOf(content));
}

TEST_F(BackupFileTest, RestoresFilesThatAreUnchanged) {
    files_.addFile("/a/replaced", "new content");
    const std::string archive = banner() + entryOf("/a/replaced", 3, sumOf("new content"), "old") + kEnd;
    EXPECT_EQ(restore(archive), Restored::kWhole);
    EXPECT_EQ(files_.content("/a/replaced"), "old");
    EXPECT_EQ(console_.lines(), (std::vector<std::string>{"Restored /a/replaced"}));
    EXPECT_EQ(observer_.calls, (std::vector<std::string>{"0 %", "before", "1 restored /a/replaced", "99 %"}));
}

TEST_F(BackupFileTest, LeavesFilesThatTheUserChanged) {
    files_.addFile("/a/edited", "edited by the user");
    const std::string archive =
        banner() + entryOf("/a/edited", 3, sumOf("new content"), "old") + entryOf("/a/gone", "back") + kEnd;
    files_.addDirectory("/a");
    EXPECT_EQ(restore(archive), Restored::kWhole);
    EXPECT_EQ(files_.content("/a/edited"), "edited by the user");
    EXPECT_EQ(files_.content("/a/gone"), "back");
    EXPECT_EQ(console_.lines(),
              (std::vector<std::string>{"Saved check sum different than existing one for /a/edited; skipping",
                                        "Restored /a/gone"}));
    EXPECT_THAT(observer_.calls, Contains("1 left /a/edited"));
}

// Neither "changed by the user" nor "restored" would be true.
TEST_F(BackupFileTest, LeavesAFileThatCannotBeComparedAndReportsIt) {
    using Operation = MemoryFileSystem::Operation;
    for (const Operation operation : {Operation::kOpen, Operation::kRead}) {
        files_.addFile("/a/file", "new content");
        files_.failAt(operation, "/a/file", 1, 13);
        observer_.calls.clear();
        const std::string archive =
            banner() + entryOf("/a/file", 3, sumOf("new content"), "old") + entryOf("/a/gone", "back") + kEnd;
        EXPECT_EQ(restore(archive), Restored::kWhole);
        EXPECT_EQ(files_.content("/a/file"), "new content");
        EXPECT_EQ(files_.content("/a/gone"), "back");
        EXPECT_THAT(observer_.calls, Contains("1 failed /a/file 13"));
        EXPECT_TRUE(console_.hasLine("ERROR: Could not compare /a/file (13)"));
        files_.removeFile("/a/gone");
    }
}

TEST_F(BackupFileTest, RestoresNothingThroughALinkAndLeavesIt) {
    files_.addFile("/victim", "new content");
    files_.addLink("/a/link", "/victim");
    files_.addLink("/a/dangling", "/none");
    const std::string archive = banner() + entryOf("/a/link", 3, sumOf("new content"), "old") +
                                entryOf("/a/dangling", "old") + entryOf("/a/dangling", "") + kEnd;
    EXPECT_EQ(restore(archive), Restored::kWhole);
    EXPECT_EQ(files_.content("/victim"), "new content");
    EXPECT_FALSE(files_.exists("/none"));
    EXPECT_EQ(files_.kindOf("/a/link"), platform::PathKind::kLink);
    EXPECT_EQ(files_.kindOf("/a/dangling"), platform::PathKind::kLink);
    EXPECT_THAT(observer_.calls, Contains("1 left /a/link"));
}

TEST_F(BackupFileTest, ComparesEvenIfTheExistingCheckSumIsZero) {
    // Four bytes whose only word is the size itself: their sum is 0, as if the file could not be opened.
    const std::string zeroSum("\x04\0\0\0", 4);
    ASSERT_EQ(sumOf(zeroSum), 0U);
    files_.addFile("/a/file", zeroSum);
    EXPECT_EQ(restore(banner() + entryOf("/a/file", 3, 77, "old") + kEnd), Restored::kWhole);
    EXPECT_EQ(files_.content("/a/file"), zeroSum);
    EXPECT_EQ(restore(banner() + entryOf("/a/file", 3, 0, "old") + kEnd), Restored::kWhole);
    EXPECT_EQ(files_.content("/a/file"), "old");
}

TEST_F(BackupFileTest, CreatesEmptyFilesOnlyWhereThereAreNone) {
    files_.addFile("/a/there", "anything");
    EXPECT_EQ(restore(banner() + entryOf("/a/there", 0, 1, "") + entryOf("/a/gone", 0, 1, "") + kEnd),
              Restored::kWhole);
    EXPECT_EQ(files_.content("/a/there"), "anything");
    EXPECT_TRUE(files_.hasFile("/a/gone"));
    EXPECT_EQ(console_.lines(),
              (std::vector<std::string>{"Zero saved size for /a/gone; creating blank file"}));
    EXPECT_EQ(observer_.calls, (std::vector<std::string>{"0 %", "before", "before", "2 restored /a/gone"}));
}

TEST_F(BackupFileTest, GoesOnAfterAFileThatCannotBeWritten) {
    files_.addFile("/ro/file", "new");
    files_.setReadOnly("/ro", 13);
    EXPECT_EQ(restore(banner() + entryOf("/ro/file", 3, sumOf("new"), "old") + entryOf("/nodir/file", "x") +
                      entryOf("/p/good", "good") + kEnd),
              Restored::kWhole);
    EXPECT_EQ(files_.content("/ro/file"), "new");
    EXPECT_EQ(files_.content("/p/good"), "good");
    EXPECT_THAT(observer_.calls, Contains("1 failed /ro/file 13"));
    EXPECT_TRUE(console_.hasLine("ERROR: Could not restore /ro/file (13)"));
    EXPECT_FALSE(console_.hasLine("Restored /ro/file"));
}

TEST_F(BackupFileTest, DoesNotRestoreInAnotherMode) {
    BackupFile backup(files_);
    EXPECT_FALSE(backup.restoreAll(debugLog_, observer_));
    ASSERT_TRUE(backup.openForWriting(kArchive));
    EXPECT_FALSE(backup.restoreAll(debugLog_, observer_));
    EXPECT_TRUE(observer_.calls.empty());
}

TEST_F(BackupFileTest, RestoresWhatAnArchiveHoldsThatIsCutAtAnyLength) {
    const std::string archive = banner() + entryOf("/p/first", 3, sumOf("new"), "old") +
                                entryOf("/p/second", 5, sumOf("newer"), "older") + kEnd;
    const std::size_t firstEnd = banner().size() + entryOf("/p/first", "old").size();
    for (std::size_t size = banner().size(); size < archive.size(); ++size) {
        files_.addFile("/p/first", "new");
        files_.addFile("/p/second", "newer");
        const bool isBetweenEntries =
            size == banner().size() || size == firstEnd || size == archive.size() - 1;
        EXPECT_EQ(restore(archive.substr(0, size)), isBetweenEntries ? Restored::kWhole : Restored::kDamaged)
            << size;
        // A content takes its place when what follows it is understood.
        const bool isFirstCertain =
            size == firstEnd || size >= firstEnd + std::string("/p/second").size() + 13;
        EXPECT_EQ(files_.content("/p/first"), isFirstCertain ? "old" : "new") << size;
        EXPECT_EQ(files_.content("/p/second"), size < archive.size() - 1 ? "newer" : "older") << size;
        EXPECT_EQ(files_.allFiles().size(), 3U) << size;
    }
    EXPECT_EQ(files_.openFileCount(), 0);
}

TEST_F(BackupFileTest, CutsOffALastEntryThatIsNotWhole) {
    const std::string first = banner() + entryOf("/p/first", 3, sumOf("new"), "old");
    const std::string whole = first + entryOf("/p/second", 5, sumOf("newer"), "older") + kEnd;
    for (std::size_t size = banner().size(); size <= whole.size(); ++size) {
        files_.addFile(kArchive, whole.substr(0, size));
        EXPECT_EQ(BackupFile(files_).cutUnfinishedEntry(kArchive), 0) << size;
        const std::string expected = size < first.size()       ? banner()
                                     : size < whole.size() - 1 ? first
                                                               : whole.substr(0, size);
        EXPECT_EQ(files_.content(kArchive), expected) << size;
    }
}

TEST_F(BackupFileTest, CutsNothingOffWhatIsDamagedOrNoArchive) {
    for (const std::string& content : {banner() + entryOf("/p/first", -1, 0, "old"), banner() + kEnd + "more",
                                       std::string("no archive")}) {
        files_.addFile(kArchive, content);
        EXPECT_EQ(BackupFile(files_).cutUnfinishedEntry(kArchive), -1);
        EXPECT_EQ(files_.content(kArchive), content);
    }
    EXPECT_NE(BackupFile(files_).cutUnfinishedEntry("/none"), 0);
}

TEST_F(BackupFileTest, TakesACutContentForThatOfAnInstallationThatWasStopped) {
    const std::string archive = banner() + entryOf("/p/first", 3, sumOf("new"), "old") +
                                entryOf("/p/second", 5, sumOf("newer"), "ol");
    files_.addFile("/p/first", "new");
    files_.addFile("/p/second", "older");  // not replaced yet
    EXPECT_EQ(restore(archive), Restored::kWhole);
    EXPECT_EQ(files_.content("/p/first"), "old");
    EXPECT_EQ(files_.content("/p/second"), "older");
    files_.removeFile("/p/second");
    EXPECT_EQ(restore(archive), Restored::kDamaged);
}

TEST_F(BackupFileTest, WritesNoContentWhoseSizeIsWrong) {
    const std::string second = entryOf("/p/second", 5, sumOf("newer"), "older") + kEnd;
    observer_.unknown = {"/second"};  // what a wrong size makes of the name
    for (const std::int64_t size : {1, 2, 4, 5, 6, 8, 12}) {
        files_.addFile("/p/first", "new");
        files_.addFile("/p/second", "newer");
        EXPECT_EQ(restore(banner() + entryOf("/p/first", size, sumOf("new"), "old") + second),
                  Restored::kDamaged)
            << size;
        EXPECT_EQ(files_.content("/p/first"), "new") << size;
    }
}

TEST_F(BackupFileTest, CreatesNoFileThatNobodyReplaced) {
    observer_.unknown = {"/p/flipped", "/p/there"};
    files_.addFile("/p/there", "new");
    EXPECT_EQ(
        restore(banner() + entryOf("/p/there", 3, sumOf("new"), "old") + entryOf("/p/flipped", "x") + kEnd),
        Restored::kDamaged);
    EXPECT_FALSE(files_.hasFile("/p/flipped"));
    EXPECT_EQ(restore(banner() + entryOf("/p/there", 3, sumOf("new"), "old") + kEnd), Restored::kWhole);
    EXPECT_EQ(files_.content("/p/there"), "old");
}

TEST_F(BackupFileTest, FailsForBytesAfterTheEnd) {
    EXPECT_EQ(restore(banner() + kEnd + "/p/more"), Restored::kDamaged);
}

TEST_F(BackupFileTest, NeverLeavesHalfAFileInItsPlace) {
    const std::string archive =
        banner() + entryOf("/p/file", 300000, sumOf("new"), std::string(300000, 'o')) + kEnd;
    files_.addFile("/p/file", "new");
    files_.addFile(kArchive, archive);
    files_.setFreeSpace(270000);
    BackupFile backup(files_);
    ASSERT_TRUE(backup.openForReading(kArchive));
    EXPECT_TRUE(backup.restoreAll(debugLog_, observer_));
    EXPECT_THAT(observer_.calls, Contains("1 failed /p/file 112"));
    EXPECT_EQ(files_.content("/p/file"), "new");
    EXPECT_EQ(files_.allFiles(), (std::vector<std::string>{"/p/backup", "/p/file"}));
}

TEST_F(BackupFileTest, EndsBeforeTheNextFileWhenItIsAskedTo) {
    files_.addFile("/p/first", "new");
    files_.addFile("/p/second", "newer");
    observer_.filesBeforeEnd = 1;
    EXPECT_EQ(restore(banner() + entryOf("/p/first", 3, sumOf("new"), "old") +
                      entryOf("/p/second", 5, sumOf("newer"), "older") + kEnd),
              Restored::kDamaged);
    EXPECT_EQ(files_.content("/p/first"), "old");
    EXPECT_EQ(files_.content("/p/second"), "newer");
}

TEST_F(BackupFileTest, FailsForSizesThatTheArchiveCannotHold) {
    files_.addFile("/p/file", "new");
    for (const std::int64_t size :
         {std::int64_t{-1}, INT64_MIN, INT64_MAX, std::int64_t{5}, std::int64_t{1} << 40}) {
        EXPECT_EQ(restore(banner() + entryOf("/p/file", size, sumOf("new"), "old") + kEnd),
                  Restored::kDamaged)
            << size;
        EXPECT_EQ(files_.content("/p/file"), "new");
    }
}

TEST_F(BackupFileTest, FailsForANameWithoutEnd) {
    EXPECT_EQ(restore(banner() + std::string(1560, 'n') + kEnd), Restored::kDamaged);
    EXPECT_EQ(restore(banner() + std::string(100000, 'n')), Restored::kDamaged);
}

TEST_F(BackupFileTest, FailsWhenTheArchiveCannotBeRead) {
    files_.failAt(MemoryFileSystem::Operation::kRead, kArchive, 2);
    EXPECT_EQ(restore(banner() + entryOf("/p/file", "x") + kEnd), Restored::kDamaged);
    EXPECT_FALSE(files_.hasFile("/p/file"));
}

TEST(BackupFile, KeepsAndRestoresRealFiles) {
    const TemporaryDirectory directory;
    const std::string archive = directory.file("backup");
    const std::string path = directory.file("f\xC3\xBC.bin");
    std::string content;
    while (content.size() < 700000) {
        content += std::to_string(content.size() * 31);
    }
    writeTestFile(path, content);
    {
        BackupFile backup(platform::systemFileSystem());
        ASSERT_TRUE(backup.openForWriting(archive));
        EXPECT_EQ(backup.addFile(path, sumOf("replaced")), std::nullopt);
        EXPECT_EQ(backup.close(), 0);
    }
    writeTestFile(path, "replaced");
    BackupFile backup(platform::systemFileSystem());
    RecordingObserver observer;
    ASSERT_TRUE(backup.openForReading(archive));
    EXPECT_TRUE(backup.restoreAll(DebugLog(), observer));
    EXPECT_EQ(readTestFile(path), content);
}

}  // namespace

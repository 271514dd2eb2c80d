#include "engine/removal_record.h"

#include <gtest/gtest.h>

#include "engine/removal_journal_format.h"
#include "platform/memory/memory_file_system.h"

namespace {

namespace Format = RemovalJournalFormat;
using platform::PathKind;

RemovalRecord fullRecord(std::uint32_t number) {
    RemovalRecord record;
    record.step = RemovalStep::kReplaceFile;
    record.number = number;
    record.subject = 0x80000001;
    record.kept = 77;
    record.flags = RemovalRecord::kSourceIsOurs | RemovalRecord::kWasListed;
    record.root = 3;
    record.view = 1;
    record.left = {PathKind::kFile, 1LL << 40, md5Of("x", 1)};
    record.path = "C:\\app\\\xc3\xa4";
    record.other = "/from";
    record.before = {{"name", 7, std::string("a\0b\0", 4)}, {"", 1, ""}};
    record.after = {{"name", 4, "1234"}};
    return record;
}

RemovalRecord smallRecord(std::uint32_t number, RemovalStep step = RemovalStep::kRemoveFile) {
    RemovalRecord record;
    record.step = step;
    record.number = number;
    record.path = "/app/file";
    record.other = "/from";
    return record;
}

std::string journalOf(const std::vector<RemovalRecord>& records) {
    std::string content(Format::kBanner);
    for (const RemovalRecord& record : records) {
        content += frameOf(record).value_or("too large");
    }
    return content;
}

// Whether what was read is some of the written records, unchanged.
bool isPartOf(const std::vector<RemovalRecord>& part, const std::vector<RemovalRecord>& whole) {
    auto at = whole.begin();
    for (const RemovalRecord& record : part) {
        at = std::find(at, whole.end(), record);
        if (at == whole.end()) {
            return false;
        }
    }
    return true;
}

TEST(RemovalRecordTest, ComesBackWithAllItsFields) {
    const std::vector<RemovalRecord> written = {fullRecord(1), smallRecord(2), fullRecord(3)};
    const std::string journal = journalOf(written);
    const ReadRecords read = readRecords(journal);
    EXPECT_TRUE(read.isWhole);
    EXPECT_EQ(read.end, journal.size());
    EXPECT_EQ(read.records, written);
}

TEST(RemovalRecordTest, OfEachStepIsRead) {
    for (const RemovalStep step : {RemovalStep::kNote,
                                   RemovalStep::kArchived,
                                   RemovalStep::kSettled,
                                   RemovalStep::kLeft,
                                   RemovalStep::kRemoveFile,
                                   RemovalStep::kRemoveDirectory,
                                   RemovalStep::kCreateFile,
                                   RemovalStep::kCreateDirectory,
                                   RemovalStep::kMoveFile,
                                   RemovalStep::kReplaceFile,
                                   RemovalStep::kWriteFile,
                                   RemovalStep::kChangeRights,
                                   RemovalStep::kCreateKey,
                                   RemovalStep::kDeleteKey,
                                   RemovalStep::kWriteValue,
                                   RemovalStep::kDeleteValue,
                                   RemovalStep::kFirewallApplication,
                                   RemovalStep::kFirewallPort,
                                   RemovalStep::kFirewallSwitchOn,
                                   RemovalStep::kBroadcastEnvironment}) {
        EXPECT_EQ(readRecords(journalOf({smallRecord(1, step)})).records.size(), 1U)
            << static_cast<int>(step);
    }
}

TEST(RemovalRecordTest, CutAtEachLengthLosesNoMoreThanItsTornEnd) {
    const std::vector<RemovalRecord> written = {smallRecord(1), fullRecord(2), smallRecord(3)};
    const std::string journal = journalOf(written);
    for (std::size_t length = 0; length <= journal.size(); ++length) {
        const ReadRecords read = readRecords(std::string_view(journal).substr(0, length));
        const bool hasBanner = length >= Format::kBanner.size();
        EXPECT_EQ(read.isWhole, hasBanner) << length;
        EXPECT_LE(read.end, length);
        EXPECT_TRUE(std::equal(read.records.begin(), read.records.end(), written.begin())) << length;
        const std::size_t whole = hasBanner ? (length >= journalOf({written[0]}).size()) +
                                                  (length >= journalOf({written[0], written[1]}).size()) +
                                                  (length == journal.size())
                                            : 0;
        EXPECT_EQ(read.records.size(), whole) << length;
    }
}

TEST(RemovalRecordTest, WithEachByteDamagedLosesNoMoreThanThatRecord) {
    const std::vector<RemovalRecord> written = {smallRecord(1), fullRecord(2), smallRecord(3)};
    const std::string journal = journalOf(written);
    for (std::size_t at = 0; at < journal.size(); ++at) {
        for (const char change : {'\x01', '\x80', '\xff'}) {
            std::string damaged = journal;
            damaged[at] = static_cast<char>(damaged[at] ^ change);
            const ReadRecords read = readRecords(damaged);
            EXPECT_TRUE(isPartOf(read.records, written)) << at;
            EXPECT_EQ(read.records.size(), at < Format::kBanner.size() ? 0U : 2U) << at;
        }
    }
}

TEST(RemovalRecordTest, DamagedInTheMiddleIsSaid) {
    std::string journal = journalOf({smallRecord(1), smallRecord(2)});
    journal[Format::kBanner.size() + 30] ^= 1;
    const ReadRecords read = readRecords(journal);
    EXPECT_FALSE(read.isWhole);
    EXPECT_EQ(read.records, std::vector<RemovalRecord>{smallRecord(2)});
}

TEST(RemovalRecordTest, AfterRubbishIsFound) {
    const std::string rubbish = "\x9eRe\x9eRec\x9e" + std::string(100, '\0');
    const std::string journal = std::string(Format::kBanner) + rubbish + *frameOf(smallRecord(4)) + rubbish;
    const ReadRecords read = readRecords(journal);
    EXPECT_FALSE(read.isWhole);
    EXPECT_EQ(read.records, std::vector<RemovalRecord>{smallRecord(4)});
    EXPECT_EQ(read.end, journal.size() - rubbish.size());
}

// Each is well formed in itself.
TEST(RemovalRecordTest, WithAFieldThatCannotBeIsPassedOver) {
    std::vector<RemovalRecord> impossible(12, fullRecord(1));
    impossible[0].number = 0;
    impossible[1].path = "app\\relative";
    impossible[2].path = std::string("/app\0x", 6);
    impossible[3].other = "";
    impossible[4].other = std::string("/a\0", 3);
    impossible[5].step = static_cast<RemovalStep>(9);
    impossible[6].flags = 0x80;
    impossible[7].root = 4;
    impossible[8].view = 2;
    impossible[9].left.kind = static_cast<PathKind>(5);
    impossible[10].left.size = -1;
    impossible[11].before[0].name = std::string("a\0", 2);
    for (std::size_t i = 0; i < impossible.size(); ++i) {
        const ReadRecords read = readRecords(journalOf({impossible[i], smallRecord(2)}));
        EXPECT_EQ(read.records, std::vector<RemovalRecord>{smallRecord(2)}) << i;
        EXPECT_FALSE(read.isWhole) << i;
    }
}

TEST(RemovalRecordTest, LargerThanAReaderTakesHasNoFrame) {
    RemovalRecord large = smallRecord(1);
    large.other.assign(Format::kBodyLimit, 'x');
    EXPECT_FALSE(frameOf(large).has_value());
    RemovalRecord many = smallRecord(1);
    many.before.resize(Format::kCountLimit + 1);
    EXPECT_FALSE(frameOf(many).has_value());
}

TEST(RemovalRecordTest, DigestsOnlyPlainFilesThatCanBeRead) {
    MemoryFileSystem files;
    files.addFile("/a", "x");
    files.addFile("/unreadable", "x");
    files.addLink("/link", "/a");
    files.failFrom(MemoryFileSystem::Operation::kOpen, "/unreadable", 1);
    EXPECT_EQ(contentOfPlace(files, "/a"), (PlaceContent{PathKind::kFile, 1, md5Of("x", 1)}));
    EXPECT_EQ(contentOfPlace(files, "/link"), (PlaceContent{PathKind::kLink, 0, {}}));
    EXPECT_EQ(contentOfPlace(files, "/none"), PlaceContent());
    EXPECT_EQ(contentOfPlace(files, "/unreadable"), (PlaceContent{PathKind::kOther, 0, {}}));
}

}  // namespace

#include "package/backup_reader.h"

#include <gtest/gtest.h>

#include "package/backup_format.h"
#include "package/little_endian.h"
#include "platform/memory/memory_file_system.h"

namespace {

class BackupReaderTest : public testing::Test {
protected:
    void open(const std::string& entries) {
        files_.addFile("/a", std::string(BackupFormat::kBanner, BackupFormat::kBannerSize) + entries);
        ASSERT_EQ(stream_.openFile("/a", PFileStream::kGenericRead, PFileStream::kShareRead, 0), 0);
    }
    static std::string entryOf(const std::string& name, const std::string& content) {
        unsigned char fields[12];
        LittleEndian::writeSigned64(fields, static_cast<std::int64_t>(content.size()));
        LittleEndian::writeUnsigned(fields + 8, 42);
        return name + '\0' + std::string(reinterpret_cast<char*>(fields), sizeof(fields)) + content;
    }

    MemoryFileSystem files_;
    PFileStream stream_{files_};
};

TEST_F(BackupReaderTest, WalksEntriesLargerThanItsBuffer) {
    const std::string large(700000, 'x');
    open(entryOf("first", large) + entryOf("second", large) + entryOf("third", "abc") + '\0');
    BackupReader reader(stream_);
    ASSERT_TRUE(reader.start());
    BackupEntry entry;
    ASSERT_EQ(reader.next(entry), BackupReader::Found::kEntry);
    EXPECT_EQ(entry.name, "first");
    EXPECT_EQ(entry.size, 700000);
    EXPECT_EQ(entry.checkSum, 42U);
    std::int64_t left = entry.size;
    while (left > 0) {
        const std::string_view data = reader.read(left);
        ASSERT_FALSE(data.empty());
        left -= static_cast<std::int64_t>(data.size());
    }
    ASSERT_EQ(reader.next(entry), BackupReader::Found::kEntry);
    EXPECT_TRUE(reader.skip(entry.size));
    ASSERT_EQ(reader.next(entry), BackupReader::Found::kEntry);
    EXPECT_EQ(entry.name, "third");
    EXPECT_TRUE(reader.skip(entry.size));
    EXPECT_EQ(reader.next(entry), BackupReader::Found::kEnd);
    EXPECT_EQ(reader.percentDone(), 100);
}

TEST_F(BackupReaderTest, RefusesToSkipPastTheEnd) {
    open(entryOf("first", "abc"));
    BackupReader reader(stream_);
    ASSERT_TRUE(reader.start());
    BackupEntry entry;
    ASSERT_EQ(reader.next(entry), BackupReader::Found::kEntry);
    EXPECT_FALSE(reader.skip(4));
    EXPECT_FALSE(reader.skip(-1));
    EXPECT_TRUE(reader.skip(3));
    EXPECT_EQ(reader.next(entry), BackupReader::Found::kUnended);
}

TEST_F(BackupReaderTest, NamesAnEntryWhoseContentIsCut) {
    const std::string whole = entryOf("first", "abc");
    open(whole.substr(0, whole.size() - 1));
    BackupReader reader(stream_);
    ASSERT_TRUE(reader.start());
    BackupEntry entry;
    EXPECT_EQ(reader.next(entry), BackupReader::Found::kCutEntry);
    EXPECT_EQ(entry.name, "first");
    EXPECT_EQ(entry.size, 3);
}

TEST_F(BackupReaderTest, NamesAnEntryWhoseHeadIsCut) {
    const std::string head = entryOf("first", "");
    for (std::size_t size = 1; size < head.size(); ++size) {
        open(head.substr(0, size));
        BackupReader reader(stream_);
        ASSERT_TRUE(reader.start());
        BackupEntry entry;
        EXPECT_EQ(reader.next(entry), BackupReader::Found::kCutHead) << size;
        stream_.close();
    }
}

TEST_F(BackupReaderTest, FindsDamageAfterTheEnd) {
    BackupEntry entry;
    files_.addFile("/b", std::string(BackupFormat::kBanner, BackupFormat::kBannerSize) + '\0' + "x");
    PFileStream other(files_);
    ASSERT_EQ(other.openFile("/b", PFileStream::kGenericRead, PFileStream::kShareRead, 0), 0);
    BackupReader second(other);
    ASSERT_TRUE(second.start());
    EXPECT_EQ(second.next(entry), BackupReader::Found::kDamage);
}

TEST_F(BackupReaderTest, ReadsNamesUpToTheirLimit) {
    const std::string longest(BackupFormat::kNameLimit, 'n');
    open(entryOf(longest, "") + entryOf(longest + "n", ""));
    BackupReader reader(stream_);
    ASSERT_TRUE(reader.start());
    BackupEntry entry;
    ASSERT_EQ(reader.next(entry), BackupReader::Found::kEntry);
    EXPECT_EQ(entry.name, longest);
    EXPECT_EQ(reader.next(entry), BackupReader::Found::kDamage);
}

}  // namespace

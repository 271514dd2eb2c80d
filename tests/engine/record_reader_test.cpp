#include "engine/record_reader.h"

#include <gmock/gmock.h>

#include <vector>

#include "platform/memory/memory_file_system.h"
#include "support/p_file_stream.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class RecordReaderTest : public testing::Test {
protected:
    // Each record with what it says of its place.
    std::vector<std::string> read(const std::string& content, std::int64_t start = 0) {
        files_.addFile("/log", content);
        EXPECT_EQ(log_.openFile("/log", PFileStream::kGenericRead, PFileStream::kShareRead,
                                PFileStream::kOpenExisting),
                  0);
        RecordReader records(log_, start);
        std::vector<std::string> found;
        while (records.next()) {
            found.push_back(std::string(records.line()) + '|' + std::string(records.former()));
        }
        isTorn_ = records.isTorn();
        hasFailed_ = records.hasFailed();
        return found;
    }

    MemoryFileSystem files_;
    PFileStream log_{files_};
    bool isTorn_ = false;
    bool hasFailed_ = false;
};

TEST_F(RecordReaderTest, GivesEachRecordWithTheLineThatBelongsToIt) {
    EXPECT_THAT(read("head\r\na\t1\r\nBEFORE\t0f\r\nb \r\nc\r\n", 6), ElementsAre("a\t1|", "b|0f", "c|"));
    EXPECT_FALSE(isTorn_);
    EXPECT_FALSE(hasFailed_);
}

TEST_F(RecordReaderTest, LeavesOutARecordThatWasWrittenInPart) {
    EXPECT_THAT(read("a\r\nFILE\tCREATE\t/ap"), ElementsAre("a|"));
    EXPECT_TRUE(isTorn_);
    EXPECT_THAT(read("a\r\nBEFORE\t0f\r\nFILE\tCREATE\t/app\r"), ElementsAre("a|"));
    EXPECT_TRUE(isTorn_);
    EXPECT_FALSE(hasFailed_);
}

TEST_F(RecordReaderTest, GivesALongLineInPieces) {
    const std::vector<std::string> found = read(std::string(3000, 'x') + "\r\nb\r\n");
    ASSERT_EQ(found.size(), 3U);
    EXPECT_EQ(found.back(), "b|");
    EXPECT_FALSE(isTorn_);
}

TEST_F(RecordReaderTest, SaysWhenTheLogCannotBeRead) {
    files_.failFrom(MemoryFileSystem::Operation::kRead, "/log", 1);
    EXPECT_THAT(read("a\r\n"), IsEmpty());
    EXPECT_TRUE(hasFailed_);
    files_.clearFaults();
    files_.failFrom(MemoryFileSystem::Operation::kSeek, "/log", 1);
    read("a\r\n");
    EXPECT_TRUE(hasFailed_);
}

}  // namespace

#include "engine/line_reader.h"

#include <gtest/gtest.h>

#include "platform/memory/memory_file_system.h"
#include "support/p_file_stream.h"
#include "support/p_mem_stream.h"

namespace {

class LineReaderTest : public testing::Test {
protected:
    void fill(const std::string& text) {
        stream_ = std::make_unique<PMemStream>(text.data(), static_cast<std::int64_t>(text.size()));
        lines_ = std::make_unique<LineReader>(*stream_);
    }
    std::vector<std::string> readAll(std::size_t bufferSize) {
        std::vector<std::string> lines;
        for (std::string line; lines_->readLine(line, bufferSize);) {
            lines.push_back(line);
        }
        return lines;
    }

    std::unique_ptr<PMemStream> stream_;
    std::unique_ptr<LineReader> lines_;
};

TEST_F(LineReaderTest, GivesLinesWithTheirLineFeeds) {
    fill("a\r\n\nb");
    EXPECT_EQ(readAll(100), (std::vector<std::string>{"a\r\n", "\n", "b"}));
}

TEST_F(LineReaderTest, HasNoLinesInAnEmptyStream) {
    fill("");
    std::string line = "old";
    EXPECT_FALSE(lines_->readLine(line, 100));
    EXPECT_EQ(line, "");
    EXPECT_FALSE(lines_->hasFailed());
}

TEST_F(LineReaderTest, GivesALineThatIsTooLongInPieces) {
    fill("abcdef\ngh\n");
    EXPECT_EQ(readAll(4), (std::vector<std::string>{"abc", "def", "\n", "gh\n"}));
}

TEST_F(LineReaderTest, KnowsItsPosition) {
    fill("ab\ncd\n");
    std::string line;
    EXPECT_EQ(lines_->position(), 0);
    lines_->readLine(line, 100);
    EXPECT_EQ(lines_->position(), 3);
    lines_->readLine(line, 2);
    EXPECT_EQ(lines_->position(), 4);
}

TEST_F(LineReaderTest, ReadsLinesAcrossItsBlocks) {
    std::string text;
    std::vector<std::string> expected;
    for (int i = 0; i < 30000; ++i) {
        expected.push_back(std::to_string(i) + "\n");
        text += expected.back();
    }
    fill(text);
    EXPECT_EQ(readAll(100), expected);
    EXPECT_EQ(lines_->position(), static_cast<std::int64_t>(text.size()));
}

TEST_F(LineReaderTest, StartsAgainAfterRewind) {
    fill("ab\ncd\n");
    readAll(100);
    ASSERT_TRUE(lines_->rewind());
    EXPECT_EQ(lines_->position(), 0);
    EXPECT_EQ(readAll(100), (std::vector<std::string>{"ab\n", "cd\n"}));
}

TEST_F(LineReaderTest, DistinguishesAFailedReadFromTheEnd) {
    MemoryFileSystem files;
    files.addFile("/log", "abc\n");
    PFileStream file(files);
    ASSERT_EQ(
        file.openFile("/log", PFileStream::kGenericRead, PFileStream::kShareRead, PFileStream::kOpenExisting),
        0);
    files.failAt(MemoryFileSystem::Operation::kRead, "/log", 1);
    LineReader lines(file);
    std::string line;
    EXPECT_FALSE(lines.readLine(line, 100));
    EXPECT_TRUE(lines.hasFailed());
}

TEST_F(LineReaderTest, KeepsZeroBytes) {
    fill(std::string("a\0b\n", 4));
    EXPECT_EQ(readAll(100), (std::vector<std::string>{std::string("a\0b\n", 4)}));
}

TEST(LogFieldTest, StepsOverRunsOfSeparators) {
    EXPECT_EQ(nextLogField("VAR\t\tname\tvalue"), "name\tvalue");
    EXPECT_EQ(firstLogField("name\tvalue"), "name");
    EXPECT_EQ(firstLogField("name"), "name");
    EXPECT_EQ(nextLogField("name"), "");
    EXPECT_EQ(nextLogField("name\t\t"), "");
    EXPECT_EQ(nextLogField(""), "");
}

TEST(LogFieldTest, KnowsARecordByItsTag) {
    EXPECT_TRUE(isLogRecord("DIR\t1\t/a", "DIR"));
    EXPECT_TRUE(isLogRecord("DIR\t", "DIR"));
    for (const char* const line : {"", "DIR", "DIRS\t1", "dir\t1", " DIR\t1"}) {
        EXPECT_FALSE(isLogRecord(line, "DIR")) << line;
    }
}

TEST(LogFieldTest, CutsWhiteSpaceAtTheEndOnly) {
    EXPECT_EQ(withoutTrailingSpace(" a b \t\r\n"), " a b");
    EXPECT_EQ(withoutTrailingSpace("\r\n"), "");
    EXPECT_EQ(withoutTrailingSpace(""), "");
}

}  // namespace

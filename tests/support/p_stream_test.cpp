#include "support/p_stream.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "platform/memory/memory_file_system.h"
#include "support/p_buf_stream.h"
#include "support/p_file_stream.h"
#include "support/p_mem_stream.h"

namespace {

class PStreamBlockTest : public testing::Test {
protected:
    void rewind() { ASSERT_EQ(0, stream_.seek(0)); }

    PMemStream stream_;
    std::vector<char> buffer_ = std::vector<char>(65536, '#');
    std::uint32_t done_ = 0;
    std::uint16_t size_ = 0;
};

TEST_F(PStreamBlockTest, WritesALengthBeforeTheBytes) {
    EXPECT_EQ(0, stream_.writeBlock("abc", 3, done_));
    EXPECT_EQ(5U, done_);
    rewind();
    char raw[8] = {};
    EXPECT_EQ(0, stream_.read(raw, 8, done_));
    EXPECT_EQ(std::string("\3\0abc", 5), std::string(raw, done_));
}

TEST_F(PStreamBlockTest, AnEmptyBlockIsItsLengthAlone) {
    EXPECT_EQ(0, stream_.writeBlock(nullptr, 0, done_));
    EXPECT_EQ(2U, done_);
    EXPECT_EQ(2, stream_.getSize());
    rewind();
    size_ = 7;
    EXPECT_EQ(0, stream_.readBlock(buffer_.data(), size_, done_));
    EXPECT_EQ(0U, size_);
    EXPECT_EQ(2U, done_);
    EXPECT_EQ('#', buffer_[0]);
}

TEST_F(PStreamBlockTest, TheLargestBlockComesBack) {
    const std::string block(65535, 'x');
    EXPECT_EQ(0, stream_.writeBlock(block.data(), 65535, done_));
    EXPECT_EQ(65537U, done_);
    rewind();
    EXPECT_EQ(0, stream_.readBlock(buffer_.data(), size_, done_));
    EXPECT_EQ(block, std::string(buffer_.data(), size_));
    EXPECT_EQ(65537U, done_);
    EXPECT_EQ('#', buffer_[65535]);
}

TEST_F(PStreamBlockTest, ABlockCutAnywhereIsRefused) {
    for (int length = 0; length < 5; ++length) {
        char memory[] = {3, 0, 'a', 'b', 'c'};
        PBufStream cut(memory, length);
        EXPECT_EQ(-1, cut.readBlock(buffer_.data(), size_, done_)) << length;
        EXPECT_EQ(static_cast<std::uint32_t>(length), done_);
        EXPECT_EQ(length < 2 ? 0 : 3, size_);
    }
}

TEST_F(PStreamBlockTest, ReportsABlockThatDoesNotFitWhenWriting) {
    char memory[4];
    PBufStream small(memory, 4);
    EXPECT_EQ(-1, small.writeBlock("abc", 3, done_));
    EXPECT_EQ(4U, done_);
    PBufStream tiny(memory, 1);
    EXPECT_EQ(-1, tiny.writeBlock("abc", 3, done_));
    EXPECT_EQ(1U, done_);
}

TEST_F(PStreamBlockTest, ReadsATextBack) {
    ASSERT_EQ(0, stream_.writeBlock("hello", 5, done_));
    rewind();
    std::string text = "old";
    EXPECT_EQ(0, stream_.readBlockText(text, 6, done_));
    EXPECT_EQ("hello", text);
    EXPECT_EQ(7U, done_);
}

TEST_F(PStreamBlockTest, RefusesATextNotBelowTheCapacity) {
    ASSERT_EQ(0, stream_.writeBlock("hello", 5, done_));
    rewind();
    std::string text = "old";
    EXPECT_EQ(-1, stream_.readBlockText(text, 5, done_));
    EXPECT_EQ("", text);
    EXPECT_EQ(2, stream_.getPosition());
}

TEST_F(PStreamBlockTest, RefusesEvenAnEmptyTextWithoutAnyCapacity) {
    ASSERT_EQ(0, stream_.writeBlock("", 0, done_));
    rewind();
    std::string text;
    EXPECT_EQ(-1, stream_.readBlockText(text, 0, done_));
    EXPECT_EQ(0, (rewind(), stream_.readBlockText(text, 1, done_)));
}

TEST_F(PStreamBlockTest, RefusesATextCutAnywhere) {
    for (int length = 0; length < 5; ++length) {
        char memory[] = {3, 0, 'a', 'b', 'c'};
        PBufStream cut(memory, length);
        std::string text = "old";
        EXPECT_EQ(-1, cut.readBlockText(text, 16, done_)) << length;
        EXPECT_EQ(std::string("abc").substr(0, length < 2 ? 0 : static_cast<std::size_t>(length) - 2), text);
    }
}

TEST_F(PStreamBlockTest, AnErrorOfTheDiskIsPassedOn) {
    MemoryFileSystem files;
    PFileStream file(files);
    ASSERT_EQ(0, file.openWithMode("/a", 0));
    files.setFreeSpace(3);
    EXPECT_EQ(MemoryFileSystem::kDiskFull, file.writeBlock("abc", 3, done_));
    EXPECT_EQ(3U, done_);
}

TEST(PStreamTextTest, WritesTheTextWithoutItsTerminator) {
    PMemStream stream;
    EXPECT_EQ(0, stream.writeText("ab"));
    EXPECT_EQ(0, stream.writeText(""));
    EXPECT_EQ(0, stream.writeText("c"));
    EXPECT_EQ(3, stream.getSize());
}

TEST(PStreamTextTest, ReportsATextThatDoesNotFit) {
    char memory[2];
    PBufStream stream(memory, 2);
    EXPECT_EQ(-1, stream.writeText("abc"));
    EXPECT_EQ("ab", std::string(memory, 2));
}

}  // namespace

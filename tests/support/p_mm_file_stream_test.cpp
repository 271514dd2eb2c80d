#include "support/p_mm_file_stream.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/memory/memory_file_system.h"

namespace {

class PMMFileStreamTest : public testing::Test {
protected:
    PMMFileStreamTest() { files_.addFile("/a", "0123456789"); }

    int open(const char* path = "/a") {
        return stream_.openFile(path, PFileStream::kReadWrite, PFileStream::kShareRead,
                                PFileStream::kOpenExisting);
    }

    MemoryFileSystem files_;
    PMMFileStream stream_{files_};
    char buffer_[16] = {};
    std::uint32_t done_ = 99;
};

TEST_F(PMMFileStreamTest, RefusesEverythingWithoutAView) {
    EXPECT_EQ(-1, stream_.getSize());
    EXPECT_EQ(-1, stream_.getPosition());
    EXPECT_EQ(-1, stream_.read(buffer_, 1, done_));
    EXPECT_EQ(-1, stream_.write("x", 1, done_));
    EXPECT_EQ(-1, stream_.seek(0));
    EXPECT_EQ(-1, stream_.flush());
    EXPECT_EQ(0, stream_.close());
}

TEST_F(PMMFileStreamTest, ReportsAFileThatCanNotBeViewed) {
    files_.addFile("/empty", "");
    EXPECT_EQ(-1, open("/empty"));
    EXPECT_EQ(0, files_.openFileCount());
    EXPECT_EQ(0, stream_.getOpenCount());
    EXPECT_EQ(MemoryFileSystem::kNotFound, open("/none"));
    files_.failAt(MemoryFileSystem::Operation::kRead, "/a", 1);
    EXPECT_EQ(-1, open());
    EXPECT_EQ(-1, stream_.getSize());
}

TEST_F(PMMFileStreamTest, ReadsWithinTheFileOnly) {
    ASSERT_EQ(0, open());
    EXPECT_EQ(0, stream_.read(buffer_, 6, done_));
    EXPECT_EQ("012345", std::string(buffer_, done_));
    EXPECT_EQ(-1, stream_.read(buffer_, 5, done_));
    EXPECT_EQ(0U, done_);
    EXPECT_EQ(6, stream_.getPosition());
    EXPECT_EQ(0, stream_.read(buffer_, 4, done_));
    EXPECT_TRUE(stream_.isAtEnd());
}

TEST_F(PMMFileStreamTest, WritesWithinTheFileOnly) {
    ASSERT_EQ(0, open());
    ASSERT_EQ(0, stream_.seek(8));
    EXPECT_EQ(-1, stream_.write("abc", 3, done_));
    EXPECT_EQ(0U, done_);
    EXPECT_EQ(8, stream_.getPosition());
    EXPECT_EQ(0, stream_.write("ab", 2, done_));
    EXPECT_EQ(0, stream_.seek(1));
    EXPECT_EQ(0, stream_.write("x", 1, done_));
    EXPECT_EQ("0123456789", files_.content("/a"));
    EXPECT_EQ(0, stream_.flush());
    EXPECT_EQ("0x234567ab", files_.content("/a"));
    EXPECT_EQ(-1, stream_.setEndOfStream());
}

TEST_F(PMMFileStreamTest, HandsChangesToTheFileAndReportsAFailureAtTheClosing) {
    ASSERT_EQ(0, open());
    ASSERT_EQ(0, stream_.write("ab", 2, done_));
    EXPECT_EQ(0, stream_.close());
    EXPECT_EQ("ab23456789", files_.content("/a"));
    EXPECT_EQ(-1, stream_.getSize());
    ASSERT_EQ(0, open());
    ASSERT_EQ(0, stream_.write("xy", 2, done_));
    files_.setFreeSpace(1);
    EXPECT_EQ(MemoryFileSystem::kDiskFull, stream_.close());
    EXPECT_FALSE(stream_.isOpen());
}

TEST_F(PMMFileStreamTest, SeeksBelowTheSizeOnly) {
    ASSERT_EQ(0, open());
    EXPECT_EQ(10, stream_.getSize());
    EXPECT_EQ(0, stream_.seek(9));
    EXPECT_EQ(-1, stream_.seek(10));
    EXPECT_EQ(-1, stream_.seek(-1));
    EXPECT_EQ(-1, stream_.seekRelative(1));
    EXPECT_EQ(0, stream_.seekRelative(-9));
    EXPECT_EQ(0, stream_.seekFromEnd(-1));
    EXPECT_EQ(9, stream_.getPosition());
    EXPECT_EQ(-1, stream_.seekFromEnd(0));
    EXPECT_EQ(-1, stream_.seekFromEnd(-11));
}

}  // namespace

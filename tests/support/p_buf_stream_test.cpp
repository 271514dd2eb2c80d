#include "support/p_buf_stream.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>

namespace {

class PBufStreamTest : public testing::Test {
protected:
    PBufStreamTest() : stream_(memory_, 10) { std::memcpy(memory_, "0123456789", 10); }

    std::string read(std::uint32_t size) {
        char buffer[32];
        EXPECT_EQ(0, stream_.read(buffer, size, done_));
        return std::string(buffer, done_);
    }

    char memory_[10];
    PBufStream stream_;
    std::uint32_t done_ = 99;
};

TEST_F(PBufStreamTest, ReadsWhatIsLeft) {
    EXPECT_EQ("01234", read(5));
    EXPECT_EQ(5, stream_.getPosition());
    EXPECT_FALSE(stream_.isAtEnd());
    EXPECT_EQ("56789", read(20));
    EXPECT_TRUE(stream_.isAtEnd());
}

TEST_F(PBufStreamTest, ReadsNothingAtTheEndWithoutAnError) {
    ASSERT_EQ(0, stream_.seek(10));
    EXPECT_EQ("", read(5));
    EXPECT_EQ(0U, done_);
}

TEST_F(PBufStreamTest, RefusesToReadWithoutABlock) {
    PBufStream empty;
    char buffer[4];
    EXPECT_EQ(-1, empty.read(buffer, 4, done_));
    EXPECT_EQ(0U, done_);
    EXPECT_EQ(-1, empty.getSize());
}

TEST_F(PBufStreamTest, RefusesToReadWhenItsCheckRefuses) {
    class Refusing : public PBufStream {
    public:
        using PBufStream::PBufStream;

    protected:
        bool prepareRead() override { return false; }
    };
    Refusing stream(memory_, 10);
    char buffer[4];
    EXPECT_EQ(-1, stream.read(buffer, 4, done_));
    EXPECT_EQ(0U, done_);
    EXPECT_EQ(0, stream.getPosition());
}

TEST_F(PBufStreamTest, WritesWhatFitsAndNoMore) {
    ASSERT_EQ(0, stream_.seek(7));
    EXPECT_EQ(0, stream_.write("abcdef", 6, done_));
    EXPECT_EQ(3U, done_);
    EXPECT_EQ("0123456abc", std::string(memory_, 10));
    EXPECT_EQ(0, stream_.write("x", 1, done_));
    EXPECT_EQ(0U, done_);
    EXPECT_EQ(10, stream_.getSize());
}

TEST_F(PBufStreamTest, SeeksWithinItsBlockOnly) {
    EXPECT_EQ(0, stream_.seek(10));
    EXPECT_EQ(-1, stream_.seek(11));
    EXPECT_EQ(-1, stream_.seek(-1));
    EXPECT_EQ(10, stream_.getPosition());
    EXPECT_EQ(0, stream_.seekRelative(-4));
    EXPECT_EQ(6, stream_.getPosition());
    EXPECT_EQ(-1, stream_.seekRelative(5));
    EXPECT_EQ(-1, stream_.seekRelative(-7));
    EXPECT_EQ(-1, stream_.seekRelative(std::numeric_limits<std::int64_t>::max()));
    EXPECT_EQ(-1, stream_.seekRelative(std::numeric_limits<std::int64_t>::min()));
    EXPECT_EQ(6, stream_.getPosition());
}

TEST_F(PBufStreamTest, SeeksFromTheLastByte) {
    EXPECT_EQ(0, stream_.seekFromEnd(0));
    EXPECT_EQ(9, stream_.getPosition());
    EXPECT_EQ(0, stream_.seekFromEnd(9));
    EXPECT_EQ(0, stream_.getPosition());
    EXPECT_EQ(-1, stream_.seekFromEnd(10));
    EXPECT_EQ(0, stream_.seekFromEnd(-1));
    EXPECT_EQ(10, stream_.getPosition());
    EXPECT_EQ(-1, stream_.seekFromEnd(-2));
    EXPECT_EQ(-1, stream_.seekFromEnd(std::numeric_limits<std::int64_t>::min()));
    EXPECT_EQ(-1, stream_.seekFromEnd(std::numeric_limits<std::int64_t>::max()));
}

TEST_F(PBufStreamTest, EndsAtItsPositionOnRequest) {
    ASSERT_EQ(0, stream_.seek(4));
    EXPECT_EQ(0, stream_.setEndOfStream());
    EXPECT_EQ(4, stream_.getSize());
    EXPECT_TRUE(stream_.isAtEnd());
}

TEST_F(PBufStreamTest, CountsItsOpenings) {
    EXPECT_EQ(0, stream_.getOpenCount());
    EXPECT_EQ(0, stream_.open());
    EXPECT_EQ(0, stream_.open());
    EXPECT_EQ(2, stream_.getOpenCount());
    EXPECT_EQ(0, stream_.close());
    EXPECT_EQ(1, stream_.getOpenCount());
    EXPECT_EQ(0, stream_.flush());
}

TEST_F(PBufStreamTest, StartsAgainWhenAttached) {
    ASSERT_EQ(0, stream_.seek(10));
    char other[3] = {'a', 'b', 'c'};
    stream_.attach(other, 3);
    EXPECT_EQ("abc", read(10));
    stream_.attach(nullptr, 5);
    EXPECT_EQ(-1, stream_.getSize());
}

TEST_F(PBufStreamTest, FreesAnAdoptedBlockOnce) {
    // The sanitizers see a leak or a double release here.
    void* block = std::malloc(3);
    ASSERT_NE(nullptr, block);
    std::memcpy(block, "abc", 3);
    stream_.adopt(block, 3);
    EXPECT_EQ("abc", read(3));
    stream_.adopt(block, 2);
    EXPECT_EQ("ab", read(3));
    stream_.attach(memory_, 10);
    EXPECT_EQ("0", read(1));
    stream_.adopt(std::malloc(8), 8);
}

}  // namespace

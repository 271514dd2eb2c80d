#include "support/p_mem_stream.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string patterned(std::size_t size) {
    std::string text(size, '\0');
    for (std::size_t i = 0; i < size; ++i) {
        text[i] = static_cast<char>(i * 31 + i / 251);
    }
    return text;
}

std::string readAll(PMemStream& stream) {
    std::string text(static_cast<std::size_t>(stream.getSize()), '\0');
    std::uint32_t done = 0;
    EXPECT_EQ(0, stream.seek(0));
    EXPECT_EQ(0, stream.read(text.data(), static_cast<std::uint32_t>(text.size()), done));
    EXPECT_EQ(text.size(), done);
    return text;
}

TEST(PMemStreamTest, GrowsAcrossItsBlocks) {
    const std::string text = patterned(300000);
    PMemStream stream;
    std::uint32_t done = 0;
    for (std::size_t at = 0; at < text.size(); at += done) {
        const std::size_t part = std::min<std::size_t>(70001, text.size() - at);
        ASSERT_EQ(0, stream.write(text.data() + at, static_cast<std::uint32_t>(part), done));
        ASSERT_EQ(part, done);
    }
    EXPECT_EQ(300000, stream.getSize());
    EXPECT_TRUE(stream.isAtEnd());
    EXPECT_EQ(text, readAll(stream));
}

TEST(PMemStreamTest, StartsWithACopyAtTheStart) {
    std::string text = patterned(100000);
    const std::string expected = text;
    PMemStream stream(text.data(), static_cast<std::int64_t>(text.size()));
    text.assign(text.size(), 'x');
    EXPECT_EQ(0, stream.getPosition());
    EXPECT_EQ(expected, readAll(stream));
}

TEST(PMemStreamTest, OverwritesInTheMiddle) {
    PMemStream stream("0123456789", 10);
    std::uint32_t done = 0;
    ASSERT_EQ(0, stream.seek(4));
    ASSERT_EQ(0, stream.write("ab", 2, done));
    EXPECT_EQ("0123ab6789", readAll(stream));
}

TEST(PMemStreamTest, SeeksWithinItsContent) {
    PMemStream stream("0123456789", 10);
    EXPECT_EQ(-1, stream.seek(11));
    EXPECT_EQ(-1, stream.seek(-1));
    EXPECT_EQ(0, stream.seekFromEnd(0));
    EXPECT_EQ(10, stream.getPosition());
    EXPECT_EQ(0, stream.seekFromEnd(-3));
    EXPECT_EQ(7, stream.getPosition());
    EXPECT_EQ(-1, stream.seekFromEnd(1));
    EXPECT_EQ(0, stream.seekRelative(-7));
    EXPECT_EQ(-1, stream.seekRelative(-1));
    EXPECT_EQ(-1, stream.seekRelative(INT64_MAX));
    EXPECT_EQ(0, stream.getPosition());
}

TEST(PMemStreamTest, ReadsNothingAtTheEndWithoutAnError) {
    PMemStream stream;
    char buffer[4];
    std::uint32_t done = 9;
    EXPECT_EQ(0, stream.read(buffer, 4, done));
    EXPECT_EQ(0U, done);
}

TEST(PMemStreamTest, EndsAtItsPositionOnRequestAndGrowsAgain) {
    PMemStream stream("0123456789", 10);
    std::uint32_t done = 0;
    ASSERT_EQ(0, stream.seek(3));
    EXPECT_EQ(0, stream.setEndOfStream());
    EXPECT_EQ(3, stream.getSize());
    ASSERT_EQ(0, stream.write("x", 1, done));
    EXPECT_EQ("012x", readAll(stream));
}

TEST(PMemStreamTest, CountsItsOpenings) {
    PMemStream stream;
    EXPECT_EQ(0, stream.open());
    EXPECT_EQ(1, stream.getOpenCount());
    EXPECT_EQ(0, stream.flush());
    EXPECT_EQ(0, stream.close());
    EXPECT_EQ(0, stream.getOpenCount());
}

}  // namespace

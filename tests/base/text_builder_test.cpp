#include "base/text_builder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace {

using OUtils::TextBuilder;

TEST(TextBuilderTest, AllocatesNothingAtFirst) {
    const TextBuilder builder;
    EXPECT_EQ(nullptr, builder.c_str());
    EXPECT_EQ(0, builder.getLength());
    EXPECT_EQ(0, builder.getCapacity());
}

TEST(TextBuilderTest, TakesASmallBlockSizeAsSixteen) {
    TextBuilder builder(4, 0);
    EXPECT_EQ(16, builder.getBlockSize());
    builder.append("abc");
    EXPECT_EQ(16, builder.getCapacity());
    EXPECT_EQ(16, TextBuilder(-5).getBlockSize());
}

TEST(TextBuilderTest, BoundsItsGrowthFactor) {
    EXPECT_EQ(0.0F, TextBuilder(16, 1.0F).getGrowthFactor());
    EXPECT_EQ(0.0F, TextBuilder(16, -3.0F).getGrowthFactor());
    EXPECT_EQ(1.5F, TextBuilder(16, 1.5F).getGrowthFactor());
    EXPECT_EQ(1024.0F, TextBuilder(16, 5000.0F).getGrowthFactor());
}

TEST(TextBuilderTest, GrowsByBlocksWithRoomForTheTerminator) {
    TextBuilder builder(16, 0);
    builder.append('x', 15);
    EXPECT_EQ(16, builder.getCapacity());
    builder.append('x');
    EXPECT_EQ(32, builder.getCapacity());
    EXPECT_EQ(std::string(16, 'x'), builder.c_str());
}

TEST(TextBuilderTest, AddsOneMoreBlockForAnAdditionOfWholeBlocks) {
    TextBuilder builder(16, 0);
    builder.append('x', 32);
    EXPECT_EQ(48, builder.getCapacity());
}

TEST(TextBuilderTest, GrowsByItsFactorWhenThatIsMore) {
    TextBuilder builder(16, 3.0F);
    builder.append('x', 20);
    EXPECT_EQ(32, builder.getCapacity());
    builder.append('x', 20);
    EXPECT_EQ(96, builder.getCapacity());
}

TEST(TextBuilderTest, RoundsTheFactorUpToWholeBlocks) {
    TextBuilder builder(20, 2.1F);
    builder.append('x', 19);
    ASSERT_EQ(20, builder.getCapacity());
    builder.append('x');
    EXPECT_EQ(60, builder.getCapacity());
}

TEST(TextBuilderTest, ChainsAllKindsOfAddition) {
    TextBuilder builder(16, 2.0F);
    builder.append("ab").append('c').append('d', 2).appendInteger(-42).append("xyz", 2).append(nullptr);
    EXPECT_STREQ("abcdd-42xy", builder.c_str());
    EXPECT_EQ(10, builder.getLength());
}

TEST(TextBuilderTest, AddsNothingForACountBelowOne) {
    TextBuilder builder;
    builder.append('x', 0).append('x', -1).append("abc", 0);
    EXPECT_EQ(0, builder.getLength());
}

TEST(TextBuilderTest, WritesTheLimitsOfIntegers) {
    TextBuilder builder;
    builder.appendInteger(INT64_MIN).append(' ').appendInteger(INT64_MAX);
    EXPECT_STREQ("-9223372036854775808 9223372036854775807", builder.c_str());
}

TEST(TextBuilderTest, ClearMakesABlockAndKeepsTheCapacity) {
    TextBuilder builder(16, 0);
    builder.clear();
    EXPECT_STREQ("", builder.c_str());
    EXPECT_EQ(16, builder.getCapacity());
    builder.append('x', 100);
    const std::int64_t capacity = builder.getCapacity();
    builder.clear();
    EXPECT_STREQ("", builder.c_str());
    EXPECT_EQ(0, builder.getLength());
    EXPECT_EQ(capacity, builder.getCapacity());
}

TEST(TextBuilderTest, KeepsALongTextBuiltPieceByPiece) {
    TextBuilder builder(16, 2.0F);
    std::string expected;
    for (int i = 0; i < 10000; ++i) {
        builder.appendInteger(i);
        expected += std::to_string(i);
    }
    EXPECT_EQ(expected, builder.c_str());
    EXPECT_EQ(static_cast<std::int64_t>(expected.size()), builder.getLength());
}

}  // namespace

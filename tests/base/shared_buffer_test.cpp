#include "base/shared_buffer.h"

#include <gtest/gtest.h>

#include <cstring>
#include <new>
#include <utility>

namespace {

TEST(SharedBufferTest, StartsWithoutABlock) {
    const SharedBuffer buffer;
    EXPECT_EQ(nullptr, buffer.data());
    EXPECT_EQ(0, buffer.size());
    EXPECT_EQ(0, buffer.references());
}

TEST(SharedBufferTest, EndsItsBlockWithAZeroByte) {
    SharedBuffer buffer(3);
    std::memcpy(buffer.data(), "abc", 3);
    EXPECT_EQ(3, buffer.size());
    EXPECT_STREQ("abc", buffer.text());
    EXPECT_STREQ("", SharedBuffer(0).text());
}

TEST(SharedBufferTest, RefusesANegativeSize) {
    EXPECT_THROW(SharedBuffer(-1), std::bad_alloc);
}

TEST(SharedBufferTest, CountsItsHolders) {
    SharedBuffer first(8);
    EXPECT_EQ(1, first.references());
    {
        const SharedBuffer second(first);  // NOLINT(performance-unnecessary-copy-initialization)
        EXPECT_EQ(2, first.references());
        EXPECT_EQ(first.data(), second.data());
    }
    EXPECT_EQ(1, first.references());
}

TEST(SharedBufferTest, AssigningTheSameBlockThroughACopyLeavesTheCount) {
    SharedBuffer first(8);
    const SharedBuffer second(first);
    first = second;
    EXPECT_EQ(2, first.references());
    const SharedBuffer& alias = first;
    first = alias;
    EXPECT_EQ(2, first.references());
    EXPECT_EQ(8, first.size());
}

TEST(SharedBufferTest, AssigningReleasesWhatTheTargetHeld) {
    SharedBuffer first(8);
    const SharedBuffer formerHolder(first);
    const SharedBuffer other(4);
    first = other;
    EXPECT_EQ(1, formerHolder.references());
    EXPECT_EQ(2, other.references());
    EXPECT_EQ(4, first.size());
}

TEST(SharedBufferTest, ReleaseClearsEverything) {
    SharedBuffer first(8);
    const SharedBuffer second(first);
    first.release();
    EXPECT_EQ(nullptr, first.data());
    EXPECT_EQ(0, first.size());
    EXPECT_EQ(1, second.references());
    first.release();
    EXPECT_EQ(1, second.references());
}

TEST(SharedBufferTest, MovingHandsTheReferenceOver) {
    SharedBuffer first(8);
    const unsigned char* const block = first.data();
    SharedBuffer second(std::move(first));
    EXPECT_EQ(block, second.data());
    EXPECT_EQ(1, second.references());
    EXPECT_EQ(0, first.size());  // NOLINT(bugprone-use-after-move)
    SharedBuffer third;
    third = std::move(second);
    EXPECT_EQ(block, third.data());
    EXPECT_EQ(1, third.references());
}

}  // namespace

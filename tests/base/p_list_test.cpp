#include "base/p_list.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

PList<int> filled(int step, int count) {
    PList<int> list(step);
    for (int i = 0; i < count; ++i) {
        list.append(i);
    }
    return list;
}

TEST(PListTest, StartsWithoutABlock) {
    const PList<int> list(16);
    EXPECT_EQ(0, list.getCount());
    EXPECT_EQ(0, list.getCapacity());
    EXPECT_EQ(nullptr, list.begin());
    EXPECT_EQ(list.begin(), list.end());
}

TEST(PListTest, GrowsToAMultipleOfItsStep) {
    EXPECT_EQ(16, filled(16, 1).getCapacity());
    EXPECT_EQ(16, filled(16, 15).getCapacity());
    EXPECT_EQ(100, filled(100, 99).getCapacity());
}

TEST(PListTest, GrowsByAWholeStepWhenItIsFull) {
    EXPECT_EQ(32, filled(16, 17).getCapacity());
    EXPECT_EQ(200, filled(100, 101).getCapacity());
    EXPECT_EQ(2, filled(1, 1).getCapacity());
    EXPECT_EQ(4, filled(1, 3).getCapacity());
}

TEST(PListTest, DoublesWithoutAStep) {
    EXPECT_EQ(1, filled(-1, 1).getCapacity());
    EXPECT_EQ(2, filled(-1, 2).getCapacity());
    EXPECT_EQ(4, filled(-1, 3).getCapacity());
    EXPECT_EQ(128, filled(0, 100).getCapacity());
}

TEST(PListTest, KeepsElementsAcrossGrowth) {
    const PList<int> list = filled(3, 1000);
    ASSERT_EQ(1000, list.getCount());
    for (int i = 0; i < 1000; ++i) {
        ASSERT_EQ(i, list.at(i));
    }
}

TEST(PListTest, AppendsAnElementOfItsOwnBlock) {
    PList<int> list = filled(-1, 4);
    ASSERT_EQ(4, list.getCapacity());
    list.append(list.at(3));
    EXPECT_EQ(3, list.at(4));
}

TEST(PListTest, ClearFreesTheBlock) {
    PList<int> list = filled(16, 20);
    list.clear();
    EXPECT_EQ(0, list.getCount());
    EXPECT_EQ(0, list.getCapacity());
    list.append(7);
    EXPECT_EQ(16, list.getCapacity());
    EXPECT_EQ(7, list.at(0));
}

TEST(PListTest, MovingTakesBlockAndStep) {
    PList<int> source = filled(16, 2);
    const int* const block = source.begin();
    const PList<int> target(std::move(source));
    EXPECT_EQ(block, target.begin());
    EXPECT_EQ(2, target.getCount());
    PList<int> assigned;
    assigned = filled(10, 11);
    EXPECT_EQ(20, assigned.getCapacity());
    EXPECT_EQ(10, assigned.at(10));
}

TEST(PListTest, IteratesInOrder) {
    int expected = 0;
    for (const int element : filled(-1, 5)) {
        EXPECT_EQ(expected++, element);
    }
    EXPECT_EQ(5, expected);
}

}  // namespace

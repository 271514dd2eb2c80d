#include "platform/threads.h"

#include <gtest/gtest.h>

#include <set>
#include <thread>

namespace {

TEST(ThreadsTest, ThereIsAtLeastOneProcessor) {
    EXPECT_GE(platform::processorCount(), 1);
}

TEST(ThreadsTest, GroupsHaveProcessorsAndNumbersOfTheirOwn) {
    const auto groups = platform::usableProcessorGroups();
    ASSERT_FALSE(groups.empty());
    std::set<int> numbers;
    for (const auto& group : groups) {
        EXPECT_NE(group.mask, 0U);
        EXPECT_TRUE(numbers.insert(group.number).second);
    }
}

TEST(ThreadsTest, AThreadCanBeBoundToEachUsableGroup) {
    for (const auto& group : platform::usableProcessorGroups()) {
        std::thread([&] { EXPECT_TRUE(platform::bindThisThread(group)); }).join();
    }
}

TEST(ThreadsTest, BindingToNoProcessorFails) {
    std::thread([] { EXPECT_FALSE(platform::bindThisThread({0, 0})); }).join();
}

TEST(ThreadsTest, PriorityCanBeLowered) {
    std::thread([] { EXPECT_TRUE(platform::setThisThreadLowPriority(true)); }).join();
}

}  // namespace

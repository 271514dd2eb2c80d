#include "support/processor_rotation.h"

#include <gtest/gtest.h>

#include <bit>
#include <string>
#include <vector>

#include "platform/memory/memory_environment.h"

namespace {

int usableProcessors() {
    int sum = 0;
    for (const platform::ProcessorGroup& group : platform::usableProcessorGroups()) {
        sum += std::popcount(group.mask);
    }
    return sum;
}

int countFor(const char* text) {
    MemoryEnvironment environment;
    environment.variables["ORMEL_NUM_THREADS"] = text;
    return OUtils::threadCountOf(OUtils::readThreadSettings(environment));
}

TEST(ThreadSettingsTest, TakesTheCountFromTheEnvironment) {
    EXPECT_EQ(3, countFor("3"));
    EXPECT_EQ(17, countFor(" 17 threads"));
    EXPECT_EQ(1024, countFor("1024"));
    EXPECT_EQ(1024, countFor("2000000000"));
}

TEST(ThreadSettingsTest, TakesTheCountOfTheMachineWhenTheEnvironmentHasNone) {
    const int expected = usableProcessors() > 0 ? usableProcessors() : platform::processorCount();
    EXPECT_GE(expected, 1);
    MemoryEnvironment environment;
    EXPECT_EQ(expected, OUtils::threadCountOf(OUtils::readThreadSettings(environment)));
    for (const char* text : {"0", "-2", "many", "", "x4"}) {
        EXPECT_EQ(expected, countFor(text)) << text;
    }
}

TEST(ThreadSettingsTest, TakesTheReportedProcessorsWithoutAffinity) {
    MemoryEnvironment environment;
    environment.variables["ORMEL_USE_THREAD_AFFINITY"] = "0";
    EXPECT_EQ(platform::processorCount(), OUtils::threadCountOf(OUtils::readThreadSettings(environment)));
}

TEST(ThreadSettingsTest, KeepsAffinityUnlessItIsSetToZero) {
    MemoryEnvironment environment;
    EXPECT_TRUE(OUtils::readThreadSettings(environment).affinity);
    environment.variables["ORMEL_USE_THREAD_AFFINITY"] = "1";
    EXPECT_TRUE(OUtils::readThreadSettings(environment).affinity);
    for (const char* text : {"0", "", "no"}) {
        environment.variables["ORMEL_USE_THREAD_AFFINITY"] = text;
        EXPECT_FALSE(OUtils::readThreadSettings(environment).affinity) << text;
    }
}

TEST(ProcessorRotationTest, FillsGroupAfterGroupAndStartsOver) {
    const std::vector<platform::ProcessorGroup> groups{{4, 0b101}, {5, 0b1}, {9, 0b1110}};
    std::string order;
    for (int index = 0; index < 14; ++index) {
        const platform::ProcessorGroup* group = OUtils::groupForThread(groups, index);
        ASSERT_NE(nullptr, group);
        order += std::to_string(group->number);
    }
    EXPECT_EQ("44599944599944", order);
}

TEST(ProcessorRotationTest, BindsNothingWithFewerThanTwoGroups) {
    EXPECT_EQ(nullptr, OUtils::groupForThread({}, 0));
    EXPECT_EQ(nullptr, OUtils::groupForThread({{0, 0xFF}}, 3));
    EXPECT_EQ(nullptr, OUtils::groupForThread({{0, 0}, {1, 0}}, 0));
}

}  // namespace

#include "support/processor_rotation.h"

#include <gtest/gtest.h>

#include <bit>
#include <string>
#include <vector>

#include "fakes/fake_environment.h"

namespace {

int usableProcessors() {
    int sum = 0;
    for (const platform::ProcessorGroup& group : platform::usableProcessorGroups()) {
        sum += std::popcount(group.mask);
    }
    return sum;
}

TEST(DefaultThreadCountTest, IsWhatTheEnvironmentSays) {
    FakeEnvironment environment;
    environment.variables["ORMEL_NUM_THREADS"] = "3";
    EXPECT_EQ(3, OUtils::readDefaultThreadCount(environment));
    environment.variables["ORMEL_NUM_THREADS"] = " 17 threads";
    EXPECT_EQ(17, OUtils::readDefaultThreadCount(environment));
    environment.variables["ORMEL_NUM_THREADS"] = "1024";
    EXPECT_EQ(1024, OUtils::readDefaultThreadCount(environment));
    environment.variables["ORMEL_NUM_THREADS"] = "2000000000";
    EXPECT_EQ(1024, OUtils::readDefaultThreadCount(environment));
}

TEST(DefaultThreadCountTest, IsTheMachinesWhenTheEnvironmentGivesNone) {
    FakeEnvironment environment;
    const int expected = usableProcessors() > 0 ? usableProcessors() : platform::processorCount();
    EXPECT_EQ(expected, OUtils::readDefaultThreadCount(environment));
    for (const char* text : {"0", "-2", "many", "", "x4"}) {
        environment.variables["ORMEL_NUM_THREADS"] = text;
        EXPECT_EQ(expected, OUtils::readDefaultThreadCount(environment)) << text;
    }
    EXPECT_GE(expected, 1);
}

TEST(DefaultThreadCountTest, IsTheReportedCountWithoutAffinity) {
    FakeEnvironment environment;
    environment.variables["ORMEL_USE_THREAD_AFFINITY"] = "0";
    EXPECT_EQ(platform::processorCount(), OUtils::readDefaultThreadCount(environment));
}

TEST(ThreadAffinityTest, IsOnUnlessSetToZero) {
    FakeEnvironment environment;
    EXPECT_TRUE(OUtils::readThreadAffinity(environment));
    environment.variables["ORMEL_USE_THREAD_AFFINITY"] = "1";
    EXPECT_TRUE(OUtils::readThreadAffinity(environment));
    for (const char* text : {"0", "", "no"}) {
        environment.variables["ORMEL_USE_THREAD_AFFINITY"] = text;
        EXPECT_FALSE(OUtils::readThreadAffinity(environment)) << text;
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

TEST(ProcessorRotationTest, TheValuesOfTheProcessStay) {
    EXPECT_GE(OUtils::defaultThreadCount(), 1);
    EXPECT_EQ(OUtils::defaultThreadCount(), OUtils::defaultThreadCount());
    EXPECT_EQ(OUtils::useThreadAffinity(), OUtils::useThreadAffinity());
}

}  // namespace

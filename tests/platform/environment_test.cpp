#include "platform/environment.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/file_system.h"

namespace {

constexpr const char* kName = "TANDREL_TEST_VARIABLE";

TEST(EnvironmentTest, HasNoValueForAMissingVariable) {
    EXPECT_EQ(platform::systemEnvironment().get("TANDREL_TEST_NEVER_SET"), std::nullopt);
    EXPECT_EQ(platform::systemEnvironment().get(""), std::nullopt);
}

TEST(EnvironmentTest, ReturnsWhatWasSet) {
    platform::Environment& environment = platform::systemEnvironment();
    ASSERT_TRUE(environment.set(kName, "one"));
    EXPECT_EQ(environment.get(kName), "one");
    ASSERT_TRUE(environment.set(kName,
                                "Gr\xc3\xb6\xc3\x9f"
                                "e;\xf0\x9f\x93\xa6"));
    EXPECT_EQ(environment.get(kName),
              "Gr\xc3\xb6\xc3\x9f"
              "e;\xf0\x9f\x93\xa6");
}

TEST(EnvironmentTest, KeepsLongValues) {
    platform::Environment& environment = platform::systemEnvironment();
    const std::string value(20000, 'v');
    ASSERT_TRUE(environment.set(kName, value.c_str()));
    EXPECT_EQ(environment.get(kName), value);
}

TEST(EnvironmentTest, RefusesImpossibleNames) {
    platform::Environment& environment = platform::systemEnvironment();
    EXPECT_FALSE(environment.set("", "value"));
    EXPECT_FALSE(environment.set("a=b", "value"));
    EXPECT_EQ(environment.get("a"), std::nullopt);
}

TEST(EnvironmentTest, GivesThePathOfTheRunningProgram) {
    std::string path;
    ASSERT_TRUE(platform::systemEnvironment().programPath(path));
    EXPECT_TRUE(platform::systemFileSystem().fileSize(path) > 0) << path;
}

TEST(EnvironmentTest, GivesTheDirectoryFromWhichRelativePathsCount) {
    std::string path;
    ASSERT_TRUE(platform::systemEnvironment().currentDirectory(path));
    EXPECT_TRUE(platform::systemFileSystem().isDirectory(path)) << path;
    EXPECT_NE(path.find_first_of("/\\"), std::string::npos) << path;
}

TEST(EnvironmentTest, GivesAPlaceForTheRecordsOfThisMachine) {
    std::string path;
    ASSERT_TRUE(platform::systemEnvironment().stateDirectory(path));
    EXPECT_NE(path.find_first_of("/\\"), std::string::npos) << path;
}

}  // namespace

#include "platform/change_rules.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "fakes/temporary_directory.h"

namespace {

using platform::Intent;
using platform::PathParts;

class ChangeRulesTest : public testing::Test {
protected:
    TemporaryDirectory directory_;
    platform::ChangeRules& rules_ = platform::systemChangeRules();
};

TEST_F(ChangeRulesTest, RefusesNothingInOnesOwnDirectoryAndChangesNothing) {
    const std::string file = directory_.file("f");
    writeTestFile(file, "content");
    const auto fileTime = std::filesystem::last_write_time(file);
    const auto directoryTime = std::filesystem::last_write_time(directory_.path());
    for (const Intent intent :
         {Intent::kWriteFile, Intent::kMakeEntry, Intent::kMoveEntry, Intent::kRemoveEntry}) {
        EXPECT_EQ(rules_.wouldRefuse(intent, file), 0) << static_cast<int>(intent);
    }
    EXPECT_EQ(rules_.wouldRefuse(Intent::kMakeEntry, directory_.file("new")), 0);
    EXPECT_EQ(rules_.wouldRefuse(Intent::kRemoveEntry, directory_.path()), 0);
    EXPECT_FALSE(testFileExists(directory_.file("new")));
    EXPECT_EQ(readTestFile(file), "content");
    EXPECT_EQ(std::filesystem::last_write_time(file), fileTime);
    EXPECT_EQ(std::filesystem::last_write_time(directory_.path()), directoryTime);
}

TEST_F(ChangeRulesTest, RefusesToWriteWhatIsNotThere) {
    EXPECT_NE(rules_.wouldRefuse(Intent::kWriteFile, directory_.file("none")), 0);
    EXPECT_NE(rules_.wouldRefuse(Intent::kMakeEntry, directory_.file("none") + "/f"), 0);
}

TEST_F(ChangeRulesTest, TakesPathsApart) {
    PathParts whole;
    PathParts spelled;
    ASSERT_EQ(rules_.partsOf(directory_.path() + "/a/b", whole), 0);
    ASSERT_EQ(rules_.partsOf(directory_.path() + "\\./a//b/", spelled), 0);
    EXPECT_EQ(whole.parts, spelled.parts);
    ASSERT_GE(whole.parts.size(), 3U);
    EXPECT_EQ(whole.parts.back(), "b");
    std::string path = whole.root;
    for (std::size_t i = 0; i + 2 < whole.parts.size(); ++i) {
        path = joinedPath(rules_, path, whole.parts[i]);
    }
    EXPECT_TRUE(std::filesystem::equivalent(path, directory_.path())) << path;
    EXPECT_NE(rules_.partsOf("", whole), 0);
    ASSERT_EQ(rules_.partsOf("relative", whole), 0);
    EXPECT_EQ(whole.parts.back(), "relative");
    EXPECT_GT(whole.parts.size(), 1U);
}

TEST_F(ChangeRulesTest, ComparesNamesAsTheSystemDoes) {
    EXPECT_EQ(rules_.nameKey("Name") == rules_.nameKey("NAME"), !rules_.distinguishesCase());
    EXPECT_EQ(rules_.nameKey("Name"), rules_.nameKey("Name"));
    EXPECT_NE(rules_.nameKey("Name"), rules_.nameKey("Names"));
    EXPECT_TRUE(rules_.isPlainName("name"));
    for (const char* const name : {"", ".", "..", "a/b", "a\\b"}) {
        EXPECT_FALSE(rules_.isPlainName(name)) << name;
    }
}

TEST_F(ChangeRulesTest, RefusalsHaveStatuses) {
    for (int refusal = 0; refusal < static_cast<int>(platform::Refusal::kAtRestart); ++refusal) {
        EXPECT_NE(rules_.statusOf(static_cast<platform::Refusal>(refusal)), 0) << refusal;
    }
}

}  // namespace

#include <gtest/gtest.h>

#include "commands_fixture.h"

namespace {

constexpr std::string_view kElement = "  <Value Name=\"NAME\" DataType=\"value\">Ada</Value>";
constexpr std::string_view kAsking =
    "<R><ProductDesc/><DefValues><Value Name='NAME' DataType='value'>Ada</Value></DefValues>"
    "<Dialogs><Ask><Field Type='EditBox' Label='Who' x='1' y='1'>NAME</Field></Ask></Dialogs></R>";

class AnswersCommandTest : public CommandsTest {
protected:
    AnswersCommandTest() { files_.addFile("/in/install.xml", std::string(kAsking)); }
};

TEST_F(AnswersCommandTest, PrintsTheAnswersOfADescription) {
    EXPECT_EQ(run({"answers", "/in/install.xml"}), 0);
    EXPECT_EQ(std::ranges::count(output_.lines, kElement), 1);
    EXPECT_EQ(output_.errors, std::vector<std::string>{});
}

TEST_F(AnswersCommandTest, WritesThoseOfAPackageToAFile) {
    ASSERT_EQ(build(), 0);
    files_.addFile("/answers.xml", "earlier");
    EXPECT_EQ(run({"answers", "/out/setup", "--output", "/answers.xml"}), 0);
    EXPECT_NE(files_.content("/answers.xml").find(std::string(kElement) + "\n"), std::string::npos);
    EXPECT_EQ(output_.lines, std::vector<std::string>{});
}

TEST_F(AnswersCommandTest, FailsInOneLine) {
    EXPECT_EQ(run({"answers", "/none"}), 1);
    EXPECT_EQ(output_.errors.size(), 1U);
    EXPECT_EQ(run({"answers", "/in/a/read.me"}), 1);
    EXPECT_EQ(output_.errors.size(), 1U);
    EXPECT_EQ(run({"answers", "/in/install.xml", "--output", "/no/such/answers.xml"}), 1);
    EXPECT_EQ(output_.errors.size(), 1U);
    EXPECT_EQ(run({"answers"}), 2);
}

}  // namespace

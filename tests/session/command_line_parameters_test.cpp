#include "session/command_line_parameters.h"

#include <gtest/gtest.h>

namespace {

TEST(CommandLineParametersTest, readsEachFormOfAnOption) {
    CommandLineParameters parameters;
    ASSERT_EQ(parameters.parse({"-a=1", "--b=2", "-c", "3", "--d", "-e"}), 0);
    ASSERT_EQ(parameters.getCount(), 5);
    EXPECT_STREQ(parameters.find("a"), "1");
    EXPECT_STREQ(parameters.find("b"), "2");
    EXPECT_STREQ(parameters.find("c"), "3");
    EXPECT_STREQ(parameters.find("d"), "");
    EXPECT_STREQ(parameters.find("e"), "");
    EXPECT_STREQ(parameters.name(2), "c");
    EXPECT_STREQ(parameters.value(2), "3");
}

TEST(CommandLineParametersTest, hasNoOptionsForAnEmptyCommandLine) {
    CommandLineParameters parameters;
    EXPECT_EQ(parameters.parse({}), 0);
    EXPECT_EQ(parameters.getCount(), 0);
    EXPECT_EQ(parameters.find("debug"), nullptr);
}

TEST(CommandLineParametersTest, skipsEmptyTokens) {
    CommandLineParameters parameters;
    ASSERT_EQ(parameters.parse({"", "-a", "", "x", ""}), 0);
    EXPECT_EQ(parameters.getCount(), 1);
    EXPECT_STREQ(parameters.find("a"), "x");
}

TEST(CommandLineParametersTest, refusesAWordThatFollowsNoOption) {
    CommandLineParameters first;
    EXPECT_EQ(first.parse({"alpha"}), -1);
    CommandLineParameters second;
    EXPECT_EQ(second.parse({"-gui=0", "alpha", "beta"}), -1);
    EXPECT_EQ(second.getCount(), 1);
    CommandLineParameters third;
    EXPECT_EQ(third.parse({"-gui", "alpha", "beta"}), -1);
    EXPECT_STREQ(third.find("gui"), "alpha");
}

TEST(CommandLineParametersTest, keepsAnOptionWithAnEmptyValueOpenForAWord) {
    CommandLineParameters parameters;
    ASSERT_EQ(parameters.parse({"-a=", "word"}), 0);
    EXPECT_STREQ(parameters.find("a"), "word");
}

TEST(CommandLineParametersTest, dropsAnEqualsSignAheadOfAWord) {
    CommandLineParameters parameters;
    ASSERT_EQ(parameters.parse({"-a", "=word"}), 0);
    EXPECT_STREQ(parameters.find("a"), "word");
}

TEST(CommandLineParametersTest, dropsQuotesAroundTheWholeValueOnly) {
    CommandLineParameters parameters;
    ASSERT_EQ(parameters.parse({"-a=\"x y\"", "-b=\"x", "-c=\"", "-d=\"\"", "-e=x\"y"}), 0);
    EXPECT_STREQ(parameters.find("a"), "x y");
    EXPECT_STREQ(parameters.find("b"), "\"x");
    EXPECT_STREQ(parameters.find("c"), "\"");
    EXPECT_STREQ(parameters.find("d"), "");
    EXPECT_STREQ(parameters.find("e"), "x\"y");
}

TEST(CommandLineParametersTest, givesTheFirstOfSeveralOptionsOfOneName) {
    CommandLineParameters parameters;
    ASSERT_EQ(parameters.parse({"-a=1", "-a=2"}), 0);
    EXPECT_EQ(parameters.getCount(), 2);
    EXPECT_STREQ(parameters.find("a"), "1");
}

TEST(CommandLineParametersTest, comparesNamesWithTheirCase) {
    CommandLineParameters parameters;
    ASSERT_EQ(parameters.parse({"-Quiet=1"}), 0);
    EXPECT_EQ(parameters.find("quiet"), nullptr);
    EXPECT_STREQ(parameters.find("Quiet"), "1");
}

TEST(CommandLineParametersTest, takesOnlyTwoDashesAndTheFirstEqualsSign) {
    CommandLineParameters parameters;
    ASSERT_EQ(parameters.parse({"---a=b=c", "-", "-=x"}), 0);
    EXPECT_STREQ(parameters.find("-a"), "b=c");
    EXPECT_STREQ(parameters.name(1), "");
    EXPECT_STREQ(parameters.value(2), "x");
}

TEST(CommandLineParametersTest, keepsTextsInPlaceWhenTheListGrows) {
    std::vector<std::string> tokens;
    for (int i = 0; i < 500; ++i) {
        tokens.push_back("-n" + std::to_string(i) + "=" + std::to_string(i));
    }
    CommandLineParameters parameters;
    ASSERT_EQ(parameters.parse(tokens), 0);
    const char* value = parameters.find("n0");
    EXPECT_STREQ(value, "0");
    EXPECT_STREQ(parameters.find("n499"), "499");
    EXPECT_EQ(value, parameters.find("n0"));
}

}  // namespace

#include "session/command_line_parameters.h"

#include <gtest/gtest.h>

namespace {

TEST(CommandLineParametersTest, ReadsEachFormOfAnOption) {
    CommandLineParameters parameters;
    ASSERT_EQ(parameters.parse({"-a=1", "--b=2", "-c", "3", "--d", "-e"}), 0);
    ASSERT_EQ(parameters.getCount(), 5);
    EXPECT_EQ(parameters.find("a"), "1");
    EXPECT_EQ(parameters.find("b"), "2");
    EXPECT_EQ(parameters.find("c"), "3");
    EXPECT_EQ(parameters.find("d"), "");
    EXPECT_EQ(parameters.find("e"), "");
    EXPECT_EQ(parameters.name(2), "c");
    EXPECT_EQ(parameters.value(2), "3");
}

TEST(CommandLineParametersTest, HasNoOptionsForAnEmptyCommandLine) {
    CommandLineParameters parameters;
    EXPECT_EQ(parameters.parse({}), 0);
    EXPECT_EQ(parameters.getCount(), 0);
    EXPECT_EQ(parameters.find("debug"), std::nullopt);
}

TEST(CommandLineParametersTest, SkipsEmptyTokens) {
    CommandLineParameters parameters;
    ASSERT_EQ(parameters.parse({"", "-a", "", "x", ""}), 0);
    EXPECT_EQ(parameters.getCount(), 1);
    EXPECT_EQ(parameters.find("a"), "x");
}

TEST(CommandLineParametersTest, RefusesAWordThatFollowsNoOption) {
    CommandLineParameters first;
    EXPECT_EQ(first.parse({"alpha"}), -1);
    CommandLineParameters second;
    EXPECT_EQ(second.parse({"-gui=0", "alpha", "beta"}), -1);
    EXPECT_EQ(second.getCount(), 1);
    CommandLineParameters third;
    EXPECT_EQ(third.parse({"-gui", "alpha", "beta"}), -1);
    EXPECT_EQ(third.find("gui"), "alpha");
}

TEST(CommandLineParametersTest, KeepsAnOptionWithAnEmptyValueOpenForAWord) {
    CommandLineParameters parameters;
    ASSERT_EQ(parameters.parse({"-a=", "word"}), 0);
    EXPECT_EQ(parameters.find("a"), "word");
}

TEST(CommandLineParametersTest, DropsAnEqualsSignAheadOfAWord) {
    CommandLineParameters parameters;
    ASSERT_EQ(parameters.parse({"-a", "=word"}), 0);
    EXPECT_EQ(parameters.find("a"), "word");
}

TEST(CommandLineParametersTest, DropsQuotesAroundTheWholeValueOnly) {
    CommandLineParameters parameters;
    ASSERT_EQ(parameters.parse({"-a=\"x y\"", "-b=\"x", "-c=\"", "-d=\"\"", "-e=x\"y"}), 0);
    EXPECT_EQ(parameters.find("a"), "x y");
    EXPECT_EQ(parameters.find("b"), "\"x");
    EXPECT_EQ(parameters.find("c"), "\"");
    EXPECT_EQ(parameters.find("d"), "");
    EXPECT_EQ(parameters.find("e"), "x\"y");
}

TEST(CommandLineParametersTest, GivesTheFirstOfSeveralOptionsOfOneName) {
    CommandLineParameters parameters;
    ASSERT_EQ(parameters.parse({"-a=1", "-a=2"}), 0);
    EXPECT_EQ(parameters.getCount(), 2);
    EXPECT_EQ(parameters.find("a"), "1");
}

TEST(CommandLineParametersTest, ComparesNamesWithTheirCase) {
    CommandLineParameters parameters;
    ASSERT_EQ(parameters.parse({"-Quiet=1"}), 0);
    EXPECT_EQ(parameters.find("quiet"), std::nullopt);
    EXPECT_EQ(parameters.find("Quiet"), "1");
}

TEST(CommandLineParametersTest, TakesOnlyTwoDashesAndTheFirstEqualsSign) {
    CommandLineParameters parameters;
    ASSERT_EQ(parameters.parse({"---a=b=c", "-", "-=x"}), 0);
    EXPECT_EQ(parameters.find("-a"), "b=c");
    EXPECT_EQ(parameters.name(1), "");
    EXPECT_EQ(parameters.value(2), "x");
}

TEST(CommandLineParametersTest, KeepsTextsInPlaceWhenTheListGrows) {
    std::vector<std::string> tokens;
    for (int i = 0; i < 500; ++i) {
        tokens.push_back("-n" + std::to_string(i) + "=" + std::to_string(i));
    }
    CommandLineParameters parameters;
    ASSERT_EQ(parameters.parse(tokens), 0);
    const auto value = parameters.find("n0");
    ASSERT_EQ(value, "0");
    EXPECT_EQ(parameters.find("n499"), "499");
    EXPECT_EQ(value->data(), parameters.find("n0")->data());
}

TEST(CommandLineParametersTest, KnowsAnEmptiedValueFromASwitch) {
    CommandLineParameters parameters;
    ASSERT_EQ(parameters.parse({"-a=", "-b", "-c=1", "-d=\"\"", "-e=", "word"}), 0);
    std::vector<bool> emptied;
    for (int i = 0; i < parameters.getCount(); ++i) {
        emptied.push_back(parameters.isArgumentEmptied(i));
    }
    EXPECT_EQ(emptied, (std::vector<bool>{true, false, false, true, false}));
}

}  // namespace

#include "description/expressions.h"

#include <gtest/gtest.h>

#include "description/pxml.h"
#include "log_lines.h"
#include "map_lookup.h"
#include "platform/written_path.h"

namespace {

class ExpressionsTest : public testing::Test {
protected:
    MapLookup variables_;
    LogLines log_;
    Expressions expressions_{variables_, log_.console()};
};

TEST_F(ExpressionsTest, TakesMissingAndEmptyConditionsForTrue) {
    EXPECT_TRUE(expressions_.holds(std::nullopt));
    EXPECT_TRUE(expressions_.holds(""));
    EXPECT_EQ(expressions_.evaluate(""), true);
}

TEST_F(ExpressionsTest, HoldsABrokenConditionToBeMet) {
    EXPECT_FALSE(expressions_.holds("0"));
    EXPECT_TRUE(expressions_.holds("1"));
    EXPECT_TRUE(expressions_.holds("nonsense"));
}

TEST_F(ExpressionsTest, VariablesAreExpandedAheadOfTheEvaluation) {
    variables_.values = {{"A", "1 "}, {"T", "abc"}, {"L", "1,0"}};
    EXPECT_EQ(expressions_.evaluate("[A]==1"), true);
    EXPECT_EQ(expressions_.evaluate("'[T]'=='abc'"), true);
    EXPECT_EQ(expressions_.evaluate("[L]"), false) << "a value brings operators in";
}

TEST_F(ExpressionsTest, UsualMistakesFail) {
    variables_.values = {{"EMPTY", ""}, {"TEXT", "abc"}, {"QUOTE", "it's"}};
    EXPECT_EQ(expressions_.evaluate("[UNDEFINED]==1"), std::nullopt);
    EXPECT_EQ(expressions_.evaluate("[EMPTY]==1"), std::nullopt);
    EXPECT_EQ(expressions_.evaluate("[EMPTY]"), std::nullopt);
    EXPECT_EQ(expressions_.evaluate("[TEXT]==1"), std::nullopt);
    EXPECT_EQ(expressions_.evaluate("'[QUOTE]'=='x'"), true) << "the quote in the value ends the string";
    EXPECT_EQ(log_.lines.size(), 1U);
}

TEST_F(ExpressionsTest, OnlyTheFirstTwoThousandFortySevenBytesCount) {
    const std::string padded = "1==1" + std::string(2042, ' ');
    EXPECT_EQ(expressions_.evaluate(padded + ",0"), std::nullopt) << "the comma is the last byte read";
    EXPECT_EQ(expressions_.evaluate(padded + " ,0"), true);
}

TEST_F(ExpressionsTest, DeepNestingIsCutAndEvaluated) {
    EXPECT_EQ(expressions_.evaluate(std::string(100000, '(') + "1"), std::nullopt);
    EXPECT_EQ(expressions_.evaluate(std::string(2046, '(') + "1"), true);
}

TEST_F(ExpressionsTest, ExpandsBothForms) {
    variables_.values = {{"A", "1"}};
    EXPECT_EQ(expressions_.expand("x[A]", 16), "x1");
    EXPECT_EQ(expressions_.expandDollars("y$A", 16), "y1");
}

TEST_F(ExpressionsTest, CutsAnExpansionAtItsCapacity) {
    variables_.values = {{"A", "abcdef"}};
    EXPECT_EQ(expressions_.expand("x[A]", 4), "xab");
    EXPECT_EQ(expressions_.expand("", 4), std::nullopt);
    EXPECT_EQ(expressions_.expand("[NO]", 100, true), std::nullopt);
    EXPECT_EQ(expressions_.expandDollars("$A", 6), std::nullopt);
    EXPECT_EQ(expressions_.expandDollars("$A", 7), "abcdef");
}

TEST_F(ExpressionsTest, ExpandsWholeTexts) {
    variables_.values = {{"A", std::string(1000, 'a')}};
    std::string source;
    for (int i = 0; i < 100; ++i) {
        source += "[A]";
    }
    EXPECT_EQ(expressions_.expandWhole(source).size(), 100000U);
    EXPECT_EQ(expressions_.expandWhole(""), "");
    EXPECT_EQ(expressions_.expandWhole("x[NO]"), "x[NO]");
    EXPECT_EQ(expressions_.expandWhole("x[NO]", true), "");
}

TEST_F(ExpressionsTest, KeepsWhatWasProducedBeforeAFault) {
    std::string text = "old";
    EXPECT_FALSE(expressions_.expandDollarsUpToFault("a$NO", 16, text));
    EXPECT_EQ(text, "a");
}

TEST_F(ExpressionsTest, WritesPathsForTheSystemAndNothingElse) {
    variables_.values = {{"DIR", "\\opt\\demo"}, {"RE", "\\w\\n"}};
    const std::string text = "[DIR]\\n \\\\server\\share [RE] [DIR]";
    EXPECT_EQ(expressions_.expandWholeForSystem(text), expressions_.expandWhole(text))
        << "no variable counts as one of a path yet";
    PXML description;
    description.parseText("<R><FN Dest='[DIR]'>f</FN></R>");
    expressions_.setPathVariables(PathVariables(description));
    const std::string shown = platform::writtenPath("\\opt\\demo");
    EXPECT_EQ(expressions_.expandWholeForSystem(text), shown + "\\n \\\\server\\share \\w\\n " + shown);
    EXPECT_EQ(expressions_.expandWhole(text), "\\opt\\demo\\n \\\\server\\share \\w\\n \\opt\\demo");
}

TEST_F(ExpressionsTest, ExpandsForTheSystemWithTheSameLimits) {
    variables_.values = {{"A", "abc"}};
    EXPECT_EQ(expressions_.expandForSystem("x[A]", 4), "xab");
    EXPECT_EQ(expressions_.expandForSystem("x[B]", 16, true), std::nullopt);
    EXPECT_EQ(expressions_.expandForSystem("", 16), std::nullopt);
    EXPECT_EQ(expressions_.expandWholeForSystem("x[B]", true), "");
}

}  // namespace

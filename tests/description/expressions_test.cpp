#include "description/expressions.h"

#include <gtest/gtest.h>

#include "log_lines.h"
#include "map_lookup.h"

namespace {

class ExpressionsTest : public testing::Test {
protected:
    MapLookup variables_;
    LogLines log_;
    Expressions expressions_{variables_, log_.console()};
};

TEST_F(ExpressionsTest, NullAndEmptyConditionsAreTrue) {
    EXPECT_EQ(expressions_.evaluateCondition(nullptr), 1);
    EXPECT_EQ(expressions_.evaluateCondition(""), 1);
}

TEST_F(ExpressionsTest, VariablesAreExpandedAheadOfTheEvaluation) {
    variables_.values = {{"A", "1 "}, {"T", "abc"}, {"L", "1,0"}};
    EXPECT_EQ(expressions_.evaluateCondition("[A]==1"), 1);
    EXPECT_EQ(expressions_.evaluateCondition("'[T]'=='abc'"), 1);
    EXPECT_EQ(expressions_.evaluateCondition("[L]"), 0) << "a value brings operators in";
}

TEST_F(ExpressionsTest, UsualMistakesFail) {
    variables_.values = {{"EMPTY", ""}, {"TEXT", "abc"}, {"QUOTE", "it's"}};
    EXPECT_EQ(expressions_.evaluateCondition("[UNDEFINED]==1"), -1);
    EXPECT_EQ(expressions_.evaluateCondition("[EMPTY]==1"), -1);
    EXPECT_EQ(expressions_.evaluateCondition("[EMPTY]"), -1);
    EXPECT_EQ(expressions_.evaluateCondition("[TEXT]==1"), -1);
    EXPECT_EQ(expressions_.evaluateCondition("'[QUOTE]'=='x'"), 1)
        << "the quote in the value ends the string";
    EXPECT_EQ(log_.lines.size(), 1U);
}

TEST_F(ExpressionsTest, OnlyTheFirstTwoThousandFortySevenBytesCount) {
    const std::string padded = "1==1" + std::string(2042, ' ');
    EXPECT_EQ(expressions_.evaluateCondition((padded + ",0").c_str()), -1)
        << "the comma is the last byte read";
    EXPECT_EQ(expressions_.evaluateCondition((padded + " ,0").c_str()), 1);
}

TEST_F(ExpressionsTest, DeepNestingIsCutAndEvaluated) {
    EXPECT_EQ(expressions_.evaluateCondition((std::string(100000, '(') + "1").c_str()), -1);
    EXPECT_EQ(expressions_.evaluateCondition((std::string(2046, '(') + "1").c_str()), 1);
}

TEST_F(ExpressionsTest, BothExpansionsReadTheLookup) {
    variables_.values = {{"A", "1"}};
    char buffer[16];
    EXPECT_EQ(expressions_.expandVariables("x[A]", buffer, 16, false), 3);
    EXPECT_STREQ(buffer, "x1");
    EXPECT_EQ(expressions_.expandDollarVariables("y$A", buffer, 16), 1);
    EXPECT_STREQ(buffer, "y1");
}

TEST_F(ExpressionsTest, LogMayBeTakenAwayAtAnyTime) {
    debugLog_ = DebugLog();
    EXPECT_EQ(expressions_.evaluateCondition("[X]"), -1);
    EXPECT_TRUE(log_.lines.empty());
}

}  // namespace

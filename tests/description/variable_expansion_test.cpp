#include "description/variable_expansion.h"

#include <gtest/gtest.h>

#include "log_lines.h"
#include "map_lookup.h"

namespace {

class BracketExpansion : public testing::Test {
protected:
    // The text and its length before the cut, as "text|length"; "nothing" where the expansion gives nothing.
    std::string expand(std::string_view source, std::size_t limit = 4095, bool stopOnMissing = false) {
        const std::optional<Expansion> result =
            expandBracketVariables(variables_, log_.console(), source, limit, stopOnMissing);
        return result ? result->text + "|" + std::to_string(result->length) : "nothing";
    }

    MapLookup variables_;
    LogLines log_;
};

TEST_F(BracketExpansion, GivesNothingForAnEmptyText) {
    EXPECT_EQ(expand(""), "nothing");
}

TEST_F(BracketExpansion, ReplacesReferencesAndDoesNotExpandValuesAgain) {
    variables_.values = {{"A", "1"}, {"B", "[A]"}, {"$HOME", "/root"}};
    EXPECT_EQ(expand("x[A]y[B]z[$HOME]"), "x1y[A]z/root|12");
    EXPECT_TRUE(log_.lines.empty());
}

TEST_F(BracketExpansion, KeepsAndLogsAMissingVariable) {
    EXPECT_EQ(expand("a[X]b"), "a[X]b|5");
    EXPECT_EQ(
        log_.lines,
        (std::vector<std::string>{"WARNING: Variable [X] is not initialized in the expression: \"a[X]b\""}));
}

TEST_F(BracketExpansion, GivesNothingWhereItStopsAtAMissingVariable) {
    variables_.values = {{"A", "1"}};
    EXPECT_EQ(expand("a[A]b[X]c", 100, true), "nothing");
    EXPECT_EQ(log_.lines.size(), 1U);
    EXPECT_EQ(expand("a[A]b", 100, true), "a1b|3");
}

TEST_F(BracketExpansion, TakesABracketBeforeAnythingElseForPlainText) {
    variables_.values = {{"_a", "1"}, {"9", "2"}};
    EXPECT_EQ(expand("[ x] [] [[_a] [-a] [9][_a]"), "[ x] [] [1 [-a] 21|18");
    EXPECT_TRUE(log_.lines.empty());
}

TEST_F(BracketExpansion, ClosesAReferenceAtTheEndOfTheText) {
    variables_.values = {{"A", "1"}};
    EXPECT_EQ(expand("x[A"), "x1|2");
    EXPECT_EQ(expand("[A b.c"), "[A b.c]|7");
}

TEST_F(BracketExpansion, TakesALastBracketForAReferenceWithoutName) {
    EXPECT_EQ(expand("abc["), "abc[]|5");
    EXPECT_EQ(log_.lines.size(), 1U);
}

TEST_F(BracketExpansion, AcceptsAnythingButTheBracketInNames) {
    variables_.values = {{"A b-c[d", "v"}};
    EXPECT_EQ(expand("[A b-c[d]"), "v|1");
}

TEST_F(BracketExpansion, CutsTheTextAndCountsTheWholeValue) {
    variables_.values = {{"A", "abcdefgh"}};
    EXPECT_EQ(expand("[A]", 4), "abcd|8");
    EXPECT_EQ(expand("xy[A]z", 4), "xyab|10");
    EXPECT_EQ(expand("plain text", 4), "plai|4") << "stops as soon as the buffer is full";
    EXPECT_EQ(expand("abcd", 4), "abcd|4");
    EXPECT_EQ(expand("abc", 0), "|1");
}

TEST_F(BracketExpansion, MeasuresToTheEndWithoutALimit) {
    variables_.values = {{"A", "abcdefgh"}};
    EXPECT_EQ(expand("[A][A] x", std::string::npos), "abcdefghabcdefgh x|18");
    EXPECT_EQ(expand("[X]", std::string::npos, true), "nothing");
}

TEST_F(BracketExpansion, ReadsValuesUpToTheirLimit) {
    variables_.values = {{"A", std::string(2000, 'v')}};
    EXPECT_EQ(expand("[A]"), std::string(1559, 'v') + "|1559");
}

TEST_F(BracketExpansion, CutsLongNamesAndLogsVeryLongOnes) {
    const std::string name(1023, 'n');
    variables_.values = {{name, "v"}};
    EXPECT_EQ(expand("[" + name + "]"), "v|1");
    EXPECT_EQ(expand("[" + name + "x]"), "v|1");
    EXPECT_TRUE(log_.lines.empty());
    EXPECT_EQ(expand("[" + name + "xx]"), "v|1");
    ASSERT_EQ(log_.lines.size(), 1U);
    EXPECT_EQ(log_.lines[0], ("WARNING: Variable [" + name).substr(0, 1023));
}

TEST_F(BracketExpansion, LogsNothingWithoutATarget) {
    const std::optional<Expansion> result = expandBracketVariables(variables_, DebugLog(), "[X]", 9, false);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->text, "[X]");
}

TEST_F(BracketExpansion, HandlesAMegabyteOfReferencesInOnePass) {
    std::string source;
    while (source.size() < (1U << 20)) {
        source += "[A]b[X";
        source += "]";
    }
    variables_.values = {{"A", "1"}};
    const std::optional<Expansion> result =
        expandBracketVariables(variables_, log_.console(), source, std::string::npos, false);
    ASSERT_TRUE(result);
    EXPECT_GT(result->length, 100000U);
}

class DollarExpansion : public testing::Test {
protected:
    // The text and whether it is complete, as "text|1".
    std::string expand(std::string_view source, std::size_t limit = 1559) {
        std::string text = "old";
        const bool isComplete = expandDollarVariables(variables_, source, limit, text);
        return text + (isComplete ? "|1" : "|0");
    }

    MapLookup variables_;
};

TEST_F(DollarExpansion, EndsANameAtTheFirstOtherCharacter) {
    variables_.values = {{"A", "1"}, {"A_B", "2"}, {"$TMP", "/t"}};
    EXPECT_EQ(expand("$A.txt"), "1.txt|1");
    EXPECT_EQ(expand("$A_B"), "2|1");
    EXPECT_EQ(expand("x/$$TMP/$A"), "x//t/1|1");
    EXPECT_EQ(expand(""), "|1");
    EXPECT_EQ(expand("plain"), "plain|1");
}

TEST_F(DollarExpansion, TakesASecondDollarForAPartOfTheName) {
    variables_.values = {{"A", "1"}, {"B", "2"}};
    EXPECT_EQ(expand("$A$B"), "|0");
    EXPECT_EQ(expand("$A-$B"), "1-2|1");
}

TEST_F(DollarExpansion, FailsAtAMissingVariableAndKeepsTheTextBeforeIt) {
    variables_.values = {{"A", "1"}};
    EXPECT_EQ(expand("x$A y$NO z"), "x1 y|0");
    EXPECT_EQ(expand("cost: $ 5"), "cost: |0");
    EXPECT_EQ(expand("$"), "|0");
}

TEST_F(DollarExpansion, FailsWhenTheTextIsTooLong) {
    variables_.values = {{"A", "abc"}};
    EXPECT_EQ(expand("$A", 3), "abc|1");
    EXPECT_EQ(expand("$A", 2), "|0");
    EXPECT_EQ(expand("x$A", 3), "x|0");
    EXPECT_EQ(expand("abcd", 4), "abcd|1");
    EXPECT_EQ(expand("abcd", 3), "abc|0");
}

TEST_F(DollarExpansion, CutsValuesAtTheirLimit) {
    variables_.values = {{"A", std::string(1500, 'v')}};
    EXPECT_EQ(expand("$A", 4095), std::string(1023, 'v') + "|1");
}

}  // namespace

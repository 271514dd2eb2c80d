#include "description/variable_expansion.h"

#include <gtest/gtest.h>

#include "log_lines.h"
#include "map_lookup.h"

namespace {

class BracketExpansion : public testing::Test {
protected:
    // The text and the result, as "text|result".
    std::string expand(const char* source, int size = 4096, bool stopOnMissing = false) {
        std::string buffer(static_cast<std::size_t>(size) + 1, '#');
        const int result =
            expandBracketVariables(variables_, &log_, source, buffer.data(), size, stopOnMissing);
        EXPECT_EQ(buffer[static_cast<std::size_t>(size)], '#') << "wrote behind the buffer";
        return std::string(buffer.c_str()) + "|" + std::to_string(result);
    }

    MapLookup variables_;
    LogLines log_;
};

TEST_F(BracketExpansion, NullAndEmptySourceGiveNothing) {
    EXPECT_EQ(expand(nullptr), "|0");
    EXPECT_EQ(expand(""), "|0");
    EXPECT_EQ(expandBracketVariables(variables_, nullptr, "", nullptr, 0, false), 0);
}

TEST_F(BracketExpansion, ValuesTakeThePlaceOfReferencesAndAreNotExpandedAgain) {
    variables_.values = {{"A", "1"}, {"B", "[A]"}, {"$HOME", "/root"}};
    EXPECT_EQ(expand("x[A]y[B]z[$HOME]"), "x1y[A]z/root|13");
    EXPECT_TRUE(log_.lines.empty());
}

TEST_F(BracketExpansion, MissingVariableStaysAndIsLogged) {
    EXPECT_EQ(expand("a[X]b"), "a[X]b|6");
    EXPECT_EQ(
        log_.lines,
        (std::vector<std::string>{"WARNING: Variable [X] is not initialized in the expression: \"a[X]b\""}));
}

TEST_F(BracketExpansion, StopOnMissingEmptiesTheResult) {
    variables_.values = {{"A", "1"}};
    EXPECT_EQ(expand("a[A]b[X]c", 100, true), "|0");
    EXPECT_EQ(log_.lines.size(), 1U);
    EXPECT_EQ(expand("a[A]b", 100, true), "a1b|4");
}

TEST_F(BracketExpansion, BracketInFrontOfAnythingElseIsPlain) {
    variables_.values = {{"_a", "1"}, {"9", "2"}};
    EXPECT_EQ(expand("[ x] [] [[_a] [-a] [9][_a]"), "[ x] [] [1 [-a] 21|19");
    EXPECT_TRUE(log_.lines.empty());
}

TEST_F(BracketExpansion, EndOfTextClosesAReference) {
    variables_.values = {{"A", "1"}};
    EXPECT_EQ(expand("x[A"), "x1|3");
    EXPECT_EQ(expand("[A b.c"), "[A b.c]|8");
}

TEST_F(BracketExpansion, LastBracketIsAReferenceWithoutName) {
    EXPECT_EQ(expand("abc["), "abc[]|6");
    EXPECT_EQ(log_.lines.size(), 1U);
}

TEST_F(BracketExpansion, NamesMayHoldAnythingButTheBracket) {
    variables_.values = {{"A b-c[d", "v"}};
    EXPECT_EQ(expand("[A b-c[d]"), "v|2");
}

TEST_F(BracketExpansion, ShortBufferCutsAndTheLengthOfTheValueCounts) {
    variables_.values = {{"A", "abcdefgh"}};
    EXPECT_EQ(expand("[A]", 5), "abcd|9");
    EXPECT_EQ(expand("xy[A]z", 5), "xyab|11");
    EXPECT_EQ(expand("plain text", 5), "plai|5") << "stops as soon as the buffer is full";
    EXPECT_EQ(expand("abcd", 5), "abcd|5");
    EXPECT_EQ(expand("abc", 1), "|2");
    EXPECT_EQ(expand("abc", 0).substr(0, 1), "#") << "no byte of a buffer without size is touched";
}

TEST_F(BracketExpansion, MeasuringGoesToTheEnd) {
    variables_.values = {{"A", "abcdefgh"}};
    EXPECT_EQ(expandBracketVariables(variables_, &log_, "[A][A] x", nullptr, 0, false), 19);
    EXPECT_EQ(expandBracketVariables(variables_, &log_, "[A][A] x", nullptr, 5, false), 19);
    EXPECT_EQ(expandBracketVariables(variables_, &log_, "[X]", nullptr, 0, true), 0);
}

TEST_F(BracketExpansion, ValuesAreReadUpToTheirCapacity) {
    variables_.values = {{"A", std::string(2000, 'v')}};
    EXPECT_EQ(expand("[A]"), std::string(1559, 'v') + "|1560");
}

TEST_F(BracketExpansion, LongNamesAreCutAndVeryLongOnesLogged) {
    const std::string name(1023, 'n');
    variables_.values = {{name, "v"}};
    EXPECT_EQ(expand(("[" + name + "]").c_str()), "v|2");
    EXPECT_EQ(expand(("[" + name + "x]").c_str()), "v|2");
    EXPECT_TRUE(log_.lines.empty());
    EXPECT_EQ(expand(("[" + name + "xx]").c_str()), "v|2");
    ASSERT_EQ(log_.lines.size(), 1U);
    EXPECT_EQ(log_.lines[0], ("WARNING: Variable [" + name).substr(0, 1023));
}

TEST_F(BracketExpansion, NothingIsLoggedWithoutALog) {
    char buffer[10];
    EXPECT_EQ(expandBracketVariables(variables_, nullptr, "[X]", buffer, 10, false), 4);
    EXPECT_STREQ(buffer, "[X]");
}

TEST_F(BracketExpansion, MegabyteOfReferencesIsHandledInOnePass) {
    std::string source;
    while (source.size() < (1U << 20)) {
        source += "[A]b[X";
        source += "]";
    }
    variables_.values = {{"A", "1"}};
    EXPECT_GT(expandBracketVariables(variables_, &log_, source.c_str(), nullptr, 0, false), 100000);
}

class DollarExpansion : public testing::Test {
protected:
    std::string expand(const char* source, int size = 1560) {
        std::string buffer(static_cast<std::size_t>(size) + 1, '#');
        const int result = expandDollarVariables(variables_, source, buffer.data(), size);
        EXPECT_EQ(buffer[static_cast<std::size_t>(size)], '#') << "wrote behind the buffer";
        return std::string(buffer.c_str()) + "|" + std::to_string(result);
    }

    MapLookup variables_;
};

TEST_F(DollarExpansion, NameEndsAtTheFirstOtherCharacter) {
    variables_.values = {{"A", "1"}, {"A_B", "2"}, {"$TMP", "/t"}};
    EXPECT_EQ(expand("$A.txt"), "1.txt|1");
    EXPECT_EQ(expand("$A_B"), "2|1");
    EXPECT_EQ(expand("x/$$TMP/$A"), "x//t/1|1");
    EXPECT_EQ(expand(""), "|1");
    EXPECT_EQ(expand("plain"), "plain|1");
}

TEST_F(DollarExpansion, SecondDollarBelongsToTheName) {
    variables_.values = {{"A", "1"}, {"B", "2"}};
    EXPECT_EQ(expand("$A$B"), "|0");
    EXPECT_EQ(expand("$A-$B"), "1-2|1");
}

TEST_F(DollarExpansion, MissingVariableFailsBehindWhatWasProduced) {
    variables_.values = {{"A", "1"}};
    EXPECT_EQ(expand("x$A y$NO z"), "x1 y|0");
    EXPECT_EQ(expand("cost: $ 5"), "cost: |0");
    EXPECT_EQ(expand("$"), "|0");
}

TEST_F(DollarExpansion, TextThatReachesTheSizeFails) {
    variables_.values = {{"A", "abc"}};
    EXPECT_EQ(expand("$A", 4), "abc|1");
    EXPECT_EQ(expand("$A", 3), "|0");
    EXPECT_EQ(expand("x$A", 4), "x|0");
    EXPECT_EQ(expand("abcd", 5), "abcd|1");
    EXPECT_EQ(expand("abcd", 4), "abc|0");
    EXPECT_EQ(expandDollarVariables(variables_, "a", nullptr, 10), 0);
    EXPECT_EQ(expandDollarVariables(variables_, nullptr, nullptr, 10), 0);
}

TEST_F(DollarExpansion, ValuesAreCutAtTheirBuffer) {
    variables_.values = {{"A", std::string(1500, 'v')}};
    EXPECT_EQ(expand("$A", 4096), std::string(1023, 'v') + "|1");
}

}  // namespace

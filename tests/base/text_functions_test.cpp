#include "base/text_functions.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

namespace {

using Texts = std::vector<std::string>;

Texts split(const char* text, char separator = ',') {
    Texts list{"left over"};
    const int count = OUtils::splitText(text, separator, list);
    EXPECT_EQ(static_cast<int>(list.size()), count);
    return list;
}

TEST(CopyTextTest, CutsAndTerminates) {
    char out[4] = "zzz";
    OUtils::copyText(out, "abcdef", sizeof out);
    EXPECT_STREQ("abc", out);
    OUtils::copyText(out, "x", sizeof out);
    EXPECT_STREQ("x", out);
    OUtils::copyText(out, "abc", 1);
    EXPECT_STREQ("", out);
}

TEST(CopyTextTest, TakesNullAsEmptyAndWritesNothingWithoutRoom) {
    char out[4] = "abc";
    OUtils::copyText(out, "x", 0);
    EXPECT_STREQ("abc", out);
    OUtils::copyText(out, nullptr, sizeof out);
    EXPECT_STREQ("", out);
    OUtils::copyText(nullptr, "x", 4);
}

TEST(FormatTextTest, GivesTheLength) {
    char out[8];
    EXPECT_EQ(5, OUtils::formatText(out, sizeof out, "%s-%i", "ab", 12));
    EXPECT_STREQ("ab-12", out);
    EXPECT_EQ(7, OUtils::formatText(out, sizeof out, "%s", "1234567"));
}

TEST(FormatTextTest, TellsThatItCutTheTextAndTerminates) {
    char out[8];
    EXPECT_EQ(-1, OUtils::formatText(out, sizeof out, "%s", "12345678"));
    EXPECT_STREQ("1234567", out);
    EXPECT_EQ(-1, OUtils::formatText(out, 0, "%s", "x"));
}

TEST(SplitTextTest, KeepsEmptyElements) {
    EXPECT_EQ((Texts{"a", "", "b"}), split("a,,b"));
    EXPECT_EQ((Texts{"a", ""}), split("a,"));
    EXPECT_EQ((Texts{"", "a"}), split(",a"));
    EXPECT_EQ((Texts{"", ""}), split(","));
    EXPECT_EQ((Texts{"a,b"}), split("a,b", ';'));
}

TEST(SplitTextTest, GivesNothingForAnEmptyText) {
    EXPECT_EQ(Texts(), split(""));
    EXPECT_EQ(Texts(), split(nullptr));
}

TEST(ExtractBetweenTest, TakesTheOutermostPair) {
    char out[16] = "old";
    EXPECT_EQ(1, OUtils::extractBetween("x(a(b)c)y", '(', ')', out, sizeof out));
    EXPECT_STREQ("a(b)c", out);
    EXPECT_EQ(1, OUtils::extractBetween("()", '(', ')', out, sizeof out));
    EXPECT_STREQ("", out);
    EXPECT_EQ(1, OUtils::extractBetween("\"a\" \"b\"", '"', '"', out, sizeof out));
    EXPECT_STREQ("a\" \"b", out);
}

TEST(ExtractBetweenTest, FailsWithoutAPairInOrder) {
    for (const char* text : {"", "abc", "(abc", "abc)", ")a("}) {
        char out[16] = "old";
        EXPECT_EQ(0, OUtils::extractBetween(text, '(', ')', out, sizeof out)) << text;
        EXPECT_STREQ("", out) << text;
    }
    char out[16] = "old";
    EXPECT_EQ(0, OUtils::extractBetween(nullptr, '(', ')', out, sizeof out));
    EXPECT_EQ(0, OUtils::extractBetween("\"", '"', '"', out, sizeof out));
}

TEST(ExtractBetweenTest, CutsAtTheCapacity) {
    char out[4];
    EXPECT_EQ(1, OUtils::extractBetween("(abcdef)", '(', ')', out, sizeof out));
    EXPECT_STREQ("abc", out);
}

TEST(IgnoreCaseTest, ComparesAsciiLettersOnly) {
    EXPECT_TRUE(OUtils::equalsIgnoreCase("AbC-1", "aBc-1"));
    EXPECT_FALSE(OUtils::equalsIgnoreCase("abc", "abcd"));
    EXPECT_FALSE(OUtils::equalsIgnoreCase("\xC3\x84", "\xC3\xA4"));
    EXPECT_FALSE(OUtils::equalsIgnoreCase("[", "{"));
    EXPECT_FALSE(OUtils::equalsIgnoreCase("@", "`"));
}

TEST(IgnoreCaseTest, ANullTextEqualsNothing) {
    const char* const none = nullptr;
    EXPECT_FALSE(OUtils::equalsIgnoreCase(none, none));
    EXPECT_FALSE(OUtils::equalsIgnoreCase("a", none));
    EXPECT_FALSE(OUtils::equalsIgnoreCase(none, ""));
}

TEST(IgnoreCaseTest, FindsAPrefix) {
    EXPECT_TRUE(OUtils::startsWithIgnoreCase("VARIABLE_x", "variable_"));
    EXPECT_TRUE(OUtils::startsWithIgnoreCase("a", ""));
    EXPECT_FALSE(OUtils::startsWithIgnoreCase("vari", "variable_"));
    EXPECT_EQ("abc\xC3\x84z", OUtils::toLowerAscii("ABC\xC3\x84Z"));
}

TEST(WhiteSpaceTest, IsTrimmedAtBothEnds) {
    EXPECT_EQ("a b", OUtils::trimWhiteSpace(" \t\r\na b\n "));
    EXPECT_EQ("", OUtils::trimWhiteSpace(" \t "));
    EXPECT_EQ("", OUtils::trimWhiteSpace(""));
    EXPECT_FALSE(OUtils::isWhiteSpace('\0'));
    EXPECT_FALSE(OUtils::isWhiteSpace('\xA0'));
}

TEST(TextToIntegerTest, ReadsAsFarAsItCan) {
    EXPECT_EQ(12, OUtils::textToInteger("12"));
    EXPECT_EQ(-7, OUtils::textToInteger(" \t-7x"));
    EXPECT_EQ(3, OUtils::textToInteger("+3.9"));
    for (const char* text : {"", "x", "-", "+", " ", "--1", "- 1"}) {
        EXPECT_EQ(0, OUtils::textToInteger(text)) << text;
    }
    EXPECT_EQ(0, OUtils::textToInteger(nullptr));
}

TEST(TextToIntegerTest, StopsAtTheLimitsOf32Bits) {
    EXPECT_EQ(INT_MAX, OUtils::textToInteger("2147483647"));
    EXPECT_EQ(INT_MAX, OUtils::textToInteger("2147483648"));
    EXPECT_EQ(INT_MIN, OUtils::textToInteger("-2147483648"));
    EXPECT_EQ(INT_MIN, OUtils::textToInteger("-2147483649"));
    EXPECT_EQ(INT_MAX, OUtils::textToInteger("99999999999999999999999999"));
}

}  // namespace

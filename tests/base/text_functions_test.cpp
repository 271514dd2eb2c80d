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
    EXPECT_EQ(list, OUtils::splitText(std::string_view(text == nullptr ? "" : text), separator));
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

TEST(FormatTextTest, FormatsAsPrintfDoes) {
    EXPECT_EQ("ab-12", OUtils::formatText("%s-%i", "ab", 12));
    EXPECT_EQ("", OUtils::formatText("%s", ""));
}

TEST(FormatTextTest, CutsNothing) {
    const std::string text(100000, 'x');
    EXPECT_EQ(text + "!", OUtils::formatText("%s!", text.c_str()));
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
    EXPECT_EQ("a(b)c", OUtils::extractBetween("x(a(b)c)y", '(', ')'));
    EXPECT_EQ("", OUtils::extractBetween("()", '(', ')'));
    EXPECT_EQ("a\" \"b", OUtils::extractBetween("\"a\" \"b\"", '"', '"'));
}

TEST(ExtractBetweenTest, GivesNothingWithoutAPairInOrder) {
    for (const char* text : {"", "abc", "(abc", "abc)", ")a("}) {
        EXPECT_EQ(std::nullopt, OUtils::extractBetween(text, '(', ')')) << text;
    }
    EXPECT_EQ(std::nullopt, OUtils::extractBetween("\"", '"', '"'));
}

TEST(IgnoreCaseTest, ComparesAsciiLettersOnly) {
    EXPECT_TRUE(OUtils::equalsIgnoreCase("AbC-1", "aBc-1"));
    EXPECT_FALSE(OUtils::equalsIgnoreCase("abc", "abcd"));
    EXPECT_FALSE(OUtils::equalsIgnoreCase("\xC3\x84", "\xC3\xA4"));
    EXPECT_FALSE(OUtils::equalsIgnoreCase("[", "{"));
    EXPECT_FALSE(OUtils::equalsIgnoreCase("@", "`"));
}

TEST(IgnoreCaseTest, EqualsNothingWithANullText) {
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

TEST(WhiteSpaceTest, IsTrimmedFromBothEnds) {
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
    EXPECT_EQ(12, OUtils::textToInteger(std::string_view("123").substr(0, 2)));
    EXPECT_EQ(0, OUtils::textToInteger(std::string_view()));
}

TEST(TextToIntegerTest, StopsAtTheLimitsOf32Bits) {
    EXPECT_EQ(INT_MAX, OUtils::textToInteger("2147483647"));
    EXPECT_EQ(INT_MAX, OUtils::textToInteger("2147483648"));
    EXPECT_EQ(INT_MIN, OUtils::textToInteger("-2147483648"));
    EXPECT_EQ(INT_MIN, OUtils::textToInteger("-2147483649"));
    EXPECT_EQ(INT_MAX, OUtils::textToInteger("99999999999999999999999999"));
}

}  // namespace

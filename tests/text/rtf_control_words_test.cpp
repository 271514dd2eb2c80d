#include "text/rtf_control_words.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace {

std::string_view nameOf(std::string_view word) {
    const RtfControlWord* const found = findRtfControlWord(word);
    return found == nullptr ? "none" : found->word;
}

std::int32_t parameterOf(std::string_view word) {
    return rtfParameter(*findRtfControlWord(word), word);
}

TEST(RtfControlWords, AreTriedInTheirOrder) {
    const std::vector<std::string_view> order = {
        "tab", "endash", "pard",   "par", "qc", "ql",     "qr",        "qj",        "b0",           "b",
        "i0",  "i",      "ulnone", "ul",  "li", "rquote", "ldblquote", "rdblquote", kRtfRestoreWord};
    std::vector<std::string_view> words;
    for (const RtfControlWord& row : rtfControlWords()) {
        words.push_back(row.word);
    }
    EXPECT_EQ(words, order);
}

TEST(RtfControlWords, EachIsFoundByItsNameAndByLongerWords) {
    for (const RtfControlWord& row : rtfControlWords()) {
        EXPECT_EQ(nameOf(row.word), row.word);
        EXPECT_EQ(nameOf(std::string(row.word) + "xyz"), row.word);
    }
}

TEST(RtfControlWords, AWordShorterThanTheNameDoesNotMatch) {
    EXPECT_EQ(nameOf(""), "none");
    EXPECT_EQ(nameOf("ta"), "none");
    EXPECT_EQ(nameOf("pa"), "none");
    EXPECT_EQ(nameOf("q"), "none");
    EXPECT_EQ(nameOf("u"), "none");
    EXPECT_EQ(nameOf("l"), "none");
    EXPECT_EQ(nameOf("restorenormaltextmod"), "none");
}

TEST(RtfControlWords, TheFirstMatchingPrefixWins) {
    EXPECT_EQ(nameOf("bin"), "b");
    EXPECT_EQ(nameOf("blue255"), "b");
    EXPECT_EQ(nameOf("b01"), "b0");
    EXPECT_EQ(nameOf("b1"), "b");
    EXPECT_EQ(nameOf("info"), "i");
    EXPECT_EQ(nameOf("ulw"), "ul");
    EXPECT_EQ(nameOf("ulnon"), "ul");
    EXPECT_EQ(nameOf("ul0"), "ul");
    EXPECT_EQ(nameOf("line"), "li");
    EXPECT_EQ(nameOf("pardeftab720"), "pard");
    EXPECT_EQ(nameOf("parx"), "par");
}

TEST(RtfControlWords, CaseMatters) {
    EXPECT_EQ(nameOf("Par"), "none");
    EXPECT_EQ(nameOf("B"), "none");
}

TEST(RtfControlWords, TheParameterIsTheNumberAfterTheName) {
    EXPECT_EQ(parameterOf("li720"), 720);
    EXPECT_EQ(parameterOf("li-360"), -360);
    EXPECT_EQ(parameterOf("li007"), 7);
    EXPECT_EQ(parameterOf("li12ab"), 12);
}

TEST(RtfControlWords, TheParameterIsZeroWithoutANumber) {
    EXPECT_EQ(parameterOf("li"), 0);
    EXPECT_EQ(parameterOf("lin720"), 0);
    EXPECT_EQ(parameterOf("li-"), 0);
    EXPECT_EQ(parameterOf("li--5"), 0);
}

TEST(RtfControlWords, AHugeParameterStopsAtTheLimits) {
    EXPECT_EQ(parameterOf("li2147483647"), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(parameterOf("li2147483648"), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(parameterOf("li-2147483649"), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(parameterOf("li" + std::string(100000, '9')), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(parameterOf("li-" + std::string(100000, '9')), std::numeric_limits<std::int32_t>::min());
}

TEST(RtfControlWords, TwipsBecomeTenthsOfAMillimetre) {
    EXPECT_EQ(rtfTenthsOfMillimetre(0), 0);
    EXPECT_EQ(rtfTenthsOfMillimetre(1440), 254);
    EXPECT_EQ(rtfTenthsOfMillimetre(720), 127);
    EXPECT_EQ(rtfTenthsOfMillimetre(-720), -127);
    EXPECT_EQ(rtfTenthsOfMillimetre(2160), 381);
}

TEST(RtfControlWords, PartsOfATenthAreCutOff) {
    EXPECT_EQ(rtfTenthsOfMillimetre(5), 0);
    EXPECT_EQ(rtfTenthsOfMillimetre(6), 1);
    EXPECT_EQ(rtfTenthsOfMillimetre(360), 63);
    EXPECT_EQ(rtfTenthsOfMillimetre(-360), -63);
}

TEST(RtfControlWords, TheLargestTwipsFit) {
    EXPECT_EQ(rtfTenthsOfMillimetre(std::numeric_limits<std::int32_t>::max()), 378792254);
    EXPECT_EQ(rtfTenthsOfMillimetre(std::numeric_limits<std::int32_t>::min()), -378792254);
}

}  // namespace

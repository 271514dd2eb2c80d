#include "text/tgm_line.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct Case {
    const char* raw;
    TGMNodeType type;
    const char* payload;
};

class TGMLineKind : public testing::TestWithParam<Case> {};

TEST_P(TGMLineKind, IsRecognised) {
    const TGMLine line(GetParam().raw, {});
    EXPECT_EQ(GetParam().type, line.type()) << GetParam().raw;
    EXPECT_EQ(GetParam().payload, line.payload()) << GetParam().raw;
    EXPECT_EQ(line.type() == kTgmBlank ? "" : GetParam().raw, line.text());
}

INSTANTIATE_TEST_SUITE_P(Blank, TGMLineKind,
                         testing::Values(Case{"", kTgmBlank, ""}, Case{" \t\v\f\r ", kTgmBlank, ""}));

INSTANTIATE_TEST_SUITE_P(Lettered, TGMLineKind,
                         testing::Values(Case{"a.", kTgmLetteredList, ""},
                                         Case{"z. x", kTgmLetteredList, "x"},
                                         Case{"b.\tx ", kTgmLetteredList, "x "},
                                         Case{"a. \t x", kTgmLetteredList, "x"},
                                         Case{"a. ", kTgmLetteredList, ""}, Case{"a.x", kTgmPlain, "a.x"},
                                         Case{"A. x", kTgmPlain, "A. x"}, Case{"{. x", kTgmPlain, "{. x"},
                                         Case{"`. x", kTgmPlain, "`. x"}, Case{"ab. x", kTgmPlain, "ab. x"},
                                         Case{"a", kTgmPlain, "a"}, Case{"a.\vx", kTgmPlain, "a.\vx"}));

INSTANTIATE_TEST_SUITE_P(Headings, TGMLineKind,
                         testing::Values(Case{"#", kTgmHeading1, ""}, Case{"#x", kTgmHeading1, "x"},
                                         Case{"## x", static_cast<TGMNodeType>(12), "x"},
                                         Case{"###x ##", static_cast<TGMNodeType>(13), "x ##"},
                                         Case{"####\t x", static_cast<TGMNodeType>(14), "x"},
                                         Case{"#####x", static_cast<TGMNodeType>(15), "x"},
                                         Case{"######x", kTgmHeading6, "x"}, Case{"#######x", kTgmQuote, "x"},
                                         Case{"########x", kTgmQuote, "#x"}, Case{"# #", kTgmHeading1, "#"}));

INSTANTIATE_TEST_SUITE_P(Bullets, TGMLineKind,
                         testing::Values(Case{"* x", kTgmUnorderedList, "x"},
                                         Case{"+\tx", kTgmUnorderedList, "x"},
                                         Case{"-  \t x", kTgmUnorderedList, "x"},
                                         Case{"- ", kTgmUnorderedList, ""}, Case{"-", kTgmPlain, "-"},
                                         Case{"*x*", kTgmPlain, "*x*"}, Case{"--", kTgmPlain, "--"},
                                         Case{"+\vx", kTgmPlain, "+\vx"}));

INSTANTIATE_TEST_SUITE_P(Numbers, TGMLineKind,
                         testing::Values(Case{"1. x", kTgmNumberedList, "x"},
                                         Case{"0123456789.\tx", kTgmNumberedList, "x"},
                                         Case{"7. ", kTgmNumberedList, ""}, Case{"7.", kTgmPlain, "7."},
                                         Case{"7", kTgmPlain, "7"}, Case{"12.text", kTgmPlain, "12.text"},
                                         Case{"12 . x", kTgmPlain, "12 . x"},
                                         Case{"1) x", kTgmPlain, "1) x"}));

INSTANTIATE_TEST_SUITE_P(Quotes, TGMLineKind,
                         testing::Values(Case{">", kTgmQuote, ""}, Case{"> x", kTgmQuote, "x"},
                                         Case{">x", kTgmQuote, ""}, Case{">>x", kTgmQuote, "x"},
                                         Case{">   x ", kTgmQuote, "  x "}, Case{" \t> x", kTgmQuote, "x"}));

INSTANTIATE_TEST_SUITE_P(Others, TGMLineKind,
                         testing::Values(Case{"x", kTgmPlain, "x"}, Case{"  x y ", kTgmPlain, "x y "},
                                         Case{"\xC3\xA9", kTgmPlain, "\xC3\xA9"},
                                         Case{"\\# x", kTgmPlain, "\\# x"}, Case{".", kTgmPlain, "."}));

TEST(TGMLine, LettersAreTextWithoutTheirOption) {
    TGMParseOptions options;
    options.alphaLists = false;
    const TGMLine line("  a. x", options);
    EXPECT_EQ(kTgmPlain, line.type());
    EXPECT_EQ("a. x", line.payload());
}

TEST(TGMLine, DefaultIsABlankLine) {
    const TGMLine line;
    EXPECT_EQ(kTgmBlank, line.type());
    EXPECT_EQ("", line.text());
    EXPECT_EQ("", line.payload());
    EXPECT_EQ(0U, line.indent());
}

TEST(TGMLine, BlankLineHasNoIndentation) {
    EXPECT_EQ(0U, TGMLine("\t\t", {}).indent());
    EXPECT_EQ(2U, TGMLine("\t\tx", {}).indent());
}

TEST(TGMIndent, CountsTabsAndFullBlanks) {
    EXPECT_EQ(0U, measureTgmIndent("", 4));
    for (std::size_t blanks = 1; blanks < 13; ++blanks) {
        const std::uint32_t expected = blanks < 8 ? 1 : blanks < 12 ? 2 : 3;
        EXPECT_EQ(expected, measureTgmIndent(std::string(blanks, ' '), 4)) << blanks;
    }
    EXPECT_EQ(1U, measureTgmIndent("\t", 4));
    EXPECT_EQ(3U, measureTgmIndent("\t\t\t", 4));
}

TEST(TGMIndent, TabResetsTheCountOfBlanks) {
    EXPECT_EQ(1U, measureTgmIndent("\t   ", 4));
    EXPECT_EQ(1U, measureTgmIndent("   \t", 4));
    EXPECT_EQ(2U, measureTgmIndent("    \t", 4));
    EXPECT_EQ(1U, measureTgmIndent("   \t   ", 4));
}

TEST(TGMIndent, OtherWhiteSpaceIsIgnored) {
    EXPECT_EQ(0U, measureTgmIndent("\v\f\r", 4));
    EXPECT_EQ(1U, measureTgmIndent("  \v  ", 4));
    EXPECT_EQ(1U, measureTgmIndent("\v ", 4));
}

TEST(TGMIndent, WidthIsAnOption) {
    EXPECT_EQ(1U, measureTgmIndent("   ", 2));
    EXPECT_EQ(2U, measureTgmIndent("    ", 2));
    EXPECT_EQ(3U, measureTgmIndent("   ", 1));
    EXPECT_EQ(3U, measureTgmIndent("   ", 0));
    EXPECT_EQ(1U, measureTgmIndent(std::string(100, ' '), UINT32_MAX));
}

TEST(TGMLines, SplitAtLineFeeds) {
    const auto lines = splitTgmLines("a\n\n# b\n", {});
    ASSERT_EQ(4U, lines.size());
    EXPECT_EQ("a", lines[0].text());
    EXPECT_EQ(kTgmBlank, lines[1].type());
    EXPECT_EQ("b", lines[2].payload());
    EXPECT_EQ(kTgmBlank, lines[3].type());
    EXPECT_EQ(1U, splitTgmLines("a", {}).size());
    EXPECT_EQ(1U, splitTgmLines("", {}).size());
}

}  // namespace

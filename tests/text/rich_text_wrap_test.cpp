#include "text/rich_text_wrap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <random>
#include <string>

namespace {

std::string wrap(std::string_view text, int width) {
    return RichTextWrap(width).wrap(text);
}

std::size_t widthOf(std::string_view line) {
    return line.size() + 7 * static_cast<std::size_t>(std::count(line.begin(), line.end(), '\t'));
}

std::string withoutBlanks(std::string text) {
    text.erase(std::remove_if(text.begin(), text.end(), [](char c) { return c == ' ' || c == '\n'; }),
               text.end());
    return text;
}

TEST(RichTextWrap, AnEmptyTextStaysEmpty) {
    EXPECT_EQ(wrap("", 10), "");
}

TEST(RichTextWrap, AnEmptyLineGivesALineFeed) {
    EXPECT_EQ(wrap("\n", 10), "\n");
    EXPECT_EQ(wrap("\n\n\n", 10), "\n\n\n");
    EXPECT_EQ(wrap("a\n\nb\n", 10), "a\n\nb\n");
}

TEST(RichTextWrap, ALastLineWithoutALineFeedGetsOne) {
    EXPECT_EQ(wrap("abc", 10), "abc\n");
    EXPECT_EQ(wrap("a\nb", 10), "a\nb\n");
}

TEST(RichTextWrap, ATextThatEndsWithALineFeedGetsNoOther) {
    EXPECT_EQ(wrap("abc\n", 10), "abc\n");
}

TEST(RichTextWrap, ALineThatFitsIsNotJustified) {
    EXPECT_EQ(wrap("a b c", 10), "a b c\n");
    EXPECT_EQ(wrap("0123456789", 10), "0123456789\n");
}

TEST(RichTextWrap, TheLastLineLosesASingleBlankAtItsStart) {
    EXPECT_EQ(wrap(" abc", 10), "abc\n");
    EXPECT_EQ(wrap("0123456789 ab", 10), "0123456789\nab\n");
}

TEST(RichTextWrap, TheLastLineKeepsOtherBlanks) {
    EXPECT_EQ(wrap("  abc", 10), "  abc\n");
    EXPECT_EQ(wrap("\tabc", 20), "\tabc\n");
    EXPECT_EQ(wrap("abc ", 10), "abc \n");
    EXPECT_EQ(wrap("a  b", 10), "a  b\n");
}

TEST(RichTextWrap, AFullLineIsJustifiedToTheWidth) {
    EXPECT_EQ(wrap("aa bb cc dd", 10), "aa  bb  cc\ndd\n");
}

TEST(RichTextWrap, ExtraBlanksAreSpreadFromLeftToRight) {
    // Three gaps and two blanks: 2/3, 4/3 and 6/3 of a blank are due after the gaps.
    EXPECT_EQ(wrap("a b c d eeee", 9), "a b  c  d\neeee\n");
    // Two gaps and five blanks: 5/2 and 10/2.
    EXPECT_EQ(wrap("a b c ddddddddd", 10), "a   b    c\nddddddddd\n");
    // One gap takes all.
    EXPECT_EQ(wrap("a b ccccccccc", 10), "a        b\nccccccccc\n");
}

TEST(RichTextWrap, OnlySingleBlanksAreStretched) {
    EXPECT_EQ(wrap("a  b c dddddddd", 10), "a  b     c\ndddddddd\n");
    EXPECT_EQ(wrap("a\tb c dddddddddd", 16), "a\tb     c\ndddddddddd\n");
}

TEST(RichTextWrap, ALineWithoutGapsIsNotJustified) {
    EXPECT_EQ(wrap("abc defghijkl", 10), "abc\ndefghijkl\n");
    EXPECT_EQ(wrap("a  b cccccccccc", 5), "a  b\ncccccccccc\n");
}

TEST(RichTextWrap, AFullLineLosesSingleBlanksAtBothEnds) {
    EXPECT_EQ(wrap(" aa bb ccccc", 7), "aa   bb\nccccc\n");
}

TEST(RichTextWrap, AFullLineKeepsLongerRunsAtItsEnds) {
    EXPECT_EQ(wrap("  aa bb  cccccccc", 10), "  aa  bb  \ncccccccc\n");
    EXPECT_EQ(wrap("aa  cccccc", 6), "aa  \ncccccc\n");
}

TEST(RichTextWrap, TheBlankAtTheStartCountsTowardsTheWidth) {
    // " abc d" is 6 wide, although its blank is dropped.
    EXPECT_EQ(wrap(" abc d", 5), "abc\nd\n");
    EXPECT_EQ(wrap(" abc d", 6), "abc d\n");
}

TEST(RichTextWrap, AWordWiderThanTheWidthIsNotBroken) {
    EXPECT_EQ(wrap("0123456789abc", 10), "0123456789abc\n");
    EXPECT_EQ(wrap("0123456789abc\nx", 10), "0123456789abc\nx\n");
    EXPECT_EQ(wrap("a 0123456789abc b", 10), "a\n0123456789abc\nb\n");
}

TEST(RichTextWrap, ARunOfBlanksWiderThanTheWidthIsNotBroken) {
    EXPECT_EQ(wrap("a" + std::string(12, ' ') + "b", 10), "a\n" + std::string(12, ' ') + "\nb\n");
    EXPECT_EQ(wrap("a\t\tb", 10), "a\n\t\t\nb\n");
}

TEST(RichTextWrap, ALoneBlankBeforeAWideWordLeavesAnEmptyLine) {
    EXPECT_EQ(wrap("0123456789 0123456789abc", 10), "0123456789\n\n0123456789abc\n");
}

TEST(RichTextWrap, ABlankThatNoLongerFitsLeavesAnEmptyLastLine) {
    EXPECT_EQ(wrap("0123456789 ", 10), "0123456789\n\n");
    EXPECT_EQ(wrap(" ", 10), "\n");
}

TEST(RichTextWrap, ATabCountsEight) {
    EXPECT_EQ(wrap("\ta", 9), "\ta\n");
    EXPECT_EQ(wrap("\ta", 8), "\t\na\n");
    EXPECT_EQ(wrap(" \ta", 9), " \t\na\n");
}

TEST(RichTextWrap, BytesOutsideAsciiCountOneEach) {
    EXPECT_EQ(wrap("\xC3\xA9\xC3\xA9 b", 5), "\xC3\xA9\xC3\xA9\nb\n");
    EXPECT_EQ(wrap("\xC3\xA9\xC3\xA9 b", 6), "\xC3\xA9\xC3\xA9 b\n");
}

TEST(RichTextWrap, WidthOneGivesEachWordALineAndEachBlankAnEmptyOne) {
    EXPECT_EQ(wrap("a b cc", 1), "a\n\nb\n\ncc\n");
}

TEST(RichTextWrap, TheLargestWidthChangesNothingButTheEnd) {
    EXPECT_EQ(wrap("a b\n c", std::numeric_limits<int>::max()), "a b\nc\n");
}

TEST(RichTextWrap, ALineOfMillionsOfTokensIsWrapped) {
    constexpr std::size_t kWords = 2000000;
    std::string line;
    for (std::size_t index = 0; index < kWords; ++index) {
        line += "a ";
    }
    EXPECT_EQ(wrap(line, 1).size(), kWords * 3);
    EXPECT_EQ(wrap(line, std::numeric_limits<int>::max()), line + "\n");
    const std::string wrapped = wrap(line, 79);
    EXPECT_EQ(std::count(wrapped.begin(), wrapped.end(), 'a'), static_cast<std::ptrdiff_t>(kWords));
}

TEST(RichTextWrap, AWordOfMillionsOfBytesIsWrapped) {
    const std::string word(8000000, 'x');
    EXPECT_EQ(wrap("a b " + word + " c", 20), "a                  b\n" + word + "\nc\n");
}

std::string randomText(std::mt19937& random, std::size_t length) {
    constexpr std::string_view kBytes = "abcdefgh    \t\n";
    std::string text;
    while (text.size() < length) {
        text += kBytes[random() % kBytes.size()];
    }
    return text;
}

// A line may be wider only when it is one run of blanks or of anything else.
bool isOneToken(std::string_view line) {
    const auto isBlank = [](char c) { return c == ' ' || c == '\t'; };
    return std::all_of(line.begin(), line.end(), isBlank) || std::none_of(line.begin(), line.end(), isBlank);
}

void checkLines(std::string_view wrapped, std::size_t width) {
    while (!wrapped.empty()) {
        const std::size_t end = wrapped.find('\n');
        ASSERT_NE(end, std::string_view::npos);
        const std::string_view line = wrapped.substr(0, end);
        ASSERT_TRUE(widthOf(line) <= width || isOneToken(line)) << line;
        wrapped.remove_prefix(end + 1);
    }
}

TEST(RichTextWrap, RandomTextsKeepTheirWordsAndTheWidth) {
    std::mt19937 random(7);
    for (int round = 0; round < 2000; ++round) {
        const std::string text = randomText(random, random() % 300);
        const int width = 1 + static_cast<int>(random() % 60);
        const std::string wrapped = wrap(text, width);
        checkLines(wrapped, static_cast<std::size_t>(width));
        ASSERT_EQ(withoutBlanks(wrapped), withoutBlanks(text)) << width;
    }
}

}  // namespace

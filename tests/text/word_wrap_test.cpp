#include "text/word_wrap.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <sstream>
#include <vector>

namespace {

WrapLayout layoutOf(std::uint32_t width, std::uint32_t indent = 0, bool justify = false) {
    WrapLayout layout;
    layout.width = width;
    layout.indent = indent;
    layout.justify = justify;
    return layout;
}

std::string wrapped(std::string_view text, const WrapLayout& layout) {
    std::string out;
    appendWrapped(out, text, layout);
    return out;
}

TEST(WordWrap, ALineHasRoomForABlankAfterItsLastWord) {
    EXPECT_EQ(wrapped("aa bb cc dd", layoutOf(6)), "aa bb\ncc dd\n");
    EXPECT_EQ(wrapped("aa bb cc dd", layoutOf(5)), "aa\nbb\ncc\ndd\n") << "5 bytes and the blank are 6";
    EXPECT_EQ(wrapped("aa bb cc dd", layoutOf(8)), "aa bb\ncc dd\n");
    EXPECT_EQ(wrapped("aa bb cc dd", layoutOf(9)), "aa bb cc\ndd\n");
}

TEST(WordWrap, AppendsToWhatIsThere) {
    std::string out = "- ";
    appendWrapped(out, "a b", layoutOf(80));
    EXPECT_EQ(out, "- a b\n");
}

TEST(WordWrap, WordsAreRunsOfNonBlanks) {
    EXPECT_EQ(wrapped("  aa   bb  ", layoutOf(80)), "aa bb\n");
    EXPECT_EQ(wrapped("aa\tbb\ncc dd", layoutOf(80)), "aa\tbb\ncc dd\n") << "only blanks separate";
}

TEST(WordWrap, ATextWithoutWordsIsAnEmptyLine) {
    EXPECT_EQ(wrapped("", layoutOf(10, 3, true)), "   \n");
    EXPECT_EQ(wrapped("    ", layoutOf(2)), "\n");
    EXPECT_EQ(wrapped("    ", layoutOf(0)), "\n");
}

TEST(WordWrap, ALongWordHasALineOfItsOwn) {
    EXPECT_EQ(wrapped("aa longlong bb cc", layoutOf(6)), "aa\nlonglong\nbb cc\n");
    EXPECT_EQ(wrapped("aa longlong bb cc", layoutOf(6, 0, true)), "aa\nlonglong\nbb cc\n");
}

TEST(WordWrap, AFirstWordThatIsTooLongLeavesNoEmptyLine) {
    EXPECT_EQ(wrapped("longlong aa", layoutOf(4)), "longlong\naa\n");
    EXPECT_EQ(wrapped("longlong", layoutOf(4, 2, true)), "  longlong\n");
}

TEST(WordWrap, EachLineIsIndented) {
    WrapLayout layout = layoutOf(8, 2);
    EXPECT_EQ(wrapped("aa bb cc", layout), "  aa bb\n  cc\n");
    layout.indentFirstLine = false;
    EXPECT_EQ(wrapped("aa bb cc", layout), "aa bb\n  cc\n");
    layout.fillChar = '.';
    EXPECT_EQ(wrapped("aa bb cc", layout), "aa bb\n..cc\n");
}

// `extra` is the width less the words and a blank after each. It is divided by the number of words: each word
// but the last gets an equal share, and the first ones one more from the remainder.
TEST(WordWrap, PaddingIsSharedByTheNumberOfWords) {
    struct Case {
        std::uint32_t width;
        const char* text;
        const char* result;
    };
    const Case cases[] = {
        {6, "aa bb cc", "aa bb\ncc\n"},        // extra 0
        {7, "aa bb cccc", "aa  bb\ncccc\n"},   // 1 of 2: 0 each, 1 left over
        {8, "aa bb cccc", "aa  bb\ncccc\n"},   // 2 of 2: 1 each, the one after the last is not written
        {9, "aa bb cccc", "aa   bb\ncccc\n"},  // 3 of 2: 1 each, 1 left over
        {13, "aa bb cc dddd", "aa   bb  cc\ndddd\n"},     // 4 of 3: 1 each, 1 left over
        {14, "aa bb cc ddddd", "aa   bb   cc\nddddd\n"},  // 5 of 3: 1 each, 2 left over
        {12, "aa bb cc dddd", "aa  bb  cc\ndddd\n"},      // 3 of 3: 1 each
        {11, "aa bb cc dddd", "aa  bb  cc\ndddd\n"},      // 2 of 3: 0 each, 2 left over
        {10, "aa bb cc dddd", "aa  bb cc\ndddd\n"},       // 1 of 3: 0 each, 1 left over
        {10, "aaaaaaa bbb", "aaaaaaa\nbbb\n"},            // 2 of 1: no gap to pad
    };
    for (const Case& one : cases) {
        EXPECT_EQ(wrapped(one.text, layoutOf(one.width, 0, true)), one.result)
            << one.width << " " << one.text;
    }
}

TEST(WordWrap, TheLastLineIsNotPadded) {
    EXPECT_EQ(wrapped("aa bb cccc dd e", layoutOf(9, 0, true)), "aa   bb\ncccc  dd\ne\n");
    EXPECT_EQ(wrapped("aa bb", layoutOf(80, 0, true)), "aa bb\n");
}

TEST(WordWrap, CountsBytesForUtf8Too) {
    EXPECT_EQ(wrapped("\xC3\xA4\xC3\xA4 bb", layoutOf(6)), "\xC3\xA4\xC3\xA4\nbb\n");
    EXPECT_EQ(wrapped("aa bb", layoutOf(6)), "aa bb\n");
}

TEST(WordWrap, AnIndentBeyondTheWidthGivesEachWordALine) {
    EXPECT_EQ(wrapped("a b", layoutOf(3, 5)), "     a\n     b\n");
    EXPECT_EQ(wrapped("a b", layoutOf(3, 5, true)), "     a\n     b\n");
    EXPECT_EQ(wrapped("a b", layoutOf(0, 0, true)), "a\nb\n");
}

TEST(WordWrap, TheLargestWidthIsOneLine) {
    EXPECT_EQ(wrapped("a b c", layoutOf(std::numeric_limits<std::uint32_t>::max(), 0, true)), "a b c\n");
}

// The rules of the header, applied word by word.
std::string wrappedWordByWord(std::string_view text, const WrapLayout& layout) {
    std::string out;
    std::vector<std::string> line;
    std::int64_t used = 0;
    const std::int64_t avail = std::int64_t{layout.width} - layout.indent;
    bool isFirst = true;
    const auto close = [&](std::int64_t extra) {
        out += isFirst && !layout.indentFirstLine ? "" : std::string(layout.indent, layout.fillChar);
        isFirst = false;
        const auto count = static_cast<std::int64_t>(line.size());
        std::int64_t rest = extra > 0 ? extra % count : 0;
        for (std::int64_t i = 0; i < count; ++i) {
            out += line[static_cast<std::size_t>(i)];
            if (i + 1 < count) {
                out += std::string(static_cast<std::size_t>((extra > 0 ? extra / count : 0) + 1), ' ');
                out += rest-- > 0 ? " " : "";
            }
        }
        out += "\n";
        line.clear();
        used = 0;
    };
    std::istringstream words{std::string(text)};
    for (std::string word; words >> word;) {
        const auto needed = static_cast<std::int64_t>(word.size()) + 1;
        if (!line.empty() && used + needed > avail) {
            close(layout.justify ? avail - used : 0);
        }
        line.push_back(word);
        used += needed;
    }
    close(0);
    return out;
}

TEST(WordWrap, AnyTextIsWrappedAsWordByWord) {
    std::mt19937 random(1);
    for (int i = 0; i < 5000; ++i) {
        std::string text;
        const bool singleBlanks = i % 2 == 0;
        for (std::uint32_t words = random() % 60; words > 0; --words) {
            text += std::string(random() % 12 + (singleBlanks ? 1 : 0), 'x');
            text += words > 1 || !singleBlanks ? " " : "";
        }
        WrapLayout layout = layoutOf(random() % 50, random() % 8, random() % 2 == 0);
        layout.indentFirstLine = random() % 2 == 0;
        ASSERT_EQ(wrapped(text, layout), wrappedWordByWord(text, layout))
            << layout.width << " " << layout.indent << " [" << text << "]";
    }
}

TEST(WordWrap, NeedlessBlanksAreFoundAnywhere) {
    const std::string words = [] {
        std::string made = "a";
        for (int i = 0; i < 150; ++i) {
            made += " a";
        }
        return made;
    }();
    for (std::size_t at = 0; at <= words.size(); ++at) {
        std::string text = words;
        text.insert(at, " ");
        if (at == 0 || at == words.size() || words[at] == ' ' || words[at - 1] == ' ') {
            ASSERT_EQ(wrapped(text, layoutOf(1000)), words + "\n") << at;
        }
    }
}

TEST(WordWrap, OutputStaysInProportionToTheText) {
    std::string text;
    for (int i = 0; i < 100000; ++i) {
        text += "a ";
    }
    EXPECT_EQ(wrapped(text, layoutOf(0)).size(), 200000U);
    EXPECT_EQ(wrapped(text, layoutOf(0, 3)).size(), 500000U);
    EXPECT_LE(wrapped(text, layoutOf(78, 0, true)).size(), 202000U);
}

}  // namespace

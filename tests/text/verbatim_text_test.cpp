#include "text/verbatim_text.h"

#include <gtest/gtest.h>

#include <climits>
#include <sstream>

#include "base/text_columns.h"
#include "text/utf8_check.h"

namespace {

using Lines = std::vector<std::string>;

constexpr int kFreeColumns = 2;

std::string shown(std::string_view document, int width = 78) {
    return verbatimAsText(document, width + kFreeColumns);
}

std::string withoutBlanks(std::string text) {
    std::erase_if(text, [](char c) { return c == ' ' || c == '\n'; });
    return text;
}

TEST(VerbatimLines, AreAsTheyAreWritten) {
    EXPECT_EQ(verbatimLines("3. three\n7. seven\n\n> quote\n# *a* _b_ {\\rtf}\n"),
              (Lines{"3. three", "7. seven", "", "> quote", "# *a* _b_ {\\rtf}"}));
    EXPECT_EQ(verbatimLines("  a  b  \n\n\n"), (Lines{"  a  b  ", "", ""}));
}

TEST(VerbatimLines, EndLikeThoseOfAnySystemAndAtFormFeeds) {
    EXPECT_EQ(verbatimLines("a\nb\r\nc\rd\fe"), (Lines{"a", "b", "c", "d", "e"}));
    EXPECT_EQ(verbatimLines("\r\n\r\n"), (Lines{"", ""}));
    EXPECT_EQ(verbatimLines("\n\r"), (Lines{"", ""}));
    EXPECT_EQ(verbatimLines("a\n\fb"), (Lines{"a", "", "b"}));
}

TEST(VerbatimLines, AnEmptyDocumentHasNone) {
    EXPECT_EQ(verbatimLines(""), Lines());
    EXPECT_EQ(verbatimLines(std::string_view()), Lines());
    EXPECT_EQ(verbatimLines("\xEF\xBB\xBF"), Lines());
    EXPECT_EQ(verbatimLines(std::string_view("\0a", 2)), Lines());
}

TEST(VerbatimLines, OnlyTheFirstByteOrderMarkIsDropped) {
    EXPECT_EQ(verbatimLines("\xEF\xBB\xBF\xEF\xBB\xBF"
                            "a"),
              (Lines{"\xEF\xBB\xBF"
                     "a"}));
}

TEST(VerbatimLines, TheDocumentEndsAtItsFirstZeroByte) {
    EXPECT_EQ(verbatimLines(std::string_view("a\nb\0c\nd", 7)), (Lines{"a", "b"}));
}

TEST(VerbatimLines, TabsReachTheNextMultipleOfEightColumns) {
    EXPECT_EQ(verbatimLines("\ta"), (Lines{"        a"}));
    EXPECT_EQ(verbatimLines("abc\td"), (Lines{"abc     d"}));
    EXPECT_EQ(verbatimLines("12345678\td"), (Lines{"12345678        d"}));
    EXPECT_EQ(verbatimLines("\xC3\xA9\xE4\xB8\xAD\td"), (Lines{"\xC3\xA9\xE4\xB8\xAD     d"})) << "3 columns";
    EXPECT_EQ(verbatimLines("abc\n\td"), (Lines{"abc", "        d"}));
}

TEST(VerbatimLines, EachByteThatIsNotUtf8IsReplaced) {
    EXPECT_EQ(verbatimLines("a\xFF\xC3"), (Lines{"a\xEF\xBF\xBD\xEF\xBF\xBD"}));
    EXPECT_EQ(verbatimLines("\xE9t\xE9\n"), (Lines{"\xEF\xBF\xBDt\xEF\xBF\xBD"}));
}

TEST(VerbatimAsText, LinesThatFitStayAsTheyAre) {
    EXPECT_EQ(shown("  one  two \n\nthree", 11), "  one  two \n\nthree\n");
    EXPECT_EQ(shown(""), "");
    EXPECT_EQ(shown("\n \n"), "\n \n");
}

TEST(VerbatimAsText, LongerLinesAreBrokenAtBlanks) {
    EXPECT_EQ(shown("one two three", 13), "one two three\n");
    EXPECT_EQ(shown("one two three", 12), "one two\nthree\n");
    EXPECT_EQ(shown("one two   three four", 10), "one two\nthree four\n")
        << "blanks go only where a line ends";
    EXPECT_EQ(shown("one  two three", 10), "one  two\nthree\n");
    EXPECT_EQ(shown("one two   ", 7), "one two\n");
    EXPECT_EQ(shown("one two\nthree", 5), "one\ntwo\nthree\n") << "lines aren't joined";
}

TEST(VerbatimAsText, PartsOfALineAreSetInLikeTheLine) {
    EXPECT_EQ(shown("    one two three", 12), "    one two\n    three\n");
    EXPECT_EQ(shown("\tone two three", 16), "        one two\n        three\n");
}

TEST(VerbatimAsText, AnIndentationThatTakesMoreThanHalfIsGivenUp) {
    EXPECT_EQ(shown("     one two", 10), "     one\n     two\n");
    EXPECT_EQ(shown("      one two", 10), "one two\n");
    EXPECT_EQ(shown(std::string(1000, ' ') + "a", 10), "a\n");
    EXPECT_EQ(shown(std::string(1000, ' '), 10), "\n");
}

TEST(VerbatimAsText, AWordThatIsTooLongIsBrokenWhereTheLineIsFull) {
    EXPECT_EQ(shown("a 1234567890 b", 4), "a\n1234\n5678\n90 b\n");
    EXPECT_EQ(shown("  1234", 4), "  12\n  34\n");
}

TEST(VerbatimAsText, WidthsAreColumnsAndNotBytes) {
    EXPECT_EQ(shown("\xC3\xA9\xC3\xA9 \xC3\xA9\xC3\xA9", 5), "\xC3\xA9\xC3\xA9 \xC3\xA9\xC3\xA9\n");
    EXPECT_EQ(shown("\xE4\xB8\xAD\xE4\xB8\xAD\xE4\xB8\xAD", 5), "\xE4\xB8\xAD\xE4\xB8\xAD\n\xE4\xB8\xAD\n");
    EXPECT_EQ(shown("ae\xCC\x81"
                    "b",
                    2),
              "ae\xCC\x81\nb\n")
        << "a mark stays with its letter";
}

TEST(VerbatimAsText, NoWidthIsTooSmallOrTooLarge) {
    for (const int columns : {3, 2, 1, 0, -1, INT_MIN}) {
        EXPECT_EQ(verbatimAsText("ab c", columns), "a\nb\nc\n") << columns;
    }
    EXPECT_EQ(verbatimAsText("\xE4\xB8\xAD\xE4\xB8\xAD", 3), "\xE4\xB8\xAD\n\xE4\xB8\xAD\n");
    EXPECT_EQ(verbatimAsText("one two", INT_MAX), "one two\n");
}

constexpr std::string_view kEverything =
    "\xEF\xBB\xBF# One  *two*\r\n\t3) \xC3\xA9t\xC3\xA9 \xE4\xB8\xAD\xE6\x96\x87 and more "
    "words\r\n\f\x1B[m\r   "
    "\xF0\x9F\x98\x80\xFF end\n\n";

TEST(VerbatimAsText, NothingButBlanksIsLostOfADocumentCutAnywhere) {
    for (std::size_t length = 0; length <= kEverything.size(); ++length) {
        std::string whole;
        for (const std::string& line : verbatimLines(kEverything.substr(0, length))) {
            EXPECT_FALSE(findInvalidUtf8(line).has_value()) << length;
            whole += line;
        }
        for (const int width : {2, 9, 30}) {
            const std::string text = shown(kEverything.substr(0, length), width);
            EXPECT_EQ(withoutBlanks(text), withoutBlanks(whole)) << length;
            std::istringstream lines(text);
            for (std::string line; std::getline(lines, line);) {
                EXPECT_LE(OUtils::columnsOf(line), static_cast<std::size_t>(width)) << length;
            }
        }
    }
}

TEST(VerbatimAsText, AMillionMarksAreReadInOnePass) {
    std::string document = "x ";
    for (int i = 0; i < 1000000; ++i) {
        document += "\xCC\x81";
    }
    EXPECT_EQ(shown(document + "yz", 3), "x\n" + document.substr(2) + "yz\n");
}

}  // namespace

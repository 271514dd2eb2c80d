#include "checking/document_losses.h"

#include <gtest/gtest.h>

namespace {

using namespace std::string_view_literals;
using Lines = std::vector<std::string>;

TEST(DocumentLosses, FindsNoneInWhatIsShownAsItIsWritten) {
    EXPECT_EQ(Lines{}, markdownLosses("# Title\n\nText,\nmore text.\n\n1. a\n2. b\n\n    a. c\n    b. d\n\n"
                                      "> quoted\n> twice\n\n- e\n"));
    EXPECT_EQ(Lines{}, richTextLosses("{\\rtf1{\\fonttbl{\\f0 Arial;}}{\\colortbl;\\red0;}{\\*\\x y}\r\n"
                                      "{\\info{\\title T}}{\\b\\i }\\pard a\\~b\\'a9 \\{c\\}\\par}\r\n"));
}

TEST(DocumentLosses, NamesTheHeadingThatJoinsAParagraph) {
    EXPECT_EQ(
        Lines{"line 2: this heading is shown as text of the paragraph above it: put a blank line before it"},
        markdownLosses("text\n# Title\n\nend\n"));
}

TEST(DocumentLosses, NamesTheFirstLineOfAListThatJoinsAParagraph) {
    EXPECT_EQ(
        Lines{"line 2: this list is shown as text of the paragraph above it: put a blank line before it"},
        markdownLosses("text\n- a\n- b\n\nend\n"));
}

TEST(DocumentLosses, NamesTheFirstItemOfEachListThatIsRenumbered) {
    const std::string message =
        ": this item isn't shown with its own number: a list is numbered anew from its beginning";
    EXPECT_EQ((Lines{"line 1" + message, "line 7" + message}),
              markdownLosses("5. a\n6. b\n\ntext\n\n1. c\n3. d\n4. e\n"));
    EXPECT_EQ(Lines{"line 1" + message}, markdownLosses("b. a\nc. b\n"));
    EXPECT_EQ(Lines{"line 2" + message}, markdownLosses("- a\n1. b\n"));
    EXPECT_EQ(Lines{"line 1" + message}, markdownLosses("99999999999999999999. a\n"));
    EXPECT_EQ(Lines{}, markdownLosses("1. a\n1. b\n1. c\n"));
}

TEST(DocumentLosses, NamesWhatAQuoteLoses) {
    EXPECT_EQ(Lines{"line 2: this line isn't shown: put a blank line after the quote above it"},
              markdownLosses("> a\n> b"));
    EXPECT_EQ(Lines{"line 4: the character after > isn't shown: put a space there"},
              markdownLosses("text\n\n> a\n>b\n\nend\n"));
}

TEST(DocumentLosses, CountsTheLinesInsideAQuoteFromTheStartOfTheDocument) {
    EXPECT_EQ(
        Lines{"line 4: this heading is shown as text of the paragraph above it: put a blank line before it"},
        markdownLosses("text\n\n> a\n> # b\n> c\n\nend\n"));
}

TEST(DocumentLosses, NamesTheBytesOfRichTextThatAreDropped) {
    EXPECT_EQ((Lines{"line 1: left out: \\'e9 \\'fc: write the letter itself, in UTF-8",
                     "line 2: left out: \\'df: write the letter itself, in UTF-8"}),
              richTextLosses("{\\rtf1 a\\'e9b\\'fc\n\\'df}"));
}

TEST(DocumentLosses, NamesTheGroupsOfRichTextThatAreHidden) {
    EXPECT_EQ(Lines{"line 2: left out: {\\b so}: write its text without braces around it"},
              richTextLosses("{\\rtf1 a\n{\\b so} b}"));
    EXPECT_EQ(Lines{"line 1: left out: {{\\'e9}}: write its text without braces around it"},
              richTextLosses("{\\rtf1 {{\\'e9}}}"));
}

TEST(DocumentLosses, NamesTheWordsOfRichTextThatMeanCharacters) {
    EXPECT_EQ(
        Lines{
            "line 1: left out: \\emdash \\u8364 \\line: write the character itself, in UTF-8, or \\par for a "
            "new line"},
        richTextLosses("{\\rtf1 a\\emdash b\\u8364 ?\\line c}"));
    EXPECT_EQ(Lines{"line 1: left out: \\-line: remove the soft hyphen, which takes the text up to the next "
                    "space along"},
              richTextLosses("{\\rtf1 under\\-line it}"));
    EXPECT_EQ(Lines{"line 1: left out: a tab: write \\tab"}, richTextLosses("{\\rtf1 a\tb}"));
}

TEST(DocumentLosses, NamesTheControlCharactersOfRichText) {
    EXPECT_EQ((Lines{"line 1: left out: a control character: remove it",
                     "line 2: left out: a control character a control character: remove it"}),
              richTextLosses("{\\rtf1 a\fb\r\n\x01\x7F}"));
    EXPECT_EQ(Lines{}, richTextLosses("{\\rtf1 {\\fonttbl \f}a}"));
}

TEST(DocumentLosses, CutsWhatIsLong) {
    const Lines lines = richTextLosses("{\\rtf1 {" + std::string(100, 'x') + "}}");
    ASSERT_EQ(1U, lines.size());
    EXPECT_EQ("line 1: left out: {" + std::string(39, 'x') + "...: write its text without braces around it",
              lines[0]);
    std::string many = "{\\rtf1 ";
    for (int i = 0; i < 1000; ++i) {
        many += "\\'e9";
    }
    ASSERT_EQ(1U, richTextLosses(many + "}").size());
    EXPECT_LT(richTextLosses(many + "}")[0].size(), 120U);
}

TEST(DocumentLosses, NamesTheLinesOfAVerbatimTextThatAreNotUtf8) {
    EXPECT_EQ(Lines{"line 2: there are bytes that aren't UTF-8: save it as UTF-8"},
              verbatimLosses("3. three\n\xE9t\xE9\n# \xC3\xA9\n\0\xFF"sv));
    EXPECT_EQ(2U, verbatimLosses("\xFF\n\xFF").size());
    EXPECT_EQ(Lines{}, verbatimLosses(""));
}

TEST(DocumentLosses, AByteOrderMarkOfAVerbatimTextIsNoLoss) {
    EXPECT_EQ(Lines{}, lossesOf("\xEF\xBB\xBFtext\n# heading\n"sv, DocumentFormat::kVerbatim));
    EXPECT_EQ(Lines{"line 2: the document ends here at a zero byte: save it as UTF-8"},
              lossesOf("a\n\0"sv, DocumentFormat::kVerbatim));
}

TEST(DocumentLosses, NamesWhatWasReadBeforeAFault) {
    EXPECT_EQ(1U, richTextLosses("{\\rtf1 \\'e9}}").size());
}

TEST(DocumentLosses, BeginWithAZeroByteAndAByteOrderMark) {
    EXPECT_EQ(
        (Lines{
            "line 3: the document ends here at a zero byte: save it as UTF-8",
            "there is a byte order mark before the first line: save it without one",
            "line 2: this heading is shown as text of the paragraph above it: put a blank line before it"}),
        lossesOf("\xEF\xBB\xBFtext\n# a\tb\n\0"sv, DocumentFormat::kMarkdown));
    EXPECT_EQ(Lines{"line 1: left out: a tab: write \\tab"},
              lossesOf("{\\rtf1 a\tb}", DocumentFormat::kOfElement));
}

}  // namespace

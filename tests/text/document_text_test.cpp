#include "text/document_text.h"

#include <gtest/gtest.h>

#include <climits>

#include "text/basic_html_translator.h"

namespace {

std::string text(std::string_view document, int columns = 80) {
    return markdownAsText(document, columns).value_or("(broken)");
}

TEST(DocumentFormat, WordsAreComparedWithoutRegardToCase) {
    EXPECT_EQ(documentFormat("TandrelMarkdown"), DocumentFormat::kMarkdown);
    EXPECT_EQ(documentFormat("tandrelMARKDOWN"), DocumentFormat::kMarkdown);
    EXPECT_EQ(documentFormat("TandrelText"), DocumentFormat::kVerbatim);
    EXPECT_EQ(documentFormat("TANDRELtext"), DocumentFormat::kVerbatim);
}

TEST(DocumentFormat, AnyOtherWordLeavesItToTheElement) {
    for (const std::string_view word : {"", "Text", "Plain", "RTF", "TandrelTexts", " TandrelText"}) {
        EXPECT_EQ(documentFormat(word), DocumentFormat::kOfElement) << word;
    }
}

TEST(MarkdownAsText, LinesAreTwoBytesShorterThanTheConsole) {
    EXPECT_EQ(text("one two three", 15), "one two three\n");
    EXPECT_EQ(text("one two three", 14), "one two\nthree\n");
}

TEST(MarkdownAsText, LinesOfAParagraphAreJoinedByABlank) {
    EXPECT_EQ(text("one\ntwo\n\nthree\n"), "one two\n\nthree\n");
}

TEST(MarkdownAsText, LinesAreNotPadded) {
    EXPECT_EQ(text("aa bb cccccc dd", 12), "aa bb\ncccccc dd\n");
}

TEST(MarkdownAsText, EmphasisIsWrappedWithItsParagraphAndNotMarked) {
    EXPECT_EQ(text("one **two** three *four* five", 20), "one two three\nfour five\n");
}

TEST(MarkdownAsText, IndentsListsWhenThereIsRoom) {
    constexpr std::string_view kNested = "- a\n\t- b\n\t\t1. c\n";
    EXPECT_EQ(text(kNested, 80), "- a\n  - b\n    1. c\n\n\n\n");
    EXPECT_EQ(text(kNested, 200), "- a\n  - b\n    1. c\n\n\n\n");
    EXPECT_EQ(text(kNested, 79), "- a\n- b\n1. c\n\n\n\n");
    EXPECT_EQ(text(kNested, 10), "- a\n- b\n1. c\n\n\n\n");
}

TEST(MarkdownAsText, NoWidthIsTooSmallOrTooLarge) {
    EXPECT_EQ(text("one two", 3), "one\ntwo\n");
    for (const int columns : {2, 1, 0, -1, INT_MIN}) {
        EXPECT_EQ(text("one two", columns), "one\ntwo\n") << columns;
    }
    EXPECT_EQ(text("one two", INT_MAX), "one two\n");
}

TEST(MarkdownAsText, ABrokenOrEmptyDocumentGivesNothing) {
    EXPECT_FALSE(markdownAsText("fine\n\na**", 80).has_value());
    EXPECT_FALSE(markdownAsText("", 80).has_value());
    EXPECT_FALSE(markdownAsText(std::string_view(), 80).has_value());
    EXPECT_FALSE(markdownAsText(std::string_view("\0text", 5), 80).has_value());
}

TEST(MarkdownAsText, ADocumentEndsAtItsFirstZeroByte) {
    EXPECT_EQ(text(std::string_view("text\0a**", 8)), "text\n");
}

TEST(MarkdownAsText, BytesThatAreNotUtf8PassThrough) {
    EXPECT_EQ(text("\xC3\xA4\xFF \xE2\x82\xAC"), "\xC3\xA4\xFF \xE2\x82\xAC\n");
}

constexpr std::string_view kDocument =
    "# Agreement\n"
    "\n"
    "This text is *for you*, and for **everyone** who uses the tools, wherever\n"
    "they are: in Z\xC3\xBCrich or in \xC3\x85lesund.\n"
    "\n"
    "## Terms\n"
    "1. Use it.\n"
    "2. Share it:\n"
    "\t- with friends who would not know of it otherwise and should\n"
    "\t- with a < b & c > d\n"
    "3. Enjoy it.\n"
    "\n"
    "> Nothing is promised, but much is meant, and what is meant is\n"
    "> meant well.\n"
    ">\n"
    "\n"
    "a. first\n"
    "b. second\n"
    "\n"
    "The \\*end\\*.\n"
    "\n";

// The lettered list is loose: it has one blank line after it, and that is as many as it has items, less one.
TEST(MarkdownAsText, ConvertsAWholeDocument) {
    EXPECT_EQ(text(kDocument, 42),
              "Agreement\n"
              "\n"
              "\n"
              "This text is for you, and for everyone\n"
              "who uses the tools, wherever they are:\n"
              "in Z\xC3\xBCrich or in \xC3\x85lesund.\n"
              "\n"
              "Terms\n"
              "\n"
              "\n"
              "1. Use it.\n"
              "\n"
              "2. Share it:\n"
              "- with friends who would not know of it\n"
              "  otherwise and should\n"
              "\n"
              "- with a < b & c > d\n"
              "\n"
              "\n"
              "3. Enjoy it.\n"
              "\n"
              "Nothing is promised, but much is meant,\n"
              "and what is meant is meant well.\n"
              "\n"
              "a. first\n"
              "\n"
              "\n"
              "b. second\n"
              "\n"
              "\n"
              "The *end*.\n"
              "\n");
}

TEST(MarkdownAsHtml, ConvertsAWholeDocument) {
    EXPECT_EQ(markdownAsHtml(kDocument).value_or("(broken)"),
              "<!DOCTYPE html>\n"
              "<html>\n"
              "\t<head>\n"
              "\t\t<title>[Untitled]</title>\n"
              "\t\t<meta http-equiv=\"content-type\" content=\"text/html; charset=UTF-8\">\n"
              "\t</head>\n"
              "\t<body>\n"
              "\t\t<h1>Agreement</h1>\n"
              "\t\t<p>This text is <em>for you</em>, and for <strong>everyone</strong> who uses the tools, "
              "wherever they are: in Z\xC3\xBCrich or in \xC3\x85lesund.</p>\n"
              "\t\t<h2>Terms</h2>\n"
              "\t\t<ol>\n"
              "\t\t\t<li>Use it.</li>\n"
              "\t\t\t<li>Share it:\n"
              "\t\t\t\t<ul>\n"
              "\t\t\t\t\t<li>with friends who would not know of it otherwise and should</li>\n"
              "\t\t\t\t\t<li>with a &lt; b &amp; c &gt; d</li>\n"
              "\t\t\t\t</ul>\n"
              "\t\t\t</li>\n"
              "\t\t\t<li>Enjoy it.</li>\n"
              "\t\t</ol>\n"
              "\t\t<blockquote>\n"
              "\t\t\t<p>Nothing is promised, but much is meant, and what is meant is meant well.</p>\n"
              "\t\t</blockquote>\n"
              "\t\t<ol type=\"a\">\n"
              "\t\t\t<li>\n"
              "\t\t\t\t<p>first</p>\n"
              "\t\t\t</li>\n"
              "\t\t\t<li>\n"
              "\t\t\t\t<p>second</p>\n"
              "\t\t\t</li>\n"
              "\t\t</ol>\n"
              "\t\t<p>The *end*.</p>\n"
              "\t</body>\n"
              "</html>\n");
}

TEST(MarkdownAsHtml, ABrokenOrEmptyDocumentGivesNothing) {
    EXPECT_FALSE(markdownAsHtml("a**").has_value());
    EXPECT_FALSE(markdownAsHtml("").has_value());
}

TEST(MarkdownAsTree, ShowsLinesAndBothTrees) {
    TGMParseResult result;
    const std::string tree = markdownAsTree("# Title\n\na *b*\n", result);
    EXPECT_TRUE(result.succeeded());
    EXPECT_NE(tree.find("Topology Tree:"), std::string::npos) << tree;
    EXPECT_NE(tree.find("Finalized Tree:"), std::string::npos) << tree;
    EXPECT_NE(tree.find("|     |     +[ITAL] : b\n"), std::string::npos) << tree;
}

TEST(MarkdownAsTree, SaysWhereADocumentIsBroken) {
    TGMParseResult result;
    const std::string tree = markdownAsTree("fine\n\na**\n", result);
    EXPECT_EQ(result.errors, kTgmInvalidEmphasis);
    EXPECT_NE(tree.find("a**"), std::string::npos) << tree;
    EXPECT_EQ(markdownAsTree("", result), "");
    EXPECT_EQ(result.errors, kTgmEmptyText);
}

std::string rich(std::string_view document, int columns = 80) {
    return richTextAsText(document, columns).value_or("(broken)");
}

TEST(RichTextAsText, LinesAreTwoCharactersShorterThanTheConsoleAndPadded) {
    EXPECT_EQ(rich("{one two three}", 15), "one two three\n");
    EXPECT_EQ(rich("{one two three}", 14), "one      two\nthree\n");
}

TEST(RichTextAsText, AttributesOfATerminalAreLeftOut) {
    EXPECT_EQ(rich("{\\rtf1{\\fonttbl F;}a \\b bold\\b0  \\ul line\\ulnone  end\\par}"), "a bold line end\n");
}

TEST(RichTextAsText, NoWidthIsTooSmallOrTooLarge) {
    for (const int columns : {3, 2, 1, 0, -1, INT_MIN}) {
        EXPECT_EQ(rich("{one two}", columns), "one\n\ntwo\n") << columns << ": the blank has a line as well";
    }
    EXPECT_EQ(rich("{one two}", INT_MAX), "one two\n");
}

TEST(RichTextAsText, ABrokenDocumentGivesNothing) {
    EXPECT_FALSE(richTextAsText("{a", 80).has_value());
    EXPECT_FALSE(richTextAsText("a}", 80).has_value());
    EXPECT_TRUE(richTextAsText("", 80).has_value());
}

TEST(RichTextAsText, ADocumentEndsAtItsFirstZeroByte) {
    EXPECT_EQ(rich(std::string_view("{a}\0}", 5)), "a\n");
}

TEST(DocumentTextTest, GivesTheLossesOfADocumentWithTheirPlaces) {
    const auto losses = lossesOfMarkdown("5. a\n\ntext\n# b\n");
    ASSERT_EQ(2U, losses.size());
    EXPECT_EQ((TGMLoss{TGMLossKind::kRenumberedItem, 0}), losses[0]);
    EXPECT_EQ((TGMLoss{TGMLossKind::kJoinedHeading, 3}), losses[1]);
    const auto bytes = lossesOfRichText("{\\rtf1 a\\'e9}");
    ASSERT_EQ(1U, bytes.size());
    EXPECT_EQ(RtfLossKind::kByte, bytes[0].kind);
    EXPECT_EQ(8U, bytes[0].offset);
    EXPECT_EQ("\\'e9", bytes[0].source);
}

TEST(DocumentTextTest, HandsADocumentOverOnlyWhenItIsWhole) {
    BasicHTMLTranslator whole;
    EXPECT_TRUE(walkMarkdown("a\nb", whole));
    EXPECT_NE(whole.getText().find("a b"), std::string_view::npos);
    BasicHTMLTranslator empty;
    EXPECT_FALSE(walkMarkdown("", empty));
    EXPECT_EQ("", empty.getText());
}

}  // namespace

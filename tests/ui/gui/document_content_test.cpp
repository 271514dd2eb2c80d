#include "ui/gui/document_content.h"

#include <gtest/gtest.h>

#include "rich_text_script.h"

namespace {

constexpr std::string_view kMarkdown = "TandrelMarkdown";
constexpr std::string_view kVerbatim = "TandrelText";
constexpr DocumentColours kNoColours;
constexpr DocumentColours kThemed{.element = -1, .theme = 0x302010};
constexpr DocumentColours kBoth{.element = 0x00C0FFEE, .theme = 0x302010};

std::string rich(std::string_view document, std::string_view format, const DocumentColours& colours = {}) {
    return richTextScript(richTextContent(document, format, colours).get());
}

TEST(DocumentContent, ExchangesRedAndBlueForHtml) {
    EXPECT_EQ(htmlColour(0x00BBCCDD), 0xDDCCBBU);
    EXPECT_EQ(htmlColour(0x00004DE8), 0xE84D00U);
    EXPECT_EQ(htmlColour(0), 0U);
}

TEST(DocumentContent, RichTextOfMarkdown) {
    EXPECT_EQ(rich("# Title\none\ntwo *three*\n", kMarkdown),
              "(left)/(centre)(b)[Title]//[](left)\"one two \"(i)\"three\"//");
    EXPECT_EQ(rich("a", "tandrelMARKDOWN"), "(left)\"a\"/");
}

TEST(DocumentContent, ColoursMarkdownByTheElementOrTheTheme) {
    EXPECT_EQ(rich("a", kMarkdown, kBoth), "(colour 12648430)(left)\"a\"/");
    EXPECT_EQ(rich("a", kMarkdown, kThemed), "(colour 3153936)(left)\"a\"/");
}

TEST(DocumentContent, ColoursRichTextByTheTheme) {
    EXPECT_EQ(rich("{a}", "", kBoth), "(colour 3153936)\"a\"/(colour 3153936)");
    EXPECT_EQ(rich("{a}", "Rtf"), "\"a\"");
}

TEST(DocumentContent, BrokenDocumentsGiveNothing) {
    EXPECT_EQ(rich("", kMarkdown), "");
    EXPECT_EQ(rich("{\\b a}}", ""), "");
    EXPECT_EQ(rich("{a", "", kThemed), "");
    EXPECT_EQ(htmlContent("", kMarkdown, kNoColours), "");
    EXPECT_EQ(plainTextContent("", kMarkdown), "");
}

// Reading two hexadecimal digits of a character may cut the next one.
TEST(DocumentContent, CutCharactersOfRichTextBecomeValid) {
    EXPECT_EQ(rich("{\\'a\xC3\xBC"
                   "b}",
                   ""),
              "\"\xEF\xBF\xBD"
              "b\"");
}

TEST(DocumentContent, HtmlOfMarkdown) {
    const std::string page = htmlContent("a *b*\n\n- c\n", kMarkdown, kNoColours);
    EXPECT_NE(page.find("<font size=\"2\"><p>a <em>b</em></p><ul><li>c</li></ul>"), std::string::npos)
        << page;
    EXPECT_EQ(page.find('\n'), std::string::npos);
    EXPECT_EQ(page.find("</font>"), std::string::npos);
}

TEST(DocumentContent, ColoursHtmlOfMarkdown) {
    const std::string themed = htmlContent("a", kMarkdown, kThemed);
    EXPECT_NE(themed.find("<font color=\"#102030\" size=\"2\">a</font>"), std::string::npos) << themed;
    const std::string own = htmlContent("a", kMarkdown, kBoth);
    EXPECT_NE(own.find("<font color=\"#eeffc0\" size=\"2\">"), std::string::npos) << own;
}

TEST(DocumentContent, ShowsHtmlAsItIs) {
    EXPECT_EQ(htmlContent("<body>a</body>", "", kNoColours), "<body>a</body>");
    EXPECT_EQ(htmlContent("a\xFC", "", kNoColours), "a\xEF\xBF\xBD");
    EXPECT_EQ(htmlContent(std::string_view("a\0b", 3), "", kNoColours), "a");
}

TEST(DocumentContent, PutsTheThemesColourAroundABody) {
    const std::string expected = "<body><font color=\"#102030\">a</font></body>";
    EXPECT_EQ(htmlContent("<body>a</body>", "", kBoth), expected);
    EXPECT_EQ(htmlContent("<BODY>a</BODY>", "", kThemed), expected);
    EXPECT_EQ(htmlContent("<Body>a</Body>", "", kThemed), "<Body>a</Body>");
    EXPECT_EQ(htmlContent("<body text=\"red\">a", "", kThemed), "<body text=\"red\">a");
}

TEST(DocumentContent, VerbatimTextHasNoMarkup) {
    constexpr std::string_view kDocument = "7. *a*\r\n\n  {\\b <i>}\n";
    EXPECT_EQ(rich(kDocument, kVerbatim), "\"7. *a*\n\n  {\\b <i>}\n\"");
    EXPECT_EQ(rich(kDocument, "tandrelTEXT", kThemed), "(colour 3153936)\"7. *a*\n\n  {\\b <i>}\n\"");
    EXPECT_EQ(plainTextContent(kDocument, kVerbatim), "7. *a*\n\n  {\\b <i>}\n");
    EXPECT_EQ(htmlContent(kDocument, kVerbatim, kNoColours),
              "<html><body><font size=\"2\">7. *a*<br><br>&nbsp; {\\b &lt;i&gt;}<br></font></body></html>");
    EXPECT_EQ(htmlContent("&\"", kVerbatim, kBoth),
              "<html><body><font color=\"#eeffc0\" size=\"2\">&amp;&quot;<br></font></body></html>");
}

TEST(DocumentContent, BlanksOfAVerbatimTextStayInHtml) {
    EXPECT_EQ(htmlContent(" a  b   c ", kVerbatim, kNoColours),
              "<html><body><font size=\"2\">&nbsp;a&nbsp; b&nbsp;&nbsp; c <br></font></body></html>");
    EXPECT_EQ(htmlContent(" \n", kVerbatim, kNoColours),
              "<html><body><font size=\"2\">&nbsp;<br></font></body></html>");
}

TEST(DocumentContent, AnEmptyVerbatimTextIsEmpty) {
    EXPECT_EQ(rich("", kVerbatim), "");
    EXPECT_EQ(plainTextContent("", kVerbatim), "");
}

TEST(DocumentContent, PlainTextOfMarkdown) {
    EXPECT_EQ(plainTextContent("# T\n- a\n\n    - b\n", kMarkdown), "T\n\n- a\n  - b\n\n");
}

TEST(DocumentContent, PlainTextLosesItsCarriageReturns) {
    EXPECT_EQ(plainTextContent("a\r\nb\r\n", ""), "a\nb\n");
    EXPECT_EQ(plainTextContent(std::string_view("\xFC\0b", 3), ""), "\xEF\xBF\xBD");
}

}  // namespace

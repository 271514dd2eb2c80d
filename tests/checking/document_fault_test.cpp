#include "checking/document_fault.h"

#include <gtest/gtest.h>

#include "text/tgm_limits.h"

namespace {

constexpr const char* kEmphasisAdvice =
    " can't be resolved: write \\* and \\_ for each star and underscore that is no markup";

TEST(DocumentFault, CountsLinesFromOne) {
    EXPECT_EQ(lineOfOffset("", 0), 1U);
    EXPECT_EQ(lineOfOffset("a\nb\nc", 1), 1U);
    EXPECT_EQ(lineOfOffset("a\nb\nc", 2), 2U);
    EXPECT_EQ(lineOfOffset("a\nb\nc", 100), 3U);
}

TEST(DocumentFault, ReportsAnEmptyDocument) {
    using namespace std::string_view_literals;
    EXPECT_EQ(markdownFault(""), "the document is empty: a setup shows nothing");
    EXPECT_EQ(markdownFault("\0text"sv), "the document is empty: a setup shows nothing");
}

TEST(DocumentFault, ReportsEmphasisWithItsLineAndText) {
    EXPECT_EQ(markdownFault("# Title\n\nGood *text* here.\n\nBad ** text.\nMore of it.\n"),
              std::string("line 5: the emphasis in \"Bad ** text.\"") + kEmphasisAdvice);
}

TEST(DocumentFault, FindsEmphasisInsideListsAndQuotes) {
    EXPECT_TRUE(markdownFault("- a\n- b\n\n    - c** d\n").starts_with("line 4: the emphasis in \"c** d\""));
    EXPECT_TRUE(
        markdownFault("text\n\n> a\n> b** c\n> d\n\nend\n").starts_with("line 4: the emphasis in \"b** c\""));
    EXPECT_TRUE(markdownFault("text\n\n# a** b\n").starts_with("line 3: the emphasis in \"a** b\""));
}

TEST(DocumentFault, ReportsTheLineThatHoldsTheEmphasis) {
    EXPECT_TRUE(markdownFault("A start\nwithout marks\nand **an end.\n\n")
                    .starts_with("line 3: the emphasis in \"and **an end.\""));
}

TEST(DocumentFault, QuotesTheStartOfALongText) {
    EXPECT_EQ(markdownFault(std::string(50, 'x') + " ** y\n"),
              "line 1: the emphasis in \"" + std::string(40, 'x') + "...\"" + kEmphasisAdvice);
}

TEST(DocumentFault, ReportsListsThatNestTooDeeply) {
    std::string text;
    for (std::uint32_t level = 0; level <= kTgmMaxDepth; ++level) {
        text += std::string(level * 4, ' ') + "- a\n";
    }
    const std::string fault = markdownFault(text);
    EXPECT_TRUE(fault.starts_with("line ")) << fault;
    EXPECT_TRUE(fault.ends_with(": set fewer lists and quotes into each other")) << fault;
}

TEST(DocumentFault, ReportsASurplusBraceWithItsLine) {
    EXPECT_EQ(richTextFault("{\\rtf1\nabc\n}}\n"),
              "line 3: this } closes nothing: remove it, or write \\} for a brace of the text");
}

TEST(DocumentFault, ReportsHowManyGroupsAreOpen) {
    EXPECT_EQ(
        richTextFault("{\\rtf1\nabc"),
        "line 2: 1 group is still open at the end: write the missing }, or \\{ for a brace of the text");
    EXPECT_EQ(
        richTextFault("{{\\rtf1\n\n\\'a}{"),
        "line 3: 3 groups are still open at the end: write the missing }, or \\{ for a brace of the text");
}

TEST(DocumentFault, IsSaidInTheFormatOfTheDocument) {
    EXPECT_EQ(documentFault("fine\n\n", DocumentFormat::kMarkdown), "");
    EXPECT_EQ(documentFault("a**", DocumentFormat::kMarkdown), markdownFault("a**"));
    EXPECT_EQ(documentFault("{a}", DocumentFormat::kOfElement), "");
    EXPECT_EQ(documentFault("}", DocumentFormat::kOfElement), richTextFault("}"));
    for (const char* const document : {"a**", "}", ""}) {
        EXPECT_EQ(documentFault(document, DocumentFormat::kVerbatim), "");
    }
}

}  // namespace

#include "text/tgm_line_parser.h"

#include <gtest/gtest.h>

#include "text/tgm_test_support.h"

namespace {

std::string logOf(const std::string& text, TGMParseOptions options = {}) {
    std::string log;
    options.debugLog = &log;
    parseText(text, options);
    return log;
}

TEST(TGMLineParser, WritesTheLinesAndBothTrees) {
    EXPECT_EQ(
        "   0 : [ H1 ] (   0) Title\n"
        "   1 : [PLN ] (   2) a *b*\n"
        "   2 : [BLNK] (   2)\n"
        "   3 : [UNLI] (   4) c\n"
        "\n\n============ Topology Tree: ============\n\n"
        "+[DOC ]\n|     +[ H1 ] : Title\n|     +[PAR ] : a *b*\n|     +[UNLI]\n|     |     +[ LI ]\n"
        "|     |     |     +[PLN ] : c\n"
        "\n\n\n\n============ Finalized Tree: ============\n\n"
        "+[DOC ]\n|     +[ H1 ] : Title\n|     +[PAR ]\n|     |     +[PLN ] : a \n|     |     +[ITAL] : b\n"
        "|     +[UNLI]\n|     |     +[ LI ]\n|     |     |     +[PLN ] : c\n"
        "\n\n",
        logOf("# Title\na *b*\n\n- c"));
}

TEST(TGMLineParser, QuoteWritesItsOwnLogBeforeTheTrees) {
    EXPECT_EQ(
        "   0 : [BLKQ] (   2) a\n"
        "   1 : [BLNK] (   1)\n"
        "   2 : [BLNK] (   2)\n"
        "   3 : [BLNK] (   3)\n"
        "   0 : [PLN ] (   1) a\n"
        "   1 : [BLNK] (   1)\n"
        "   2 : [BLNK] (   2)\n"
        "\n\n============ Topology Tree: ============\n\n"
        "+[DOC ]\n|     +[PAR ] : a\n"
        "\n\n\n\n============ Finalized Tree: ============\n\n"
        "+[DOC ]\n|     +[PAR ] : a\n"
        "\n\n"
        "\n\n============ Topology Tree: ============\n\n"
        "+[DOC ]\n|     +[BLKQ]\n|     |     +[PAR ] : a\n"
        "\n\n\n\n============ Finalized Tree: ============\n\n"
        "+[DOC ]\n|     +[BLKQ]\n|     |     +[PAR ] : a\n"
        "\n\n",
        logOf("> a\n\n\n"));
}

TEST(TGMLineParser, LogHoldsBothTreesAfterAnError) {
    TGMParseOptions options;
    options.checkUtf8 = true;
    EXPECT_EQ(
        "   0 : [PLN ] (   1) \xFF\n"
        "\n\n============ Topology Tree: ============\n\n+[DOC ]\n\n\n"
        "\n\n============ Finalized Tree: ============\n\n+[DOC ]\n\n\n",
        logOf("\xFF", options));
}

TEST(TGMLineParser, LogIsTheSameWithAndWithoutReading) {
    std::string log;
    TGMParseOptions options;
    options.debugLog = &log;
    const std::string text = "- a\n\n\t- b\n1. c\n> q\n\n\nx *y* z\n";
    EXPECT_EQ(parseText(text).tree, parseText(text, options).tree);
}

TEST(TGMLineParser, ChecksLinesOnlyWhenAsked) {
    const std::string text = "a\n\n\xC3\xA9\xE2\x82\xAC!\xFF\n\xFF";
    EXPECT_TRUE(parseText(text).result.succeeded());
    TGMParseOptions options;
    options.checkUtf8 = true;
    const ParsedText parsed = parseText(text, options);
    EXPECT_EQ(kTgmInvalidUtf8, parsed.result.errors);
    EXPECT_EQ(2U, parsed.result.line);
    EXPECT_EQ(3U, parsed.result.column);
    EXPECT_EQ("+[DOC ]\n", parsed.tree);
}

TEST(TGMLineParser, KeepGoingBuildsDespiteInvalidBytes) {
    TGMParseOptions options = keepingGoing();
    options.checkUtf8 = true;
    const ParsedText parsed = parseText("\xFF*a*", options);
    EXPECT_EQ(kTgmInvalidUtf8, parsed.result.errors);
    EXPECT_EQ("+[DOC ]\n|     +[CMPS]\n|     |     +[PLN ] : \xFF\n|     |     +[ITAL] : a\n", parsed.tree);
}

TEST(TGMLineParser, QuoteThatCutsACharacterIsInvalid) {
    TGMParseOptions options;
    options.checkUtf8 = true;
    const ParsedText parsed = parseText("x\n\n>\xC3\xA9\n\n\n", options);
    EXPECT_EQ(kTgmInvalidUtf8, parsed.result.errors);
    EXPECT_EQ(2U, parsed.result.line);
    EXPECT_TRUE(parseText("> \xC3\xA9\n\n\n", options).result.succeeded());
}

TEST(TGMLineParser, ErrorsAreMergedWithTheFirstLine) {
    TGMParseResult result;
    result.add(kTgmInvalidUtf8, 7, 3);
    result.add(kTgmInvalidEmphasis);
    TGMParseResult other;
    other.add(kTgmEmptyText, 5);
    result.merge(other);
    EXPECT_EQ(kTgmInvalidUtf8 | kTgmInvalidEmphasis | kTgmEmptyText, result.errors);
    EXPECT_EQ(5U, result.line);
    EXPECT_EQ(UINT32_MAX, result.column);
    other.add(kTgmNullText, 4, 1);
    other.line = 9;
    result.merge(other);
    EXPECT_EQ(5U, result.line);
}

}  // namespace

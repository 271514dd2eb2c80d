#include "text/tgm_block_builder.h"

#include <gtest/gtest.h>

#include "tgm_test_support.h"

namespace {

// The tree without the line of its root, so one level further left.
std::string blocksOf(const std::string& text, const TGMParseOptions& options = {}) {
    std::string blocks;
    std::string line;
    for (const char c : treeOf(text, options)) {
        line += c;
        if (c == '\n') {
            blocks += line.rfind("|     ", 0) == 0 ? line.substr(6) : line == "+[DOC ]\n" ? "" : line;
            line.clear();
        }
    }
    return blocks + line;
}

std::string item(const std::string& text, const std::string& type = "PLN ") {
    return "|     +[ LI ]\n|     |     +[" + type + "] : " + text + "\n";
}

TEST(TGMBlockBuilder, PlainLinesAreJoined) {
    EXPECT_EQ("+[PLN ] : a\nb\n", blocksOf("a\n  b"));
    TGMParseOptions options;
    options.joinChar = ' ';
    EXPECT_EQ("+[PLN ] : a b\n", blocksOf("a\n  b", options));
}

TEST(TGMBlockBuilder, BlankLinesMakeAParagraph) {
    EXPECT_EQ("+[PAR ] : a\n+[PLN ] : b\n", blocksOf("\n\na\n\nb\n"));
    EXPECT_EQ("+[PAR ] : a\n", blocksOf("a\n\n"));
    EXPECT_EQ("+[PLN ] : a\n", blocksOf("a\n"));
    EXPECT_EQ("+[PAR ] : a\nb\n", blocksOf("a\n\n\tb"));
}

TEST(TGMBlockBuilder, SwallowedLinesKeepIndentationAndMarker) {
    EXPECT_EQ("+[PLN ] : a\n- b \n\t1. c\n# d\n", blocksOf("a\n- b \n\t1. c\n# d"));
}

TEST(TGMBlockBuilder, SwallowedLinesWithoutPayloadLeaveNothing) {
    EXPECT_EQ("+[PLN ] : a\nb\n", blocksOf("a\n- \n#\nb"));
}

TEST(TGMBlockBuilder, HeadingsAreOneLine) {
    EXPECT_EQ("+[ H1 ] : a\n+[ H6 ] : b\n+[PLN ] : c\n", blocksOf("# a\n######b\nc"));
    EXPECT_EQ("+[ H2 ]\n", blocksOf("##"));
}

TEST(TGMBlockBuilder, ListHasTheTypeOfItsFirstLine) {
    EXPECT_EQ("+[UNLI]\n" + item("a"), blocksOf("+ a"));
    EXPECT_EQ("+[OLNU]\n" + item("a"), blocksOf("7. a"));
    EXPECT_EQ("+[OLAL]\n" + item("a"), blocksOf("q. a"));
}

TEST(TGMBlockBuilder, ItemWithoutTextHasAnEmptyNode) {
    EXPECT_EQ("+[UNLI]\n|     +[ LI ]\n|     |     +[PLN ]\n", blocksOf("- "));
}

TEST(TGMBlockBuilder, OtherListLinesAreItemsUntilTheFirstBlankLine) {
    EXPECT_EQ("+[UNLI]\n" + item("a") + item("b") + item("c"), blocksOf("- a\n1. b\nc. c"));
    // After a blank line the same line is part of the item.
    EXPECT_EQ("+[UNLI]\n" + item("a", "PAR ") + item("b", "PAR ") + "|     |     +[OLNU]\n" +
                  "|     |     |     +[ LI ]\n|     |     |     |     +[PLN ] : c\n",
              blocksOf("- a\n\n- b\n1. c"));
}

TEST(TGMBlockBuilder, PlainLinesAfterAnItemAreItsText) {
    EXPECT_EQ("+[UNLI]\n" + item("a\nb\nc") + item("d"), blocksOf("- a\nb\n\tc\n- d"));
}

TEST(TGMBlockBuilder, ListIsLooseWithBlankLinesForAllItemsButOne) {
    EXPECT_EQ("+[UNLI]\n" + item("a", "PAR ") + item("b", "PAR ") + item("c", "PAR "),
              blocksOf("- a\n\n- b\n\n- c"));
    EXPECT_EQ("+[UNLI]\n" + item("a") + item("b") + item("c"), blocksOf("- a\n\n- b\n- c"));
    // A list without a blank line is never loose, even if it has only one item; trailing blank lines count.
    EXPECT_EQ("+[UNLI]\n" + item("a"), blocksOf("- a\n"));
    EXPECT_EQ("+[UNLI]\n" + item("a", "PAR "), blocksOf("- a\n\n"));
    EXPECT_EQ("+[UNLI]\n" + item("a", "PAR ") + item("b", "PAR ") + item("c", "PAR "),
              blocksOf("- a\n\n\n- b\n- c"));
}

TEST(TGMBlockBuilder, ListsNestByIndentation) {
    EXPECT_EQ("+[UNLI]\n" + item("a") + "|     |     +[OLNU]\n|     |     |     +[ LI ]\n" +
                  "|     |     |     |     +[PLN ] : b\n" + item("c"),
              blocksOf("- a\n\t1. b\n- c"));
}

TEST(TGMBlockBuilder, NestedBlockThatReachesBeyondItsItemAppearsTwice) {
    // The numbered list takes the bullet after it, which is an item of the outer list as well.
    EXPECT_EQ(
        "+[UNLI]\n"
        "|     +[ LI ]\n"
        "|     |     +[PAR ] : a\n"
        "|     |     +[UNLI]\n"
        "|     |     |     +[ LI ]\n"
        "|     |     |     |     +[PLN ] : b\n"
        "|     |     +[OLNU]\n"
        "|     |     |     +[ LI ]\n"
        "|     |     |     |     +[PLN ] : c\n"
        "|     |     |     +[ LI ]\n"
        "|     |     |     |     +[PLN ] : d\n"
        "|     +[ LI ]\n"
        "|     |     +[PAR ] : d\n",
        blocksOf("- a\n\n\t- b\n1. c\n- d"));
}

TEST(TGMBlockBuilder, QuoteLeavesItsLastLineOut) {
    EXPECT_EQ("+[BLKQ]\n|     +[PLN ] : a\nb\n+[PLN ] : c\n", blocksOf("> a\n> b\n\nc"));
    EXPECT_EQ("+[BLKQ]\n|     +[PLN ] : a\n", blocksOf("> a\n> b"));
    EXPECT_EQ("+[BLKQ]\n|     +[PLN ] : a\n", blocksOf("> a"));
}

TEST(TGMBlockBuilder, QuoteIsReadWithoutLazyListsAndWithNarrowLevels) {
    EXPECT_EQ(
        "+[BLKQ]\n|     +[PLN ] : a\n|     +[UNLI]\n|     |     +[ LI ]\n|     |     |     +[PLN ] : b\n",
        blocksOf("> a\n> - b\n\n"));
    // Four blanks are two levels in a quote, so the item is nested in the other.
    EXPECT_EQ(blocksOf("> - a\n>   - b\n>     - c\n\n"), blocksOf("> - a\n> \t- b\n> \t\t- c\n\n"));
    EXPECT_NE(blocksOf("- a\n  - b\n    - c\n\n"), blocksOf("- a\n\t- b\n\t\t- c\n\n"));
}

TEST(TGMBlockBuilder, QuoteKeepsTheOtherOptions) {
    TGMParseOptions options;
    options.alphaLists = false;
    options.joinChar = '~';
    EXPECT_EQ("+[BLKQ]\n|     +[PLN ] : a. b~c\n", blocksOf("> a. b\n> c\n\n", options));
}

TEST(TGMBlockBuilder, EmphasisOfAQuoteIsResolvedInItAndAgainWithTheWholeText) {
    EXPECT_EQ("+[BLKQ]\n|     +[ITAL]\n|     |     +[ITAL] : a\n", blocksOf("> *a*"));
    EXPECT_EQ("+[BLKQ]\n|     +[ITAL] : *a*\n", blocksOf("> \\*a\\*"));
}

TEST(TGMBlockBuilder, QuoteOfNoLineFailsAtItsLine) {
    const ParsedText parsed = parseText("# p\n\n\t> a\n# h\n\nx");
    EXPECT_EQ(kTgmEmptyText, parsed.result.errors);
    EXPECT_EQ(2U, parsed.result.line);
    EXPECT_EQ("+[DOC ]\n|     +[ H1 ] : p\n", parsed.tree);
}

TEST(TGMBlockBuilder, LineOfAnErrorInAQuoteCountsFromTheStartOfTheText) {
    const ParsedText parsed = parseText("# p\n\n> # y\n> \t> a\n> # z\n\n");
    EXPECT_EQ(kTgmEmptyText, parsed.result.errors) << parsed.tree;
    EXPECT_EQ(3U, parsed.result.line);
}

TEST(TGMBlockBuilder, ErrorStopsTheBuilderAndDropsTheOpenItem) {
    const ParsedText parsed = parseText("- a\n- b\n\t> q\n- c\n\nx");
    EXPECT_EQ(kTgmEmptyText, parsed.result.errors);
    EXPECT_EQ(2U, parsed.result.line);
    EXPECT_EQ("+[DOC ]\n|     +[UNLI]\n|     |     +[ LI ]\n|     |     |     +[PLN ] : a\n", parsed.tree);
}

TEST(TGMBlockBuilder, KeepGoingBuildsTheRestAndStillReportsTheError) {
    const ParsedText parsed = parseText("- a\n- b\n\t> q\n- c\n\nx*y*", keepingGoing());
    EXPECT_EQ(kTgmEmptyText, parsed.result.errors);
    EXPECT_EQ(2U, parsed.result.line);
    EXPECT_EQ(
        "+[DOC ]\n|     +[UNLI]\n|     |     +[ LI ]\n|     |     |     +[PLN ] : a\n|     |     +[ LI ]\n"
        "|     |     |     +[PLN ] : b\n|     |     +[ LI ]\n|     |     |     +[PLN ] : c\n"
        "|     +[CMPS]\n|     |     +[PLN ] : x\n|     |     +[ITAL] : y\n",
        parsed.tree);
}

TEST(TGMBlockBuilder, FailedQuoteIsLeftOutUnlessItKeepsGoing) {
    const std::string text = "> a**\n\n\nx";
    EXPECT_EQ("+[DOC ]\n", parseText(text).tree);
    EXPECT_EQ(kTgmInvalidEmphasis, parseText(text).result.errors);
    const ParsedText parsed = parseText(text, keepingGoing());
    EXPECT_EQ(kTgmInvalidEmphasis, parsed.result.errors);
    EXPECT_EQ("+[DOC ]\n|     +[BLKQ]\n|     |     +[PAR ] : a**\n|     +[PLN ] : x\n", parsed.tree);
}

}  // namespace

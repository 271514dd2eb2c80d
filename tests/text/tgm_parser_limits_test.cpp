#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "text/tgm_limits.h"
#include "text/tgm_line_parser.h"
#include "tgm_test_support.h"

// Texts that a parser without limits would never finish. Their cost is counted, not timed.
namespace {

struct Counted {
    TGMParseResult result;
    std::uint64_t work = 0;
    std::size_t nodes = 0;
    std::size_t depth = 0;  // below the root
};

void measure(const TGMNode& node, std::size_t depth, Counted& counted) {
    ++counted.nodes;
    counted.depth = std::max(counted.depth, depth);
    for (const TGMNodePtr& child : node.children) {
        measure(*child, depth + 1, counted);
    }
}

Counted count(const std::string& text, const TGMParseOptions& options = {}) {
    Counted counted;
    TGMTree tree(text.size());
    TGMWorkBudget budget(text.size());
    const TGMNodePtr root =
        parseTgmLines(splitTgmLines(text, options), options, {tree, budget}, counted.result);
    counted.work = budget.getSpent();
    measure(*root, 0, counted);
    return counted;
}

std::string nestedLists(std::size_t levels) {
    std::string text;
    for (std::size_t level = 0; level < levels; ++level) {
        text += std::string(level, '\t') + "- x\n";
    }
    return text;
}

// Each level of a quote loses its last lines, so many are needed.
std::string nestedQuotes(std::size_t levels) {
    return repeated(repeated("> ", levels) + "x\n", 2 * levels + 5) + "\n\n";
}

// Each nested list reaches to the end of the text, so everything after it is built twice.
const char* const kDoubling = "- a\n\n\t- b\n1. c\n";

TEST(TGMParserLimits, ListsNestToTheDeepestLevelAndNoFurther) {
    // A list, its item and the item's text; the innermost text is the deepest node.
    const std::size_t levels = (kTgmMaxDepth - 1) / 2;
    const Counted deepest = count(nestedLists(levels));
    EXPECT_EQ(0, deepest.result.errors);
    EXPECT_EQ(2 * levels + 1, deepest.depth);
    const Counted tooDeep = count(nestedLists(levels + 1));
    EXPECT_EQ(kTgmInvalidBlock, tooDeep.result.errors);
    EXPECT_EQ(levels, tooDeep.result.line);
}

TEST(TGMParserLimits, QuotesNestToTheDeepestLevelAndNoFurther) {
    const Counted deepest = count(nestedQuotes(kTgmMaxDepth - 1));
    EXPECT_EQ(0, deepest.result.errors);
    EXPECT_EQ(kTgmMaxDepth, deepest.depth);
    const Counted tooDeep = count(nestedQuotes(kTgmMaxDepth));
    EXPECT_EQ(kTgmInvalidBlock, tooDeep.result.errors);
    EXPECT_EQ(0U, tooDeep.result.line);
}

TEST(TGMParserLimits, EmphasisCountsAsLevels) {
    const std::string quotes =
        repeated(repeated("> ", kTgmMaxDepth - 1) + "x*y*\n", 2 * kTgmMaxDepth) + "\n\n";
    EXPECT_EQ(kTgmInvalidBlock, count(quotes).result.errors);
}

TEST(TGMParserLimits, KeepGoingDropsWhatIsTooDeep) {
    const Counted counted = count(nestedLists(300), keepingGoing());
    EXPECT_EQ(kTgmInvalidBlock, counted.result.errors);
    EXPECT_LE(counted.depth, kTgmMaxDepth);
}

TEST(TGMParserLimits, SmallDoublingTextsAreBuiltInFull) {
    const Counted counted = count(repeated(kDoubling, 10));
    EXPECT_EQ(0, counted.result.errors);
    EXPECT_GT(counted.nodes, 2000U);
}

TEST(TGMParserLimits, LargeDoublingTextsEndWithTheBudget) {
    for (const std::size_t times : {100, 1000, 10000}) {
        const std::string text = repeated(kDoubling, times);
        for (const bool keepGoing : {false, true}) {
            TGMParseOptions options;
            options.keepGoing = keepGoing;
            const Counted counted = count(text, options);
            const std::uint64_t limit = TGMWorkBudget(text.size()).getLimit();
            EXPECT_EQ(kTgmInvalidBlock, counted.result.errors);
            EXPECT_NE(UINT32_MAX, counted.result.line);
            // Otherwise parsing stops where the text first nests too deeply.
            EXPECT_EQ(keepGoing, counted.work > limit);
            EXPECT_LT(counted.work, limit + 3 * text.size() * kTgmByteCost + kTgmBaseWork);
            EXPECT_LT(counted.nodes * kTgmNodeCost, limit);
        }
    }
}

TEST(TGMParserLimits, LogOfALargeTextEndsWithTheBudget) {
    std::string log;
    TGMParseOptions options;
    options.debugLog = &log;
    // Each line begins a block on a level of its own, and the plain lines belong to all of them.
    std::string text;
    for (std::size_t level = 0; level < 1000; ++level) {
        text += std::string(level, '\t') + "> x\n";
    }
    text += repeated("a\n", 200'000);
    const Counted counted = count(text, options);
    EXPECT_EQ(kTgmInvalidBlock, counted.result.errors);
    EXPECT_LT(counted.work, TGMWorkBudget(text.size()).getLimit() + text.size());
}

struct Shape {
    const char* name;
    const char* start;
    const char* part;
    std::uint64_t workPerByte;
};

class TGMParserHostile : public testing::TestWithParam<Shape> {};

// The work grows with the text and stays far from the limit, or the text is refused for its depth.
TEST_P(TGMParserHostile, IsParsedInLinearWork) {
    const Shape& shape = GetParam();
    const std::size_t partLength = std::string(shape.part).size();
    for (const std::size_t length : {1 << 14, 1 << 20}) {
        const std::string text = shape.start + repeated(shape.part, length / partLength);
        const Counted counted = count(text);
        EXPECT_LE(counted.work, shape.workPerByte * text.size() + 4096) << shape.name;
        EXPECT_LE(counted.depth, kTgmMaxDepth) << shape.name;
    }
}

INSTANTIATE_TEST_SUITE_P(Emphasis, TGMParserHostile,
                         testing::Values(Shape{"stars", "", "*", 8}, Shape{"underscores", "x", "_", 8},
                                         Shape{"mixed", "", "_*", 40}, Shape{"unclosed bold", "**", "a", 8},
                                         Shape{"unclosed with others", "x **a", " _b_", 8},
                                         Shape{"spans", "", "*a*b", 40}, Shape{"bold", "", "**a**b", 40},
                                         Shape{"run", "*a", "*", 12}, Shape{"chain", "**x", "*_", 40},
                                         Shape{"escapes", "", "\\*", 8}, Shape{"backslashes", "", "\\", 8},
                                         Shape{"escaped chain", "**x", "*\\*", 40}));

INSTANTIATE_TEST_SUITE_P(
    Blocks, TGMParserHostile,
    testing::Values(Shape{"one line of quotes", "", "> ", 8}, Shape{"lines of quotes", "", "> a\n", 16},
                    Shape{"empty quotes", "", ">\n", 32}, Shape{"line feeds", "", "\n", 2},
                    Shape{"blanks", "", " ", 2}, Shape{"tabs", "", "\t", 2}, Shape{"items", "", "- \n", 40},
                    Shape{"loose items", "", "- a\n\n", 32},
                    Shape{"items of all kinds", "", "- a\n1. b\nc. d\n", 40}, Shape{"hashes", "", "#", 8},
                    Shape{"headings", "", "#\n", 32}, Shape{"quotes by hashes", "", "#######x\n\n", 32},
                    Shape{"lines", "", "a\n", 16}, Shape{"paragraphs", "", "a\n\n", 24},
                    Shape{"digits", "", "1", 8}, Shape{"nested lists", "", "- a\n\t- b\n\t\t- c\n", 40},
                    Shape{"lazy lines below a list", "- a\n\t- b\n\t\t- c\n", "x\n", 40}));

TEST(TGMParserLimits, RandomBytesGiveTreesWithinTheLimits) {
    std::mt19937 random(31);
    const std::string alphabet = "->#*_1.a \t\n\n\\x>\t-";
    for (int i = 0; i < 3000; ++i) {
        std::string text;
        for (std::size_t length = 1 + random() % 400; length > 0; --length) {
            text += alphabet[random() % alphabet.size()];
        }
        TGMParseOptions options;
        options.keepGoing = i % 2 == 0;
        const Counted counted = count(text, options);
        ASSERT_LE(counted.depth, kTgmMaxDepth) << text;
        ASSERT_LE(counted.work, TGMWorkBudget(text.size()).getLimit()) << text;
    }
}

}  // namespace

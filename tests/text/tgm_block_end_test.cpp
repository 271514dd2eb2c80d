#include "text/tgm_block_end.h"

#include <gtest/gtest.h>

#include <string>

#include "tgm_test_support.h"

namespace {

constexpr bool kLazyLists = true;
constexpr bool kNoLazyLists = false;

// The states after the lines of `text`, from the second line on: S, B, D, L, E.
std::string statesOf(const std::string& text, bool lazyLists) {
    const auto lines = splitTgmLines(text, {});
    TGMBlockEndMachine machine(lines.at(0), lazyLists);
    std::string states;
    for (std::size_t i = 1; i < lines.size(); ++i) {
        states += "SBDLE"[static_cast<std::size_t>(machine.step(lines[i]))];
    }
    return states;
}

struct Case {
    const char* text;
    const char* states;
    bool lazyLists = kLazyLists;
};

class TGMBlockEndRow : public testing::TestWithParam<Case> {};

TEST_P(TGMBlockEndRow, LeadsToItsState) {
    EXPECT_EQ(GetParam().states, statesOf(GetParam().text, GetParam().lazyLists)) << GetParam().text;
}

// The first line begins the block.
INSTANTIATE_TEST_SUITE_P(
    Same, TGMBlockEndRow,
    testing::Values(Case{"- a\n", "B"}, Case{"a\n \t", "B"},
                    // Below the block's level.
                    Case{"\t- a\nx", "L"}, Case{"\t- a\n- x", "E"}, Case{"\t- a\n# x", "E"},
                    Case{"\t> a\n> x", "E"}, Case{"\ta\n- x", "E"},
                    // Plain lines, at any level.
                    Case{"- a\nx", "L"}, Case{"- a\n\tx", "L"}, Case{"a\nx", "L"},
                    // What ends a plain block, at its level and above.
                    Case{"a\n> x", "E"}, Case{"a\n\t> x", "E"}, Case{"a\n- x", "E", kNoLazyLists},
                    Case{"a\n1. x", "E", kNoLazyLists}, Case{"a\n\ta. x", "E", kNoLazyLists},
                    // Above.
                    Case{"- a\n\t- x", "D"}, Case{"a\n\t- x", "D"}, Case{"a\n\t# x", "D", kNoLazyLists},
                    // Everything else, at the block's level.
                    Case{"a\n- x", "S"}, Case{"a\n# x", "S"}, Case{"- a\n- x", "S", kNoLazyLists},
                    Case{"- a\n1. x", "S"}, Case{"- a\n> x", "S"}, Case{"> a\n# x", "S"}));

INSTANTIATE_TEST_SUITE_P(Blank, TGMBlockEndRow,
                         testing::Values(Case{"- a\n\n", "BB"},
                                         // Below.
                                         Case{"\t- a\n\nx", "BE"}, Case{"\t- a\n\n- x", "BE"},
                                         // At the block's level.
                                         Case{"- a\n\n- x", "BS"}, Case{"> a\n\n> x", "BS"},
                                         Case{"- a\n\n1. x", "BE"}, Case{"- a\n\nx", "BE"},
                                         Case{"a\n\nx", "BE"}, Case{"a\n\n- x", "BE"},
                                         // Above.
                                         Case{"- a\n\n\tx", "BD"}, Case{"a\n\n\tx", "BD"},
                                         Case{"> a\n\n\n\t# x", "BBD"}));

INSTANTIATE_TEST_SUITE_P(Deeper, TGMBlockEndRow,
                         testing::Values(Case{"- a\n\t- b\n", "DB"},
                                         // Below.
                                         Case{"\t- a\n\t\t- b\nx", "DL"}, Case{"\t- a\n\t\t- b\n- x", "DE"},
                                         Case{"\ta\n\t\t- b\n> x", "DE"},
                                         // Everything else, whatever it is.
                                         Case{"- a\n\t- b\n\t- c", "DD"}, Case{"- a\n\t- b\n- c", "DD"},
                                         Case{"- a\n\t- b\nx", "DD"}, Case{"a\n\t- b\n> x", "DD"},
                                         Case{"- a\n\t- b\n# x", "DD"}));

INSTANTIATE_TEST_SUITE_P(
    Lazy, TGMBlockEndRow,
    testing::Values(Case{"- a\nx\ny", "LL"}, Case{"\t- a\nx\ny", "LL"}, Case{"- a\nx\n", "LB"},
                    // A quote ends plain blocks, at any level.
                    Case{"a\nx\n> y", "LE"}, Case{"a\nx\n\t> y", "LE"},
                    // Below and above.
                    Case{"\t- a\nx\n- y", "LE"}, Case{"- a\nx\n\t- y", "LD"}, Case{"- a\nx\n\t> y", "LD"},
                    // The block's own type.
                    Case{"- a\nx\n- y", "LS"}, Case{"> a\nx\n> y", "LS"},
                    // Bullets among the others and the other way round.
                    Case{"1. a\nx\n- y", "LS"}, Case{"a. a\nx\n- y", "LS"}, Case{"- a\nx\n1. y", "LS"},
                    Case{"- a\nx\na. y", "LS"}, Case{"1. a\nx\na. y", "LE"}, Case{"a. a\nx\n1. y", "LE"},
                    Case{"- a\n\n- b\nx\n1. y", "BSLE"}, Case{"1. a\n\n1. b\nx\n- y", "BSLE"},
                    Case{"a. a\n\na. b\nx\n- y", "BSLE"}, Case{"- a\n\n- b\nx\na. y", "BSLE"},
                    // Lists under plain lines.
                    Case{"a\nx\n- y", "LL"}, Case{"a\nx\n1. y\na. z", "LLL"},
                    Case{"a\nx\n- y", "LE", kNoLazyLists}, Case{"\ta\n\n\t\tb\nx\n\t- y", "BDLE"},
                    // Everything else.
                    Case{"- a\nx\n# y", "LE"}, Case{"- a\nx\n> y", "LE"}, Case{"a\nx\n# y", "LE"},
                    Case{"> a\nx\n- y", "LE"}));

INSTANTIATE_TEST_SUITE_P(End, TGMBlockEndRow, testing::Values(Case{"a\n> x\ny\n", "EEE"}));

std::size_t endOf(const std::string& text, bool lazyLists = true) {
    const auto lines = splitTgmLines(text, {});
    TGMWorkBudget budget(text.size());
    return findTgmBlockEnd(lines, 0, lazyLists, budget);
}

TEST(TGMBlockEnd, BlankLinesAndHeadingsEndAtThemselves) {
    EXPECT_EQ(0U, endOf("\na"));
    EXPECT_EQ(0U, endOf("# a\na"));
    EXPECT_EQ(0U, endOf(""));
    EXPECT_EQ(0U, endOf("# a"));
}

TEST(TGMBlockEnd, LastLineEndsOnePastItself) {
    EXPECT_EQ(1U, endOf("a"));
    EXPECT_EQ(1U, endOf("- a"));
    EXPECT_EQ(1U, endOf("> a"));
}

TEST(TGMBlockEnd, BlockEndsBeforeTheFirstLineThatIsNotPartOfIt) {
    EXPECT_EQ(1U, endOf("a\nb\n> c\nd"));
    EXPECT_EQ(0U, endOf("a\n> c"));
}

TEST(TGMBlockEnd, BlankLinesAfterABlockBelongToItUnlessTheyEndTheText) {
    EXPECT_EQ(2U, endOf("a\n\n\nb"));
    EXPECT_EQ(2U, endOf("a\n\n\nb\nc"));
    EXPECT_EQ(0U, endOf("a\n"));
    EXPECT_EQ(1U, endOf("a\n\n"));
}

TEST(TGMBlockEnd, LastLineIsIncludedInAllOtherStates) {
    EXPECT_EQ(1U, endOf("- a\n- b"));
    EXPECT_EQ(1U, endOf("- a\n\t- b"));
    EXPECT_EQ(1U, endOf("- a\nb"));
    EXPECT_EQ(1U, endOf("a\n- b"));
    EXPECT_EQ(0U, endOf("a\n- b", kNoLazyLists));
}

TEST(TGMBlockEnd, LooksAtEachLineOnce) {
    const std::string text = repeated("- a\n", 1000) + "\nx\n" + repeated("y\n", 1000);
    TGMWorkBudget budget(text.size());
    EXPECT_EQ(1000U, findTgmBlockEnd(splitTgmLines(text, {}), 0, kLazyLists, budget));
    EXPECT_EQ(1001U, budget.getSpent());
}

TEST(TGMBlockEnd, StopsWhenTheBudgetIsExhausted) {
    const std::string text = repeated("- a\n", 1000);
    TGMWorkBudget budget(0);
    budget.spend(budget.getLimit() - 10);
    EXPECT_EQ(10U, findTgmBlockEnd(splitTgmLines(text, {}), 0, kLazyLists, budget));
    EXPECT_TRUE(budget.isExhausted());
}

void expectSameEnds(const std::string& text, bool lazyLists) {
    const auto lines = splitTgmLines(text, {});
    TGMWorkBudget budget(text.size());
    const auto ends = findAllTgmBlockEnds(lines, lazyLists, budget);
    ASSERT_EQ(lines.size(), ends.size());
    for (std::size_t line = 0; line < lines.size(); ++line) {
        EXPECT_EQ(findTgmBlockEnd(lines, line, lazyLists, budget), ends[line]) << "line " << line << " of\n"
                                                                               << text;
    }
}

TEST(TGMAllBlockEnds, AreThoseOfEachLine) {
    for (const bool lazyLists : {kLazyLists, kNoLazyLists}) {
        expectSameEnds("", lazyLists);
        expectSameEnds("a", lazyLists);
        expectSameEnds("# h\na\n- b\n\n\t- c\n\td\n1. e\n> q\n\n> r\nx\n\ty\n\n", lazyLists);
        expectSameEnds(repeated("- a\n\n\t- b\n1. c\n", 20), lazyLists);
        expectSameEnds(repeated("\t- a\nx\n\n\t1. b\n", 20), lazyLists);
    }
}

TEST(TGMAllBlockEnds, NeedWorkInProportionToTheLines) {
    // Searched one by one, each line of such a list would look at all lines after it.
    const std::size_t lines = 100'000;
    const std::string text = repeated("- a\n", lines) + repeated("x\n", lines);
    TGMWorkBudget budget(text.size());
    const auto ends = findAllTgmBlockEnds(splitTgmLines(text, {}), kLazyLists, budget);
    EXPECT_EQ(2 * lines - 1, ends.at(0));
    EXPECT_LT(budget.getSpent(), 6 * lines * kTgmOpenBlockCost);
}

TEST(TGMAllBlockEnds, StopAtTheLineWhereTheBudgetIsExhausted) {
    TGMWorkBudget budget(0);
    budget.spend(budget.getLimit() - 5 * kTgmOpenBlockCost);
    EXPECT_EQ(6U, findAllTgmBlockEnds(splitTgmLines(repeated("- a\n", 100), {}), kLazyLists, budget).size());
}

}  // namespace

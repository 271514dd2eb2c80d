#include "text/tgm_block_end.h"

#include <gtest/gtest.h>

#include <string>

namespace {

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

TEST(TGMBlockEnd, LastLineEndsBehindItself) {
    EXPECT_EQ(1U, endOf("a"));
    EXPECT_EQ(1U, endOf("- a"));
    EXPECT_EQ(1U, endOf("> a"));
}

}  // namespace

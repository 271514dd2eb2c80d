#include "text/tgm_block_builder.h"

#include <gtest/gtest.h>

#include "text/tgm_test_support.h"

namespace {

TEST(TGMBlockBuilder, PlainLinesAreJoined) {
    EXPECT_EQ("+[DOC ]\n|     +[PLN ] : a\nb\n", treeOf("a\n  b"));
    TGMParseOptions options;
    options.joinChar = ' ';
    EXPECT_EQ("+[DOC ]\n|     +[PLN ] : a b\n", treeOf("a\n  b", options));
}

}  // namespace

#include "text/tgm_tree.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(TGMTree, NodeStartsWithoutTextAndChildren) {
    TGMTree tree(0);
    const TGMNodePtr node = tree.makeNode(kTgmQuote);
    EXPECT_EQ(kTgmQuote, node->type);
    EXPECT_TRUE(node->text.isEmpty());
    EXPECT_EQ("", node->text.view());
    EXPECT_TRUE(node->children.empty());
}

TEST(TGMTree, CopiesTexts) {
    TGMTree tree(0);
    std::string source = "abcdef";
    const TGMText text = tree.copyText(std::string_view(source).substr(1, 3));
    source[2] = 'X';
    EXPECT_EQ("bcd", text.view());
    EXPECT_FALSE(text.isEmpty());
    EXPECT_TRUE(tree.copyText("").isEmpty());
}

TEST(TGMTree, HoldsMoreThanItWasMadeFor) {
    TGMTree tree(3);
    const TGMNodePtr root = tree.makeNode(kTgmDocument);
    for (int i = 0; i < 10000; ++i) {
        root->children.push_back(tree.makeNode(kTgmPlain));
        root->children.back()->text = tree.copyText(std::to_string(i));
    }
    for (int i = 0; i < 10000; ++i) {
        ASSERT_EQ(std::to_string(i), root->children[static_cast<std::size_t>(i)]->text.view());
    }
}

}  // namespace

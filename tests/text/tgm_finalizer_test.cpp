#include "text/tgm_finalizer.h"

#include <gtest/gtest.h>

#include "text/tgm_dump.h"

namespace {

struct Finalized {
    TGMParseResult result;
    std::string tree;
};

Finalized finalize(TGMNodeType type, const std::string& text, std::uint32_t depth = 1) {
    TGMTree tree(text.size());
    const TGMNodePtr node = tree.makeNode(type);
    node->text = tree.copyText(text);
    TGMWorkBudget budget(text.size());
    Finalized finalized;
    finalized.result = finalizeTgmNode(*node, depth, tree, budget);
    dumpTgmTree(finalized.tree, *node);
    return finalized;
}

std::string treeOf(TGMNodeType type, const std::string& text) {
    const Finalized finalized = finalize(type, text);
    return finalized.result.succeeded() ? finalized.tree : "error " + std::to_string(finalized.result.errors);
}

TEST(TGMFinalizer, LeavesEmptyTextsAlone) {
    EXPECT_EQ("+[PAR ]\n", treeOf(kTgmParagraph, ""));
}

TEST(TGMFinalizer, OneDelimiterOfEachKindIsText) {
    EXPECT_EQ("+[PAR ] : a*b_c\n", treeOf(kTgmParagraph, "a*b_c"));
    EXPECT_EQ("+[PAR ] : a*b*\n", treeOf(kTgmParagraph, "a\\*b*"));
}

TEST(TGMFinalizer, UnescapesOnlyTextsWithoutEmphasis) {
    EXPECT_EQ("+[PLN ] : #\n", treeOf(kTgmPlain, "\\#"));
    EXPECT_EQ("+[CMPS]\n|     +[PLN ] : # \n|     +[ITAL] : _\n", treeOf(kTgmPlain, "\\# *\\_*"));
}

TEST(TGMFinalizer, SeveralPiecesBecomeChildren) {
    EXPECT_EQ("+[CMPS]\n|     +[PLN ] : a\n|     +[ITAL] : b\n", treeOf(kTgmPlain, "a*b*"));
    EXPECT_EQ("+[PAR ]\n|     +[PLN ] : a\n|     +[ITAL] : b\n", treeOf(kTgmParagraph, "a*b*"));
    EXPECT_EQ("+[ H1 ]\n|     +[PLN ] : a\n|     +[BOLD] : b\n", treeOf(kTgmHeading1, "a__b__"));
}

TEST(TGMFinalizer, LonePieceGivesAPlainNodeItsTypeOnly) {
    EXPECT_EQ("+[ITAL] : *b*\n", treeOf(kTgmPlain, "*b*"));
    EXPECT_EQ("+[BOLD] : **b*c\n", treeOf(kTgmPlain, "**b*c"));
    EXPECT_EQ("+[ITAL] : *\\#*\n", treeOf(kTgmPlain, "*\\#*"));
}

TEST(TGMFinalizer, LonePieceBecomesAChildOfOtherNodes) {
    EXPECT_EQ("+[PAR ]\n|     +[ITAL] : b\n", treeOf(kTgmParagraph, "*b*"));
    EXPECT_EQ("+[PAR ]\n|     +[ITAL] : #\n", treeOf(kTgmParagraph, "*\\#*"));
    EXPECT_EQ("+[ITAL]\n|     +[ITAL] : b\n", treeOf(kTgmItalic, "*b*"));
}

TEST(TGMFinalizer, LonePieceThatIsTheTextCannotBeResolved) {
    for (const char* text : {"a**", "**", "**a", "**\\*a", "__ _", "***"}) {
        const Finalized finalized = finalize(kTgmPlain, text);
        EXPECT_EQ(kTgmInvalidEmphasis, finalized.result.errors) << text;
        EXPECT_EQ("+[PLN ] : " + std::string(text) + "\n", finalized.tree);
        EXPECT_EQ(UINT32_MAX, finalized.result.line);
    }
}

TEST(TGMFinalizer, EmphasisNests) {
    EXPECT_EQ(
        "+[PAR ]\n|     +[BOLD]\n|     |     +[PLN ] : a \n|     |     +[ITAL] : b\n|     |     +[PLN ] :  "
        "c\n",
        treeOf(kTgmParagraph, "**a _b_ c**"));
}

TEST(TGMFinalizer, PlainPiecesAreResolvedLikeAnyPlainText) {
    EXPECT_EQ("+[CMPS]\n|     +[ITAL] : a\n|     +[ITAL] : _b_\n", treeOf(kTgmPlain, "*a*_b_"));
    EXPECT_EQ("error 16", treeOf(kTgmPlain, "*a* **b"));
}

TEST(TGMFinalizer, FinishesTheOtherChildrenAfterAnErrorInOne) {
    TGMTree tree(0);
    const TGMNodePtr parent = tree.makeNode(kTgmDocument);
    for (const char* text : {"**", "a*b*"}) {
        parent->children.push_back(tree.makeNode(kTgmPlain));
        parent->children.back()->text = tree.copyText(text);
    }
    TGMWorkBudget budget(100);
    EXPECT_EQ(kTgmInvalidEmphasis, finalizeTgmNode(*parent, 0, tree, budget).errors);
    EXPECT_EQ(kTgmComposite, parent->children[1]->type);
}

TEST(TGMFinalizer, NoNodeIsMadeBelowTheDeepestLevel) {
    EXPECT_TRUE(finalize(kTgmParagraph, "*b*", kTgmMaxDepth - 1).result.succeeded());
    const Finalized finalized = finalize(kTgmParagraph, "*b*", kTgmMaxDepth);
    EXPECT_EQ(kTgmInvalidBlock, finalized.result.errors);
    EXPECT_EQ("+[PAR ] : *b*\n", finalized.tree);
}

TEST(TGMFinalizer, ExhaustedBudgetEndsTheWork) {
    TGMTree tree(0);
    const TGMNodePtr node = tree.makeNode(kTgmParagraph);
    node->text = tree.copyText("a*b*");
    TGMWorkBudget budget(0);
    EXPECT_FALSE(budget.spend(budget.getLimit() + 1));
    EXPECT_EQ(kTgmInvalidBlock, finalizeTgmNode(*node, 1, tree, budget).errors);
    EXPECT_TRUE(node->children.empty());
    EXPECT_EQ("a*b*", node->text.view());
}

std::string unescaped(std::string_view escaped) {
    TGMTree tree(0);
    TGMText text = tree.copyText(escaped);
    unescapeTgmText(text);
    return std::string(text.view());
}

TEST(TGMUnescape, DropsBackslashesOnlyBeforeMarkup) {
    EXPECT_EQ("\\*_#+-.", unescaped("\\\\\\*\\_\\#\\+\\-\\."));
    EXPECT_EQ("\\a\\>\\ \\\n", unescaped("\\a\\>\\ \\\n"));
    EXPECT_EQ("\\*", unescaped("\\\\*"));
    EXPECT_EQ("a\\", unescaped("a\\"));
    EXPECT_EQ("\\\\", unescaped("\\\\\\"));
    EXPECT_EQ("", unescaped(""));
}

}  // namespace

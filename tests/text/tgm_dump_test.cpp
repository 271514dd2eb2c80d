#include "text/tgm_dump.h"

#include <gtest/gtest.h>

#include "text/tgm_tree.h"

namespace {

TEST(TGMDump, NamesEachType) {
    const char* const names[] = {"NONE", "BLNK", "DOC ", "PLN ", "PAR ", "BOLD", "ITAL",
                                 "UNLI", "OLNU", "OLAL", " LI ", " H1 ", " H2 ", " H3 ",
                                 " H4 ", " H5 ", " H6 ", "BLKQ", "CMPS"};
    ASSERT_EQ(kTgmComposite + 1U, std::size(names));
    for (std::size_t type = 0; type < std::size(names); ++type) {
        EXPECT_EQ(names[type], getTgmTypeName(static_cast<TGMNodeType>(type)));
    }
}

TEST(TGMDump, WritesALineWithItsBlockEndAndPayload) {
    std::string out = "before\n";
    dumpTgmLine(out, 7, TGMLine("  - x y ", {}), 12);
    dumpTgmLine(out, 12345, TGMLine("", {}), 99999);
    dumpTgmLine(out, 3, TGMLine("- ", {}), 4);
    EXPECT_EQ("before\n   7 : [UNLI] (  12) x y \n12345 : [BLNK] (99999)\n   3 : [UNLI] (   4)\n", out);
}

TEST(TGMDump, WritesNodesBelowTheirParents) {
    TGMTree tree(0);
    const TGMNodePtr root = tree.makeNode(kTgmDocument);
    root->children.push_back(tree.makeNode(kTgmListItem));
    root->children[0]->children.push_back(tree.makeNode(kTgmPlain));
    root->children[0]->children[0]->text = tree.copyText("a\nb");
    root->children.push_back(tree.makeNode(kTgmParagraph));
    root->children[1]->text = tree.copyText("c");
    std::string out = "before\n";
    dumpTgmTree(out, *root);
    EXPECT_EQ("before\n+[DOC ]\n|     +[ LI ]\n|     |     +[PLN ] : a\nb\n|     +[PAR ] : c\n", out);
}

}  // namespace

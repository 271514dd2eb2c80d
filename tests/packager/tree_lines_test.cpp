#include "packager/tree_lines.h"

#include <gtest/gtest.h>

#include "description/pxml.h"

namespace {

TreeFile file(const std::string& path, bool isProgram = false, const std::string& alias = "") {
    return {{path, 1, isProgram, std::nullopt}, alias};
}

TreeFile link(const std::string& path, const std::string& text) {
    return {{path, -1, false, text}, ""};
}

class TreeLinesTest : public testing::Test {
protected:
    TreeLinesTest() {
        tree_.from = "app";
        tree_.dest = "[DIR]";
    }
    std::string lines(const std::vector<TreeFile>& files) { return treeLines(tree_, files, "\n "); }

    TreeRequest tree_;
};

TEST_F(TreeLinesTest, WritesAnElementForEachFile) {
    EXPECT_EQ(lines({file("a"), file("b/c/d", false, "other")}),
              "<FN Dest=\"[DIR]\">app/a</FN>\n <FN Dest=\"[DIR]/b/c\" Alias=\"other\">app/b/c/d</FN>");
    tree_.from = "";
    EXPECT_EQ(lines({file("a")}), "<FN Dest=\"[DIR]\">a</FN>");
    EXPECT_EQ(lines({}), "");
}

TEST_F(TreeLinesTest, HandsTheAttributesOn) {
    tree_.handedOn = {{"Condition", "[A]>'1'"}, {"BackupExisting", ""}};
    EXPECT_EQ(lines({file("a")}),
              "<FN Dest=\"[DIR]\" Condition=\"[A]&gt;&apos;1&apos;\" BackupExisting=\"\">app/a</FN>");
}

TEST_F(TreeLinesTest, MarksProgramsOnlyWhereModesAreKept) {
    EXPECT_EQ(lines({file("a", true)}), "<FN Dest=\"[DIR]\">app/a</FN>");
    tree_.keepsModes = true;
    EXPECT_EQ(lines({file("a", true), file("b")}),
              "<FN Dest=\"[DIR]\" Executable=\"1\">app/a</FN>\n <FN Dest=\"[DIR]\">app/b</FN>");
    tree_.isExecutable = true;
    tree_.handedOn = {{"Executable", "0"}};
    EXPECT_EQ(lines({file("a", true)}), "<FN Dest=\"[DIR]\" Executable=\"0\">app/a</FN>");
}

TEST_F(TreeLinesTest, WritesAShortcutForEachLinkWithBothConditions) {
    EXPECT_EQ(lines({link("l/x", "../a"), file("a")}),
              "<FN Dest=\"[DIR]\">app/a</FN>\n <Shortcuts>\n   <Add Type=\"Symlink\" Dest=\"[DIR]/l\" "
              "Target=\"../a\">x</Add>\n </Shortcuts>");
    tree_.setCondition = "1";
    tree_.condition = "2";
    EXPECT_EQ(lines({link("x", "a")}),
              "<Shortcuts Condition=\"1\">\n   <Add Type=\"Symlink\" Dest=\"[DIR]\" Target=\"a\" "
              "Condition=\"2\">x</Add>\n </Shortcuts>");
}

TEST_F(TreeLinesTest, TheReaderGetsEveryNameBack) {
    const std::string name = "<a> & \"b\" 'c' &#65; &amp; ]]> --> \xC3\xBC";
    tree_.dest = "\"<D>'";
    PXML document;
    document.parseText("<FileSet>" + lines({file(name + "/" + name, false, name), link(name, name)}) +
                       "</FileSet>");
    ASSERT_EQ(document.getNodeCount(), 4);
    EXPECT_EQ(document.getText(1), "app/" + name + "/" + name);
    EXPECT_EQ(document.getAttribute(1, "Dest"), "\"<D>'/" + name);
    EXPECT_EQ(document.getAttribute(1, "Alias"), name);
    EXPECT_EQ(document.getText(3), name);
    EXPECT_EQ(document.getAttribute(3, "Target"), name);
}

}  // namespace

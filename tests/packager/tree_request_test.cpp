#include "packager/tree_request.h"

#include <gtest/gtest.h>

#include "base/errors.h"
#include "description/pxml.h"

namespace {

TreeRequest read(const std::string& element, const std::string& set = "<FileSet Name='S' Condition='1'>") {
    PXML document;
    document.parseText(set + element + "</FileSet>");
    return readTree(document, 1);
}

std::string failure(const std::string& element, const std::string& set = "<FileSet Name='S'>") {
    try {
        read(element, set);
    } catch (const InstallerError& error) {
        return error.what();
    }
    return "<none>";
}

TEST(TreeRequestTest, ReadsAllThatTheElementSays) {
    TreeRequest tree = read(
        "<Tree From='/app//x/' Dest='[DIR]/y/' Include='*.a; b' Exclude='c' KeepModes='' Condition='2&gt;1' "
        "ExpandVarsInFile='0' BackupExisting='' Executable='1' StripExeExt='x' OkIfMissing='1' Odd='2'/>");
    EXPECT_EQ(tree.from, "app/x");
    EXPECT_EQ(tree.dest, "[DIR]/y");
    EXPECT_TRUE(tree.filter.include.matchAny("d/b"));
    EXPECT_TRUE(tree.filter.exclude.matchAny("c"));
    EXPECT_TRUE(tree.keepsModes);
    EXPECT_TRUE(tree.mayBeMissing);
    EXPECT_TRUE(tree.isExecutable);
    EXPECT_EQ(tree.condition, "2>1");
    EXPECT_EQ(tree.setCondition, "1");
    using Attributes = std::vector<std::pair<std::string, std::string>>;
    EXPECT_EQ(tree.handedOn, (Attributes{{"Condition", "2>1"},
                                         {"ExpandVarsInFile", "0"},
                                         {"BackupExisting", ""},
                                         {"Executable", "1"},
                                         {"StripExeExt", "x"},
                                         {"OkIfMissing", "1"}}));
}

TEST(TreeRequestTest, NeedsNoMoreThanFromAndDest) {
    const TreeRequest tree = read("<Tree from='.' dest='/'/>", "<FileSet Name='S'>");
    EXPECT_EQ(tree.from, "");
    EXPECT_EQ(tree.dest, "/");
    EXPECT_TRUE(tree.filter.include.areNone());
    EXPECT_FALSE(tree.keepsModes);
    EXPECT_FALSE(tree.mayBeMissing);
    EXPECT_FALSE(tree.isExecutable);
    EXPECT_EQ(tree.condition, std::nullopt);
    EXPECT_EQ(tree.setCondition, std::nullopt);
    EXPECT_TRUE(tree.handedOn.empty());
}

TEST(TreeRequestTest, RefusesWhatMeansNothing) {
    EXPECT_EQ(failure("<Tree Dest='d'/>"),
              "a Tree needs From, a directory below the root; \".\" is the root itself");
    EXPECT_EQ(failure("<Tree From='a'/>"),
              "the Tree of \"a\" needs Dest, the directory that it is installed to");
    EXPECT_EQ(failure("<Tree From='a' Dest='' />"),
              "the Tree of \"a\" needs Dest, the directory that it is installed to");
    EXPECT_EQ(
        failure("<Tree From='../a' Dest='d'/>"),
        "the file \"../a\" of the description doesn't lie below the root: name it by its path from there");
    for (const std::string content : {"text", "<FN>x</FN>"}) {
        EXPECT_EQ(failure("<Tree From='a' Dest='d'>" + content + "</Tree>"),
                  "the Tree of \"a\" has a content: write it as an empty element");
    }
    EXPECT_EQ(failure("<Tree From='a' Dest='d'> </Tree>"), "<none>");
    EXPECT_EQ(failure("<Tree From='a' Dest='d' Alias='x'/>"),
              "the Tree of \"a\" has an Alias: give the file that needs one an FN of its own");
    EXPECT_EQ(failure("<Tree From='a' Dest='d'/>", "<FileSet>"),
              "the Tree of \"a\" is in a FileSet without Name, which is left out: give it a Name");
}

}  // namespace

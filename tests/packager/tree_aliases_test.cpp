#include "packager/tree_aliases.h"

#include <gtest/gtest.h>

#include "platform/memory/memory_file_system.h"

namespace {

class TreeAliasesTest : public testing::Test {
protected:
    std::string add(const std::string& path, const std::string& content) {
        files_.addFile("/root/" + path, content);
        return aliases_.aliasOf(path, content.size());
    }
    void reserve(const std::string& alias, const std::string& path, const std::string& content) {
        files_.addFile("/root/" + path, content);
        aliases_.reserve(alias, path, content.size());
    }

    MemoryFileSystem files_;
    TreeAliases aliases_{files_, "/root"};
};

TEST_F(TreeAliasesTest, TakesTheDefaultWherePossible) {
    EXPECT_EQ(add("a/b.txt", "1"), "ab.txt");
    EXPECT_EQ(add("c.txt", "2"), "c.txt");
}

TEST_F(TreeAliasesTest, NeverGivesOneAliasToTwoContents) {
    EXPECT_EQ(add("a/bc", "1"), "abc");
    const std::string other = add("ab/c", "2");
    EXPECT_EQ(other, md5Text(md5Of("ab/c", 4)));
    aliases_.reserve(md5Text(md5Of("a/b/c", 5)), "", std::nullopt);
    EXPECT_EQ(add("a/b/c", "3"), md5Text(md5Of("a/b/c", 5)) + "-2");
}

TEST_F(TreeAliasesTest, GivesALongPathAShortAlias) {
    EXPECT_EQ(add(std::string(257, 'x') + "/y", "1"), std::string(257, 'x') + "y");
    EXPECT_EQ(add(std::string(257, 'x') + "/yz", "2").size(), 32U);
}

TEST_F(TreeAliasesTest, LeavesAloneWhatTheDescriptionHasTaken) {
    aliases_.reserve("ab", "other", std::nullopt);
    EXPECT_NE(add("a/b", "1"), "ab");
    aliases_.reserve("own", "own", std::nullopt);
    EXPECT_EQ(add("own", "2"), "own");
    // One that stands for no file is nobody's.
    aliases_.reserve("none", "", std::nullopt);
    EXPECT_NE(add("none", "3"), "none");
}

TEST_F(TreeAliasesTest, EqualContentsShareAnAlias) {
    EXPECT_EQ(add("a", "same"), "a");
    EXPECT_EQ(add("b", "else"), "b");
    EXPECT_EQ(add("c", "same"), "a");
    EXPECT_EQ(add("d", "else"), "b");
    EXPECT_EQ(add("e", "more"), "e");
    EXPECT_EQ(add("f", "more"), "e");
    EXPECT_EQ(add("x", ""), "x");
    EXPECT_EQ(add("y", ""), "x");
}

TEST_F(TreeAliasesTest, SharesTheAliasOfAnElementIfThatMayBe) {
    reserve("a", "a", "same");
    reserve("again", "again", "same");
    reserve("other", "other", "else");
    EXPECT_EQ(add("b", "same"), "a");
    EXPECT_EQ(add("c", "else"), "other");
    files_.addFile("/root/kept", "its own");
    aliases_.reserve("Kept", "kept", std::nullopt);
    EXPECT_EQ(add("d", "its own"), "d");
}

TEST_F(TreeAliasesTest, AFileHasOneAliasHoweverOftenItIsAskedFor) {
    EXPECT_EQ(add("a/bc", "1"), "abc");
    const std::string alias = add("ab/c", "2");
    EXPECT_EQ(aliases_.aliasOf("ab/c", 1), alias);
}

TEST_F(TreeAliasesTest, ReadsNoFileThatIsAloneInItsSize) {
    add("a", "1");
    add("b", "22");
    EXPECT_EQ(files_.count(MemoryFileSystem::Operation::kOpen), 0);
    EXPECT_EQ(add("c", "33"), "c");
    EXPECT_EQ(files_.count(MemoryFileSystem::Operation::kOpen), 2);
}

TEST_F(TreeAliasesTest, AContentOfItsOwnIsSharedWithNobody) {
    EXPECT_EQ(add("a", "same"), "a");
    files_.addFile("/root/b", "same");
    EXPECT_EQ(aliases_.aliasOf("b", std::nullopt), "b");
}

TEST_F(TreeAliasesTest, GivesWhatCannotBeReadAnAliasOfItsOwn) {
    EXPECT_EQ(add("a", "same"), "a");
    files_.failFrom(MemoryFileSystem::Operation::kRead, "/root/b", 1);
    EXPECT_EQ(add("b", "same"), "b");
    EXPECT_EQ(add("c", "same"), "a");
}

}  // namespace

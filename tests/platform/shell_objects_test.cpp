#include "platform/shell_objects.h"

#include <gtest/gtest.h>

#include "fakes/temporary_directory.h"
#include "platform/file_system.h"

namespace {

class SystemShellObjectsTest : public testing::Test {
protected:
    std::vector<platform::DirectoryEntry> entriesOf(const std::string& path) {
        std::vector<platform::DirectoryEntry> entries;
        EXPECT_EQ(platform::systemFileSystem().list(path.c_str(), entries), 0);
        return entries;
    }

    TemporaryDirectory directory_;
    platform::ShellObjects& shell_ = platform::systemShellObjects();
};

TEST_F(SystemShellObjectsTest, ALinkIsMadeAtExactlyItsPath) {
    platform::LinkDescription link;
    link.target = directory_.file("tool");
    EXPECT_EQ(shell_.createLink(directory_.file("Tool.lnk").c_str(), link), 0);
    const auto entries = entriesOf(directory_.path());
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0].name, "Tool.lnk");
    EXPECT_FALSE(readTestFile(directory_.file("Tool.lnk")).empty());
}

TEST_F(SystemShellObjectsTest, ALinkTakesThePlaceOfAFile) {
    writeTestFile(directory_.file("Tool.lnk"), "old");
    platform::LinkDescription link;
    link.target = directory_.file("tool");
    EXPECT_EQ(shell_.createLink(directory_.file("Tool.lnk").c_str(), link), 0);
    EXPECT_NE(readTestFile(directory_.file("Tool.lnk")), "old");
    EXPECT_EQ(entriesOf(directory_.path()).size(), 1U);
}

TEST_F(SystemShellObjectsTest, AnUrlLinkHoldsTheUrl) {
    EXPECT_EQ(shell_.createUrlLink(directory_.file("Page.url").c_str(), "http://example.com/a?b=c&d"), 0);
    const std::string content = readTestFile(directory_.file("Page.url"));
    EXPECT_NE(content.find("URL=http://example.com/a?b=c&d"), std::string::npos) << content;
    EXPECT_EQ(entriesOf(directory_.path()).size(), 1U);
}

TEST_F(SystemShellObjectsTest, NoLinkIsMadeInAMissingDirectory) {
    platform::LinkDescription link;
    link.target = "tool";
    EXPECT_NE(shell_.createLink(directory_.file("none/a.lnk").c_str(), link), 0);
    EXPECT_NE(shell_.createUrlLink(directory_.file("none/a.url").c_str(), "http://example.com"), 0);
    EXPECT_TRUE(entriesOf(directory_.path()).empty());
}

TEST_F(SystemShellObjectsTest, ADirectoryStaysWhatItIs) {
    const std::string path = directory_.file("place");
    ASSERT_EQ(platform::systemFileSystem().createDirectory(path.c_str()), 0);
    platform::LinkDescription link;
    link.target = "tool";
    EXPECT_NE(shell_.createLink(path.c_str(), link), 0);
    EXPECT_NE(shell_.createUrlLink(path.c_str(), "http://example.com"), 0);
    EXPECT_TRUE(entriesOf(path).empty());
    EXPECT_EQ(entriesOf(directory_.path()).size(), 1U);
}

TEST_F(SystemShellObjectsTest, AMissingDocumentIsNotOpened) {
    EXPECT_FALSE(shell_.openDocument(directory_.file("none.txt").c_str()));
    EXPECT_FALSE(shell_.openDocument(""));
}

TEST_F(SystemShellObjectsTest, ABroadcastIsDone) {
    EXPECT_TRUE(shell_.broadcastEnvironment());
}

}  // namespace

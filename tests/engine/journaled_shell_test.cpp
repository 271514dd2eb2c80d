#include "engine/journaled_shell.h"

#include <gtest/gtest.h>

#include "removal_fixture.h"

namespace {

class JournaledShellTest : public testing::Test {
protected:
    RemovalScene scene_;
    platform::ShellObjects& shell_ = scene_.removal().shell;
    const RemovalScene::State before_ = scene_.state();
};

TEST_F(JournaledShellTest, PutsBackTheLinkThatWasToMakeRoomWhenNothingComes) {
    scene_.shell.linkError = 13;
    EXPECT_EQ(shell_.createLink("/app/link", {}), 13);
    EXPECT_EQ(shell_.createLink("/app/file", {}), 13);
    EXPECT_EQ(shell_.createLink("/app/new", {}), 13);
    EXPECT_EQ(scene_.state(), before_);
    EXPECT_TRUE(scene_.playBack());
    EXPECT_EQ(scene_.state(), before_);
}

TEST_F(JournaledShellTest, ChangesNothingThatItCannotWriteDown) {
    scene_.files.failFrom(MemoryFileSystem::Operation::kWrite, "", 1, 28);
    EXPECT_EQ(shell_.createLink("/app/link", {}), 28);
    EXPECT_EQ(shell_.createLink("/app/file", {}), 28);
    EXPECT_EQ(shell_.createUrlLink("/app/new", "http://x"), 28);
    EXPECT_FALSE(shell_.broadcastEnvironment());
    EXPECT_EQ(scene_.shell.broadcasts, 0);
    EXPECT_EQ(scene_.state(), before_);
}

TEST_F(JournaledShellTest, MakesNoSymlink) {
    EXPECT_NE(shell_.createSymlink("/app/new", "file"), 0);
    EXPECT_EQ(scene_.state(), before_);
    EXPECT_TRUE(scene_.shell.symlinks.empty());
}

TEST_F(JournaledShellTest, OpensDocumentsAsTheDesktopDoes) {
    EXPECT_TRUE(shell_.openDocument("/app/file"));
    EXPECT_FALSE(shell_.openForUser("/app/file"));
    EXPECT_EQ(scene_.shell.opened, std::vector<std::string>{"/app/file"});
}

}  // namespace

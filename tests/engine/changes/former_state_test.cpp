#include "engine/changes/former_state.h"

#include <gtest/gtest.h>

#include "platform/memory/memory_file_system.h"

namespace {

TEST(FormerStateTest, KnowsAContentAgain) {
    MemoryFileSystem files;
    files.addFile("/a", "abc");
    EXPECT_EQ(FormerState::ofFile(files, "/a"), "900150983cd24fb0d6963f7d28e17f72");
    EXPECT_EQ(FormerState::ofFile(files, "/a"), FormerState::ofBytes("abc"));
    EXPECT_NE(FormerState::ofFile(files, "/a"), FormerState::ofBytes("abd"));
}

TEST(FormerStateTest, TakesALinkForOneWhateverItLeadsTo) {
    MemoryFileSystem files;
    files.addFile("/a", "abc");
    files.addLink("/link", "/a");
    files.addLink("/other", "/none");
    EXPECT_EQ(FormerState::ofFile(files, "/link"), "LINK" + FormerState::ofBytes("/a"));
    EXPECT_EQ(FormerState::ofFile(files, "/other"), "LINK" + FormerState::ofBytes("/none"));
    EXPECT_TRUE(FormerState::isOfLink(FormerState::ofFile(files, "/link")));
    EXPECT_FALSE(FormerState::isOfLink(FormerState::ofFile(files, "/a")));
    EXPECT_FALSE(FormerState::isOfLink(""));
}

TEST(FormerStateTest, SaysNothingOfWhatCannotBeRead) {
    MemoryFileSystem files;
    files.addFile("/a", "abc");
    files.addDirectory("/directory");
    files.failAt(MemoryFileSystem::Operation::kRead, "/a", 1);
    EXPECT_EQ(FormerState::ofFile(files, "/a"), "");
    EXPECT_EQ(FormerState::ofFile(files, "/none"), "");
    EXPECT_EQ(FormerState::ofFile(files, "/directory"), "");
}

}  // namespace

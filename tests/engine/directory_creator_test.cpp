#include "engine/directory_creator.h"

#include <gtest/gtest.h>

#include "fakes/memory_file_system.h"

namespace {

using Operation = MemoryFileSystem::Operation;

class DirectoryCreatorTest : public testing::Test {
protected:
    int create(std::string_view path) { return creator_.createDirectories(path, created_); }

    MemoryFileSystem files_;
    DirectoryCreator creator_{files_};
    int created_ = -1;
};

TEST_F(DirectoryCreatorTest, createsEachMissingLevelAndCountsThem) {
    files_.addDirectory("C:\\apps");
    EXPECT_EQ(create("C:\\apps\\demo/bin\\"), 0);
    EXPECT_EQ(created_, 2);
    EXPECT_TRUE(files_.hasDirectory("C:\\apps\\demo\\bin"));
}

TEST_F(DirectoryCreatorTest, passesOverTheRoot) {
    EXPECT_EQ(create("C:\\apps\\"), 0);
    EXPECT_EQ(created_, 1);
    EXPECT_EQ(create("/a/bc/"), 0);
    EXPECT_EQ(created_, 2);
    EXPECT_TRUE(files_.hasDirectory("/a/bc"));
}

TEST_F(DirectoryCreatorTest, takesWhatFollowsTheLastSeparatorForAFilesName) {
    EXPECT_EQ(create("/apps/demo"), 0);
    EXPECT_EQ(created_, 1);
    EXPECT_FALSE(files_.hasDirectory("/apps/demo"));
}

TEST_F(DirectoryCreatorTest, leavesPathsUnderFourBytesAlone) {
    EXPECT_EQ(create(""), 0);
    EXPECT_EQ(create("C:\\"), 0);
    EXPECT_EQ(create("/a/"), 0);
    EXPECT_EQ(created_, 0);
    EXPECT_EQ(files_.count(Operation::kCreateDirectory), 0);
}

TEST_F(DirectoryCreatorTest, stopsAtALevelThatCannotBeCreatedAndTellsWhatItDid) {
    files_.failAt(Operation::kCreateDirectory, "/a/b", 1);
    EXPECT_EQ(create("/a/b/c/"), -1);
    EXPECT_EQ(created_, 1);
    EXPECT_FALSE(files_.hasDirectory("/a/b/c"));
}

TEST_F(DirectoryCreatorTest, failsWhereAFileStandsInTheWay) {
    files_.addFile("/opt/demo", "x");
    EXPECT_EQ(create("/opt/demo/bin/"), -1);
    EXPECT_EQ(files_.content("/opt/demo"), "x");
}

TEST_F(DirectoryCreatorTest, triesAgainAfterAFailure) {
    files_.failAt(Operation::kCreateDirectory, "/a/b", 1);
    EXPECT_EQ(create("/a/b/"), -1);
    EXPECT_EQ(create("/a/b/"), 0);
    EXPECT_EQ(created_, 1);
}

TEST_F(DirectoryCreatorTest, asksTheDiskOnceForADirectory) {
    EXPECT_EQ(create("/apps/demo/"), 0);
    files_.clearOperations();
    EXPECT_EQ(create("/apps/demo/"), 0);
    EXPECT_EQ(created_, 0);
    EXPECT_EQ(create("/apps/demo/more/"), 0);
    EXPECT_EQ(created_, 1);
    EXPECT_EQ(files_.operations(), std::vector<std::string>{"createDirectory /apps/demo/more"});
}

TEST_F(DirectoryCreatorTest, cutsAPathOverTheLimit) {
    std::string path = "/";
    for (int i = 0; i < 400; ++i) {
        path += "abcd/";
    }
    EXPECT_EQ(create(path), 0);
    EXPECT_EQ(created_, 311);  // 1,559 bytes hold 311 levels and a part of the next name
}

}  // namespace

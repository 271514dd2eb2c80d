#include "engine/changes/same_path.h"

#include <gtest/gtest.h>

#include "fakes/temporary_directory.h"
#include "platform/memory/memory_file_system.h"

namespace {

using Operation = MemoryFileSystem::Operation;

class SamePathTest : public testing::Test {
protected:
    void SetUp() override {
        files_.addDirectory("/a");
        files_.addDirectory("/b");
    }
    bool same(const std::string& first, const std::string& second) {
        const bool result = samePath(files_, first, second);
        EXPECT_EQ(files_.openFileCount(), 0);
        return result;
    }

    MemoryFileSystem files_;
    const std::string probe_ = std::string("/b/") + kProbeName;
};

TEST_F(SamePathTest, FindsOneDirectoryUnderItsSpellings) {
    EXPECT_TRUE(same("/b", "/b"));
    EXPECT_TRUE(same("/B", "/b"));
    EXPECT_TRUE(same("/b/", "/b"));
    EXPECT_TRUE(same("\\b\\", "/a/../b/"));
    EXPECT_FALSE(same("/a", "/b"));
    EXPECT_FALSE(same("/none", "/b"));
    EXPECT_TRUE(files_.allFiles().empty());
}

TEST_F(SamePathTest, MatchesNothingWhereItCannotWrite) {
    EXPECT_FALSE(same("/none", "/none"));
    files_.setReadOnly("/b");
    EXPECT_FALSE(same("/b", "/b"));
}

TEST_F(SamePathTest, DoesNotTakeAnEmptyPathForADirectory) {
    EXPECT_FALSE(same("", "/b"));
    EXPECT_FALSE(same("/b", ""));
    EXPECT_FALSE(same("", ""));
    EXPECT_TRUE(files_.allFiles().empty());
}

TEST_F(SamePathTest, LeavesAFileOfTheProbesNameAlone) {
    files_.addFile(probe_, "mine");
    EXPECT_FALSE(same("/b", "/b"));
    EXPECT_EQ(files_.content(probe_), "mine");
    EXPECT_FALSE(files_.didOperation("removeFile " + probe_));
}

TEST_F(SamePathTest, DoesNotTakeAnotherFileForTheProbe) {
    files_.addFile(std::string("/a/") + kProbeName, "mine");
    EXPECT_FALSE(same("/a", "/b"));
    EXPECT_EQ(files_.content(std::string("/a/") + kProbeName), "mine");
}

TEST_F(SamePathTest, DoesNotFollowALinkOfTheProbesName) {
    files_.addFile("/target", "keep");
    files_.addLink(probe_, "/target");
    EXPECT_FALSE(same("/b", "/b"));
    EXPECT_EQ(files_.content("/target"), "keep");
}

TEST_F(SamePathTest, RemovesTheProbeAfterEachFailure) {
    for (const Operation operation : {Operation::kWrite, Operation::kClose}) {
        files_.failAt(operation, "", 1);
        EXPECT_FALSE(same("/b", "/b"));
        EXPECT_TRUE(files_.allFiles().empty());
    }
    files_.setFreeSpace(2);
    EXPECT_FALSE(same("/b", "/b"));
    EXPECT_TRUE(files_.allFiles().empty());
}

TEST_F(SamePathTest, ComparesManyPathsWithOneProbe) {
    EXPECT_TRUE(namesSameDirectory(files_, {"/a", "", "/none", "/b/"}, "/b"));
    EXPECT_FALSE(namesSameDirectory(files_, {"/a", "/none"}, "/b"));
    EXPECT_FALSE(namesSameDirectory(files_, {}, "/b"));
    EXPECT_EQ(files_.count(Operation::kRemoveFile), 2);
}

TEST(SamePathMachineTest, FindsARealDirectory) {
    const TemporaryDirectory directory;
    platform::FileSystem& files = platform::systemFileSystem();
    ASSERT_EQ(files.createDirectory(directory.file("sub")), 0);
    EXPECT_TRUE(samePath(files, directory.path() + "/", directory.path()));
    EXPECT_TRUE(samePath(files, directory.file("sub") + "\\..", directory.path()));
    EXPECT_FALSE(samePath(files, directory.file("sub"), directory.path()));
    EXPECT_FALSE(testFileExists(directory.file(kProbeName)));
}

}  // namespace

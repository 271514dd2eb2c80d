#include "engine/directory_remover.h"

#include <gtest/gtest.h>

#include "fakes/memory_file_system.h"

namespace {

class DirectoryRemoverTest : public testing::Test {
protected:
    MemoryFileSystem files_;
    DirectoryRemover remover_{files_};
};

TEST_F(DirectoryRemoverTest, RemovesADirectoryAndWhatBecomesEmptyAboveIt) {
    files_.addDirectory("/keep/a/b/c");
    files_.addFile("/keep/file", "x");
    EXPECT_EQ(remover_.removeEmptyDirectories("/keep/a/b/c/"), 3);
    EXPECT_TRUE(files_.hasDirectory("/keep"));
    EXPECT_FALSE(files_.hasDirectory("/keep/a"));
}

TEST_F(DirectoryRemoverTest, LeavesADirectoryThatHoldsAnything) {
    files_.addFile("/a/b/file", "x");
    EXPECT_EQ(remover_.removeEmptyDirectories("\\a\\b"), 0);
    files_.addDirectory("/c/d/e");
    EXPECT_EQ(remover_.removeEmptyDirectories("/c/d"), 0);
    files_.addLink("/f/link", "/a");
    EXPECT_EQ(remover_.removeEmptyDirectories("/f"), 0);
    EXPECT_TRUE(files_.hasFile("/a/b/file"));
    EXPECT_TRUE(files_.hasDirectory("/c/d/e"));
}

TEST_F(DirectoryRemoverTest, EndsTheClimbAtASecondChild) {
    files_.addDirectory("/a/b/c");
    files_.addDirectory("/a/other");
    EXPECT_EQ(remover_.removeEmptyDirectories("/a/b/c"), 2);
    EXPECT_TRUE(files_.hasDirectory("/a/other"));
}

TEST_F(DirectoryRemoverTest, EndsTheClimbAtADirectoryOfTheSystem) {
    files_.addMarkedDirectory("/opt");
    files_.addDirectory("/opt/product");
    EXPECT_EQ(remover_.removeEmptyDirectories("/opt/product"), 1);
    EXPECT_TRUE(files_.hasDirectory("/opt"));
    EXPECT_EQ(remover_.removeEmptyDirectories("/opt"), 0);
}

TEST_F(DirectoryRemoverTest, DoesNothingForWhatIsNoDirectory) {
    files_.addFile("/a/file", "x");
    files_.addLink("/a/link", "/a/b");
    files_.addDirectory("/a/b");
    for (const char* path : {"", "/", "\\\\", "/none", "/a/file", "/a/link"}) {
        EXPECT_EQ(remover_.removeEmptyDirectories(path), 0) << path;
    }
    EXPECT_TRUE(files_.hasDirectory("/a/b"));
}

TEST_F(DirectoryRemoverTest, TellsADirectoryThatResists) {
    files_.addDirectory("/a/b");
    files_.addFile("/x", "");
    files_.failAt(MemoryFileSystem::Operation::kRemoveDirectory, "/a", 1);
    EXPECT_EQ(remover_.removeEmptyDirectories("/a/b"), 0);
    EXPECT_TRUE(files_.hasDirectory("/a"));
}

}  // namespace

#include "installer/private_file.h"

#include <gtest/gtest.h>

#include "fakes/memory_file_system.h"

namespace {

TEST(PrivateFileTest, MakesAnEmptyFileOfThisUserAlone) {
    MemoryFileSystem files;
    files.addDirectory("/tmp");
    EXPECT_EQ(createFreshPrivateFile(files, "/tmp/x"), 0);
    EXPECT_TRUE(files.hasFile("/tmp/x"));
    EXPECT_TRUE(files.isPrivate("/tmp/x"));
}

TEST(PrivateFileTest, AnEarlierFileGoes) {
    MemoryFileSystem files;
    files.addFile("/tmp/x", "old");
    EXPECT_EQ(createFreshPrivateFile(files, "/tmp/x"), 0);
    EXPECT_EQ(files.content("/tmp/x"), "");
    EXPECT_TRUE(files.isPrivate("/tmp/x"));
}

TEST(PrivateFileTest, ALinkIsTakenAwayAndItsTargetStays) {
    MemoryFileSystem files;
    files.addFile("/home/precious", "mine");
    files.addLink("/tmp/x", "/home/precious");
    EXPECT_EQ(createFreshPrivateFile(files, "/tmp/x"), 0);
    EXPECT_EQ(files.content("/home/precious"), "mine");
    EXPECT_TRUE(files.hasFile("/tmp/x"));
}

TEST(PrivateFileTest, AFileThatCannotBeRemovedIsNotWrittenTo) {
    MemoryFileSystem files;
    files.addFile("/tmp/x", "somebody else's");
    files.failAt(MemoryFileSystem::Operation::kRemoveFile, "/tmp/x", 1);
    EXPECT_NE(createFreshPrivateFile(files, "/tmp/x"), 0);
    EXPECT_EQ(files.content("/tmp/x"), "somebody else's");
}

}  // namespace

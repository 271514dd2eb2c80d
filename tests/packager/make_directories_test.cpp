#include "packager/make_directories.h"

#include <gtest/gtest.h>

#include "platform/memory/memory_file_system.h"

namespace {

TEST(MakeDirectories, MakesWhatIsMissing) {
    MemoryFileSystem files;
    files.addDirectory("/there");
    std::string failed;
    EXPECT_EQ(makeDirectories("/there/a/b", files, failed), 0);
    EXPECT_EQ(makeDirectories("/there/a/b", files, failed), 0) << "again";
    EXPECT_TRUE(files.hasDirectory("/there/a/b"));
    EXPECT_EQ(failed, "");
}

TEST(MakeDirectories, NamesTheOneThatCannotBeMade) {
    MemoryFileSystem files;
    files.addFile("/there", "a file");
    std::string failed;
    EXPECT_NE(makeDirectories("/there/a", files, failed), 0);
    EXPECT_EQ(failed, "/there");
}

}  // namespace

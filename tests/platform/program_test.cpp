#include "platform/program.h"

#include <gtest/gtest.h>

#include "platform/file_system.h"
#include "platform/registry.h"

namespace {

TEST(ProgramTest, TheOwnImageIsAFile) {
    std::string path;
    ASSERT_TRUE(platform::ownImagePath(path));
    EXPECT_GT(platform::systemFileSystem().fileSize(path.c_str()), 0) << path;
}

TEST(ProgramTest, ThereIsADirectoryForAdministrators) {
    const auto directories = platform::administratorDirectories(platform::systemRegistry());
    ASSERT_FALSE(directories.empty());
    bool exists = false;
    for (const std::string& directory : directories) {
        exists = exists || platform::systemFileSystem().isDirectory(directory.c_str());
    }
    EXPECT_TRUE(exists);
}

}  // namespace

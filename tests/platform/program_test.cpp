#include "platform/program.h"

#include <gtest/gtest.h>

#include "platform/file_system.h"
#include "platform/registry.h"
#include "platform/text_mode.h"

namespace {

TEST(ProgramTest, TheOwnImageIsAFile) {
    std::string path;
    ASSERT_TRUE(platform::ownImagePath(path));
    EXPECT_GT(platform::systemFileSystem().fileSize(path.c_str()), 0) << path;
}

// Told by the line ends: the file of this very program is not risked for it.
TEST(ProgramTest, KnowsWhetherTheSystemKeepsRunningPrograms) {
    EXPECT_EQ(platform::keepsRunningPrograms(), std::string_view(platform::textLineEnd()) == "\r\n");
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

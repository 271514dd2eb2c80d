#include <gtest/gtest.h>

#include "base/path_functions.h"
#include "fakes/temporary_directory.h"
#include "platform/environment.h"
#include "platform/file_system.h"
#include "platform/program.h"

namespace {

using platform::Disposition;
using platform::Protection;

class FileSystemProtectionTest : public testing::Test {
protected:
    platform::FileSystem& files_ = platform::systemFileSystem();
    TemporaryDirectory directory_;
};

TEST_F(FileSystemProtectionTest, GivesTheRealPathOfFilesAndDirectories) {
    writeTestFile(directory_.file("file"), "x");
    std::string directory;
    std::string file;
    ASSERT_EQ(files_.realPath(directory_.path(), directory), 0);
    ASSERT_EQ(files_.realPath(directory_.path() + "/../" +
                                  std::string(OUtils::lastPathComponent(directory_.path())) + "/./file",
                              file),
              0);
    EXPECT_EQ(OUtils::withSeparators(file, '/'), OUtils::withSeparators(directory, '/') + "/file");
    EXPECT_NE(files_.realPath(directory_.file("none"), file), 0);
    EXPECT_EQ(file, "");
}

TEST_F(FileSystemProtectionTest, MakesADifferentPrivateDirectoryEachTime) {
    std::string first;
    std::string second;
    ASSERT_EQ(files_.createPrivateDirectory(directory_.path(), "mine-", first), 0);
    ASSERT_EQ(files_.createPrivateDirectory(directory_.path(), "mine-", second), 0);
    EXPECT_NE(first, second);
    EXPECT_TRUE(OUtils::lastPathComponent(first).starts_with("mine-")) << first;
    EXPECT_TRUE(files_.isDirectory(first));
    EXPECT_NE(files_.createPrivateDirectory(directory_.file("none"), "mine-", first), 0);
    EXPECT_EQ(first, "");
}

TEST_F(FileSystemProtectionTest, WhatLiesInAPrivateDirectoryIsProtected) {
    std::string place;
    ASSERT_EQ(files_.createPrivateDirectory(directory_.path(), "mine-", place), 0);
    platform::OpenOptions options;
    options.access = platform::kWrite;
    options.disposition = Disposition::kCreatePrivate;
    std::unique_ptr<platform::File> file;
    ASSERT_EQ(files_.open(place + "/file", options, file), 0);
    file.reset();
    EXPECT_TRUE(files_.isProtected(place + "/file", Protection::kUserAndAdministrators));
    EXPECT_FALSE(files_.isProtected(place + "/none", Protection::kUserAndAdministrators));
}

TEST_F(FileSystemProtectionTest, OffersOtherPlacesThanTheTemporaryOne) {
    std::string temporary;
    ASSERT_TRUE(files_.temporaryDirectory(temporary));
    const std::vector<std::string> places = files_.otherPrivatePlaces();
    ASSERT_FALSE(places.empty());
    EXPECT_TRUE(files_.isDirectory(places[0])) << places[0];
}

}  // namespace

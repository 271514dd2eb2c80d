#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "fakes/temporary_directory.h"
#include "platform/file_system.h"

namespace {

using platform::Protection;

constexpr uid_t kSomebody = 12345;

// A program in a directory in which nobody but this user makes anything.
class PosixFileSystemProtectionTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(mkdir(outer_.c_str(), 0755), 0);
        ASSERT_EQ(mkdir(inner_.c_str(), 0755), 0);
        writeTestFile(program_, "a program");
        set(outer_, 0755);
        set(inner_, 0755);
        set(program_, 0755);
        if (!isMine(program_)) {
            GTEST_SKIP() << "others can change the directory for temporary files";
        }
    }
    static void set(const std::string& path, mode_t mode) { ASSERT_EQ(chmod(path.c_str(), mode), 0); }
    static void giveAway(const std::string& path) { ASSERT_EQ(chown(path.c_str(), kSomebody, 0), 0); }
    bool isMine(const std::string& path) {
        return files_.isProtected(path, Protection::kUserAndAdministrators);
    }

    platform::FileSystem& files_ = platform::systemFileSystem();
    TemporaryDirectory directory_;
    const std::string outer_ = directory_.file("outer");
    const std::string inner_ = outer_ + "/inner";
    const std::string program_ = inner_ + "/program";
};

TEST_F(PosixFileSystemProtectionTest, AFileThatOthersWriteIsNotProtected) {
    set(program_, 0757);
    EXPECT_FALSE(isMine(program_));
}

TEST_F(PosixFileSystemProtectionTest, AFileInADirectoryThatOthersWriteIsNotProtected) {
    set(inner_, 0757);
    EXPECT_FALSE(isMine(program_));
    set(inner_, 01777);  // a library could come beside the program
    EXPECT_FALSE(isMine(program_));
}

TEST_F(PosixFileSystemProtectionTest, DirectoriesFurtherUpMayTakeFilesOfOthersOnly) {
    set(outer_, 0777);
    EXPECT_FALSE(isMine(program_));
    set(outer_, 01777);
    EXPECT_TRUE(isMine(program_));
}

TEST_F(PosixFileSystemProtectionTest, WhatALinkLeadsToCounts) {
    const std::string link = directory_.file("link");
    ASSERT_EQ(symlink(inner_.c_str(), link.c_str()), 0);
    EXPECT_TRUE(isMine(link + "/program"));
    set(inner_, 0777);
    EXPECT_FALSE(isMine(link + "/program"));
}

TEST_F(PosixFileSystemProtectionTest, AGroupThatIsNotRootsIsOthers) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root gives files away";
    }
    set(program_, 0775);
    EXPECT_TRUE(isMine(program_));
    ASSERT_EQ(chown(program_.c_str(), 0, kSomebody), 0);
    EXPECT_FALSE(isMine(program_));
}

TEST_F(PosixFileSystemProtectionTest, WhatSomebodyElseOwnsIsNotProtected) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root gives files away";
    }
    EXPECT_TRUE(files_.isProtected(program_, Protection::kAdministrators));
    for (const std::string& path : {program_, inner_, outer_}) {
        giveAway(path);
        EXPECT_FALSE(files_.isProtected(program_, Protection::kAdministrators)) << path;
        EXPECT_FALSE(isMine(program_)) << path;
        ASSERT_EQ(chown(path.c_str(), 0, 0), 0);
    }
}

TEST_F(PosixFileSystemProtectionTest, APrivateDirectoryIsTheUsersAloneWhateverTheMask) {
    const mode_t mask = umask(0777);
    std::string place;
    const int status = files_.createPrivateDirectory(directory_.path(), "mine-", place);
    umask(mask);
    ASSERT_EQ(status, 0);
    struct stat found {};
    ASSERT_EQ(stat(place.c_str(), &found), 0);
    EXPECT_EQ(found.st_mode & 07777, 0700U);
}

}  // namespace

#include "platform/quiet_reading.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <memory>
#include <string>
#include <vector>

#include "fakes/temporary_directory.h"
#include "platform/file_system.h"
#include "platform/machine_of_files.h"

namespace {

// An access before the last change: the next reading is noted on every file system that notes any.
void makeOld(const std::string& path) {
    const timespec times[] = {{1000000000, 0}, {1100000000, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
}

time_t lastAccess(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(stat(path.c_str(), &status), 0);
    return status.st_atime;
}

class PosixQuietReadingTest : public testing::Test {
protected:
    PosixQuietReadingTest() {
        EXPECT_EQ(files_.createDirectory(sub_), 0);
        writeTestFile(file_, "text");
        makeOld(file_);
        makeOld(sub_);
    }

    void readEverything() {
        EXPECT_EQ(readFile(files_, file_), "text");
        std::vector<platform::DirectoryEntry> entries;
        EXPECT_EQ(files_.list(sub_, entries), 0);
        std::unique_ptr<platform::Directory> opened;
        ASSERT_EQ(files_.openDirectory(sub_, opened), 0);
        EXPECT_EQ(opened->list(entries), 0);
        std::unique_ptr<platform::File> file;
        ASSERT_EQ(opened->openFile("f", file), 0);
        char text[4];
        std::uint32_t done = 0;
        EXPECT_EQ(file->read(text, 4, done), 0);
    }

    platform::FileSystem& files_ = platform::systemFileSystem();
    TemporaryDirectory directory_;
    std::string sub_ = directory_.file("sub");
    std::string file_ = directory_.file("sub/f");
};

TEST_F(PosixQuietReadingTest, KeepsTheTimesOfTheLastAccess) {
    {
        const platform::QuietReading quiet;
        readEverything();
    }
    EXPECT_EQ(lastAccess(file_), 1000000000);
    EXPECT_EQ(lastAccess(sub_), 1000000000);
    EXPECT_EQ(platform::quietReadings, 0);
    // A file system that notes no access at all proves nothing above.
    readEverything();
    if (lastAccess(file_) == 1000000000) {
        GTEST_SKIP() << "this file system notes no access";
    }
    EXPECT_NE(lastAccess(sub_), 1000000000);
}

}  // namespace

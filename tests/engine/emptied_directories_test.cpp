#include "engine/emptied_directories.h"

#include <gtest/gtest.h>

#include "platform/memory/memory_file_system.h"

namespace {

using Paths = std::vector<std::string>;

class EmptiedDirectoriesTest : public testing::Test {
protected:
    EmptiedDirectoriesTest() {
        files_.addDirectory("/opt/app/doc/deep");
        files_.addDirectory("/opt/app/bin");
        files_.addFile("/opt/other", "");
    }

    MemoryFileSystem files_;
    const Paths product_{"/opt/app/doc/deep/a", "/opt/app/doc/deep/b", "/opt/app/bin/tool"};
};

TEST_F(EmptiedDirectoriesTest, AreThoseThatHoldNothingButOneAnother) {
    EXPECT_EQ(emptiedDirectories(files_, product_),
              (Paths{"/opt/app/doc/deep", "/opt/app/doc", "/opt/app/bin", "/opt/app"}));
}

TEST_F(EmptiedDirectoriesTest, AreNotThoseAboveAFile) {
    files_.addFile("/opt/app/doc/mine.txt", "");
    EXPECT_EQ(emptiedDirectories(files_, product_), (Paths{"/opt/app/doc/deep", "/opt/app/bin"}));
}

TEST_F(EmptiedDirectoriesTest, AreNotThoseWithDirectoriesOfOthers) {
    files_.addDirectory("/opt/app/doc/mine");
    EXPECT_EQ(emptiedDirectories(files_, product_), (Paths{"/opt/app/doc/deep", "/opt/app/bin"}));
}

TEST_F(EmptiedDirectoriesTest, AreNoLinks) {
    files_.addDirectory("/data");
    files_.addLink("/opt/link", "/data");
    EXPECT_EQ(emptiedDirectories(files_, {"/opt/link/a", "/none/b", "/c", "d"}), Paths());
}

TEST_F(EmptiedDirectoriesTest, AreNotThoseThatCannotBeListed) {
    files_.failFrom(MemoryFileSystem::Operation::kList, "/opt/app/bin", 1);
    EXPECT_EQ(emptiedDirectories(files_, product_), (Paths{"/opt/app/doc/deep", "/opt/app/doc"}));
}

}  // namespace

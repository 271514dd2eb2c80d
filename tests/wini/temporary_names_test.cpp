#include "wini/temporary_names.h"

#include <gtest/gtest.h>

#include <string>

#include "fakes/memory_file_system.h"

namespace {

TEST(TemporaryNamesTest, givesAnotherNameAtEachCallAndMakesNoFile) {
    MemoryFileSystem files;
    files.setTemporaryDirectory("/tmp");
    char first[256] = "";
    char second[256] = "";
    EXPECT_EQ(makeTemporaryName(files, first, sizeof first), 0);
    EXPECT_EQ(makeTemporaryName(files, second, sizeof second), 0);
    EXPECT_STRNE(first, second);
    EXPECT_NE(std::string(first).find("orinstall"), std::string::npos);
    EXPECT_TRUE(files.allFiles().empty());
}

TEST(TemporaryNamesTest, failsWhenTheSystemRefuses) {
    MemoryFileSystem files;
    files.setTemporaryDirectory("");
    char buffer[256] = "old";
    EXPECT_EQ(makeTemporaryName(files, buffer, sizeof buffer), -1);
    EXPECT_STREQ(buffer, "");
}

TEST(TemporaryNamesTest, doesNotCutAName) {
    MemoryFileSystem files;
    files.setTemporaryDirectory("/tmp");
    char buffer[5] = "old";
    EXPECT_EQ(makeTemporaryName(files, buffer, sizeof buffer), -1);
    EXPECT_STREQ(buffer, "");
}

}  // namespace

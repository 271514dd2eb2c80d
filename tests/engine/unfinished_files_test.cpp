#include "engine/unfinished_files.h"

#include <gtest/gtest.h>

#include "fakes/memory_file_system.h"

namespace {

constexpr char kHead[] = "/app/x.xml\r\n/app/b.bin\r\nNUMVARS\t0\r\n";

class UnfinishedFilesTest : public testing::Test {
protected:
    UnfinishedFilesTest() {
        for (const char* directory : {"/app", "/shared", "/ini", "/other"}) {
            files_.addFile(std::string(directory) + "/.tandrel-1.tmp", "half");
        }
    }

    void remove(const std::string& records, UnfinishedChange change) {
        files_.addFile("/log", kHead + records);
        removeUnfinishedFiles(files_, "/log", change);
    }
    bool isThere(const std::string& directory) { return files_.hasFile(directory + "/.tandrel-1.tmp"); }

    MemoryFileSystem files_;
};

TEST_F(UnfinishedFilesTest, BelongToTheLastRecordOfAnInstallation) {
    remove("FILE\tCREATE\t/shared/a\r\nFILE\tCREATE\t/app/tool\r\n", UnfinishedChange::kLast);
    EXPECT_FALSE(isThere("/app"));
    EXPECT_TRUE(isThere("/shared"));
    EXPECT_TRUE(isThere("/other"));
}

TEST_F(UnfinishedFilesTest, BelongToWhatAnUndoGivesBack) {
    remove(
        "FILE\tOVER\t/shared/a\r\nINI\tREPLACE\t/ini/c.ini\ts\tk\tv\r\nFILE\tCREATE\t/other/x\r\n"
        "FILE\tCREATE\t/app/tool\r\n",
        UnfinishedChange::kAnyUndo);
    EXPECT_FALSE(isThere("/app"));
    EXPECT_FALSE(isThere("/shared"));
    EXPECT_FALSE(isThere("/ini"));
    EXPECT_TRUE(isThere("/other"));
}

TEST_F(UnfinishedFilesTest, AreNotLookedForWithoutALog) {
    removeUnfinishedFiles(files_, "/none", UnfinishedChange::kAnyUndo);
    remove("", UnfinishedChange::kAnyUndo);
    EXPECT_TRUE(isThere("/app"));
}

}  // namespace

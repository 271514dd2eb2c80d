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

TEST_F(UnfinishedFilesTest, AreOnlyThoseOfThatName) {
    for (const char* name : {".tandrel-1.tmp.mine", ".tandrel-.tmp", ".tandrel-x.tmp", "a.tandrel-1.tmp"}) {
        files_.addFile(std::string("/app/") + name, "mine");
    }
    files_.addLink("/app/.tandrel-2.tmp", "/other");
    files_.addDirectory("/app/.tandrel-3.tmp");
    const std::size_t before = files_.allFiles().size();
    remove("FILE\tCREATE\t/app/tool\r\n", UnfinishedChange::kLast);
    EXPECT_EQ(files_.allFiles().size(), before);  // one more, the log, and one less
    EXPECT_FALSE(isThere("/app"));
    EXPECT_TRUE(files_.hasDirectory("/app/.tandrel-3.tmp"));
}

TEST_F(UnfinishedFilesTest, AreNotLookedForWithoutALog) {
    removeUnfinishedFiles(files_, "/none", UnfinishedChange::kAnyUndo);
    remove("", UnfinishedChange::kAnyUndo);
    EXPECT_TRUE(isThere("/app"));
}

}  // namespace

#include "engine/unfinished_files.h"

#include <gtest/gtest.h>

#include "engine/changes/same_path.h"
#include "engine/removal_journal.h"
#include "platform/memory/memory_environment.h"
#include "platform/memory/memory_file_system.h"

namespace {

constexpr char kHead[] = "/app/x.xml\r\n/app/b.bin\r\nNUMVARS\t0\r\n";

class UnfinishedFilesTest : public testing::Test {
protected:
    UnfinishedFilesTest() {
        for (const char* directory : {"/app", "/shared", "/ini", "/other"}) {
            files_.addFile(std::string(directory) + "/.tandrel-1.tmp", "half");
        }
    }

    void remove(const std::string& records) {
        files_.addFile("/log", kHead + records);
        removeUnfinishedFiles(files_, "/log");
    }
    bool isThere(const std::string& directory) { return files_.hasFile(directory + "/.tandrel-1.tmp"); }

    MemoryFileSystem files_;
};

TEST_F(UnfinishedFilesTest, LieInTheDirectoriesOfAllRecords) {
    remove(
        "FILE\tOVER\t/shared/a\r\nINI\tREPLACE\t/ini/c.ini\ts\tk\tv\r\nFILE\tCREATE\t/app/tool\r\n"
        "ENV\tCREATE\t/other/x\r\n");
    EXPECT_FALSE(isThere("/app"));
    EXPECT_FALSE(isThere("/shared"));
    EXPECT_FALSE(isThere("/ini"));
    EXPECT_TRUE(isThere("/other"));
}

// Actions write there as well, and have no records.
TEST_F(UnfinishedFilesTest, MayLieInADirectoryThatTheInstallationMade) {
    remove("DIR\t1\t/other/\r\nFILE\tCREATE\t/app/tool\r\n");
    EXPECT_FALSE(isThere("/other"));
    EXPECT_TRUE(isThere("/shared"));
}

TEST_F(UnfinishedFilesTest, LieWhereARemovalChangedOrArchivedFiles) {
    MemoryEnvironment environment;
    RemovalJournal journal(files_, environment);
    ASSERT_EQ(journal.open(), 0);
    files_.addFile("/app/tool", "1");
    ASSERT_EQ(journal.noteArchived({"/app/tool"}), 0);
    RemovalRecord record;
    record.step = RemovalStep::kRemoveFile;
    record.path = "/ini/c.ini";
    ASSERT_EQ(journal.append(record, RemovalJournal::Durability::kWritten), 0);
    removeUnfinishedFiles(files_, journal);
    EXPECT_FALSE(isThere("/app"));
    EXPECT_FALSE(isThere("/ini"));
    EXPECT_TRUE(isThere("/shared"));
}

TEST_F(UnfinishedFilesTest, IncludeTheProbeOfADirectoryThatWasMade) {
    const std::string probe = "/" + std::string(kProbeName);
    files_.addFile("/app" + probe, "te");
    files_.addFile("/shared" + probe, "the user's");
    files_.addFile("/other" + probe, "test");
    remove("DIR\t1\t/app/\r\nDIR\t1\t/shared/\r\n");
    EXPECT_FALSE(files_.hasFile("/app" + probe));
    EXPECT_TRUE(files_.hasFile("/shared" + probe));
    EXPECT_TRUE(files_.hasFile("/other" + probe));
}

TEST_F(UnfinishedFilesTest, AreNotLookedForWithoutALog) {
    removeUnfinishedFiles(files_, "/none");
    remove("");
    EXPECT_TRUE(isThere("/app"));
}

}  // namespace

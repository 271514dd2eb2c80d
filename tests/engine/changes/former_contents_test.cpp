#include "engine/changes/former_contents.h"

#include "engine/changes/change_table.h"
#include "engine/engine_fixture.h"

namespace {

using Operation = MemoryFileSystem::Operation;

// The list of files begins with the last element.
class FormerContentsTest : public EngineTest {
protected:
    FormerContentsTest() { EXPECT_TRUE(job_.replaced.archive.openForWriting("/tmp/archive")); }

    void describeFiles(const std::string& files) { describe("<FileSet Name='S'>" + files + "</FileSet>"); }

    PFileConsole logFile_{files_};
    ActionLogWriter writer_{logFile_};
    ChangeJob job_{parts_, writer_, report_};
    FormerContents former_{job_.context, parts_, job_.replaced};
};

TEST_F(FormerContentsTest, ArchivesABatchWithOneFlush) {
    pack({{"one", "one", "1"}, {"two", "two", "2"}, {"three", "three", "3"}});
    describeFiles(
        "<FN Dest='/a' BackupExisting='1'>one</FN><FN Dest='/a' BackupExisting='1'>two</FN>"
        "<FN Dest='/a'>three</FN>");
    for (const char* const path : {"/a/one", "/a/two", "/a/three"}) {
        files_.addFile(path, std::string("former ") + path);
    }
    former_.archiveBatch(0);
    const std::string archive = files_.content("/tmp/archive");
    EXPECT_NE(archive.find("former /a/one"), std::string::npos);
    EXPECT_NE(archive.find("former /a/two"), std::string::npos);
    EXPECT_EQ(archive.find("former /a/three"), std::string::npos);
    EXPECT_EQ(files_.count(Operation::kFlush), 1);
    EXPECT_EQ(ui_.countOf("addFileLine"), 0);
}

TEST_F(FormerContentsTest, KnowsWhatItFoundUntilSomethingIsWritten) {
    pack({{"one", "one", "1"}, {"two", "two", "2"}});
    describeFiles("<FN Dest='/a'>two</FN><FN Dest='/a' BackupExisting='1'>one</FN>");
    files_.addFile("/a/one", "1");
    former_.archiveBatch(0);
    ASSERT_NE(former_.of(0), nullptr);
    EXPECT_TRUE(former_.of(0)->onDisk.exists);
    EXPECT_FALSE(former_.of(0)->onDisk.differs);
    EXPECT_FALSE(former_.of(0)->isNeeded);
    EXPECT_EQ(former_.of(1), nullptr);
    EXPECT_EQ(files_.count(Operation::kFlush), 0);
    EXPECT_FALSE(former_.isWritten("/a/one"));
    former_.noteWritten("\\a\\one");
    EXPECT_TRUE(former_.isWritten("/a/one"));
}

TEST_F(FormerContentsTest, KeepsTheUsersContentOfAPathThatTwoFilesHave) {
    pack({{"one", "one", "1"}, {"two", "one", "2"}});
    describeFiles(
        "<FN Dest='/a' BackupExisting='1'>one</FN><FN Dest='/a' BackupExisting='1' Alias='two'>one</FN>");
    files_.addFile("/a/one", "former");
    former_.archiveBatch(0);
    EXPECT_TRUE(former_.of(0)->isNeeded);
    EXPECT_FALSE(former_.of(1)->isNeeded);
}

TEST_F(FormerContentsTest, FailsAllThatDidNotReachTheDisk) {
    pack({{"one", "one", "1"}, {"two", "two", "2"}});
    describeFiles("<FN Dest='/a' BackupExisting='1'>one</FN><FN Dest='/a' BackupExisting='1'>two</FN>");
    files_.addFile("/a/one", "former");
    files_.failAt(Operation::kFlush, "/tmp/archive", 1);
    former_.archiveBatch(0);
    EXPECT_TRUE(former_.of(1)->failure.has_value());
    EXPECT_FALSE(former_.of(0)->failure.has_value());
}

}  // namespace

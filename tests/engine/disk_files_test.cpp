#include "engine/disk_files.h"

#include "engine_fixture.h"

namespace {

using Operation = MemoryFileSystem::Operation;

class DiskFilesTest : public EngineTest {
protected:
    DiskFilesTest() { files_.addDirectory("/app"); }

    FileOnDisk compare(const std::string& content) {
        return disk_.compare("/dir/file", static_cast<std::int64_t>(content.size()),
                             md5Of(content.data(), content.size()));
    }
    bool write(const std::string& content, bool exists = false, const char* path = "/app/file.txt") {
        return disk_.write(path, exists, content);
    }
    void logEverything() { console_.setTarget(&log_, 3); }

    DiskFiles disk_{files_, system_, report_, console_};
};

TEST_F(DiskFilesTest, KnowsAnIdenticalFile) {
    files_.addFile("/dir/file", "content");
    const FileOnDisk found = compare("content");
    EXPECT_TRUE(found.exists);
    EXPECT_FALSE(found.differs);
}

TEST_F(DiskFilesTest, KnowsAnIdenticalEmptyFile) {
    files_.addFile("/dir/file", "");
    EXPECT_FALSE(compare("").differs);
}

TEST_F(DiskFilesTest, ComparesLargeFilesPieceByPiece) {
    std::string content(700000, 'a');
    content[600000] = 'b';
    files_.addFile("/dir/file", content);
    EXPECT_FALSE(compare(content).differs);
    content[600000] = 'c';
    EXPECT_TRUE(compare(content).differs);
}

TEST_F(DiskFilesTest, FindsADifferenceInSizeOrContent) {
    files_.addFile("/dir/file", "content");
    EXPECT_TRUE(compare("contenT").differs);
    EXPECT_TRUE(compare("content!").differs);
    EXPECT_TRUE(compare("").differs);
    EXPECT_TRUE(compare("").exists);
}

TEST_F(DiskFilesTest, TakesNoDirectoryForAFile) {
    files_.addDirectory("/dir/file");
    const FileOnDisk found = compare("content");
    EXPECT_FALSE(found.exists);
    EXPECT_TRUE(found.differs);
}

TEST_F(DiskFilesTest, CountsAMissingFileAsDifferent) {
    const FileOnDisk found = compare("content");
    EXPECT_FALSE(found.exists);
    EXPECT_TRUE(found.differs);
}

TEST_F(DiskFilesTest, CountsAFileThatCannotBeReadAsDifferent) {
    files_.addFile("/dir/file", "content");
    files_.failAt(Operation::kRead, "/dir/file", 1);
    const FileOnDisk found = compare("content");
    EXPECT_TRUE(found.exists);
    EXPECT_TRUE(found.differs);
    EXPECT_EQ(files_.openFileCount(), 0);
}

TEST_F(DiskFilesTest, WritesANewFile) {
    EXPECT_TRUE(write("content"));
    EXPECT_EQ(files_.content("/app/file.txt"), "content");
    EXPECT_TRUE(log_.lines().empty());
}

TEST_F(DiskFilesTest, ReplacesALongerFileWhole) {
    files_.addFile("/app/file.txt", "much longer content");
    EXPECT_TRUE(write("", true));
    EXPECT_EQ(files_.content("/app/file.txt"), "");
}

TEST_F(DiskFilesTest, LogsEachFileFromLevelThreeOn) {
    logEverything();
    EXPECT_TRUE(write("content"));
    EXPECT_EQ(log_.lines(),
              std::vector<std::string>{"+ Creating file \"/app/file.txt\" (size = 7, iores = 0)"});
}

TEST_F(DiskFilesTest, NoticesAFullDisk) {
    logEverything();
    files_.setFreeSpace(3);
    EXPECT_FALSE(write("content"));
    EXPECT_EQ(log_.lines(),
              (std::vector<std::string>{"+ Creating file \"/app/file.txt\" (size = 7, iores = 0)",
                                        "- ERROR: Writing file failed (iores = 112, written = 3)"}));
    EXPECT_EQ(files_.openFileCount(), 0);
}

TEST_F(DiskFilesTest, LeavesTheOldFileOnAFullDisk) {
    files_.addFile("/app/file.txt", "old");
    files_.setFreeSpace(3);
    EXPECT_FALSE(write("content", true));
    EXPECT_EQ(files_.content("/app/file.txt"), "old");
    EXPECT_EQ(files_.allFiles(), std::vector<std::string>{"/app/file.txt"});
}

TEST_F(DiskFilesTest, ReplacesALinkAndLeavesWhatItLeadsTo) {
    files_.addFile("/dir/file", "content");
    files_.addLink("/app/file.txt", "/dir/file");
    const FileOnDisk found = disk_.compare("/app/file.txt", 7, md5Of("content", 7));
    EXPECT_TRUE(found.exists);
    EXPECT_TRUE(found.differs);
    EXPECT_TRUE(write("new", true));
    EXPECT_TRUE(files_.hasFile("/app/file.txt"));
    EXPECT_EQ(files_.content("/app/file.txt"), "new");
    EXPECT_EQ(files_.content("/dir/file"), "content");
}

TEST_F(DiskFilesTest, RefusesADeviceInThePlaceOfAFile) {
    files_.addDevice("/app/file.txt");
    EXPECT_FALSE(compare("content").exists);
    EXPECT_FALSE(write("content"));
    EXPECT_EQ(disk_.takeFailure(), -1);
    EXPECT_TRUE(disk_.write("/app/other.txt", false, "content"));
    EXPECT_EQ(disk_.takeFailure(), 0);
    EXPECT_EQ(files_.kindOf("/app/file.txt"), platform::PathKind::kOther);
}

TEST_F(DiskFilesTest, MakesAProgramOfANewFile) {
    EXPECT_TRUE(disk_.write("/app/tool", false, "content", platform::FileRights::kProgram));
    EXPECT_TRUE(files_.isExecutable("/app/tool"));
}

TEST_F(DiskFilesTest, NoticesAFailureThatTheSystemReportsAtTheClosing) {
    logEverything();
    files_.failAt(Operation::kClose, "/app/.tandrel-1.tmp", 1, 112);
    EXPECT_FALSE(write("content"));
    EXPECT_TRUE(log_.hasLine("- ERROR: Writing file failed (iores = 112, written = 7)"));
    EXPECT_EQ(disk_.takeFailure(), 112);
    EXPECT_EQ(disk_.takeFailure(), 0);
}

TEST_F(DiskFilesTest, DoesNotWriteIntoADirectory) {
    files_.addDirectory("/app/file.txt");
    logEverything();
    EXPECT_FALSE(write("content"));
    EXPECT_EQ(log_.lines().size(), 1U);
}

TEST_F(DiskFilesTest, DoesNotWriteWhereNothingMayBeWritten) {
    files_.addFile("/app/file.txt", "old");
    files_.setReadOnly("/app");
    EXPECT_FALSE(write("content", true));
    EXPECT_EQ(files_.content("/app/file.txt"), "old");
}

TEST_F(DiskFilesTest, StopsTheProgramThatHoldsItsFile) {
    files_.addFile("/app/tool.exe", "old");
    system_.runningFrom = {"/app/tool.exe"};
    files_.failAt(Operation::kReplaceFile, "", 1, 32);
    EXPECT_TRUE(write("new", true, "/app/tool.exe"));
    EXPECT_EQ(files_.content("/app/tool.exe"), "new");
    EXPECT_TRUE(system_.runningFrom.empty());
}

TEST_F(DiskFilesTest, LeavesALibraryThatIsHeldAlone) {
    files_.addFile("/app/tool.dll", "old");
    files_.failFrom(Operation::kReplaceFile, "", 1, 32);
    EXPECT_FALSE(write("new", true, "/app/tool.dll"));
    EXPECT_EQ(files_.content("/app/tool.dll"), "old");
}

TEST_F(DiskFilesTest, LooksForNoProgramWhereThereIsNoFile) {
    files_.failFrom(Operation::kMoveFile, "", 1, 32);
    EXPECT_FALSE(write("new", false, "/app/tool.exe"));
    EXPECT_TRUE(system_.calls.empty());
}

TEST_F(DiskFilesTest, HandlesEventsWithinALargeFile) {
    const std::string content(10 * 1024 * 1024, 'a');
    EXPECT_TRUE(write(content));
    EXPECT_EQ(files_.content("/app/file.txt"), content);
    EXPECT_EQ(ui_.countOf("pumpEventsWhileCopying()"), 2);
    files_.addFile("/dir/file", content);
    EXPECT_FALSE(compare(content).differs);
    EXPECT_EQ(ui_.countOf("pumpEventsWhileCopying()"), 4);
    write("small");
    compare("small");
    EXPECT_EQ(ui_.countOf("pumpEventsWhileCopying()"), 4);
}

TEST_F(DiskFilesTest, ALargeFileThatDoesNotFitLeavesTheOldOne) {
    files_.addFile("/app/file.txt", "old");
    files_.setFreeSpace(6 * 1024 * 1024);
    EXPECT_FALSE(write(std::string(10 * 1024 * 1024, 'a'), true));
    EXPECT_NE(disk_.takeFailure(), 0);
    EXPECT_EQ(files_.content("/app/file.txt"), "old");
}

}  // namespace

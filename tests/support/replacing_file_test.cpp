#include "support/replacing_file.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "fakes/temporary_directory.h"
#include "platform/memory/memory_file_system.h"

namespace {

using platform::FileRights;
using testing::ElementsAre;
using testing::IsEmpty;
using Operation = MemoryFileSystem::Operation;

class ReplacingFileTest : public testing::Test {
protected:
    ReplacingFileTest() { files_.addDirectory("/d"); }

    int replace(const std::string& path, const std::string& content, FileRights rights = FileRights::kPlain) {
        ReplacingFile file(files_);
        int status = file.open(path, rights);
        if (status == 0) {
            status = file.stream().writeText(content);
        }
        return status != 0 ? status : file.putInPlace();
    }
    void expectTheOldFileAlone() {
        EXPECT_EQ(files_.content("/d/f"), "old");
        EXPECT_THAT(files_.allFiles(), ElementsAre("/d/f"));
        EXPECT_EQ(files_.openFileCount(), 0);
    }

    MemoryFileSystem files_;
};

TEST_F(ReplacingFileTest, LeavesTheOldFileUntilTheNewOneIsComplete) {
    files_.addFile("/d/f", "old");
    ReplacingFile file(files_);
    ASSERT_EQ(file.open("/d/f"), 0);
    EXPECT_TRUE(file.replacesSomething());
    ASSERT_EQ(file.stream().writeText("new content"), 0);
    EXPECT_EQ(files_.content("/d/f"), "old");
    EXPECT_EQ(file.putInPlace(), 0);
    EXPECT_EQ(files_.content("/d/f"), "new content");
    EXPECT_THAT(files_.allFiles(), ElementsAre("/d/f"));
    EXPECT_EQ(files_.openFileCount(), 0);
}

TEST_F(ReplacingFileTest, LeavesNothingOfItsOwnWhenItIsGivenUp) {
    files_.addFile("/d/f", "old");
    {
        ReplacingFile file(files_);
        ASSERT_EQ(file.open("/d/f"), 0);
        ASSERT_EQ(file.stream().writeText("half"), 0);
    }
    expectTheOldFileAlone();
}

TEST_F(ReplacingFileTest, LeavesTheOldFileAfterEachFailure) {
    files_.addFile("/d/f", "old");
    for (const Operation operation : {Operation::kOpen, Operation::kWrite, Operation::kClose,
                                      Operation::kCopyRights, Operation::kReplaceFile}) {
        files_.failAt(operation, "", 1, 99);
        EXPECT_EQ(replace("/d/f", "new"), 99);
        files_.clearFaults();
        expectTheOldFileAlone();
    }
    files_.setFreeSpace(2);
    EXPECT_EQ(replace("/d/f", "new"), MemoryFileSystem::kDiskFull);
    expectTheOldFileAlone();
}

TEST_F(ReplacingFileTest, LeavesNothingWhereANewFileFails) {
    for (const Operation operation :
         {Operation::kWrite, Operation::kClose, Operation::kSetRights, Operation::kMoveFile}) {
        files_.failAt(operation, "", 1, 99);
        EXPECT_EQ(replace("/d/f", "new"), 99);
        files_.clearFaults();
        EXPECT_THAT(files_.allFiles(), IsEmpty());
    }
    EXPECT_EQ(replace("/none/f", "new"), MemoryFileSystem::kNotFound);
    EXPECT_EQ(replace("", "new"), -1);
}

TEST_F(ReplacingFileTest, TakesTheRightsOfTheOldFile) {
    files_.addFile("/d/f", "old");
    ASSERT_EQ(files_.makeExecutable("/d/f"), 0);
    EXPECT_EQ(replace("/d/f", "new", FileRights::kPrivate), 0);
    EXPECT_TRUE(files_.isExecutable("/d/f"));
    EXPECT_FALSE(files_.isPrivate("/d/f"));
    ASSERT_EQ(replace("/d/secret", "a", FileRights::kPrivate), 0);
    EXPECT_EQ(replace("/d/secret", "b", FileRights::kProgram), 0);
    EXPECT_TRUE(files_.isPrivate("/d/secret"));
    EXPECT_TRUE(files_.isExecutable("/d/secret"));
}

TEST_F(ReplacingFileTest, GivesANewFileItsRights) {
    ASSERT_EQ(replace("/d/plain", "a"), 0);
    EXPECT_FALSE(files_.isPrivate("/d/plain"));
    EXPECT_FALSE(files_.isExecutable("/d/plain"));
    ASSERT_EQ(replace("/d/program", "a", FileRights::kProgram), 0);
    EXPECT_TRUE(files_.isExecutable("/d/program"));
    ASSERT_EQ(replace("/d/private", "a", FileRights::kPrivate), 0);
    EXPECT_TRUE(files_.isPrivate("/d/private"));
}

// Before it has its rights nobody else may read what replaces a file.
TEST_F(ReplacingFileTest, IsPrivateWhileItReplacesAFile) {
    files_.addFile("/d/f", "old");
    ReplacingFile file(files_);
    ASSERT_EQ(file.open("/d/f"), 0);
    EXPECT_TRUE(files_.isPrivate(file.stream().getName()));
}

TEST_F(ReplacingFileTest, ReplacesALinkAndLeavesWhatItLeadsTo) {
    files_.addFile("/victim", "precious");
    files_.addLink("/d/f", "/victim");
    EXPECT_EQ(replace("/d/f", "new"), 0);
    EXPECT_TRUE(files_.hasFile("/d/f"));
    EXPECT_EQ(files_.content("/d/f"), "new");
    EXPECT_EQ(files_.content("/victim"), "precious");
}

TEST_F(ReplacingFileTest, RefusesAPlaceThatNoFileCanTake) {
    files_.addDirectory("/d/directory");
    files_.addDevice("/d/device");
    EXPECT_EQ(replace("/d/directory", "new"), -1);
    EXPECT_EQ(replace("/d/device", "new"), -1);
    EXPECT_EQ(files_.kindOf("/d/device"), platform::PathKind::kOther);
    EXPECT_EQ(files_.count(Operation::kOpen), 0);
}

TEST_F(ReplacingFileTest, TakesANameThatNobodyHas) {
    files_.addFile("/d/f", "old");
    files_.addFile("/d/.tandrel-1.tmp", "mine");
    files_.addLink("/d/.tandrel-2.tmp", "/target");
    ReplacingFile file(files_);
    ASSERT_EQ(file.open("/d/f"), 0);
    EXPECT_EQ(file.stream().getName(), "/d/.tandrel-3.tmp");
    EXPECT_EQ(file.putInPlace(), 0);
    EXPECT_EQ(files_.content("/d/.tandrel-1.tmp"), "mine");
    EXPECT_FALSE(files_.hasFile("/target"));
}

TEST_F(ReplacingFileTest, WritesItsFileBesideThePlace) {
    files_.addDirectory("C:/d/e");
    for (const auto& [path, beside] : {std::pair{"C:f", "C:.tandrel-1.tmp"},
                                       {"f", ".tandrel-1.tmp"},
                                       {"C:\\d/e\\f", "C:\\d/e\\.tandrel-1.tmp"}}) {
        ReplacingFile file(files_);
        ASSERT_EQ(file.open(path), 0) << path;
        EXPECT_EQ(file.stream().getName(), beside);
    }
}

TEST_F(ReplacingFileTest, DoesNotReplaceWhatAppearedInAFreePlace) {
    ReplacingFile file(files_);
    ASSERT_EQ(file.open("/d/f"), 0);
    EXPECT_FALSE(file.replacesSomething());
    ASSERT_EQ(file.stream().writeText("new"), 0);
    files_.addFile("/d/f", "old");
    EXPECT_EQ(file.putInPlace(), MemoryFileSystem::kExists);
    file.discard();
    expectTheOldFileAlone();
}

TEST_F(ReplacingFileTest, CanBePutInPlaceOnceTheOldFileIsFree) {
    files_.addFile("/d/f", "old");
    files_.failAt(Operation::kReplaceFile, "", 1, 32);
    ReplacingFile file(files_);
    ASSERT_EQ(file.open("/d/f"), 0);
    ASSERT_EQ(file.stream().writeText("new"), 0);
    EXPECT_EQ(file.putInPlace(), 32);
    EXPECT_TRUE(file.isComplete());
    EXPECT_EQ(files_.removeFile("/d/f"), 0);
    EXPECT_EQ(file.putInPlace(), 0);
    EXPECT_EQ(files_.content("/d/f"), "new");
    EXPECT_EQ(file.putInPlace(), -1);
}

// A second name of the same content belongs to somebody else.
TEST(ReplacingFileDiskTest, LeavesTheContentUnderAnotherName) {
    const TemporaryDirectory directory;
    writeTestFile(directory.file("other"), "precious");
    std::filesystem::create_hard_link(directory.file("other"), directory.file("f"));
    ReplacingFile file(platform::systemFileSystem());
    ASSERT_EQ(file.open(directory.file("f")), 0);
    ASSERT_EQ(file.stream().writeText("new"), 0);
    ASSERT_EQ(file.putInPlace(), 0);
    EXPECT_EQ(readTestFile(directory.file("f")), "new");
    EXPECT_EQ(readTestFile(directory.file("other")), "precious");
}

TEST(ReplacingFileDiskTest, LeavesNothingButTheFile) {
    const TemporaryDirectory directory;
    for (const char* content : {"first", "second"}) {
        ReplacingFile file(platform::systemFileSystem());
        ASSERT_EQ(file.open(directory.file("f"), FileRights::kProgram), 0);
        ASSERT_EQ(file.stream().writeText(content), 0);
        ASSERT_EQ(file.putInPlace(), 0);
        EXPECT_EQ(readTestFile(directory.file("f")), content);
    }
    std::vector<platform::DirectoryEntry> entries;
    ASSERT_EQ(platform::systemFileSystem().list(directory.path(), entries), 0);
    EXPECT_EQ(entries.size(), 1U);
}

TEST(CreateUnderFreeName, TakesTheFirstFreeOneAndStopsAtTheLast) {
    MemoryFileSystem files;
    files.addFile("/d/0", "somebody's");
    PFileStream stream(files);
    const auto nameOf = [](int number) { return "/d/" + std::to_string(number); };
    EXPECT_NE(createUnderFreeName(stream, files, nameOf, 1, true), 0);
    EXPECT_EQ(createUnderFreeName(stream, files, nameOf, 2, true), 0);
    EXPECT_EQ(stream.getName(), "/d/1");
    EXPECT_EQ(files.content("/d/0"), "somebody's");
    EXPECT_EQ(createUnderFreeName(stream, files, nameOf, 0, true), -1);
}

TEST_F(ReplacingFileTest, FindsWhatAKilledProgramHasLeft) {
    for (const char* const path :
         {"/d/.tandrel-1.tmp", "/d/.tandrel-0f9.tmp", "/d/tandrel-1.tmp", "/d/.tandrel-1.tmp2"}) {
        files_.addFile(path, "");
    }
    files_.addLink("/d/.tandrel-2.tmp", "/d/tandrel-1.tmp");
    files_.addDirectory("/d/.tandrel-3.tmp");
    removeAbandonedFiles(files_, "/d", true);
    EXPECT_TRUE(files_.hasFile("/d/.tandrel-1.tmp"));
    removeAbandonedFiles(files_, "/d", false);
    EXPECT_THAT(files_.allFiles(), ElementsAre("/d/.tandrel-1.tmp2", "/d/tandrel-1.tmp"));
}

TEST_F(ReplacingFileTest, EmptiesADirectoryThatHoldsOnlyWhatAKilledProgramHasLeft) {
    files_.addFile("/d/.tandrel-1.tmp", "");
    files_.addFile("/d/.tandrel-2.tmp", "");
    removeAbandonedFiles(files_, "/d", true);
    EXPECT_THAT(files_.allFiles(), IsEmpty());
    removeAbandonedFiles(files_, "/none", true);
}

}  // namespace

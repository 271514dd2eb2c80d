#include "platform/memory/memory_file_system.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "platform/memory/memory_environment.h"
#include "platform/memory/memory_processes.h"

// The fake must keep the contract of the interface, or tests above it prove nothing.
namespace {

using platform::Disposition;
using Operation = MemoryFileSystem::Operation;

class MemoryFileSystemTest : public testing::Test {
protected:
    int open(const char* path, Disposition disposition, std::uint32_t access = platform::kWrite) {
        platform::OpenOptions options;
        options.access = access;
        options.disposition = disposition;
        return files_.open(path, options, file_);
    }
    std::vector<std::string> names(const char* path) {
        std::vector<platform::DirectoryEntry> entries;
        EXPECT_EQ(0, files_.list(path, entries));
        std::vector<std::string> result;
        for (const platform::DirectoryEntry& entry : entries) {
            result.push_back(entry.name + (entry.isDirectory ? "/" : ""));
        }
        std::sort(result.begin(), result.end());
        return result;
    }

    MemoryFileSystem files_;
    std::unique_ptr<platform::File> file_;
    std::uint32_t done_ = 0;
};

TEST_F(MemoryFileSystemTest, FindsNamesInAnyCaseAndKeepsTheirs) {
    files_.addFile("C:\\Program\\Tool.EXE", "x");
    EXPECT_TRUE(files_.exists("c:/program//TOOL.exe"));
    EXPECT_TRUE(files_.exists("C:/program/./sub/../tool.exe"));
    EXPECT_FALSE(files_.exists("D:/program/tool.exe"));
    EXPECT_EQ(std::vector<std::string>{"Program/"}, names("C:\\"));
    EXPECT_EQ(std::vector<std::string>{"C:/Program/Tool.EXE"}, files_.allFiles());
}

TEST_F(MemoryFileSystemTest, HasNothingWithoutAName) {
    EXPECT_FALSE(files_.exists(""));
    EXPECT_FALSE(files_.isDirectory(""));
    EXPECT_FALSE(files_.isOrdinaryDirectory(""));
    EXPECT_TRUE(files_.isDirectory("/"));
}

TEST_F(MemoryFileSystemTest, FollowsEachDisposition) {
    EXPECT_EQ(MemoryFileSystem::kNotFound, open("/a", Disposition::kOpenExisting));
    EXPECT_EQ(nullptr, file_);
    EXPECT_EQ(0, open("/a", Disposition::kOpenOrCreate));
    EXPECT_EQ(0, file_->write("abc", 3, done_));
    EXPECT_EQ(0, open("/a", Disposition::kOpenOrCreate));
    EXPECT_EQ("abc", files_.content("/a"));
    EXPECT_EQ(MemoryFileSystem::kExists, open("/a", Disposition::kCreateNew));
    EXPECT_EQ(MemoryFileSystem::kExists, open("/a", Disposition::kCreatePrivate));
    EXPECT_EQ(0, open("/a", Disposition::kCreateAlways));
    EXPECT_EQ("", files_.content("/a"));
    EXPECT_EQ(0, open("/p", Disposition::kCreatePrivate));
    EXPECT_TRUE(files_.isPrivate("/p"));
    EXPECT_FALSE(files_.isPrivate("/a"));
}

TEST_F(MemoryFileSystemTest, RefusesDirectoriesAndMissingParents) {
    EXPECT_NE(0, open("/tmp", Disposition::kOpenOrCreate));
    EXPECT_EQ(MemoryFileSystem::kNotFound, open("/none/a", Disposition::kCreateAlways));
    EXPECT_EQ(MemoryFileSystem::kNotFound, files_.createDirectory("/none/a"));
    EXPECT_EQ(MemoryFileSystem::kExists, files_.createDirectory("/tmp"));
    EXPECT_EQ(0, files_.createDirectory("/new"));
    EXPECT_TRUE(files_.isDirectory("/new"));
}

TEST_F(MemoryFileSystemTest, MovesNothingOntoWhatExists) {
    files_.addFile("/a", "a");
    files_.addFile("/b", "b");
    EXPECT_EQ(MemoryFileSystem::kExists, files_.moveFile("/a", "/b"));
    EXPECT_EQ(0, files_.moveFile("/a", "/c"));
    EXPECT_EQ(0, files_.replaceFile("/c", "/b"));
    EXPECT_EQ("a", files_.content("/b"));
    EXPECT_EQ(1U, files_.allFiles().size());
    EXPECT_EQ(MemoryFileSystem::kNotFound, files_.moveFile("/a", "/d"));
    EXPECT_EQ(MemoryFileSystem::kNotFound, files_.moveFile("/b", "/none/d"));
}

TEST_F(MemoryFileSystemTest, RemovesFilesAndEmptyDirectoriesOnly) {
    files_.addFile("/d/a", "");
    EXPECT_EQ(MemoryFileSystem::kNotEmpty, files_.removeDirectory("/d"));
    EXPECT_NE(0, files_.removeFile("/d"));
    EXPECT_NE(0, files_.removeDirectory("/d/a"));
    EXPECT_EQ(0, files_.removeFile("/d/a"));
    EXPECT_EQ(MemoryFileSystem::kNotFound, files_.removeFile("/d/a"));
    EXPECT_EQ(0, files_.removeDirectory("/d"));
    EXPECT_FALSE(files_.exists("/d"));
}

TEST_F(MemoryFileSystemTest, ListsDirectChildrenOnly) {
    files_.addFile("/d/b/deep", "");
    files_.addFile("/d/A", "");
    files_.addFile("/d.x", "");
    EXPECT_EQ((std::vector<std::string>{"A", "b/"}), names("/d"));
    EXPECT_EQ((std::vector<std::string>{"d.x", "d/", "tmp/"}), names("/"));
    std::vector<platform::DirectoryEntry> entries;
    EXPECT_EQ(MemoryFileSystem::kNotFound, files_.list("/none", entries));
}

TEST_F(MemoryFileSystemTest, FollowsLinksButRemovesThemAlone) {
    files_.addFile("/target", "precious");
    files_.addLink("/link", "/target");
    EXPECT_TRUE(files_.exists("/link"));
    EXPECT_EQ(8, files_.fileSize("/link"));
    EXPECT_EQ(MemoryFileSystem::kExists, open("/link", Disposition::kCreateNew));
    EXPECT_EQ(0, open("/link", Disposition::kCreateAlways));
    EXPECT_EQ("", files_.content("/target"));
    EXPECT_EQ(0, files_.removeFile("/link"));
    EXPECT_TRUE(files_.hasFile("/target"));
    files_.addLink("/loop", "/loop");
    EXPECT_NE(0, open("/loop", Disposition::kOpenExisting, platform::kRead));
}

TEST_F(MemoryFileSystemTest, FailsTheOperationThatWasAskedFor) {
    files_.addFile("/a", "abc");
    files_.failAt(Operation::kRead, "\\A", 2, 55);
    ASSERT_EQ(0, open("/a", Disposition::kOpenExisting, platform::kRead));
    char buffer[2];
    EXPECT_EQ(0, file_->read(buffer, 1, done_));
    EXPECT_EQ(55, file_->read(buffer, 1, done_));
    EXPECT_EQ(0U, done_);
    EXPECT_EQ(0, file_->read(buffer, 1, done_));
    files_.failFrom(Operation::kOpen, "", 2, 66);
    EXPECT_EQ(0, open("/a", Disposition::kOpenExisting));
    EXPECT_EQ(66, open("/a", Disposition::kOpenExisting));
    EXPECT_EQ(66, open("/b", Disposition::kOpenOrCreate));
    files_.clearFaults();
    EXPECT_EQ(0, open("/a", Disposition::kOpenExisting));
}

TEST_F(MemoryFileSystemTest, KeepsWhatFitsOnAFullDisk) {
    files_.setFreeSpace(4);
    ASSERT_EQ(0, open("/a", Disposition::kCreateAlways));
    EXPECT_EQ(0, file_->write("abc", 3, done_));
    EXPECT_EQ(MemoryFileSystem::kDiskFull, file_->write("def", 3, done_));
    EXPECT_EQ(1U, done_);
    EXPECT_EQ("abcd", files_.content("/a"));
}

TEST_F(MemoryFileSystemTest, LeavesWhatIsReadOnly) {
    files_.addFile("/d/a", "abc");
    files_.addFile("/dd", "");
    files_.setReadOnly("/d");
    EXPECT_EQ(0, open("/d/a", Disposition::kOpenExisting, platform::kRead));
    EXPECT_EQ(MemoryFileSystem::kAccessDenied, open("/d/a", Disposition::kOpenExisting));
    EXPECT_EQ(MemoryFileSystem::kAccessDenied, open("/d/new", Disposition::kCreateAlways));
    EXPECT_EQ(MemoryFileSystem::kAccessDenied, files_.removeFile("/d/a"));
    EXPECT_EQ(MemoryFileSystem::kAccessDenied, files_.moveFile("/d/a", "/b"));
    EXPECT_EQ(MemoryFileSystem::kAccessDenied, files_.moveFile("/dd", "/d/b"));
    EXPECT_EQ(MemoryFileSystem::kAccessDenied, files_.createDirectory("/d/x"));
    EXPECT_EQ(0, open("/dd", Disposition::kCreateAlways));
    EXPECT_EQ("abc", files_.content("/d/a"));
}

TEST_F(MemoryFileSystemTest, ChecksTheAccessOfAnOpenFile) {
    files_.addFile("/a", "abc");
    char buffer[4];
    ASSERT_EQ(0, open("/a", Disposition::kOpenExisting, platform::kRead));
    EXPECT_NE(0, file_->write("x", 1, done_));
    EXPECT_NE(0, file_->truncateHere());
    ASSERT_EQ(0, open("/a", Disposition::kOpenExisting, platform::kWrite));
    EXPECT_NE(0, file_->read(buffer, 1, done_));
    EXPECT_EQ(0, file_->close());
    EXPECT_EQ(0, file_->close());
    EXPECT_NE(0, file_->write("x", 1, done_));
    EXPECT_EQ(-1, file_->size());
}

TEST_F(MemoryFileSystemTest, FillsAGapWithZeros) {
    ASSERT_EQ(0, open("/a", Disposition::kCreateAlways));
    std::int64_t position = 0;
    EXPECT_EQ(0, file_->seek(2, platform::Origin::kEnd, position));
    EXPECT_EQ(2, position);
    EXPECT_EQ(0, file_->write("x", 1, done_));
    EXPECT_EQ(std::string("\0\0x", 3), files_.content("/a"));
    EXPECT_NE(0, file_->seek(-1, platform::Origin::kStart, position));
}

TEST_F(MemoryFileSystemTest, RecordsWhatWasDone) {
    files_.addFile("/a", "abc");
    ASSERT_EQ(0, open("\\a", Disposition::kOpenExisting));
    file_->close();
    files_.moveFile("/a", "/b");
    files_.removeFile("/none");
    EXPECT_EQ((std::vector<std::string>{"open /a", "close /a", "moveFile /a -> /b", "removeFile /none"}),
              files_.operations());
    EXPECT_TRUE(files_.didOperation("moveFile /a -> /b"));
    EXPECT_EQ(1, files_.count(Operation::kMoveFile));
    files_.clearOperations();
    EXPECT_EQ(0, files_.count(Operation::kMoveFile));
    EXPECT_FALSE(files_.didOperation("open /a"));
}

TEST_F(MemoryFileSystemTest, ResolvesPlainFilesOnly) {
    files_.addFile("/d/F", "x");
    files_.addLink("/link", "/d/f");
    files_.addLink("/dangling", "/none");
    std::string path;
    EXPECT_EQ(0, files_.resolveFile("/link", path));
    EXPECT_EQ("/d/F", path);
    EXPECT_NE(0, files_.resolveFile("/d", path));
    EXPECT_EQ("", path);
    EXPECT_NE(0, files_.resolveFile("/dangling", path));
    EXPECT_NE(0, files_.resolveFile("/none", path));
}

TEST_F(MemoryFileSystemTest, GivesRightsToOpenFiles) {
    files_.addFile("/from", "a");
    files_.addLink("/link", "/from");
    EXPECT_EQ(0, files_.makeExecutable("/from"));
    EXPECT_NE(0, files_.makeExecutable("/link"));
    ASSERT_EQ(0, open("/to", Disposition::kCreatePrivate));
    EXPECT_NE(0, file_->takeRightsOf("/link"));
    EXPECT_NE(0, file_->takeRightsOf("/none"));
    EXPECT_TRUE(files_.isPrivate("/to"));
    EXPECT_EQ(0, file_->takeRightsOf("/from"));
    EXPECT_TRUE(files_.isExecutable("/to"));
    EXPECT_FALSE(files_.isPrivate("/to"));
    EXPECT_TRUE(files_.didOperation("copyRights /from -> /to"));
    EXPECT_EQ(0, file_->setRights(platform::FileRights::kPrivate));
    EXPECT_TRUE(files_.isPrivate("/to"));
    EXPECT_EQ(0, file_->makeExecutable());
    EXPECT_TRUE(files_.isExecutable("/to"));
    files_.failAt(Operation::kCopyRights, "/to", 1, 7);
    EXPECT_EQ(7, file_->takeRightsOf("/from"));
}

TEST_F(MemoryFileSystemTest, KnowsEqualRights) {
    files_.addFile("/a", "a");
    files_.addFile("/b", "b");
    files_.addLink("/link", "/a");
    EXPECT_NE("", files_.rightsOf("/a"));
    EXPECT_EQ(files_.rightsOf("/b"), files_.rightsOf("/a"));
    EXPECT_EQ(0, files_.makeExecutable("/b"));
    EXPECT_NE(files_.rightsOf("/b"), files_.rightsOf("/a"));
    EXPECT_EQ("", files_.rightsOf("/link"));
    EXPECT_EQ("", files_.rightsOf("/none"));
}

TEST_F(MemoryFileSystemTest, KnowsEachKind) {
    using platform::PathKind;
    files_.addFile("/d/f", "");
    files_.addLink("/d/link", "/d");
    files_.addDevice("/d/device");
    EXPECT_EQ(PathKind::kFile, files_.kindOf("/d/f"));
    EXPECT_EQ(PathKind::kDirectory, files_.kindOf("/d"));
    EXPECT_EQ(PathKind::kLink, files_.kindOf("/d/link"));
    EXPECT_EQ(PathKind::kOther, files_.kindOf("/d/device"));
    EXPECT_EQ(PathKind::kNothing, files_.kindOf("/none"));
    EXPECT_EQ(PathKind::kNothing, files_.kindOf(""));
    EXPECT_NE(0, open("/d/device", Disposition::kOpenExisting));
}

TEST_F(MemoryFileSystemTest, OpensNoLinkWhereNoneIsToBeFollowed) {
    files_.addFile("/f", "");
    files_.addLink("/link", "/f");
    platform::OpenOptions options;
    options.followLinks = false;
    EXPECT_NE(0, files_.open("/link", options, file_));
    EXPECT_EQ(0, files_.open("/f", options, file_));
}

TEST_F(MemoryFileSystemTest, WorksOnOpenDirectories) {
    files_.addFile("/d/sub/f", "");
    files_.addFile("/victim", "");
    files_.addLink("/link", "/d");
    std::unique_ptr<platform::Directory> opened;
    std::unique_ptr<platform::Directory> below;
    EXPECT_NE(0, files_.openDirectory("/link", opened));
    EXPECT_NE(0, files_.openDirectory("/victim", opened));
    ASSERT_EQ(0, files_.openDirectory("/d", opened));
    ASSERT_EQ(0, opened->openDirectory("sub", below));
    EXPECT_NE(0, opened->removeFile("../victim"));
    EXPECT_NE(0, opened->removeDirectory("sub"));
    EXPECT_EQ(0, below->removeFile("f"));
    EXPECT_EQ(0, opened->removeDirectory("sub"));
    EXPECT_TRUE(files_.didOperation("removeFile /d/sub/f"));
    std::vector<platform::DirectoryEntry> entries{{"stale", false}};
    EXPECT_EQ(0, opened->list(entries));
    EXPECT_TRUE(entries.empty());
}

TEST_F(MemoryFileSystemTest, AnOpenDirectoryFindsNothingInWhatTookItsPath) {
    files_.addFile("/d/f", "");
    files_.addFile("/outside/f", "");
    std::unique_ptr<platform::Directory> opened;
    ASSERT_EQ(0, files_.openDirectory("/d", opened));
    files_.runBefore(Operation::kRemoveFile, "/d/f", 1, [this] { files_.addLink("/d", "/outside"); });
    EXPECT_EQ(0, opened->removeFile("f"));
    EXPECT_NE(0, opened->removeFile("f"));
    std::vector<platform::DirectoryEntry> entries;
    EXPECT_NE(0, opened->list(entries));
    EXPECT_TRUE(files_.hasFile("/outside/f"));
}

TEST_F(MemoryFileSystemTest, KeepsADirectoryWithAnEntryThatNoPathMeans) {
    files_.addUnnameable("/d");
    EXPECT_TRUE(names("/d").empty());
    EXPECT_EQ(MemoryFileSystem::kNotEmpty, files_.removeDirectory("/d"));
}

TEST_F(MemoryFileSystemTest, ListsNoNameThatLeadsAway) {
    files_.addFile("/victim", "x");
    files_.addUnnameable("/d", "..\\victim");
    EXPECT_TRUE(names("/d").empty());
    std::unique_ptr<platform::Directory> directory;
    ASSERT_EQ(0, files_.openDirectory("/d", directory));
    EXPECT_NE(0, directory->removeFile("..\\victim"));
    EXPECT_TRUE(files_.hasFile("/victim"));
}

TEST_F(MemoryFileSystemTest, WritesToAllNamesOfAFile) {
    files_.addFile("/a", "old");
    files_.addHardLink("/b", "/a");
    std::unique_ptr<platform::File> file;
    ASSERT_EQ(0, files_.open("/b", {platform::kWrite}, file));
    std::uint32_t done = 0;
    EXPECT_EQ(0, file->write("new", 3, done));
    EXPECT_EQ("new", files_.content("/a"));
    EXPECT_EQ(0, files_.removeFile("/b"));
    EXPECT_EQ("new", files_.content("/a"));
}

TEST_F(MemoryFileSystemTest, SetsUpANewContentForOneNameOnly) {
    files_.addFile("/a", "old");
    files_.addHardLink("/b", "/a");
    files_.addFile("/b", "new");
    EXPECT_EQ("old", files_.content("/a"));
    EXPECT_EQ("new", files_.content("/b"));
}

TEST_F(MemoryFileSystemTest, ReplacesOneNameOfAFile) {
    files_.addFile("/a", "old");
    files_.addHardLink("/b", "/a");
    files_.addFile("/new", "new");
    EXPECT_EQ(0, files_.replaceFile("/new", "/b"));
    EXPECT_EQ("old", files_.content("/a"));
    EXPECT_EQ("new", files_.content("/b"));
}

TEST_F(MemoryFileSystemTest, MasksTheRightsOfANewFile) {
    files_.addFile("/a", "x");
    std::unique_ptr<platform::File> file;
    ASSERT_EQ(0, files_.open("/new", {platform::kWrite, 0, platform::Disposition::kCreateNew}, file));
    EXPECT_TRUE(files_.isMasked("/new"));
    EXPECT_EQ(0, file->setRights(platform::FileRights::kPlain));
    EXPECT_FALSE(files_.isMasked("/new"));
    ASSERT_EQ(0, files_.open("/taken", {platform::kWrite, 0, platform::Disposition::kCreateNew}, file));
    EXPECT_EQ(0, file->takeRightsOf("/a"));
    EXPECT_FALSE(files_.isMasked("/taken"));
    ASSERT_EQ(0, files_.open("/own", {platform::kWrite, 0, platform::Disposition::kCreatePrivate}, file));
    EXPECT_FALSE(files_.isMasked("/own"));
}

TEST_F(MemoryFileSystemTest, TakesTheRightsOfTheDirectory) {
    files_.addFile("/a", "x");
    EXPECT_FALSE(files_.hasDirectoryRights("/a"));
    EXPECT_EQ(0, files_.takeDirectoryRights("/a"));
    EXPECT_TRUE(files_.hasDirectoryRights("/a"));
    EXPECT_NE(0, files_.takeDirectoryRights("/none"));
    files_.failAt(Operation::kTakeDirectoryRights, "/a", 1, 7);
    EXPECT_EQ(7, files_.takeDirectoryRights("/a"));
}

TEST_F(MemoryFileSystemTest, NamesTemporaryFilesWithoutMakingThem) {
    std::string path;
    EXPECT_TRUE(files_.temporaryName("abc", 0x2A, path));
    EXPECT_EQ("/tmp/abc2A.tmp", path);
    EXPECT_FALSE(files_.exists(path.c_str()));
    EXPECT_FALSE(files_.temporaryName("abc", 0, path));
    EXPECT_EQ("", path);
}

TEST(MemoryEnvironmentTest, RefusesWhatTheSystemRefuses) {
    MemoryEnvironment environment;
    EXPECT_FALSE(environment.get("A").has_value());
    EXPECT_TRUE(environment.set("A", ""));
    EXPECT_EQ("", environment.get("A"));
    EXPECT_FALSE(environment.set("", "x"));
    EXPECT_FALSE(environment.set("A=B", "x"));
    environment.refused.insert("A");
    EXPECT_FALSE(environment.set("A", "x"));
}

TEST(MemoryFileSystemProtectionTest, ResolvesLinksOnTheWay) {
    MemoryFileSystem files;
    files.addFile("C:\\App\\Tool", "");
    files.addLink("/a/b", "C:\\App");
    files.addLink("/loop", "/loop");
    std::string path;
    EXPECT_EQ(files.realPath("/A/b/tool", path), MemoryFileSystem::kOk);
    EXPECT_EQ(path, "C:/App/Tool");
    EXPECT_EQ(files.realPath("/loop/x", path), MemoryFileSystem::kNotFound);
    EXPECT_EQ(path, "");
}

TEST(MemoryFileSystemProtectionTest, ProtectsWhatNobodySpoilt) {
    MemoryFileSystem files;
    files.addFile("/app/tool", "");
    files.addLink("/link", "/app");
    EXPECT_TRUE(files.isProtected("/link/tool", platform::Protection::kAdministrators));
    files.setUnprotected("/app");
    EXPECT_FALSE(files.isProtected("/link/tool", platform::Protection::kAdministrators));
    EXPECT_FALSE(files.isProtected("/none", platform::Protection::kAdministrators));
}

TEST(MemoryFileSystemProtectionTest, MakesPrivateDirectoriesAndNotesWhatGoesLater) {
    MemoryFileSystem files;
    std::string first;
    std::string second;
    EXPECT_EQ(files.createPrivateDirectory("/tmp", "p-", first), MemoryFileSystem::kOk);
    EXPECT_EQ(files.createPrivateDirectory("/tmp", "p-", second), MemoryFileSystem::kOk);
    EXPECT_NE(first, second);
    EXPECT_TRUE(files.hasDirectory(first));
    EXPECT_TRUE(files.isPrivate(first));
    EXPECT_EQ(files.createPrivateDirectory("/none", "p-", first), MemoryFileSystem::kNotFound);
    files.removeAtRestart("/tmp\\x");
    EXPECT_EQ(files.removedAtRestart(), std::vector<std::string>{"/tmp/x"});
}

TEST(MemoryFileSystemCopyTest, HoldsWhatTheOtherHeldAtThatTime) {
    MemoryFileSystem first;
    first.addFile("/a/file", "before");
    first.makePrivate("/a/file");
    first.addHardLink("/a/second", "/a/file");
    first.addLink("/a/link", "/a/file");
    first.failFrom(MemoryFileSystem::Operation::kRemoveFile, "", 1);
    MemoryFileSystem copy;
    copy.addFile("/gone", "");
    copy.becomeCopyOf(first);
    EXPECT_EQ(copy.everything(), first.everything());
    EXPECT_EQ(copy.removeFile("/a/link"), MemoryFileSystem::kOk);
    EXPECT_EQ(first.linkTarget("/a/link"), "/a/file");
    std::unique_ptr<platform::File> file;
    platform::OpenOptions options;
    options.access = platform::kWrite;
    ASSERT_EQ(copy.open("/a/second", options, file), MemoryFileSystem::kOk);
    std::uint32_t done = 0;
    file->write("after", 5, done);
    EXPECT_EQ(copy.content("/a/file"), "aftere");
    EXPECT_EQ(first.content("/a/file"), "before");
}

TEST(MemoryProcessesTest, RecordsStartsAndEnds) {
    MemoryProcesses processes;
    processes.running = {{7, "tool.exe", "/bin/tool.exe"}};
    processes.exitCodes = {3};
    processes.waitsBeforeEnd = 1;
    int error = 9;
    const auto child = processes.start("tool -x", "", error);
    ASSERT_NE(nullptr, child);
    EXPECT_EQ(0, error);
    EXPECT_FALSE(child->wait(0));
    EXPECT_TRUE(child->wait(0));
    EXPECT_EQ(3, child->exitCode());
    EXPECT_EQ("tool -x", processes.started.at(0).commandLine);
    EXPECT_TRUE(processes.terminate(7, 100));
    EXPECT_FALSE(processes.terminate(7, 100));
    EXPECT_TRUE(processes.running.empty());
    EXPECT_EQ(2U, processes.terminated.size());
    processes.startError = 2;
    EXPECT_EQ(nullptr, processes.start("x", "", error));
    EXPECT_EQ(2, error);
}

TEST_F(MemoryFileSystemTest, ReportsFreeSpaceByVolume) {
    files_.setVolume("/big");
    files_.addDirectory("/big/dir");
    files_.addLink("/link", "/big/dir");
    files_.reportFreeSpace("/big/dir", 100);
    files_.reportFreeSpace("/", -1);
    platform::Volume volume;
    for (const char* path : {"/big", "/big/not/there", "/link"}) {
        EXPECT_EQ(files_.findVolume(path, volume), 0) << path;
        EXPECT_EQ(volume.name, "/big") << path;
        EXPECT_EQ(volume.free, 100) << path;
    }
    EXPECT_NE(files_.findVolume("/small", volume), 0);
    EXPECT_TRUE(volume.name.empty());
}

TEST(MemoryDiskTest, ListsTheDiskAsItIs) {
    MemoryFileSystem files;
    files.addProgram("/d/program", "abc");
    files.addDirectory("/d/sub");
    files.addLink("/d/link", "sub/../program");
    files.addUnnameable("/d");
    std::unique_ptr<platform::Directory> opened;
    ASSERT_EQ(files.openDirectory("/d", opened), 0);
    std::vector<platform::DiskEntry> entries;
    ASSERT_EQ(opened->listDisk(entries), 0);
    std::string found;
    for (const platform::DiskEntry& entry : entries) {
        found += entry.name + " " + std::to_string(static_cast<int>(entry.kind)) + " " +
                 std::to_string(entry.size) + (entry.isProgram ? " program" : "") +
                 (entry.isNameable ? "" : " unnameable") + "\n";
    }
    EXPECT_EQ(found, "link 3 -1\nprogram 1 3 program\nsub 2 -1\n..\\.. 1 0 unnameable\n");
    std::string target;
    EXPECT_EQ(files.linkTarget("/d/link", target), 0);
    EXPECT_EQ(target, "sub/../program");
    EXPECT_EQ(files.content("/d/link"), "abc");
    EXPECT_NE(files.linkTarget("/d/program", target), 0);
    EXPECT_EQ(target, "");
}

}  // namespace

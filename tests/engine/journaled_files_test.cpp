#include "engine/journaled_files.h"

#include <gtest/gtest.h>

#include "engine/backup_restore.h"
#include "engine/wildcard_remover.h"
#include "package/backup_file.h"
#include "removal_fixture.h"
#include "support/utilities.h"

namespace {

using Operation = MemoryFileSystem::Operation;

class JournaledFilesTest : public testing::Test {
protected:
    // The place of an operation in what was done to the real files; -1 when it wasn't.
    int indexOf(const std::string& start) {
        const std::vector<std::string> done = scene_.files.operations();
        for (std::size_t i = 0; i < done.size(); ++i) {
            if (done[i].starts_with(start)) {
                return static_cast<int>(i);
            }
        }
        return -1;
    }
    // From now on: the journal is flushed, then the operation is done, for the first time.
    void expectRecordBefore(const std::string& operation) {
        const int flushed = indexOf("flush " + scene_.journalFile());
        const int done = indexOf(operation);
        EXPECT_GE(flushed, 0) << operation;
        EXPECT_GT(done, flushed) << operation;
    }
    int keptFiles() {
        std::vector<platform::DirectoryEntry> entries;
        EXPECT_EQ(scene_.files.list(scene_.journal.directory(), entries), 0);
        return static_cast<int>(entries.size()) - 1;
    }

    RemovalScene scene_;
    platform::FileSystem& files_ = scene_.removal().files;
    const RemovalScene::State before_ = scene_.state();
};

TEST_F(JournaledFilesTest, FlushesTheRecordBeforeItRemovesAFile) {
    scene_.files.clearOperations();
    EXPECT_EQ(files_.removeFile("/app/file"), 0);
    expectRecordBefore("takeAway /app/file");
}

TEST_F(JournaledFilesTest, FlushesTheRecordBeforeItRemovesADirectory) {
    scene_.files.clearOperations();
    EXPECT_EQ(files_.removeDirectory("/app/empty"), 0);
    expectRecordBefore("takeAway /app/empty");
}

TEST_F(JournaledFilesTest, FlushesCopyAndRecordBeforeItReplacesAFile) {
    scene_.files.clearOperations();
    EXPECT_EQ(files_.replaceFile("/app/file", "/app/other"), 0);
    expectRecordBefore("replaceFile /app/file");
    const int copied = indexOf("flush " + scene_.journal.keptPath(1));
    EXPECT_GE(copied, 0);
    EXPECT_LT(copied, indexOf("flush " + scene_.journalFile()));
}

TEST_F(JournaledFilesTest, FlushesTheRecordBeforeItOpensAFileForWriting) {
    scene_.files.clearOperations();
    PFileStream stream(files_);
    EXPECT_EQ(stream.openWithMode("/app/file", 0), 0);
    const std::vector<std::string> done = scene_.files.operations();
    EXPECT_EQ(done.back(), "open /app/file");
    EXPECT_GE(indexOf("flush " + scene_.journalFile()), 0);
}

TEST_F(JournaledFilesTest, ChangesNothingThatItCannotWriteDown) {
    scene_.files.failFrom(Operation::kWrite, scene_.journalFile(), 1, 28);
    std::unique_ptr<platform::Directory> directory;
    EXPECT_EQ(files_.openDirectory("/app", directory), 0);
    std::vector<platform::DirectoryEntry> entries;
    EXPECT_EQ(directory->list(entries), 0);
    EXPECT_EQ(directory->removeFile("file"), 28);
    EXPECT_EQ(files_.removeFile("/app/file"), 28);
    EXPECT_EQ(files_.removeDirectory("/app/empty"), 28);
    EXPECT_EQ(files_.moveFile("/app/file", "/app/new"), 28);
    EXPECT_EQ(files_.replaceFile("/app/file", "/app/other"), 28);
    EXPECT_EQ(files_.replaceFile("/app/file", "/app/link"), 28);
    EXPECT_EQ(files_.createDirectory("/app/new"), 28);
    std::string path;
    EXPECT_EQ(files_.createPrivateDirectory("/app", "p", path), 28);
    EXPECT_EQ(path, "");
    EXPECT_EQ(files_.makeExecutable("/app/file"), 28);
    EXPECT_EQ(files_.takeDirectoryRights("/app/file"), 28);
    EXPECT_EQ(OUtils::writeWholeFile("/app/file", "x", files_), 28);
    PFileStream stream(files_);
    EXPECT_EQ(stream.openWithMode("/app/file", 0), 28);
    EXPECT_EQ(scene_.state(), before_);
}

TEST_F(JournaledFilesTest, ReplacesNothingThatItCannotKeep) {
    scene_.files.failFrom(Operation::kCopyRights, "", 1, 13);
    EXPECT_EQ(files_.replaceFile("/app/file", "/app/other"), 13);
    EXPECT_EQ(files_.makeExecutable("/app/file"), 13);
    PFileStream stream(files_);
    EXPECT_EQ(stream.openWithMode("/app/file", 0), 13);
    EXPECT_EQ(scene_.state(), before_);
}

TEST_F(JournaledFilesTest, GivesTheSystemsStatusAndKeepsNothingOfWhatFails) {
    scene_.files.failFrom(Operation::kRemoveFile, "/app/file", 1, 32);
    EXPECT_EQ(files_.removeFile("/app/file"), 32);
    scene_.files.failFrom(Operation::kRemoveDirectory, "/app/empty", 1, 33);
    EXPECT_EQ(files_.removeDirectory("/app/empty"), 33);
    scene_.files.failFrom(Operation::kReplaceFile, "/app/other", 1, 34);
    EXPECT_EQ(files_.replaceFile("/app/other", "/app/link"), 34);
    scene_.files.failFrom(Operation::kCreateDirectory, "/app/new", 1, 35);
    EXPECT_EQ(files_.createDirectory("/app/new"), 35);
    EXPECT_NE(files_.removeFile("/app/none"), 0);
    EXPECT_NE(files_.removeFile("/app/sub"), 0);
    EXPECT_NE(files_.removeDirectory("/app/sub"), 0);
    EXPECT_NE(files_.moveFile("/app/file", "/app/other"), 0);
    EXPECT_NE(files_.moveFile("/app/none", "/app/new"), 0);
    EXPECT_EQ(files_.removeAtRestart("/app/file"), -1);
    EXPECT_EQ(scene_.state(), before_);
    EXPECT_TRUE(scene_.playBack());
    EXPECT_EQ(scene_.state(), before_);
}

TEST_F(JournaledFilesTest, CopiesWhatLiesOnAnotherVolume) {
    scene_.files.setVolume("/app");
    EXPECT_EQ(files_.removeFile("/app/program"), 0);
    EXPECT_EQ(files_.replaceFile("/app/file", "/app/other"), 0);
    EXPECT_EQ(files_.removeDirectory("/app/empty"), 0);
    EXPECT_FALSE(scene_.files.hasFile("/app/program"));
    EXPECT_TRUE(scene_.playBack());
    EXPECT_EQ(scene_.state(), before_);
    EXPECT_EQ(scene_.journal.discard(), 0);
}

TEST_F(JournaledFilesTest, LeavesALinkOnAnotherVolume) {
    scene_.files.setVolume("/app");
    EXPECT_EQ(files_.removeFile("/app/link"), MemoryFileSystem::kOtherVolume);
    EXPECT_EQ(files_.replaceFile("/app/file", "/app/link"), MemoryFileSystem::kOtherVolume);
    EXPECT_EQ(scene_.state(), before_);
}

TEST_F(JournaledFilesTest, RemovesNothingOfAnotherVolumeThatItCannotCopy) {
    scene_.files.setVolume("/app");
    scene_.files.setFreeSpace(200);
    scene_.files.addFile("/app/file", std::string(1000, 'x'));
    const RemovalScene::State full = scene_.state();
    EXPECT_NE(files_.removeFile("/app/file"), 0);
    EXPECT_EQ(scene_.state(), full);
    EXPECT_EQ(keptFiles(), 0);
}

TEST_F(JournaledFilesTest, KeepsNoContentOfArchivedFiles) {
    ASSERT_EQ(scene_.journal.noteArchived({"/app/file", "/app/program"}), 0);
    EXPECT_EQ(keptFiles(), 2);
    scene_.files.clearOperations();
    EXPECT_EQ(files_.removeFile("/app/file"), 0);
    EXPECT_EQ(OUtils::writeWholeFile("/app/program", "former", files_), 0);
    EXPECT_TRUE(scene_.files.didOperation("removeFile /app/file"));
    EXPECT_EQ(keptFiles(), 2);
}

TEST_F(JournaledFilesTest, GivesArchivedFilesBackWithTheirRights) {
    scene_.files.addFile("/app/private", "secret");
    scene_.files.takeDirectoryRights("/app/private");
    BackupFile archive(scene_.files);
    ASSERT_TRUE(archive.openForWriting("/tmp/archive"));
    const std::vector<std::string> paths = {"/app/file", "/app/program", "/app/other"};
    for (const std::string& path : paths) {
        ASSERT_EQ(archive.addFile(path, std::nullopt), std::nullopt);
    }
    ASSERT_EQ(archive.close(), 0);
    const RemovalScene::State before = scene_.state();
    ASSERT_EQ(scene_.journal.noteArchived(paths), 0);

    // One is removed, one gets the content back that was there before the product and keeps it, and of one
    // that is removed something else comes to the place.
    EXPECT_EQ(files_.removeFile("/app/file"), 0);
    EXPECT_EQ(OUtils::writeWholeFile("/app/program", "former", files_), 0);
    EXPECT_EQ(files_.removeFile("/app/other"), 0);
    EXPECT_EQ(OUtils::writeWholeFile("/app/other", "former", files_), 0);

    EXPECT_TRUE(scene_.playBack());
    EXPECT_FALSE(scene_.files.hasFile("/app/program"));
    EXPECT_FALSE(scene_.files.hasFile("/app/other"));
    RestoreQuestions questions;
    questions.rightsOf = [this](std::string_view path) { return scene_.journal.rightsOf(path); };
    EXPECT_EQ(restoreBackupFile("/tmp/archive", scene_.files, scene_.report, questions),
              RestoreResult::kDone);
    EXPECT_EQ(scene_.state(), before);
}

TEST_F(JournaledFilesTest, LeavesWhatSomebodyPutInThePlaceOfAnArchivedFile) {
    ASSERT_EQ(scene_.journal.noteArchived({"/app/file"}), 0);
    EXPECT_EQ(files_.removeFile("/app/file"), 0);
    scene_.files.addFile("/app/file", "somebody's");
    EXPECT_TRUE(scene_.playBack());
    EXPECT_EQ(scene_.files.content("/app/file"), "somebody's");
}

TEST_F(JournaledFilesTest, WritesTheRecordsOfTheDirectoriesOfAProductWithOneFlush) {
    std::vector<std::string> paths;
    for (int i = 0; i < 50; ++i) {
        paths.push_back("/app/data/" + std::to_string(i) + "/file");
        scene_.files.addFile(paths.back(), "x");
    }
    scene_.files.addFile("/app/data/7/somebody's", "x");
    ASSERT_EQ(scene_.journal.noteArchived(paths), 0);
    for (const std::string& path : paths) {
        EXPECT_EQ(files_.removeFile(path), 0);
    }
    const RemovalScene::State before = scene_.state();
    scene_.files.clearOperations();
    for (const std::string& path : paths) {
        const std::string directory = path.substr(0, path.rfind('/'));
        EXPECT_EQ(files_.removeDirectory(directory) == 0, directory != "/app/data/7");
    }
    EXPECT_EQ(scene_.files.count(Operation::kFlush), 1);
    expectRecordBefore("takeAway /app/data/0");
    EXPECT_TRUE(scene_.playBack());
    EXPECT_EQ(scene_.state(), before);
}

// What is announced counts for one removal.
TEST_F(JournaledFilesTest, WritesANewRecordForADirectoryThatCameAgain) {
    scene_.files.addFile("/app/a/file", "x");
    scene_.files.addFile("/app/b/file", "x");
    ASSERT_EQ(scene_.journal.noteArchived({"/app/a/file", "/app/b/file"}), 0);
    EXPECT_EQ(files_.removeFile("/app/a/file"), 0);
    EXPECT_EQ(files_.removeFile("/app/b/file"), 0);
    EXPECT_EQ(files_.removeDirectory("/app/a"), 0);
    scene_.files.addDirectory("/app/a");
    scene_.files.clearOperations();
    EXPECT_EQ(files_.removeDirectory("/app/b"), 0);
    EXPECT_EQ(scene_.files.count(Operation::kFlush), 0);
    EXPECT_EQ(files_.removeDirectory("/app/a"), 0);
    EXPECT_EQ(scene_.files.count(Operation::kFlush), 1);
    expectRecordBefore("takeAway /app/a");
}

TEST_F(JournaledFilesTest, RemovesNoDirectoryOfAProductThatItCannotWriteDown) {
    scene_.files.addFile("/app/a/file", "x");
    ASSERT_EQ(scene_.journal.noteArchived({"/app/a/file"}), 0);
    EXPECT_EQ(files_.removeFile("/app/a/file"), 0);
    scene_.files.failAt(Operation::kFlush, "", 1, 28);
    EXPECT_EQ(files_.removeDirectory("/app/a"), 28);
    EXPECT_TRUE(scene_.files.hasDirectory("/app/a"));
    EXPECT_EQ(files_.removeDirectory("/app/a"), 0);
}

TEST_F(JournaledFilesTest, WritesTheRecordsOfADirectoryWithOneFlush) {
    for (int i = 0; i < 100; ++i) {
        scene_.files.addFile("/app/logs/" + std::to_string(i) + ".log", "x");
    }
    const RemovalScene::State before = scene_.state();
    scene_.files.clearOperations();
    WildcardRemover remover(files_, {});
    EXPECT_EQ(remover.deleteByWildcard("/app/logs", "*.log", true), 101);
    EXPECT_LE(scene_.files.count(Operation::kFlush), 2);
    EXPECT_FALSE(scene_.files.hasDirectory("/app/logs"));
    EXPECT_TRUE(scene_.playBack());
    EXPECT_EQ(scene_.state(), before);
}

// The record was written because the directory was listed; what became of the file is others' business.
TEST_F(JournaledFilesTest, HasNothingToSayOfAListedFileThatItLeft) {
    WildcardRemover remover(files_, {});
    EXPECT_EQ(remover.deleteByWildcard("/app", "fi*", false), 1);
    scene_.files.removeFile("/app/other");
    EXPECT_TRUE(scene_.playBack());
    EXPECT_TRUE(scene_.files.hasFile("/app/file"));
    EXPECT_TRUE(scene_.notes().empty());
}

TEST_F(JournaledFilesTest, RemovesItsOwnFilesWithoutKeepingThem) {
    EXPECT_EQ(OUtils::writeWholeFile("/app/new", "x", files_), 0);
    EXPECT_EQ(files_.removeFile("/app/new"), 0);
    EXPECT_EQ(files_.createDirectory("/app/dir"), 0);
    EXPECT_EQ(files_.removeDirectory("/app/dir"), 0);
    EXPECT_EQ(keptFiles(), 0);
    EXPECT_TRUE(scene_.playBack());
    EXPECT_EQ(scene_.state(), before_);
}

// The file is left as it is at the moment of the kill: without the record of its end.
TEST_F(JournaledFilesTest, TakesBackAFileThatWasHalfWrittenWhenTheRemovalWasKilled) {
    std::unique_ptr<platform::File> file;
    platform::OpenOptions options;
    options.access = platform::kWrite;
    options.disposition = platform::Disposition::kCreateAlways;
    ASSERT_EQ(files_.open("/app/file", options, file), 0);
    std::uint32_t done = 0;
    ASSERT_EQ(file->write("half", 4, done), 0);
    EXPECT_TRUE(scene_.playBack());
    EXPECT_EQ(scene_.state(), before_);
}

TEST_F(JournaledFilesTest, KnowsTheContentOfAFileHoweverItWasWritten) {
    std::unique_ptr<platform::File> file;
    platform::OpenOptions options;
    options.access = platform::kRead | platform::kWrite;
    options.disposition = platform::Disposition::kCreateNew;
    ASSERT_EQ(files_.open("/app/new", options, file), 0);
    std::uint32_t done = 0;
    std::int64_t position = 0;
    ASSERT_EQ(file->write("abcdef", 6, done), 0);
    ASSERT_EQ(file->seek(1, platform::Origin::kStart, position), 0);
    ASSERT_EQ(file->write("X", 1, done), 0);
    ASSERT_EQ(file->seek(-2, platform::Origin::kEnd, position), 0);
    ASSERT_EQ(file->truncateHere(), 0);
    ASSERT_EQ(file->close(), 0);
    EXPECT_EQ(scene_.files.content("/app/new"), "aXcd");
    const std::vector<RemovalRecord> records = scene_.journal.read().records;
    EXPECT_EQ(records.back().step, RemovalStep::kLeft);
    EXPECT_EQ(records.back().left, contentOfPlace(scene_.files, "/app/new"));
    EXPECT_TRUE(scene_.playBack());
    EXPECT_EQ(scene_.state(), before_);
}

TEST_F(JournaledFilesTest, WritesNothingThroughALinkThatLeadsNowhere) {
    scene_.files.addLink("/app/lost", "/elsewhere/none");
    PFileStream stream(files_);
    EXPECT_NE(stream.openFile("/app/lost", PFileStream::kGenericWrite, 0, PFileStream::kCreateAlways), 0);
    EXPECT_FALSE(scene_.files.exists("/elsewhere/none"));
}

TEST_F(JournaledFilesTest, CountsRelativePathsFromTheCurrentDirectory) {
    scene_.machine.environment.current = "/app";
    EXPECT_EQ(files_.createDirectory("app/new"), 0);
    EXPECT_EQ(scene_.journal.read().records.back().path, "/app/app/new");
}

// The journal lies in it, so it can only go with that.
TEST_F(JournaledFilesTest, RemovesTheStateDirectoryWithTheJournal) {
    EXPECT_EQ(files_.removeDirectory("/var/state"), 0);
    EXPECT_TRUE(scene_.files.hasDirectory(scene_.journal.directory()));
    scene_.files.addFile("/var/other", "");
    EXPECT_NE(files_.removeDirectory("/var"), 0);
    EXPECT_EQ(scene_.journal.discard(), 0);
    EXPECT_FALSE(scene_.files.hasDirectory("/var/state"));
    EXPECT_TRUE(scene_.files.hasFile("/var/other"));
}

}  // namespace

#include "engine/removal_journal.h"

#include <gtest/gtest.h>

#include "platform/memory/memory_environment.h"
#include "platform/memory/memory_file_system.h"

namespace {

using Durability = RemovalJournal::Durability;
using Operation = MemoryFileSystem::Operation;

class RemovalJournalTest : public testing::Test {
protected:
    RemovalRecord record(const std::string& path) {
        RemovalRecord record;
        record.step = RemovalStep::kRemoveFile;
        record.path = path;
        return record;
    }
    std::vector<std::string> pathsOnDisk() {
        std::vector<std::string> paths;
        for (const RemovalRecord& found : journal_.read().records) {
            if (found.step != RemovalStep::kNote) {
                paths.push_back(found.path);
            }
        }
        return paths;
    }
    std::string file() const { return journal_.directory() + "/journal"; }

    MemoryFileSystem files_;
    MemoryEnvironment environment_;
    RemovalJournal journal_{files_, environment_};
};

TEST_F(RemovalJournalTest, LiesInAPrivateDirectoryBelowTheStateDirectory) {
    ASSERT_EQ(journal_.open(), 0);
    EXPECT_TRUE(journal_.directory().starts_with("/var/state/removal-"));
    EXPECT_TRUE(files_.isPrivate(journal_.directory()));
    EXPECT_TRUE(files_.isPrivate(file()));
    EXPECT_TRUE(files_.didOperation("flush " + file()));
}

TEST_F(RemovalJournalTest, CannotBeOpenedTwiceOrWithoutAStateDirectory) {
    environment_.state.clear();
    EXPECT_EQ(journal_.open(), -1);
    environment_.state = "/var/state";
    EXPECT_EQ(journal_.open(), 0);
    EXPECT_EQ(journal_.open(), -1);
}

TEST_F(RemovalJournalTest, ThatCannotBeMadeLeavesNothing) {
    for (const Operation operation :
         {Operation::kCreateDirectory, Operation::kOpen, Operation::kWrite, Operation::kFlush}) {
        for (int n = 1; n <= 3; ++n) {
            files_.failAt(operation, "", n, 28);
            const int status = journal_.open();
            EXPECT_TRUE(status == 0 || status == 28);
            files_.clearFaults();
            EXPECT_EQ(journal_.isOpen(), status == 0);
            EXPECT_EQ(files_.hasDirectory("/var"), status == 0) << static_cast<int>(operation) << " " << n;
            EXPECT_EQ(journal_.discard(), 0);
        }
    }
}

TEST_F(RemovalJournalTest, FlushesSeveralRecordsOnce) {
    ASSERT_EQ(journal_.open(), 0);
    files_.clearOperations();
    std::vector<RemovalRecord> records = {record("/a"), record("/b"), record("/c")};
    EXPECT_EQ(journal_.append(records, Durability::kFlushed), 0);
    EXPECT_EQ(files_.count(Operation::kFlush), 1);
    EXPECT_EQ(pathsOnDisk(), (std::vector<std::string>{"/a", "/b", "/c"}));
    EXPECT_EQ(records[2].number, records[0].number + 2);
}

TEST_F(RemovalJournalTest, WritesWithoutAFlushWhatOnlyHasToOutliveTheProcess) {
    ASSERT_EQ(journal_.open(), 0);
    files_.clearOperations();
    RemovalRecord one = record("/a");
    EXPECT_EQ(journal_.append(one, Durability::kWritten), 0);
    EXPECT_EQ(files_.count(Operation::kFlush), 0);
    EXPECT_EQ(pathsOnDisk(), std::vector<std::string>{"/a"});
}

TEST_F(RemovalJournalTest, CutsOffARecordThatCannotBeWrittenWhole) {
    ASSERT_EQ(journal_.open(), 0);
    RemovalRecord one = record("/a");
    for (std::size_t free = 0; free < frameOf(one)->size(); ++free) {
        files_.setFreeSpace(static_cast<std::int64_t>(free));
        EXPECT_EQ(journal_.append(one, Durability::kFlushed), MemoryFileSystem::kDiskFull);
    }
    files_.setFreeSpace(-1);
    files_.failAt(Operation::kFlush, "", 1, 5);
    EXPECT_EQ(journal_.append(one, Durability::kFlushed), 5);
    RemovalRecord two = record("/b");
    EXPECT_EQ(journal_.append(two, Durability::kFlushed), 0);
    EXPECT_TRUE(journal_.read().isWhole);
    EXPECT_EQ(pathsOnDisk(), std::vector<std::string>{"/b"});
}

TEST_F(RemovalJournalTest, WritesNothingBehindARecordThatItCannotCutOff) {
    ASSERT_EQ(journal_.open(), 0);
    RemovalRecord longest = record("/a/rather/long/path");
    RemovalRecord next = record("/b");
    files_.setFreeSpace(static_cast<std::int64_t>(frameOf(longest)->size()) - 1);
    files_.failFrom(Operation::kTruncate, file(), 1);
    EXPECT_EQ(journal_.append(longest, Durability::kFlushed), MemoryFileSystem::kDiskFull);
    files_.setFreeSpace(-1);
    EXPECT_EQ(journal_.append(next, Durability::kFlushed), MemoryFileSystem::kAccessDenied);
    EXPECT_TRUE(journal_.read().isWhole);
    EXPECT_EQ(pathsOnDisk(), std::vector<std::string>());
    files_.clearFaults();
    EXPECT_EQ(journal_.append(next, Durability::kFlushed), 0);
    EXPECT_TRUE(journal_.read().isWhole);
    EXPECT_EQ(pathsOnDisk(), std::vector<std::string>{"/b"});
}

TEST_F(RemovalJournalTest, RefusesARecordThatNobodyCouldRead) {
    ASSERT_EQ(journal_.open(), 0);
    RemovalRecord large = record("/a");
    large.before.push_back({"", 3, std::string(17 * 1024 * 1024, 'x')});
    EXPECT_EQ(journal_.append(large, Durability::kFlushed), -1);
    EXPECT_TRUE(pathsOnDisk().empty());
}

TEST_F(RemovalJournalTest, IsContinuedByALaterRun) {
    ASSERT_EQ(journal_.open(), 0);
    files_.addFile("/app/file", "x");
    EXPECT_EQ(journal_.note("product", "Demo"), 0);
    EXPECT_EQ(journal_.note("product", "Demo 2"), 0);
    EXPECT_EQ(journal_.noteArchived({"/app/file"}), 0);
    const std::string rights = journal_.rightsOf("/app/file");
    RemovalRecord one = record("/a");
    EXPECT_EQ(journal_.append(one, Durability::kFlushed), 0);

    RemovalJournal later(files_, environment_);
    EXPECT_EQ(later.directoriesOnDisk(), std::vector<std::string>{journal_.directory()});
    ASSERT_EQ(later.resume(journal_.directory()), 0);
    EXPECT_EQ(later.noteOf("product"), "Demo 2");
    EXPECT_EQ(later.noteOf("log"), std::nullopt);
    EXPECT_TRUE(later.isArchived("\\app\\file"));
    EXPECT_EQ(later.rightsOf("/app/file"), rights);
    RemovalRecord two = record("/b");
    EXPECT_EQ(later.append(two, Durability::kFlushed), 0);
    EXPECT_EQ(two.number, one.number + 1);
    EXPECT_NE(later.keptPath(later.nextKept()), rights);
    EXPECT_EQ(later.read().records.back().path, "/b");
    EXPECT_EQ(later.discard(), 0);
    EXPECT_FALSE(files_.hasDirectory("/var"));
}

TEST_F(RemovalJournalTest, IsContinuedAfterATornRecord) {
    ASSERT_EQ(journal_.open(), 0);
    RemovalRecord one = record("/a");
    EXPECT_EQ(journal_.append(one, Durability::kFlushed), 0);
    const std::string whole = files_.content(file());
    EXPECT_EQ(journal_.append(one, Durability::kFlushed), 0);
    const std::string longer = files_.content(file());
    for (std::size_t length = whole.size(); length < longer.size(); ++length) {
        files_.addFile(file(), longer.substr(0, length));
        RemovalJournal later(files_, environment_);
        ASSERT_EQ(later.resume(journal_.directory()), 0);
        RemovalRecord next = record("/next");
        EXPECT_EQ(later.append(next, Durability::kFlushed), 0);
        const ReadRecords read = later.read();
        EXPECT_TRUE(read.isWhole) << length;
        ASSERT_EQ(read.records.size(), 3U) << length;
        EXPECT_EQ(read.records.back().path, "/next");
    }
}

TEST_F(RemovalJournalTest, IsOnlyContinuedWhereThereIsOne) {
    RemovalJournal later(files_, environment_);
    files_.addFile("/var/state/removal-1/journal", "something else");
    EXPECT_NE(later.resume("/var/state/removal-1"), 0);
    EXPECT_NE(later.resume("/var/state/removal-2"), 0);
    EXPECT_FALSE(later.isOpen());
    EXPECT_EQ(later.directory(), "");
    files_.addFile("/var/state/other/journal", "");
    files_.addDirectory("/var/state/removal-3");
    EXPECT_EQ(later.directoriesOnDisk(), std::vector<std::string>{"/var/state/removal-1"});
}

TEST_F(RemovalJournalTest, KeepsTheRightsOfArchivedFilesWithOneFlush) {
    ASSERT_EQ(journal_.open(), 0);
    files_.addFile("/app/tool", "code");
    files_.makeExecutable("/app/tool");
    files_.addFile("/app/odd", "");
    files_.addLink("/app/link", "/app/tool");
    files_.failFrom(Operation::kCopyRights, journal_.directory() + "/2", 1);
    files_.clearOperations();
    EXPECT_EQ(journal_.noteArchived({"/app/tool", "/app/odd", "/app/link", "/app/none"}), 0);
    EXPECT_EQ(files_.count(Operation::kFlush), 1);
    EXPECT_TRUE(journal_.isArchived("/app/tool"));
    EXPECT_TRUE(files_.isExecutable(journal_.rightsOf("/app/tool")));
    EXPECT_EQ(files_.content(journal_.rightsOf("/app/tool")), "");
    for (const char* const path : {"/app/odd", "/app/link", "/app/none"}) {
        EXPECT_FALSE(journal_.isArchived(path)) << path;
        EXPECT_EQ(journal_.rightsOf(path), "") << path;
    }
}

TEST_F(RemovalJournalTest, KeepsEqualRightsOfArchivedFilesOnce) {
    ASSERT_EQ(journal_.open(), 0);
    for (const char* const path : {"/app/a", "/app/tool", "/app/b", "/app/tool2"}) {
        files_.addFile(path, "");
    }
    files_.makeExecutable("/app/tool");
    files_.makeExecutable("/app/tool2");
    files_.clearOperations();
    EXPECT_EQ(journal_.noteArchived({"/app/a", "/app/tool", "/app/b", "/app/tool2"}), 0);
    EXPECT_EQ(files_.count(Operation::kCopyRights), 2);
    EXPECT_EQ(journal_.rightsOf("/app/a"), journal_.rightsOf("/app/b"));
    EXPECT_EQ(journal_.rightsOf("/app/tool"), journal_.rightsOf("/app/tool2"));
    EXPECT_TRUE(files_.isExecutable(journal_.rightsOf("/app/tool2")));
    EXPECT_FALSE(files_.isExecutable(journal_.rightsOf("/app/b")));
}

// A file with equal rights may not get those of one whose rights are lost.
TEST_F(RemovalJournalTest, KeepsEqualRightsWithTheNextFileAfterAFailure) {
    ASSERT_EQ(journal_.open(), 0);
    files_.addFile("/app/a", "");
    files_.addFile("/app/b", "");
    files_.failFrom(Operation::kCopyRights, journal_.directory() + "/1", 1);
    EXPECT_EQ(journal_.noteArchived({"/app/a", "/app/b"}), 0);
    EXPECT_FALSE(journal_.isArchived("/app/a"));
    EXPECT_TRUE(journal_.isArchived("/app/b"));
    EXPECT_EQ(journal_.rightsOf("/app/b"), journal_.directory() + "/2");
}

TEST_F(RemovalJournalTest, KnowsNoArchivedFilesWhoseRecordsCouldNotBeWritten) {
    ASSERT_EQ(journal_.open(), 0);
    files_.addFile("/app/tool", "code");
    files_.failAt(Operation::kFlush, "", 1, 28);
    EXPECT_EQ(journal_.noteArchived({"/app/tool"}), 28);
    EXPECT_FALSE(journal_.isArchived("/app/tool"));
}

TEST_F(RemovalJournalTest, TakesItsStateDirectoryWithItOnlyIfItMadeIt) {
    files_.addDirectory("/var/state");
    ASSERT_EQ(journal_.open(), 0);
    EXPECT_EQ(journal_.discard(), 0);
    EXPECT_TRUE(files_.hasDirectory("/var/state"));
    EXPECT_EQ(journal_.directory(), "");
}

TEST_F(RemovalJournalTest, LeavesAStateDirectoryThatOthersUse) {
    ASSERT_EQ(journal_.open(), 0);
    files_.addFile("/var/state/written-1.md5", "");
    EXPECT_EQ(journal_.discard(), 0);
    EXPECT_TRUE(files_.hasFile("/var/state/written-1.md5"));
    EXPECT_TRUE(journal_.directoriesOnDisk().empty());
}

TEST_F(RemovalJournalTest, KeepsItsRecordsWhileAKeptFileCannotBeRemoved) {
    ASSERT_EQ(journal_.open(), 0);
    const std::string kept = journal_.keptPath(journal_.nextKept());
    files_.addFile(kept, "x");
    files_.failAt(Operation::kRemoveFile, kept, 1);
    const std::string directory = journal_.directory();
    EXPECT_NE(journal_.discard(), 0);
    EXPECT_TRUE(files_.hasFile(directory + "/journal"));
    EXPECT_EQ(journal_.discard(), 0);
    EXPECT_FALSE(files_.hasDirectory(directory));
}

TEST_F(RemovalJournalTest, WritesSeveralNotesWithOneFlush) {
    ASSERT_EQ(journal_.open(), 0);
    const int flushes = files_.count(MemoryFileSystem::Operation::kFlush);
    ASSERT_EQ(journal_.note({{"a", "1"}, {"b", "2"}}), 0);
    EXPECT_EQ(files_.count(MemoryFileSystem::Operation::kFlush), flushes + 1);
    EXPECT_EQ(journal_.noteOf("a"), "1");
    EXPECT_EQ(journal_.noteOf("b"), "2");
}

TEST_F(RemovalJournalTest, IsLookedAtWithoutATouch) {
    ASSERT_EQ(journal_.open(), 0);
    ASSERT_EQ(journal_.note("a", "1"), 0);
    const std::string path = journal_.directory() + "/journal";
    const std::string torn = files_.content(path) + "\x9eRe";
    files_.addFile(path, torn);
    RemovalJournal other(files_, environment_);
    EXPECT_TRUE(other.look(journal_.directory()));
    EXPECT_EQ(other.noteOf("a"), "1");
    EXPECT_FALSE(other.isOpen());
    EXPECT_EQ(files_.content(path), torn);
    EXPECT_FALSE(other.look("/var/state/removal-none"));
}

}  // namespace

#include "engine/changes/directory_change.h"

#include <gmock/gmock.h>

#include "engine/changes/change_fixture.h"
#include "engine/kept_files.h"
#include "engine/line_reader.h"

namespace {

using Operation = MemoryFileSystem::Operation;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

class DirectoryChangeTest : public ChangeTest {
protected:
    MemoryFileSystem& files_ = machine_.files;
    DirectoryChange change_{context_};
};

class DirectoryCreateTest : public DirectoryChangeTest {
protected:
    // Also finds out what was recorded.
    bool create(std::string_view path) {
        const std::size_t before = records().size();
        const bool done = change_.create(path);
        record_ = records().substr(before);
        return done;
    }
    // The levels of the last record; 0 without one.
    int created() const {
        if (record_.empty()) {
            return 0;
        }
        EXPECT_TRUE(record_.starts_with("DIR\t"));
        return std::stoi(record_.substr(4));
    }

    std::string record_;
};

class DirectoryUndoTest : public DirectoryChangeTest {
protected:
    bool remove(const std::string& path, int levels) {
        return note(std::to_string(levels) + "\t" + path) && change_.finishUndo();
    }
    bool note(const std::string& fields) { return change_.undo({"DIR", fields}); }
    std::vector<std::string> lines() { return ui_.callsOf("addFileLine(\""); }
};

class RemoveEmptyDirectoriesTest : public testing::Test {
protected:
    MemoryFileSystem files_;
};

TEST_F(DirectoryCreateTest, CreatesEachMissingLevelAndCountsThem) {
    files_.addDirectory("C:\\apps");
    EXPECT_TRUE(create("C:\\apps\\demo/bin\\"));
    EXPECT_EQ(created(), 2);
    EXPECT_TRUE(files_.hasDirectory("C:\\apps\\demo\\bin"));
}

TEST_F(DirectoryCreateTest, SkipsTheRoot) {
    EXPECT_TRUE(create("C:\\apps\\"));
    EXPECT_EQ(created(), 1);
    EXPECT_TRUE(create("/a/bc/"));
    EXPECT_EQ(created(), 2);
    EXPECT_TRUE(files_.hasDirectory("/a/bc"));
}

TEST_F(DirectoryCreateTest, TakesWhatFollowsTheLastSeparatorForAFilesName) {
    EXPECT_TRUE(create("/apps/demo"));
    EXPECT_EQ(created(), 1);
    EXPECT_FALSE(files_.hasDirectory("/apps/demo"));
}

TEST_F(DirectoryCreateTest, LeavesPathsUnderFourBytesAlone) {
    EXPECT_TRUE(create(""));
    EXPECT_TRUE(create("C:\\"));
    EXPECT_TRUE(create("/a/"));
    EXPECT_EQ(created(), 0);
    EXPECT_EQ(files_.count(Operation::kCreateDirectory), 0);
}

// The undo counts from the deepest level.
TEST_F(DirectoryCreateTest, StopsAtALevelThatCannotBeCreatedAndRecordsAllOfThem) {
    files_.failAt(Operation::kCreateDirectory, "/a/b", 1);
    EXPECT_FALSE(create("/a/b/c/"));
    EXPECT_EQ(created(), 3);
    EXPECT_FALSE(files_.hasDirectory("/a/b/c"));
    EXPECT_TRUE(change_.undo({"DIR", "3\t/a/b/c/"}));
    EXPECT_TRUE(change_.finishUndo());
    EXPECT_FALSE(files_.hasDirectory("/a"));
}

TEST_F(DirectoryCreateTest, FailsWhereAFileIsInTheWay) {
    files_.addFile("/opt/demo", "x");
    EXPECT_FALSE(create("/opt/demo/bin/"));
    EXPECT_FALSE(create("/opt/demo/bin/"));
    EXPECT_EQ(files_.content("/opt/demo"), "x");
    EXPECT_THAT(ui_.callsOf("addMessage"), ElementsAre(StartsWith("addMessage(\"/opt/demo: ")));
}

TEST_F(DirectoryCreateTest, TriesAgainAfterAFailure) {
    files_.failAt(Operation::kCreateDirectory, "/a/b", 1);
    EXPECT_FALSE(create("/a/b/"));
    EXPECT_TRUE(create("/a/b/"));
    EXPECT_EQ(created(), 1);
}

TEST_F(DirectoryCreateTest, AsksTheDiskOnceForADirectory) {
    EXPECT_TRUE(create("/apps/demo/"));
    files_.clearOperations();
    EXPECT_TRUE(create("/apps/demo/"));
    EXPECT_EQ(created(), 0);
    EXPECT_TRUE(create("/apps/demo/more/"));
    EXPECT_EQ(created(), 1);
    EXPECT_EQ(files_.operations(), std::vector<std::string>{"createDirectory /apps/demo/more"});
}

TEST_F(DirectoryCreateTest, MakesNothingOfAPathThatItsRecordCannotHold) {
    std::string path = "/";
    for (int i = 0; i < 203; ++i) {
        path += "abcd/";
    }
    EXPECT_FALSE(create(path));  // 1,016 bytes, and the record has room for 1,014
    EXPECT_FALSE(create("/a\tb/"));
    EXPECT_FALSE(create("/a\nFILE\tCREATE/"));
    EXPECT_EQ(created(), 0);
    EXPECT_TRUE(files_.operations().empty());
    EXPECT_TRUE(create(path.substr(0, 1011)));
    EXPECT_EQ(created(), 202);
}

TEST_F(DirectoryCreateTest, RecordsTheWholePathWithItsLevels) {
    EXPECT_TRUE(create("/apps/demo/"));
    EXPECT_EQ(record_, "DIR\t2\t/apps/demo/\r\n");
}

TEST_F(DirectoryUndoTest, RemovesTheLevelsFromTheDeepestOn) {
    files_.addFile("/keep/file", "");
    files_.addDirectory("/keep/a/b");
    EXPECT_TRUE(remove("/keep/a/b/", 2));
    EXPECT_FALSE(files_.hasDirectory("/keep/a"));
    EXPECT_TRUE(files_.hasFile("/keep/file"));
    EXPECT_THAT(lines(),
                ElementsAre("addFileLine(\"Remove /keep/a/b\", 0)", "addFileLine(\"Remove /keep/a\", 0)"));
    EXPECT_THAT(errors_, IsEmpty());
}

TEST_F(DirectoryUndoTest, TakesAPathWithoutASeparatorAtItsEndOnceAsAWhole) {
    files_.addFile("/keep/file", "");
    files_.addDirectory("/keep/a/b");
    EXPECT_TRUE(remove("/keep/a/b", 1));
    EXPECT_THAT(lines(),
                ElementsAre("addFileLine(\"Remove /keep/a/b\", 0)", "addFileLine(\"Remove /keep/a\", 0)"));
}

TEST_F(DirectoryUndoTest, FailsForDirectoriesWithForeignFiles) {
    files_.addFile("/a/b/mine", "");
    EXPECT_FALSE(remove("\\a\\b\\", 2));
    EXPECT_TRUE(files_.hasFile("/a/b/mine"));
    EXPECT_THAT(errors_, ElementsAre("FAILED to remove " + writtenPath("\\a\\b"),
                                     "FAILED to remove " + writtenPath("\\a")));
    EXPECT_THAT(ui_.callsOf("addMessage"),
                ElementsAre(StartsWith("addMessage(\"" + writtenPath("\\a\\b") + ": "),
                            StartsWith("addMessage(\"" + writtenPath("\\a") + ": ")));
}

TEST_F(DirectoryUndoTest, TakesMissingDirectoriesForRemoved) {
    EXPECT_TRUE(remove("/none/at/all/", 3));
    EXPECT_THAT(errors_, IsEmpty());
}

TEST_F(DirectoryUndoTest, DoesNothingWithoutLevelsOrAPath) {
    files_.addDirectory("/a");
    for (const int levels : {0, -1}) {
        EXPECT_TRUE(remove("/a/", levels));
    }
    EXPECT_TRUE(remove("", 3));
    EXPECT_TRUE(remove("/", 2147483647));
    EXPECT_TRUE(files_.hasDirectory("/a"));
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(DirectoryUndoTest, WaitsForTheEndAndRemovesTheLastOneFirst) {
    files_.addFile("/keep/file", "");
    files_.addDirectory("/keep/a/b");
    EXPECT_TRUE(note("1\t/keep/a/"));
    EXPECT_TRUE(note("1\t/keep/a/b/"));
    EXPECT_TRUE(files_.hasDirectory("/keep/a/b"));
    EXPECT_TRUE(change_.finishUndo());
    EXPECT_THAT(lines(),
                ElementsAre("addFileLine(\"Remove /keep/a/b\", 0)", "addFileLine(\"Remove /keep/a\", 0)"));
}

TEST_F(DirectoryUndoTest, WaitsForDirectoriesThatHoldOnlyWhatIsPostponed) {
    KeptFiles kept(files_);
    DirectoryChange change(context_, &kept);
    files_.addFile("/app/un/log", "");
    files_.addDirectory("/app/bin");
    kept.hold("/app/un/log");
    EXPECT_TRUE(kept.postponesFile("/app/un/log"));
    EXPECT_TRUE(change.undo({"DIR", "2\t/app/un/"}));
    EXPECT_TRUE(change.undo({"DIR", "1\t/app/bin/"}));
    EXPECT_TRUE(change.finishUndo());
    EXPECT_THAT(lines(), ElementsAre("addFileLine(\"Remove /app/bin\", 0)"));
    EXPECT_TRUE(files_.hasDirectory("/app/un"));
    kept.release();
    files_.removeFile("/app/un/log");
    EXPECT_TRUE(change.finishUndo());
    EXPECT_FALSE(files_.hasDirectory("/app"));
    EXPECT_EQ(lines().size(), 3U);
}

TEST_F(DirectoryUndoTest, CountsEachDirectoryAsAStep) {
    EXPECT_TRUE(note("1\t/none/"));
    EXPECT_TRUE(note("1\t/neither/"));
    EXPECT_TRUE(change_.finishUndo());
    EXPECT_EQ(ui_.callsOf("setCurrentProgress"),
              (std::vector<std::string>{"setCurrentProgress(0)", "setCurrentProgress(50)"}));
}

TEST_F(RemoveEmptyDirectoriesTest, RemovesADirectoryAndWhatBecomesEmptyAboveIt) {
    files_.addDirectory("/keep/a/b/c");
    files_.addFile("/keep/file", "x");
    EXPECT_EQ(removeEmptyDirectories(files_, "/keep/a/b/c/"), 3);
    EXPECT_TRUE(files_.hasDirectory("/keep"));
    EXPECT_FALSE(files_.hasDirectory("/keep/a"));
}

TEST_F(RemoveEmptyDirectoriesTest, LeavesADirectoryThatHoldsAnything) {
    files_.addFile("/a/b/file", "x");
    EXPECT_EQ(removeEmptyDirectories(files_, "\\a\\b"), 0);
    files_.addDirectory("/c/d/e");
    EXPECT_EQ(removeEmptyDirectories(files_, "/c/d"), 0);
    files_.addLink("/f/link", "/a");
    EXPECT_EQ(removeEmptyDirectories(files_, "/f"), 0);
    EXPECT_TRUE(files_.hasFile("/a/b/file"));
    EXPECT_TRUE(files_.hasDirectory("/c/d/e"));
}

TEST_F(RemoveEmptyDirectoriesTest, EndsTheClimbAtASecondChild) {
    files_.addDirectory("/a/b/c");
    files_.addDirectory("/a/other");
    EXPECT_EQ(removeEmptyDirectories(files_, "/a/b/c"), 2);
    EXPECT_TRUE(files_.hasDirectory("/a/other"));
}

TEST_F(RemoveEmptyDirectoriesTest, EndsTheClimbAtADirectoryOfTheSystem) {
    files_.addMarkedDirectory("/opt");
    files_.addDirectory("/opt/product");
    EXPECT_EQ(removeEmptyDirectories(files_, "/opt/product"), 1);
    EXPECT_TRUE(files_.hasDirectory("/opt"));
    EXPECT_EQ(removeEmptyDirectories(files_, "/opt"), 0);
}

TEST_F(RemoveEmptyDirectoriesTest, IgnoresWhatIsNoDirectory) {
    files_.addFile("/a/file", "x");
    files_.addLink("/a/link", "/a/b");
    files_.addDirectory("/a/b");
    for (const char* path : {"", "/", "\\\\", "/none", "/a/file", "/a/link"}) {
        EXPECT_EQ(removeEmptyDirectories(files_, path), 0) << path;
    }
    EXPECT_TRUE(files_.hasDirectory("/a/b"));
}

TEST_F(RemoveEmptyDirectoriesTest, RemovesNothingMoreAboveADirectoryThatResists) {
    files_.addDirectory("/a/b");
    files_.addFile("/x", "");
    files_.failAt(MemoryFileSystem::Operation::kRemoveDirectory, "/a", 1);
    EXPECT_EQ(removeEmptyDirectories(files_, "/a/b"), 0);
    EXPECT_TRUE(files_.hasDirectory("/a"));
}

TEST_F(DirectoryCreateTest, RecordsNothingWhereNoLevelCanBeCreated) {
    files_.failAt(Operation::kCreateDirectory, "/a", 1);
    EXPECT_FALSE(create("/a/b/c/"));
    EXPECT_EQ(created(), 0);
}

TEST_F(DirectoryUndoTest, RemovesWhatAKilledInstallationLeftBesideItsFiles) {
    files_.addFile("/a/b/.tandrel-1.tmp", "half");
    EXPECT_TRUE(remove("/a/b/", 2));
    EXPECT_FALSE(files_.hasDirectory("/a"));
    files_.addFile("/a/b/.tandrel-1.tmp", "half");
    files_.addFile("/a/b/own", "");
    EXPECT_FALSE(remove("/a/b/", 2));
    EXPECT_TRUE(files_.hasFile("/a/b/.tandrel-1.tmp"));
}

TEST_F(DirectoryUndoTest, HandlesEventsBeforeEachDirectory) {
    EXPECT_TRUE(note("1\t/none/"));
    EXPECT_TRUE(note("1\t/neither/"));
    ui_.calls.clear();
    EXPECT_TRUE(change_.finishUndo());
    EXPECT_EQ(ui_.countOf("pumpEvents()"), 2);
}

}  // namespace

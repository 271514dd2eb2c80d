#include "engine/undo_walk.h"

#include <gmock/gmock.h>

#include "engine_fixture.h"
#include "support/p_file_console.h"
#include "support/p_file_stream.h"

namespace {

using testing::ElementsAre;

class UndoWalkTest : public EngineTest {
protected:
    void undo(const std::string& records) {
        files_.addFile("/log", records);
        PFileStream log(files_);
        ASSERT_EQ(log.openFile("/log", PFileStream::kGenericRead, PFileStream::kShareRead,
                               PFileStream::kOpenExisting),
                  0);
        walk_.undoRecords(log, 0);
    }

    PFileConsole file_{files_};
    ActionLogWriter writer_{file_};
    ChangeJob job_{parts_, writer_, report_};
    bool toEnd_ = false;
    UndoWalk walk_{job_, [this] { return toEnd_; }};
};

TEST_F(UndoWalkTest, PostponesTheFilesThatAreHeldAndDeletesOneOrAllOfThem) {
    for (const char* const path : {"/a", "/b", "/c"}) {
        files_.addFile(path, "");
    }
    job_.kept.hold("/b");
    job_.kept.hold("/c");
    undo("FILE\tCREATE\t/b\nFILE\tCREATE\t/c\nFILE\tCREATE\t/a\n");
    EXPECT_THAT(files_.allFiles(), ElementsAre("/b", "/c", "/log"));
    job_.kept.release();
    walk_.deletePostponed("\\c");
    EXPECT_THAT(files_.allFiles(), ElementsAre("/b", "/log"));
    walk_.deletePostponed();
    EXPECT_THAT(files_.allFiles(), ElementsAre("/log"));
    EXPECT_THAT(ui_.callsOf("addFileLine(\""),
                ElementsAre("addFileLine(\"Delete /a\", 0)", "addFileLine(\"Delete /c\", 0)",
                            "addFileLine(\"Delete /b\", 0)"));
    EXPECT_FALSE(walk_.hasFailed());
}

TEST_F(UndoWalkTest, KeepsTheRestWhenAPostponedFileStays) {
    for (const char* const path : {"/b", "/c"}) {
        files_.addFile(path, "");
        job_.kept.hold(path);
    }
    undo("FILE\tCREATE\t/b\nFILE\tCREATE\t/c\n");
    job_.kept.release();
    files_.failAt(MemoryFileSystem::Operation::kRemoveFile, "/b", 1);
    walk_.deletePostponed();
    EXPECT_TRUE(walk_.hasFailed());
    EXPECT_TRUE(files_.hasFile("/c"));
}

TEST_F(UndoWalkTest, HoldsTheScriptsOfEdits) {
    files_.addFile("/script", "1\nx\n1\ny\n");
    files_.addFile("/edited", "x\ny\n");
    undo("FILE\tCREATE\t/script\nMODIFYFILE\tADDAFTER\t/edited\t/script\n");
    EXPECT_TRUE(files_.hasFile("/script"));
    EXPECT_FALSE(walk_.hasFailed());
    job_.kept.release();
    walk_.deletePostponed("");
    EXPECT_TRUE(files_.hasFile("/script"));
    walk_.deletePostponed();
    EXPECT_FALSE(files_.hasFile("/script"));
}

TEST_F(UndoWalkTest, UndoesNothingMoreOnceItIsAskedToEnd) {
    files_.addFile("/a", "");
    toEnd_ = true;
    undo("FILE\tCREATE\t/a\nDIR\t1\t/none/\n");
    walk_.finish(UndoEnd::kAfterCleaning);
    EXPECT_TRUE(files_.hasFile("/a"));
    EXPECT_TRUE(walk_.hasFailed());
}

TEST_F(UndoWalkTest, FailsForALogThatCannotBeReadToItsEnd) {
    files_.failFrom(MemoryFileSystem::Operation::kRead, "/log", 1);
    undo("FILE\tCREATE\t/a\n");
    EXPECT_TRUE(walk_.hasFailed());
    EXPECT_EQ(ui_.countOf("addMessage(\"The install log can't be read to its end."), 1);
}

TEST_F(UndoWalkTest, DeletesNothingByALogWhoseEditsCannotAllBeRead) {
    files_.addFile("/script", "1\nx\n1\ny\n");
    files_.failAt(MemoryFileSystem::Operation::kRead, "/log", 1);
    undo("FILE\tCREATE\t/script\nMODIFYFILE\tADDAFTER\t/edited\t/script\n");
    EXPECT_TRUE(files_.hasFile("/script"));
}

TEST_F(UndoWalkTest, PassesOverALastRecordThatWasWrittenInPart) {
    files_.addFile("/a", "");
    files_.addFile("/ab", "");
    undo("FILE\tCREATE\t/ab\nFILE\tCREATE\t/a");
    EXPECT_TRUE(files_.hasFile("/a"));
    EXPECT_FALSE(files_.hasFile("/ab"));
    EXPECT_FALSE(walk_.hasFailed());
    EXPECT_EQ(ui_.countOf("addMessage(\"The last record of the install log is not complete."), 1);
}

TEST_F(UndoWalkTest, LeavesWhatWasInAPlaceBeforeTheChange) {
    files_.addFile("/a", "abc");
    files_.addFile("/b", "ours");
    job_.kept.hold("/kept");
    files_.addFile("/kept", "abc");
    const std::string before = "BEFORE\t900150983cd24fb0d6963f7d28e17f72\n";
    undo(before + "FILE\tCREATE\t/a\n" + before + "FILE\tCREATE\t/b\n" + before + "FILE\tCREATE\t/kept\n");
    job_.kept.release();
    walk_.deletePostponed("");
    EXPECT_THAT(files_.allFiles(), ElementsAre("/a", "/kept", "/log"));
    EXPECT_FALSE(walk_.hasFailed());
}

TEST_F(UndoWalkTest, HandlesEventsForEachRecord) {
    undo("REGVAL\tx\nUNKNOWN\ty\nFILE\tCREATE\t/none\n");
    EXPECT_EQ(ui_.countOf("pumpEvents()"), 6);  // in both passes
}

}  // namespace

#include "engine/file_playback.h"

#include <gtest/gtest.h>

#include "removal_fixture.h"

namespace {

using Operation = MemoryFileSystem::Operation;
using platform::PathKind;

// Records by hand, on a machine where nothing, something or something else happened.
class FilePlaybackTest : public testing::Test {
protected:
    FilePlaybackTest() { scene_.removal(); }

    RemovalRecord record(RemovalStep step, const std::string& path, std::uint32_t kept = 0) {
        RemovalRecord record;
        record.step = step;
        record.path = path;
        record.kept = kept;
        return record;
    }
    void keep(std::uint32_t number, const std::string& content) {
        files_.addFile(scene_.journal.keptPath(number), content);
    }
    PlaceContent contentOf(const std::string& text) {
        return {PathKind::kFile, static_cast<std::int64_t>(text.size()), md5Of(text.data(), text.size())};
    }
    bool takeBack(const RemovalRecord& record) {
        return FilePlayback(files_, scene_.journal, scene_.report).takeBack(record);
    }
    std::string note() const { return scene_.notes().empty() ? "" : scene_.notes().back(); }

    RemovalScene scene_;
    MemoryFileSystem& files_ = scene_.files;
};

TEST_F(FilePlaybackTest, NamesARemovedFileOfWhichNothingIsKept) {
    EXPECT_FALSE(takeBack(record(RemovalStep::kRemoveFile, "/app/gone", 9)));
    EXPECT_NE(note().find("/app/gone: can't be brought back, because what was kept of it is gone"),
              std::string::npos);
}

TEST_F(FilePlaybackTest, AcceptsACopyOfAFileThatWasNeverRemoved) {
    keep(9, "content");
    EXPECT_TRUE(takeBack(record(RemovalStep::kRemoveFile, "/app/file", 9)));
    EXPECT_EQ(files_.content("/app/file"), "content");
}

TEST_F(FilePlaybackTest, GivesTheReasonWhyAFileCannotComeBack) {
    keep(9, "x");
    files_.setReadOnly("/app/gone", 13);
    EXPECT_FALSE(takeBack(record(RemovalStep::kRemoveFile, "/app/gone", 9)));
    EXPECT_NE(note().find("/app/gone: can't be brought back: "), std::string::npos);
    files_.clearFaults();
    EXPECT_TRUE(takeBack(record(RemovalStep::kRemoveFile, "/app/gone", 9)));
    EXPECT_EQ(files_.content("/app/gone"), "x");
}

TEST_F(FilePlaybackTest, PutsNothingThroughALinkThatCameToThePlace) {
    keep(9, "kept");
    files_.addLink("/app/gone", "/app/file");
    EXPECT_FALSE(takeBack(record(RemovalStep::kRemoveFile, "/app/gone", 9)));
    RemovalRecord replaced = record(RemovalStep::kReplaceFile, "/app/gone", 9);
    replaced.left = contentOf("content");  // what the link leads to
    replaced.other = "/app/.tmp";
    replaced.flags = RemovalRecord::kSourceIsOurs;
    EXPECT_FALSE(takeBack(replaced));
    EXPECT_EQ(files_.kindOf("/app/gone"), PathKind::kLink);
    EXPECT_EQ(files_.content("/app/file"), "content");
}

TEST_F(FilePlaybackTest, MakesADirectoryAgainOfWhichNothingIsKept) {
    EXPECT_TRUE(takeBack(record(RemovalStep::kRemoveDirectory, "/app/dir", 9)));
    EXPECT_TRUE(files_.hasDirectory("/app/dir"));
    EXPECT_TRUE(takeBack(record(RemovalStep::kRemoveDirectory, "/app/dir", 9)));
}

TEST_F(FilePlaybackTest, LeavesAFileInThePlaceOfADirectory) {
    EXPECT_FALSE(takeBack(record(RemovalStep::kRemoveDirectory, "/app/file", 9)));
    EXPECT_FALSE(takeBack(record(RemovalStep::kCreateDirectory, "/app/file")));
    EXPECT_TRUE(files_.hasFile("/app/file"));
    EXPECT_EQ(scene_.notes().size(), 2U);
}

// Halfway: the new file has gone back to its place, the former one hasn't come.
TEST_F(FilePlaybackTest, FinishesAReplacementThatWasTakenBackHalf) {
    keep(9, "former");
    RemovalRecord replaced = record(RemovalStep::kReplaceFile, "/app/target", 9);
    replaced.other = "/app/file";
    replaced.left = contentOf("content");
    EXPECT_TRUE(takeBack(replaced));
    EXPECT_EQ(files_.content("/app/target"), "former");
    EXPECT_EQ(files_.content("/app/file"), "content");
}

// Before it could say that the file is back.
TEST_F(FilePlaybackTest, GoesOnAfterAPlaybackThatWasKilledWhenItHadMovedTheFileBack) {
    files_.addFile("/app/file", "as before");
    EXPECT_TRUE(takeBack(record(RemovalStep::kReplaceFile, "/app/file", 9)));
    RemovalRecord ended = record(RemovalStep::kReplaceFile, "/app/file", 9);
    ended.left = contentOf("what the removal left");
    EXPECT_TRUE(takeBack(ended));
    ended.left = contentOf("as before");  // it may leave what it found
    EXPECT_TRUE(takeBack(ended));
    EXPECT_EQ(files_.content("/app/file"), "as before");
}

TEST_F(FilePlaybackTest, NamesAChangedFileOfWhichNothingIsKept) {
    files_.addFile("/app/file", "left");
    RemovalRecord changed = record(RemovalStep::kReplaceFile, "/app/file", 9);
    changed.left = contentOf("left");
    FilePlayback playback(files_, scene_.journal, scene_.report);
    EXPECT_TRUE(playback.takeBack(record(RemovalStep::kCreateFile, "/app/new")));
    EXPECT_FALSE(playback.takeBack(changed));
    EXPECT_NE(note().find("/app/file: can't be brought back, because what was kept of it is gone"),
              std::string::npos);
}

TEST_F(FilePlaybackTest, NamesAMovedFileThatIsGoneFromBothPlaces) {
    RemovalRecord moved = record(RemovalStep::kMoveFile, "/app/new");
    moved.other = "/app/old";
    moved.left = contentOf("x");
    EXPECT_FALSE(takeBack(moved));
    EXPECT_NE(note().find("/app/old: "), std::string::npos);
}

TEST_F(FilePlaybackTest, DoesNotMoveAFileBackOverAnother) {
    RemovalRecord moved = record(RemovalStep::kMoveFile, "/app/file");
    moved.other = "/app/other";
    moved.left = contentOf("content");
    EXPECT_FALSE(takeBack(moved));
    EXPECT_EQ(files_.content("/app/file"), "content");
    EXPECT_EQ(files_.content("/app/other"), "other content");
}

// The content may be anybody's: nothing shows that it is the one that the removal left.
TEST_F(FilePlaybackTest, LeavesAFileThatCannotBeRead) {
    RemovalRecord created = record(RemovalStep::kCreateFile, "/app/file");
    created.left = {PathKind::kOther, 0, {}};
    files_.failFrom(Operation::kOpen, "/app/file", 1);
    EXPECT_FALSE(takeBack(created));
    EXPECT_TRUE(files_.hasFile("/app/file"));
}

TEST_F(FilePlaybackTest, GivesRightsBackOnlyToTheFileThatHadThem) {
    files_.addFile(scene_.journal.keptPath(9), "");
    files_.makeExecutable(scene_.journal.keptPath(9));
    RemovalRecord changed = record(RemovalStep::kChangeRights, "/app/file", 9);
    changed.left = contentOf("another content");
    EXPECT_FALSE(takeBack(changed));
    EXPECT_FALSE(files_.isExecutable("/app/file"));
    changed.left = contentOf("content");
    EXPECT_TRUE(takeBack(changed));
    EXPECT_TRUE(files_.isExecutable("/app/file"));
    EXPECT_EQ(files_.content("/app/file"), "content");
    changed.kept = 10;
    EXPECT_FALSE(takeBack(changed));
}

}  // namespace

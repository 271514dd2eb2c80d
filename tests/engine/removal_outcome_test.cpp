#include "engine/removal_outcome.h"

#include <gmock/gmock.h>

#include "package/backup_file.h"
#include "platform/memory/memory_file_system.h"
#include "platform/path_identity.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

RecordLook lookOf(PlaceState state, UndoRule rule = UndoRule::kRemoves) {
    RecordLook look;
    look.name = "a";
    look.identity = "a";
    look.state = state;
    look.rule = rule;
    return look;
}

// A file whose record promises to bring an earlier one back.
RecordLook replaced(PlaceState state, const std::string& content) {
    RecordLook look = lookOf(state, UndoRule::kRestoresUnchanged);
    look.content = content;
    return look;
}

RecordLook container(const std::string& identity, std::vector<std::string> holds) {
    RecordLook look = lookOf(PlaceState::kAsMade, UndoRule::kRemovesIfUnused);
    look.identity = identity;
    look.holds = std::move(holds);
    return look;
}

class RemovalOutcomeTest : public testing::Test {
protected:
    RemovalOutcome outcome(const RecordLook& before, const RecordLook& after) {
        after_ = {{"file", after}};
        return removalOutcomes({{"file", before}}, after_, facts_)[0];
    }
    std::vector<RemovalOutcome> outcomes(const std::vector<RecordLook>& looks) {
        after_.clear();
        for (const RecordLook& look : looks) {
            after_.push_back({"directory", look});
        }
        const std::vector<SurveyedRecord> before = after_;
        return removalOutcomes(before, after_, facts_);
    }

    RemovalFacts facts_;
    std::vector<SurveyedRecord> after_;
};

TEST_F(RemovalOutcomeTest, WhatIsNotThereIsGone) {
    for (const PlaceState before : {PlaceState::kAsMade, PlaceState::kDifferent, PlaceState::kAbsent}) {
        EXPECT_EQ(outcome(lookOf(before), lookOf(PlaceState::kAbsent)), RemovalOutcome::kGone);
    }
}

TEST_F(RemovalOutcomeTest, AnEarlierValueIsPutBack) {
    EXPECT_EQ(outcome(lookOf(PlaceState::kAsMade), lookOf(PlaceState::kFormer)), RemovalOutcome::kPutBack);
    EXPECT_EQ(outcome(lookOf(PlaceState::kFormer), lookOf(PlaceState::kFormer)), RemovalOutcome::kPutBack);
    EXPECT_EQ(outcome(lookOf(PlaceState::kAsMade), lookOf(PlaceState::kOthers)), RemovalOutcome::kPutBack);
}

TEST_F(RemovalOutcomeTest, WhatWasNeverTheProductsIsLeft) {
    EXPECT_EQ(outcome(lookOf(PlaceState::kOthers), lookOf(PlaceState::kOthers)),
              RemovalOutcome::kLeftForeign);
}

TEST_F(RemovalOutcomeTest, WhatIsStillThereOrCanNotBeSeenHasFailed) {
    EXPECT_EQ(outcome(lookOf(PlaceState::kAsMade), lookOf(PlaceState::kAsMade)), RemovalOutcome::kFailed);
    EXPECT_EQ(outcome(lookOf(PlaceState::kDifferent), lookOf(PlaceState::kDifferent)),
              RemovalOutcome::kFailed);
    EXPECT_EQ(outcome(lookOf(PlaceState::kAsMade), lookOf(PlaceState::kUnreadable)), RemovalOutcome::kFailed);
}

TEST_F(RemovalOutcomeTest, AReplacedFileIsPutBackWhenItHasAnotherContent) {
    EXPECT_EQ(outcome(replaced(PlaceState::kAsMade, "1"), replaced(PlaceState::kDifferent, "2")),
              RemovalOutcome::kPutBack);
    EXPECT_EQ(outcome(replaced(PlaceState::kAbsent, ""), replaced(PlaceState::kDifferent, "2")),
              RemovalOutcome::kPutBack);
}

TEST_F(RemovalOutcomeTest, AReplacedFileThatTheUserChangedIsLeft) {
    facts_.archived = {"a"};
    EXPECT_EQ(outcome(replaced(PlaceState::kDifferent, "1"), replaced(PlaceState::kDifferent, "1")),
              RemovalOutcome::kLeftChanged);
}

TEST_F(RemovalOutcomeTest, AReplacedFileThatDidNotComeBackHasFailed) {
    facts_.archived = {"a"};
    EXPECT_EQ(outcome(replaced(PlaceState::kAsMade, "1"), replaced(PlaceState::kAsMade, "1")),
              RemovalOutcome::kFailed);
}

TEST_F(RemovalOutcomeTest, AFileWithoutAnEarlierOneIsLeftAsOneOfTheUsers) {
    EXPECT_EQ(outcome(replaced(PlaceState::kAsMade, "1"), replaced(PlaceState::kAsMade, "1")),
              RemovalOutcome::kLeftForeign);
    EXPECT_EQ(after_[0].look.note, "no earlier file was kept");
}

TEST_F(RemovalOutcomeTest, OfEqualEntriesTheUsersStays) {
    RecordLook two = lookOf(PlaceState::kAsMade, UndoRule::kTakesOne);
    two.content = "2";
    RecordLook one = two;
    one.content = "1";
    EXPECT_EQ(outcome(two, one), RemovalOutcome::kGone);
    EXPECT_EQ(outcome(two, two), RemovalOutcome::kFailed);
}

TEST_F(RemovalOutcomeTest, LinesThatTheUserChangedAreLeft) {
    const RecordLook changed = lookOf(PlaceState::kDifferent, UndoRule::kKeepsChanged);
    EXPECT_EQ(outcome(changed, changed), RemovalOutcome::kLeftChanged);
    const RecordLook asMade = lookOf(PlaceState::kAsMade, UndoRule::kKeepsChanged);
    EXPECT_EQ(outcome(asMade, asMade), RemovalOutcome::kFailed);
}

TEST_F(RemovalOutcomeTest, SomethingElseInThePlaceOfADirectoryIsTheUsersChange) {
    const RecordLook link = lookOf(PlaceState::kDifferent, UndoRule::kRemovesIfUnused);
    EXPECT_EQ(outcome(link, link), RemovalOutcome::kLeftChanged);
}

TEST_F(RemovalOutcomeTest, ADirectoryThatHoldsOthersIsLeftWithThoseAboveIt) {
    EXPECT_THAT(outcomes({container("a", {"a/b"}), container("a/b", {"a/b/users"})}),
                ElementsAre(RemovalOutcome::kLeftForeign, RemovalOutcome::kLeftForeign));
    EXPECT_EQ(after_[1].look.note, "it holds what isn't the product's");
}

TEST_F(RemovalOutcomeTest, ADirectoryThatHoldsOnlyWhatFailedHasFailed) {
    RecordLook file = lookOf(PlaceState::kAsMade);
    file.identity = "a/b/file";
    facts_.ownFiles = {"a/log"};
    EXPECT_THAT(outcomes({container("a", {"a/b", "a/log"}), container("a/b", {"a/b/file"}), file}),
                ElementsAre(RemovalOutcome::kFailed, RemovalOutcome::kFailed, RemovalOutcome::kFailed));
    EXPECT_THAT(outcomes({container("a", {})}), ElementsAre(RemovalOutcome::kFailed)) << "an empty one";
}

TEST_F(RemovalOutcomeTest, NothingIsHeldByAThingWithoutAnIdentity) {
    RecordLook value = lookOf(PlaceState::kAsMade);
    value.identity = "";
    EXPECT_THAT(outcomes({value, container("a", {"a/users"})}),
                ElementsAre(RemovalOutcome::kFailed, RemovalOutcome::kLeftForeign));
}

TEST(ArchivedFilesTest, AreThoseOfTheArchive) {
    MemoryFileSystem files;
    files.addFile("/app/a", "one");
    files.addFile("/app/b", "two");
    files.addDirectory("/un");
    BackupFile archive(files);
    ASSERT_TRUE(archive.openForWriting("/un/backup.bin"));
    ASSERT_EQ(archive.addFile("/app/a", std::nullopt), std::nullopt);
    ASSERT_EQ(archive.addFile("/app/b", std::nullopt), std::nullopt);
    ASSERT_EQ(archive.close(), 0);
    const auto all = archivedFiles(files, "/un/backup.bin");
    EXPECT_THAT(all,
                UnorderedElementsAre(platform::pathIdentity("/app/a"), platform::pathIdentity("/app/b")));
    const std::string content = files.content("/un/backup.bin");
    for (std::size_t length = 0; length < content.size(); ++length) {
        files.addFile("/un/cut.bin", content.substr(0, length));
        for (const std::string& path : archivedFiles(files, "/un/cut.bin")) {
            EXPECT_TRUE(all.contains(path)) << length;
        }
    }
}

TEST(ArchivedFilesTest, AreNoneWithoutAnArchive) {
    MemoryFileSystem files;
    files.addFile("/text", "no archive");
    EXPECT_THAT(archivedFiles(files, ""), IsEmpty());
    EXPECT_THAT(archivedFiles(files, "/none"), IsEmpty());
    EXPECT_THAT(archivedFiles(files, "/text"), IsEmpty());
}

}  // namespace

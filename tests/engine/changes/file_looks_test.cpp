#include "engine/changes/file_looks.h"

#include "engine/changes/former_state.h"
#include "look_fixture.h"
#include "platform/path_identity.h"
#include "platform/written_path.h"

namespace {

using platform::writtenPath;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class FileLooksTest : public LookTest {
protected:
    FileLooksTest() { machine_.files.addDirectory("/app"); }

    void install(const std::string& path, const std::string& content) {
        machine_.files.addFile(path, content);
        written_.add(path, md5Of(content.data(), content.size()));
    }
    RecordLook lookAtFile(const std::string& fields, const std::string& former = "") {
        return lookAt(makeFileLooker, fields, former);
    }
};

TEST_F(FileLooksTest, AFileIsAsMadeWhileItHasAContentThatWasWritten) {
    install("/app/a.txt", "mine");
    EXPECT_EQ(lookAtFile("CREATE\t/app/a.txt").state, PlaceState::kAsMade);
    EXPECT_EQ(lookAtFile("CREATE\t/app/a.txt").note, "");
    machine_.files.addFile("/app/a.txt", "theirs");
    EXPECT_EQ(lookAtFile("CREATE\t/app/a.txt").state, PlaceState::kDifferent);
    machine_.files.removeFile("/app/a.txt");
    EXPECT_EQ(lookAtFile("CREATE\t/app/a.txt").state, PlaceState::kAbsent);
}

TEST_F(FileLooksTest, SaysWhereTheInstalledContentIsNotKnown) {
    machine_.files.addFile("/app/a.txt", "whatever");
    const RecordLook look = lookAtFile("CREATE\t/app/a.txt");
    EXPECT_EQ(look.state, PlaceState::kAsMade);
    EXPECT_EQ(look.note, "what was installed isn't known");
    EXPECT_EQ(look.name, writtenPath("/app/a.txt"));
}

TEST_F(FileLooksTest, WhatWasThereBeforeIsNotTheProducts) {
    install("/app/a.txt", "mine");
    machine_.files.addFile("/app/a.txt", "theirs");
    EXPECT_EQ(lookAtFile("CREATE\t/app/a.txt", FormerState::ofBytes("theirs")).state, PlaceState::kOthers);
    EXPECT_EQ(lookAtFile("CREATE\t/app/a.txt", FormerState::ofBytes("others")).state, PlaceState::kDifferent);
}

TEST_F(FileLooksTest, NoInstalledFileIsALinkOrADirectory) {
    machine_.files.addFile("/home/x", "mine");
    written_.add("/app/a.txt", md5Of("mine", 4));
    machine_.files.addLink("/app/a.txt", "/home/x");
    EXPECT_EQ(lookAtFile("CREATE\t/app/a.txt").state, PlaceState::kDifferent);
    EXPECT_EQ(lookAtFile("CREATE\t/app/a.txt", "LINK").state, PlaceState::kOthers);
    machine_.files.addDirectory("/app/b.txt");
    EXPECT_EQ(lookAtFile("CREATE\t/app/b.txt").note, "a directory is in its place");
    EXPECT_EQ(lookAtFile("CREATE\t/app/b.txt").state, PlaceState::kDifferent);
}

TEST_F(FileLooksTest, AFileThatCanNotBeReadIsNotJudged) {
    install("/app/a.txt", "mine");
    machine_.files.failAt(MemoryFileSystem::Operation::kOpen, "/app/a.txt", 1);
    const RecordLook look = lookAtFile("CREATE\t/app/a.txt");
    EXPECT_EQ(look.state, PlaceState::kUnreadable);
    EXPECT_NE(look.note, "");
}

TEST_F(FileLooksTest, OnlyAReplacedFileMayComeBack) {
    install("/app/a.txt", "mine");
    EXPECT_EQ(lookAtFile("CREATE\t/app/a.txt").rule, UndoRule::kRemoves);
    const RecordLook look = lookAtFile("OVER\t/app/a.txt");
    EXPECT_EQ(look.rule, UndoRule::kRestoresUnchanged);
    EXPECT_EQ(look.state, PlaceState::kAsMade);
    EXPECT_EQ(look.content, FormerState::ofBytes("mine"));
    EXPECT_EQ(look.identity, platform::pathIdentity("/app/a.txt"));
}

TEST_F(FileLooksTest, ADamagedRecordMadeNothing) {
    for (const char* fields : {"", "CREATE", "CREATE\t", "COPY\t/app/a.txt", "/app/a.txt"}) {
        looker_.reset();
        EXPECT_THAT(lookAtAll(makeFileLooker, {{fields, ""}}), IsEmpty()) << fields;
    }
}

TEST_F(FileLooksTest, LooksAtEachLevelOfADirectoryTheDeepestFirst) {
    machine_.files.addFile("/app/one/two/file", "");
    machine_.files.addDirectory("/app/one/two/three");
    const std::vector<RecordLook> looks = lookAtAll(makeDirectoryLooker, {{"2\t/app/one\\two\\", ""}});
    EXPECT_THAT(namesOf(looks), ElementsAre(writtenPath("/app/one\\two"), writtenPath("/app/one")));
    for (const RecordLook& look : looks) {
        EXPECT_EQ(look.state, PlaceState::kAsMade);
        EXPECT_EQ(look.rule, UndoRule::kRemovesIfUnused);
    }
    EXPECT_THAT(looks[0].holds, UnorderedElementsAre(platform::pathIdentity("/app/one/two/file"),
                                                     platform::pathIdentity("/app/one/two/three")));
    EXPECT_THAT(looks[1].holds, ElementsAre(looks[0].identity));
}

TEST_F(FileLooksTest, ADirectoryMayHaveGoneOrBeSomethingElse) {
    EXPECT_EQ(stateOf(makeDirectoryLooker, "1\t/app/one/"), PlaceState::kAbsent);
    machine_.files.addFile("/app/one", "");
    EXPECT_EQ(stateOf(makeDirectoryLooker, "1\t/app/one/"), PlaceState::kDifferent);
    machine_.files.addLink("/app/two", "/app");
    EXPECT_EQ(stateOf(makeDirectoryLooker, "1\t/app/two/"), PlaceState::kDifferent);
    machine_.files.addDirectory("/app/three");
    machine_.files.failAt(MemoryFileSystem::Operation::kList, "/app/three", 1);
    EXPECT_EQ(stateOf(makeDirectoryLooker, "1\t/app/three/"), PlaceState::kUnreadable);
}

TEST_F(FileLooksTest, NoNumberOfLevelsLeavesThePath) {
    for (const char* fields : {"", "0\t/app/", "-3\t/app/", "x\t/app/", "1", "1\t/"}) {
        looker_.reset();
        EXPECT_THAT(lookAtAll(makeDirectoryLooker, {{fields, ""}}), IsEmpty()) << fields;
    }
    looker_.reset();
    EXPECT_EQ(lookAtAll(makeDirectoryLooker, {{"2000000000\t/app/one/", ""}}).size(), 2U);
}

TEST_F(FileLooksTest, AShortcutIsThereOrNot) {
    EXPECT_EQ(stateOf(makeShortcutLooker, "CREATE\t/app/a.lnk"), PlaceState::kAbsent);
    machine_.files.addLink("/app/a.lnk", "/app/gone");
    EXPECT_EQ(stateOf(makeShortcutLooker, "CREATE\t/app/a.lnk"), PlaceState::kAsMade);
    const std::string former = FormerState::ofFile(machine_.files, "/app/a.lnk");
    EXPECT_EQ(stateOf(makeShortcutLooker, "CREATE\t/app/a.lnk", former), PlaceState::kOthers);
    machine_.files.addFile("/app/b.lnk", "");
    EXPECT_EQ(stateOf(makeShortcutLooker, "CREATE\t/app/b.lnk"), PlaceState::kAsMade);
    machine_.files.addDirectory("/app/c.lnk");
    EXPECT_EQ(stateOf(makeShortcutLooker, "CREATE\t/app/c.lnk"), PlaceState::kDifferent);
    looker_.reset();
    EXPECT_THAT(lookAtAll(makeShortcutLooker, {{"MOVE\t/app/a.lnk", ""}, {"CREATE", ""}}), IsEmpty());
}

TEST_F(FileLooksTest, NothingOnTheMachineIsChanged) {
    install("/app/a.txt", "mine");
    const auto before = machine_.files.everything();
    lookAtFile("OVER\t/app/a.txt");
    stateOf(makeDirectoryLooker, "1\t/app/");
    stateOf(makeShortcutLooker, "CREATE\t/app/a.txt");
    EXPECT_EQ(machine_.files.everything(), before);
    EXPECT_EQ(machine_.files.count(MemoryFileSystem::Operation::kWrite), 0);
}

}  // namespace

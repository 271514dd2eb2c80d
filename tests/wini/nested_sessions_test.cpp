#include "wini/nested_sessions.h"

#include "upgrade_fixture.h"

namespace {

using platform::RegistryRoot;
using testing::IsEmpty;

TEST_F(UpgradeTest, LeavesNothingOfTheEarlierVersion) {
    ASSERT_TRUE(install(1));
    EXPECT_TRUE(install(2));
    EXPECT_EQ(files_.content("/app/tool"), "tool 2");
    EXPECT_FALSE(files_.hasDirectory("/app/v1"));
    EXPECT_EQ(versionOf("Demo"), "2.0.0");
    EXPECT_THAT(leftovers(), IsEmpty());
    EXPECT_THAT(messages_, IsEmpty());
    EXPECT_TRUE(uninstall());
    EXPECT_EQ(state(), before_);
}

TEST_F(UpgradeTest, BringsTheEarlierVersionBackWhole) {
    ASSERT_TRUE(install(1));
    const auto first = state();
    EXPECT_FALSE(install(2, kFailing));
    EXPECT_EQ(state(), first);
    EXPECT_THAT(leftovers(), IsEmpty());
    EXPECT_THAT(messages_, Not(testing::Contains(testing::HasSubstr("earlier version"))));
    EXPECT_TRUE(uninstall());
    EXPECT_EQ(state(), before_);
}

TEST_F(UpgradeTest, BringsItBackAfterASecondFailure) {
    ASSERT_TRUE(install(1));
    const auto first = state();
    EXPECT_FALSE(install(2, kFailing));
    EXPECT_FALSE(install(3, kFailing));
    EXPECT_EQ(state(), first);
    EXPECT_TRUE(install(2));
    EXPECT_TRUE(uninstall());
    EXPECT_EQ(state(), before_);
}

TEST_F(UpgradeTest, GivesTheEntryBackThatANewVersionHasChanged) {
    ASSERT_TRUE(install(1));
    const auto first = state();
    EXPECT_FALSE(
        install(2, "", "<RegisterApplication Special='AutoNext'/><RevertInstallation Special='AutoNext'/>"));
    EXPECT_EQ(versionOf("Demo"), "1.0.0");
    EXPECT_EQ(state(), first);
}

TEST_F(UpgradeTest, ReplacesAProductOfAFormerName) {
    ASSERT_TRUE(install(1, "", kPages, "Former"));
    EXPECT_TRUE(install(2));
    EXPECT_EQ(versionOf("Former"), "(none)");
    EXPECT_EQ(versionOf("Demo"), "2.0.0");
    EXPECT_TRUE(uninstall());
    EXPECT_EQ(state(), before_);
}

TEST_F(UpgradeTest, BringsAProductOfAFormerNameBackWithItsEntry) {
    ASSERT_TRUE(install(1, "", kPages, "Former"));
    const auto first = state();
    EXPECT_FALSE(install(2, kFailing));
    EXPECT_EQ(state(), first);
    EXPECT_THAT(leftovers(), IsEmpty());
}

TEST_F(UpgradeTest, BringsBackWhatItFoundOnlyByItsLog) {
    ASSERT_TRUE(install(1, "", "<End Special='Finish'/>"));
    const auto first = state();
    EXPECT_FALSE(install(2, kFailing));
    EXPECT_EQ(state(), first);
    EXPECT_THAT(leftovers(), IsEmpty());
}

// The directory can't go, so the records stay for a repetition, and the new version continues them. As it
// can't go at the undo either, what was kept stays.
TEST_F(UpgradeTest, BringsBackTheFilesOfAVersionThatCouldNotBeRemovedEntirely) {
    ASSERT_TRUE(install(1));
    files_.addFile("/app/v1/mine", "dear");
    const std::string log = files_.content("/app/un/install.log");
    EXPECT_FALSE(install(2, kFailing));
    EXPECT_EQ(files_.content("/app/v1/mine"), "dear");
    EXPECT_EQ(files_.content("/app/tool"), "tool 1");
    EXPECT_EQ(files_.content("/app/un/remove"), "uninstaller 1");
    EXPECT_EQ(files_.content("/app/un/install.log"), log);
}

TEST_F(UpgradeTest, KeepsWhatItTookAndSaysWhereWithoutAPageThatReverts) {
    ASSERT_TRUE(install(1));
    EXPECT_FALSE(install(2, kFailing, ""));
    EXPECT_THAT(leftovers(), Not(IsEmpty()));
    EXPECT_THAT(messages_,
                testing::Contains(testing::HasSubstr("What was kept of the removed version is in")));
}

TEST_F(UpgradeTest, HasNothingToBringBackWithoutABackup) {
    ASSERT_TRUE(install(1));
    EXPECT_FALSE(install(2, kFailing, kPages, "Demo", 0));
    EXPECT_FALSE(files_.hasFile("/app/tool"));
    EXPECT_THAT(leftovers(), IsEmpty());
}

TEST_F(UpgradeTest, TakesBackWhatItRemovedBeforeAnErrorEndsTheRun) {
    ASSERT_TRUE(install(1, "", kPages, "Former"));
    machine_.registry.addText(RegistryRoot::kLocalMachine, UninstallList::keyOf("Demo"), "UninstallString",
                              "x -uninstall=\"/none/install.log\"");
    const auto first = state();
    EXPECT_FALSE(install(2));
    EXPECT_THAT(boxes_, testing::Contains(testing::HasSubstr(
                            "ERROR: Unable to copy temporary log file for uninstallation of Demo")));
    EXPECT_EQ(state(), first);
    EXPECT_THAT(leftovers(), IsEmpty());
}

// An action that ends the run comes after files and other changes.
TEST_F(UpgradeTest, BringsTheEarlierVersionBackWhenAnErrorEndsTheInstallation) {
    ASSERT_TRUE(install(1));
    const auto first = state();
    EXPECT_FALSE(install(
        2, "<AdditionalInstall><CreateFile Dest='/app'>nowhere</CreateFile></AdditionalInstall>", kPages));
    EXPECT_THAT(boxes_, Not(IsEmpty()));
    EXPECT_EQ(state(), first);
    EXPECT_THAT(leftovers(), IsEmpty());
    EXPECT_TRUE(uninstall());
    EXPECT_EQ(state(), before_);
}

TEST_F(UpgradeTest, RemovesNothingForAnInstallationThatIsKnownToFail) {
    ASSERT_TRUE(install(1));
    const auto first = state();
    EXPECT_FALSE(install(2, "<FileSet Name='R'><FN Dest='relative'>tool</FN></FileSet>"));
    EXPECT_EQ(state(), first);
    EXPECT_FALSE(install(2, "<FileSet Name='R'><FN Dest='relative'>tool</FN></FileSet>",
                         "<Uninstall Special='AutoNext'/><RevertInstallation Special='AutoNext'/>"));
    EXPECT_EQ(state(), first);
}

}  // namespace

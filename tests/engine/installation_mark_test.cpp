#include "engine/installation_mark.h"

#include <gmock/gmock.h>

#include "engine_fixture.h"

namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;

class InstallationMarkTest : public EngineTest {
protected:
    InstallationMarkTest() {
        pack({{"install.xml", "install.xml", "<the description/>"}});
        describe("<ProductDesc><Fullname>Demo</Fullname></ProductDesc>");
    }

    UnfinishedWork later() {
        RemovalJournal journal(files_, machine_.environment);
        journal.look(backups_.journal().directory());
        return WorkNotes(journal).read();
    }

    RemovalBackups backups_{machine_.bundle()};
    InstallationMark mark_{parts_, backups_};
};

TEST_F(InstallationMarkTest, HasTheProductAndItsDescription) {
    ASSERT_TRUE(mark_.open(report_));
    const UnfinishedWork work = later();
    EXPECT_EQ(work.product, "Demo");
    EXPECT_EQ(work.stage, WorkStage::kBegun);
    EXPECT_EQ(files_.content(work.description), "<the description/>");
    EXPECT_TRUE(files_.isPrivate(work.description));
    EXPECT_TRUE(files_.didOperation("flush " + work.description));
    EXPECT_EQ(mark_.placeOf("/tmp/name"), backups_.journal().directory() + "/name");
    EXPECT_EQ(machine_.events.heldLocks, 0);
}

TEST_F(InstallationMarkTest, IsMadeOnce) {
    ASSERT_TRUE(mark_.open(report_));
    const std::string directory = backups_.journal().directory();
    EXPECT_TRUE(mark_.open(report_));
    EXPECT_EQ(backups_.journal().directory(), directory);
}

TEST_F(InstallationMarkTest, FollowsTheInstallation) {
    ASSERT_TRUE(mark_.open(report_));
    EXPECT_TRUE(mark_.noteInstalling({mark_.placeOf("/l"), mark_.placeOf("/a"), "/app/log", "/app/b", false},
                                     report_));
    EXPECT_EQ(later().stage, WorkStage::kInstalling);
    EXPECT_EQ(later().places.temporaryLog, mark_.placeOf("/l"));
    mark_.noteInstalled();
    EXPECT_EQ(later().stage, WorkStage::kInstalled);
    backups_.release();
    EXPECT_TRUE(backups_.journal().directoriesOnDisk().empty());
}

TEST_F(InstallationMarkTest, KeepsRecordsThatCouldNotBePublished) {
    ASSERT_TRUE(mark_.open(report_));
    files_.addFile(mark_.placeOf("/l"), "log");
    mark_.keepRecords();
    backups_.release();
    EXPECT_TRUE(files_.hasFile(mark_.placeOf("/l")));
    EXPECT_EQ(later().stage, WorkStage::kBegun);
}

TEST_F(InstallationMarkTest, IsReportedWhereItCannotBeMade) {
    files_.setReadOnly("/var");
    EXPECT_FALSE(mark_.open(report_));
    EXPECT_THAT(ui_.callsOf("addMessage"), Contains(HasSubstr("Nothing was installed")));
    EXPECT_FALSE(backups_.journal().isOpen());
}

TEST_F(InstallationMarkTest, LeavesNothingWhereItCannotBeWritten) {
    files_.setFreeSpace(60);
    EXPECT_FALSE(mark_.open(report_));
    EXPECT_FALSE(files_.hasDirectory("/var/state"));
}

TEST_F(InstallationMarkTest, IsMissingOnAMachineWithoutAPlaceForIt) {
    machine_.environment.state.clear();
    EXPECT_TRUE(mark_.open(report_));
    EXPECT_EQ(mark_.placeOf("/tmp/name"), "/tmp/name");
    EXPECT_TRUE(mark_.noteInstalling({}, report_));
    mark_.noteInstalled();
    mark_.keepRecords();
    EXPECT_FALSE(backups_.holdsRecords);
}

TEST_F(InstallationMarkTest, StopsTheInstallationThatItCannotFollow) {
    ASSERT_TRUE(mark_.open(report_));
    files_.setFreeSpace(0);
    EXPECT_FALSE(mark_.noteInstalling({}, report_));
    EXPECT_THAT(ui_.callsOf("addMessage"), Contains(HasSubstr("Nothing was installed")));
}

}  // namespace

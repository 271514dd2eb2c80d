#include "engine/removal_backups.h"

#include <gmock/gmock.h>

#include "base/errors.h"
#include "engine/product_state.h"
#include "engine/work_notes.h"
#include "platform/memory/memory_platform.h"
#include "platform/written_path.h"

namespace {

using platform::writtenPath;
using testing::ElementsAre;
using testing::IsEmpty;

class RemovalBackupsTest : public testing::Test {
protected:
    // An archive with its list, a copy, and a file in the journal.
    void fill() {
        backups_.openMachine();
        for (const char* path : {"/tmp/a", "/tmp/d", "/tmp/n"}) {
            files_.addFile(path, "x");
        }
        backups_.uninstallBackups = {{"Old", "/tmp/a", "/tmp/d"}, {"None", "", ""}};
        backups_.nestedBackups = {{"/app/backup.bin", "/tmp/n"}, {"/app/none", ""}};
    }

    MemoryPlatform machine_;
    MemoryFileSystem& files_ = machine_.files;
    RemovalBackups backups_{machine_.bundle()};
};

TEST_F(RemovalBackupsTest, AreEmptyAtFirst) {
    EXPECT_TRUE(backups_.isEmpty());
    EXPECT_FALSE(backups_.isOpen());
    EXPECT_EQ(backups_.placeOf("/tmp/file"), "/tmp/file");
    EXPECT_THAT(backups_.places(), IsEmpty());
    backups_.release();
    EXPECT_THAT(files_.allFiles(), IsEmpty());
}

TEST_F(RemovalBackupsTest, OpenOneJournalForAllRemovals) {
    backups_.openMachine();
    const std::string directory = backups_.journal().directory();
    backups_.openMachine();
    EXPECT_EQ(backups_.journal().directory(), directory);
    EXPECT_TRUE(backups_.isOpen());
    EXPECT_EQ(backups_.placeOf("/tmp/file"), directory + "/file");
}

TEST_F(RemovalBackupsTest, SayWhyTheJournalCannotBeOpened) {
    machine_.environment.state.clear();
    try {
        backups_.openMachine();
        ADD_FAILURE() << "no error";
    } catch (const InstallerError& error) {
        EXPECT_STREQ(error.what(),
                     "ERROR: The removal of earlier versions couldn't be taken back: there is no directory "
                     "for its records");
    }
    EXPECT_TRUE(backups_.isEmpty());
}

TEST_F(RemovalBackupsTest, GoWithTheirFilesAndTheJournal) {
    fill();
    backups_.release();
    EXPECT_THAT(files_.allFiles(), IsEmpty());
    EXPECT_FALSE(backups_.isOpen());
    EXPECT_TRUE(backups_.uninstallBackups.empty());
    EXPECT_EQ(backups_.nestedBackups.size(), 2U);
}

TEST_F(RemovalBackupsTest, LeaveTheDirectoryThatTheyMadeToTheNewProduct) {
    backups_.openMachine();
    ProductState state(files_, machine_.environment);
    WrittenSums sums;
    sums.add("/app/a", md5Of("a", 1));
    ASSERT_TRUE(state.save("/app/install.log", sums));
    backups_.release();
    EXPECT_TRUE(files_.hasDirectory("/var/state"));
    ASSERT_TRUE(state.remove("/app/install.log"));
    EXPECT_FALSE(files_.hasDirectory("/var"));
}

TEST_F(RemovalBackupsTest, StayAsTheOnlyCopyAndSayWhere) {
    fill();
    backups_.uninstallBackups.pop_back();
    backups_.nestedBackups.pop_back();
    backups_.isOnlyCopy = true;
    backups_.release();
    for (const char* path : {"/tmp/a", "/tmp/d", "/tmp/n"}) {
        EXPECT_TRUE(files_.hasFile(path)) << path;
    }
    EXPECT_TRUE(files_.hasDirectory(backups_.journal().directory()));
    EXPECT_THAT(backups_.places(),
                ElementsAre("What was kept of the removed version is in " +
                                writtenPath(backups_.journal().directory()),
                            "The files of Old are in " + writtenPath("/tmp/a") +
                                ", its directories are listed in " + writtenPath("/tmp/d"),
                            writtenPath("/app/backup.bin") + " is in " + writtenPath("/tmp/n")));
}

TEST_F(RemovalBackupsTest, AreNotedDownForALaterRun) {
    fill();
    EXPECT_TRUE(backups_.note("Old", "/app/install.log"));
    EXPECT_TRUE(backups_.note("Older", "/old/install.log"));
    RemovalJournal& journal = backups_.journal();
    EXPECT_EQ(journal.noteOf("application 2"), "Older");
    EXPECT_EQ(journal.noteOf("log 2"), "/old/install.log");
    EXPECT_EQ(journal.noteOf("archive 1"), "/tmp/a");
    EXPECT_EQ(journal.noteOf("copied 1"), "/app/backup.bin");
    EXPECT_EQ(journal.noteOf("copy 1"), "/tmp/n");
}

TEST_F(RemovalBackupsTest, ReportANoteThatCannotBeWritten) {
    fill();
    files_.setFreeSpace(0);
    EXPECT_FALSE(backups_.note("Old", "/app/install.log"));
}

TEST_F(RemovalBackupsTest, AreFoundByALaterRun) {
    backups_.openMachine();
    const std::string directory = backups_.journal().directory();
    backups_.uninstallBackups = {{"Old", directory + "/a", directory + "/d"}};
    backups_.nestedBackups = {{"/app/backup.bin", directory + "/n"}};
    ASSERT_TRUE(backups_.note("Old", "/app/install.log"));
    RemovalBackups later(machine_.bundle());
    ASSERT_TRUE(later.resume(directory));
    EXPECT_TRUE(later.isOpen());
    ASSERT_EQ(later.uninstallBackups.size(), 1U);
    EXPECT_EQ(later.uninstallBackups[0].productName, "Old");
    EXPECT_EQ(later.uninstallBackups[0].archivePath, directory + "/a");
    EXPECT_EQ(later.uninstallBackups[0].directoriesPath, directory + "/d");
    ASSERT_EQ(later.nestedBackups.size(), 1U);
    EXPECT_EQ(later.nestedBackups[0].originalPath, "/app/backup.bin");
    EXPECT_EQ(later.nestedBackups[0].copyPath, directory + "/n");
}

TEST_F(RemovalBackupsTest, TakeNothingOfALaterRunThatLiesElsewhere) {
    fill();
    ASSERT_TRUE(backups_.note("Old", "/app/install.log"));
    RemovalBackups later(machine_.bundle());
    ASSERT_TRUE(later.resume(backups_.journal().directory()));
    EXPECT_THAT(later.uninstallBackups, IsEmpty());
    EXPECT_THAT(later.nestedBackups, IsEmpty());
    later.release();
    EXPECT_TRUE(files_.hasFile("/tmp/a"));
}

TEST_F(RemovalBackupsTest, AreNotFoundWithoutAJournal) {
    files_.addDirectory("/var/state/removal-x");
    RemovalBackups later(machine_.bundle());
    EXPECT_FALSE(later.resume("/var/state/removal-x"));
    EXPECT_FALSE(later.isOpen());
}

TEST_F(RemovalBackupsTest, TellALaterRunThatTheyAreToStay) {
    fill();
    backups_.isOnlyCopy = true;
    backups_.release();
    EXPECT_EQ(WorkNotes(backups_.journal()).read().stage, WorkStage::kEnded);
}

}  // namespace

#include "engine/recovery.h"

#include <gmock/gmock.h>

#include "engine/installation_mark.h"
#include "engine/journaled_machine.h"
#include "engine_fixture.h"
#include "fakes/fake_nested_sessions.h"
#include "package/backup_file.h"

namespace {

using platform::LockResult;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using Outcome = Recovery::Outcome;

constexpr char kLog[] = "/app/x.xml\r\n/app/b.bin\r\nNUMVARS\t0\r\nFILE\tCREATE\t/app/tool\r\n";

class RecoveryTest : public EngineTest {
protected:
    RecoveryTest() {
        pack({{"install.xml", "install.xml", "<the description/>"}});
        describe("<ProductDesc><Fullname>Demo</Fullname></ProductDesc>");
        sessions_.onLoad = [this](const std::string& log) { loaded_ = files_.content(log); };
        files_.addFile("/app/old", "version 1");
    }

    // A run that works as far as `work` goes and is killed then.
    template <typename Work>
    void interrupt(Work work) {
        RemovalBackups backups(machine_.bundle());
        InstallationMark mark(parts_, backups);
        ASSERT_TRUE(mark.open(report_));
        directory_ = backups.journal().directory();
        work(backups, mark);
        ui_.take();
    }
    static void removeOld(RemovalBackups& backups, const std::string& application = "Demo") {
        const platform::Platform machine = backups.openMachine();
        ASSERT_TRUE(backups.note(application, "/app/install.log"));
        ASSERT_EQ(machine.files.removeFile("/app/old"), 0);
    }
    void beginInstalling(InstallationMark& mark, const std::string& log = kLog, bool continues = false) {
        const InstallationPlaces places{mark.placeOf("/l"), mark.placeOf("/a"), "/app/install.log",
                                        "/app/b.bin", continues};
        files_.addFile(places.temporaryLog, log);
        BackupFile archive(files_);
        ASSERT_TRUE(archive.openForWriting(places.temporaryArchive));
        ASSERT_EQ(archive.close(), 0);
        ASSERT_TRUE(mark.noteInstalling(places, report_));
    }
    Outcome recover(bool asks = false, const Recovery::Concern& concern = {{"Demo"}, {}}) {
        return Recovery(parts_, sessions_, errors_).run(concern, asks, report_);
    }
    std::vector<std::string> notes() const { return ui_.callsOf("addMessage"); }
    bool isGone() { return !files_.hasDirectory(directory_); }

    FakeNestedSessions sessions_;
    std::string directory_;
    std::string loaded_;
};

TEST_F(RecoveryTest, FindsNothingOnAMachineWithoutInterruptedRuns) {
    EXPECT_EQ(recover(), Outcome::kNothing);
    EXPECT_THAT(notes(), IsEmpty());
}

TEST_F(RecoveryTest, RemovesWhatARunLeftThatHadChangedNothing) {
    interrupt([](RemovalBackups&, InstallationMark&) {});
    EXPECT_EQ(recover(true), Outcome::kNothing);
    EXPECT_TRUE(isGone());
    EXPECT_THAT(ui_.calls, IsEmpty());
}

TEST_F(RecoveryTest, RemovesWhatACompleteRunLeft) {
    interrupt([this](RemovalBackups& backups, InstallationMark& mark) {
        removeOld(backups);
        beginInstalling(mark);
        mark.noteInstalled();
    });
    EXPECT_EQ(recover(true), Outcome::kNothing);
    EXPECT_TRUE(isGone());
    EXPECT_FALSE(files_.hasFile("/app/old"));
    EXPECT_THAT(sessions_.calls, IsEmpty());
}

TEST_F(RecoveryTest, RemovesWhatACompleteRunWasStillWriting) {
    system_.installed = {{"Demo", "", false, ""}};
    files_.addFile("/app/install.log", kLog);
    files_.addFile("/app/templog.log", std::string(kLog, 20));
    interrupt([this](RemovalBackups&, InstallationMark& mark) {
        beginInstalling(mark);
        mark.noteInstalled();
    });
    EXPECT_EQ(recover(true), Outcome::kNothing);
    EXPECT_FALSE(files_.hasFile("/app/templog.log"));
    EXPECT_FALSE(system_.findUninstallEntry("Demo", 0));
    EXPECT_EQ(files_.content("/app/install.log"), kLog);
    EXPECT_THAT(notes(), Contains(HasSubstr("has left an unfinished entry of Demo")));
}

TEST_F(RecoveryTest, KeepsAnEntryThatNamesItsLog) {
    system_.installed = {{"Demo", "", false, "/app/install.log"}};
    files_.addFile("/app/install.log", kLog);
    interrupt([this](RemovalBackups&, InstallationMark& mark) {
        beginInstalling(mark);
        mark.noteInstalled();
    });
    EXPECT_EQ(recover(), Outcome::kNothing);
    EXPECT_TRUE(system_.findUninstallEntry("Demo", 0));
}

// Its archive was killed in the middle of an entry, whose file is still what it was.
TEST_F(RecoveryTest, CutsTheArchiveOffAfterItsLastWholeEntry) {
    std::string archive;
    interrupt([&](RemovalBackups&, InstallationMark& mark) {
        beginInstalling(mark);
        const std::string path = mark.placeOf("/a");
        const std::string whole = files_.content(path);
        archive = whole.substr(0, whole.size() - 1);  // without the end byte
        files_.addFile(path, archive + "/app/ol");
    });
    sessions_.onUninstall = [&](const platform::Platform& machine) {
        EXPECT_EQ(files_.content(loaded_.substr(loaded_.find("\r\n") + 2, directory_.size() + 2)), archive);
        machine.files.removeFile("/app/tool");
    };
    EXPECT_EQ(recover(), Outcome::kRecovered);
}

TEST_F(RecoveryTest, BringsBackWhatWasRemoved) {
    interrupt([](RemovalBackups& backups, InstallationMark&) { removeOld(backups); });
    ASSERT_FALSE(files_.hasFile("/app/old"));
    EXPECT_EQ(recover(), Outcome::kRecovered);
    EXPECT_EQ(files_.content("/app/old"), "version 1");
    EXPECT_TRUE(isGone());
    EXPECT_THAT(notes(), Contains(HasSubstr("An earlier run of the setup of Demo was interrupted.")));
}

TEST_F(RecoveryTest, UndoesTheInstallationFirst) {
    interrupt([this](RemovalBackups& backups, InstallationMark& mark) {
        removeOld(backups);
        beginInstalling(mark);
        files_.addFile("/app/old", "version 2");
    });
    sessions_.onUninstall = [this](const platform::Platform& machine) {
        EXPECT_EQ(machine.files.removeFile("/app/old"), 0);
    };
    EXPECT_EQ(recover(), Outcome::kRecovered);
    EXPECT_EQ(loaded_, directory_ + "/description.xml\r\n" + directory_ +
                           "/a\r\nNUMVARS\t0\r\nFILE\tCREATE\t/app/tool\r\n");
    EXPECT_EQ(files_.content("/app/old"), "version 1");
    EXPECT_TRUE(isGone());
}

TEST_F(RecoveryTest, LeavesOutARecordThatWasWrittenInPart) {
    interrupt([this](RemovalBackups&, InstallationMark& mark) {
        beginInstalling(mark, std::string(kLog) + "FILE\tCREATE\t/app");
    });
    EXPECT_EQ(recover(), Outcome::kRecovered);
    EXPECT_THAT(loaded_, Not(HasSubstr("FILE\tCREATE\t/app\r")));
    EXPECT_THAT(loaded_, testing::EndsWith("FILE\tCREATE\t/app/tool\r\n"));
}

TEST_F(RecoveryTest, TakesRecordsAwayThatWerePublished) {
    interrupt([this](RemovalBackups& backups, InstallationMark& mark) {
        removeOld(backups);
        beginInstalling(mark);
        ASSERT_EQ(files_.moveFile(mark.placeOf("/a"), "/app/b.bin"), 0);
        ASSERT_EQ(files_.moveFile(mark.placeOf("/l"), "/app/install.log"), 0);
    });
    EXPECT_EQ(recover(), Outcome::kRecovered);
    EXPECT_THAT(loaded_, HasSubstr("/app/b.bin\r\n"));
    EXPECT_FALSE(files_.hasFile("/app/install.log"));
    EXPECT_FALSE(files_.hasFile("/app/b.bin"));
}

TEST_F(RecoveryTest, PublishesTheRecordsOfAnInstallationOverAnEarlierOne) {
    files_.addFile("/app/install.log", "earlier");
    interrupt([this](RemovalBackups&, InstallationMark& mark) {
        beginInstalling(mark, std::string(kLog) + "FILE\tCRE", true);
    });
    EXPECT_EQ(recover(), Outcome::kRecovered);
    EXPECT_THAT(sessions_.calls, IsEmpty());
    EXPECT_EQ(files_.content("/app/install.log"), kLog);
    EXPECT_TRUE(files_.hasFile("/app/b.bin"));
    EXPECT_TRUE(isGone());
}

TEST_F(RecoveryTest, KeepsOnRecordWhatItCannotUndo) {
    interrupt([this](RemovalBackups&, InstallationMark& mark) { beginInstalling(mark); });
    sessions_.isRemoved = false;
    EXPECT_EQ(recover(), Outcome::kRecovered);
    EXPECT_EQ(files_.content("/app/install.log"), kLog);
    EXPECT_THAT(notes(), Contains(HasSubstr("What it has installed and left is recorded in")));
    EXPECT_TRUE(isGone());
}

TEST_F(RecoveryTest, NeverUndoesTheInstallationTwiceOverWhatCameBack) {
    interrupt([this](RemovalBackups& backups, InstallationMark& mark) {
        removeOld(backups);
        beginInstalling(mark);
    });
    files_.addFile("/app/old", "somebody's");  // so that the removal can't be taken back
    EXPECT_EQ(recover(), Outcome::kIncomplete);
    EXPECT_EQ(sessions_.calls.size(), 3U);
    EXPECT_THAT(notes(), Contains(HasSubstr("/app/old")));
    EXPECT_THAT(notes(), Contains(HasSubstr("The next run tries it once more.")));
    files_.removeFile("/app/old");
    EXPECT_EQ(recover(), Outcome::kRecovered);
    EXPECT_EQ(sessions_.calls.size(), 3U);
    EXPECT_EQ(files_.content("/app/old"), "version 1");
    EXPECT_TRUE(isGone());
}

TEST_F(RecoveryTest, GivesUpAtTheSecondFailureAndKeepsWhatItHas) {
    interrupt([](RemovalBackups& backups, InstallationMark&) { removeOld(backups); });
    files_.addFile("/app/old", "somebody's");
    EXPECT_EQ(recover(), Outcome::kIncomplete);
    EXPECT_EQ(recover(), Outcome::kRecovered);
    EXPECT_THAT(notes(), Contains(HasSubstr(writtenPath(directory_))));
    EXPECT_EQ(recover(), Outcome::kNothing);
    EXPECT_EQ(files_.content("/app/old"), "somebody's");
    EXPECT_EQ(files_.content(directory_ + "/1"), "version 1");
}

TEST_F(RecoveryTest, BringsNothingBackWhileItCannotReadWhatWasInstalled) {
    interrupt([this](RemovalBackups& backups, InstallationMark& mark) {
        removeOld(backups);
        beginInstalling(mark);
    });
    files_.failAt(MemoryFileSystem::Operation::kRead, directory_ + "/l", 1);
    EXPECT_EQ(recover(), Outcome::kIncomplete);
    EXPECT_FALSE(files_.hasFile("/app/old"));
    EXPECT_EQ(recover(), Outcome::kRecovered);
    EXPECT_TRUE(files_.hasFile("/app/old"));
}

TEST_F(RecoveryTest, SaysWhyTheInstallationCannotBeUndone) {
    interrupt([this](RemovalBackups& backups, InstallationMark& mark) {
        removeOld(backups);
        beginInstalling(mark);
    });
    sessions_.loadError = "no description";
    EXPECT_EQ(recover(), Outcome::kRecovered);
    EXPECT_THAT(notes(), Contains(HasSubstr("What was installed can't be taken back: no description")));
    EXPECT_THAT(notes(), Contains(HasSubstr(writtenPath(directory_ + "/undo.log"))));
    EXPECT_TRUE(files_.hasFile("/app/old"));
    EXPECT_TRUE(files_.hasFile(directory_ + "/undo.log"));
    EXPECT_EQ(recover(), Outcome::kNothing);
    EXPECT_TRUE(files_.hasFile(directory_ + "/undo.log"));
}

TEST_F(RecoveryTest, AsksAPerson) {
    interrupt([](RemovalBackups& backups, InstallationMark&) { removeOld(backups); });
    ui_.messageBoxResult = 0;
    EXPECT_EQ(recover(true), Outcome::kDeclined);
    EXPECT_FALSE(files_.hasFile("/app/old"));
    ui_.messageBoxResult = 1;
    EXPECT_EQ(recover(true), Outcome::kRecovered);
    EXPECT_TRUE(files_.hasFile("/app/old"));
}

TEST_F(RecoveryTest, IsAboutProductsAndLogsThatAreAskedFor) {
    interrupt([](RemovalBackups& backups, InstallationMark&) { removeOld(backups, "Former"); });
    EXPECT_EQ(recover(false, {{"Other"}, {"/other.log"}}), Outcome::kNothing);
    EXPECT_FALSE(files_.hasFile("/app/old"));
    EXPECT_EQ(recover(false, {{"Former"}, {}}), Outcome::kRecovered);
    EXPECT_TRUE(files_.hasFile("/app/old"));
}

TEST_F(RecoveryTest, FindsAnInstallationByItsLog) {
    interrupt([this](RemovalBackups&, InstallationMark& mark) { beginInstalling(mark); });
    EXPECT_EQ(recover(false, {{"Renamed"}, {"/app/install.log"}}), Outcome::kRecovered);
}

TEST_F(RecoveryTest, LeavesARunAloneThatIsStillAtWork) {
    interrupt([](RemovalBackups& backups, InstallationMark&) { removeOld(backups, "Former"); });
    const std::string journal = files_.content(directory_ + "/journal");
    files_.addFile(directory_ + "/journal", journal + "\x9eRe");  // in the middle of a record
    machine_.events.lockResults = {LockResult::kTaken, LockResult::kBusy};
    EXPECT_EQ(recover(false, {{"Former"}, {}}), Outcome::kBusy);
    EXPECT_FALSE(files_.hasFile("/app/old"));
    EXPECT_EQ(files_.content(directory_ + "/journal"), journal + "\x9eRe");
}

TEST_F(RecoveryTest, BelievesNothingThatOthersCanChange) {
    interrupt([](RemovalBackups& backups, InstallationMark&) { removeOld(backups); });
    files_.setUnprotected(directory_);
    EXPECT_EQ(recover(), Outcome::kNothing);
    EXPECT_FALSE(files_.hasFile("/app/old"));
    EXPECT_FALSE(isGone());
}

TEST_F(RecoveryTest, PassesOverWhatIsNoJournal) {
    files_.addFile("/var/state/removal-x/journal", "something else");
    EXPECT_EQ(recover(), Outcome::kNothing);
    EXPECT_TRUE(files_.hasFile("/var/state/removal-x/journal"));
}

TEST_F(RecoveryTest, RemovesAJournalWhoseMakerWasKilledBeforeItSaidWhoseItIs) {
    RemovalJournal journal(files_, machine_.environment);
    ASSERT_EQ(journal.open(), 0);
    const std::string directory = journal.directory();
    machine_.events.lockResults = {LockResult::kBusy, LockResult::kBusy};
    EXPECT_EQ(recover(), Outcome::kNothing);
    EXPECT_TRUE(files_.hasDirectory(directory));
    EXPECT_EQ(recover(), Outcome::kNothing);
    EXPECT_FALSE(files_.hasDirectory(directory));
}

TEST_F(RecoveryTest, RemovesDirectoriesWhoseMakersWereKilledBeforeTheyHadAJournal) {
    files_.addDirectory("/var/state/removal-1");
    files_.addFile("/var/state/removal-2/journal", "TANDREL REM");
    files_.addFile("/var/state/removal-3/mine", "");
    machine_.events.lockResults = {LockResult::kBusy};
    recover();
    EXPECT_TRUE(files_.hasDirectory("/var/state/removal-1"));
    recover();
    EXPECT_FALSE(files_.hasDirectory("/var/state/removal-1"));
    EXPECT_FALSE(files_.hasDirectory("/var/state/removal-2"));
    EXPECT_TRUE(files_.hasFile("/var/state/removal-3/mine"));
}

TEST_F(RecoveryTest, RemovesTheEntryOfAProductThatWentWithoutABackup) {
    system_.installed = {{"Demo", "", false, "/app/install.log"}};
    interrupt([](RemovalBackups& backups, InstallationMark&) {
        ASSERT_TRUE(backups.noteForGood("Demo", "/app/install.log"));
    });
    EXPECT_EQ(recover(), Outcome::kNothing);
    EXPECT_FALSE(system_.findUninstallEntry("Demo", 0));
    EXPECT_THAT(notes(), Contains(HasSubstr("An interrupted run has removed Demo")));
}

TEST_F(RecoveryTest, KeepsTheEntryWhoseLogIsThere) {
    system_.installed = {{"Demo", "", false, "/app/install.log"}};
    files_.addFile("/app/install.log", kLog);
    interrupt([](RemovalBackups& backups, InstallationMark&) {
        ASSERT_TRUE(backups.noteForGood("Demo", "/app/install.log"));
    });
    recover();
    EXPECT_TRUE(system_.findUninstallEntry("Demo", 0));
}

TEST_F(RecoveryTest, GivesALogToAnUninstallationThatHasNone) {
    EXPECT_EQ(unfinishedLog(machine_.bundle(), "/app/install.log"), "");
    interrupt([this](RemovalBackups&, InstallationMark& mark) { beginInstalling(mark); });
    const std::string log = unfinishedLog(machine_.bundle(), "/app/install.log");
    EXPECT_THAT(files_.content(log), testing::StartsWith(directory_ + "/description.xml\r\n"));
    EXPECT_EQ(unfinishedLog(machine_.bundle(), "/other.log"), "");
}

}  // namespace

#include "engine/installation_records.h"

#include "engine/changes/change_table.h"
#include "engine/installation_mark.h"
#include "engine/product_state.h"
#include "installation_fixture.h"

namespace {

using Operation = MemoryFileSystem::Operation;

class InstallationRecordsTest : public InstallationTest {
protected:
    PFileConsole logFile_{files_};
    ActionLogWriter writer_{logFile_};
    ChangeJob job_{parts_, writer_, report_};
    InstallationRecords records_{parts_, job_};
};

TEST_F(InstallationRecordsTest, OpensBothUnderTemporaryNamesAndPublishesThem) {
    files_.addDirectory("/app");
    describe(kUninstall);
    variables_.set("A", "1");
    ASSERT_TRUE(records_.open() && records_.begin());
    EXPECT_TRUE(files_.hasFile("/tmp/orinstall1"));
    EXPECT_TRUE(files_.hasFile("/tmp/orinstall2"));
    EXPECT_FALSE(files_.hasFile("/app/install.log"));
    writer_.writeFile(false, "/x");
    EXPECT_TRUE(records_.publish());
    EXPECT_EQ(files_.allFiles(), (std::vector<std::string>{"/app/backup.bin", "/app/install.log"}));
    EXPECT_EQ(installLog(),
              "/app/product.xml\r\n/app/backup.bin\r\nNUMVARS\t1\r\nVAR\tA\t1\r\nFILE\tCREATE\t/x\r\n");
}

TEST_F(InstallationRecordsTest, ExpandsTheFinalNamesAtTheEnd) {
    files_.addDirectory("/late");
    describe(
        "<Installation><Uninstall><InstallLogFile>[WHERE]/install.log</InstallLogFile></Uninstall>"
        "</Installation>");
    variables_.set("WHERE", "/early");
    ASSERT_TRUE(records_.open() && records_.begin());
    variables_.set("WHERE", "/late");
    EXPECT_TRUE(records_.publish());
    EXPECT_TRUE(files_.hasFile("/late/install.log"));
}

TEST_F(InstallationRecordsTest, LeavesNothingWhenTheLogCannotBeOpened) {
    files_.setReadOnly("/tmp");
    describe(kUninstall);
    EXPECT_FALSE(records_.open());
    EXPECT_EQ(log_.lines(), std::vector<std::string>{"ERROR: Obtaining temp filename for install temp log!"});
    EXPECT_TRUE(files_.allFiles().empty());
}

TEST_F(InstallationRecordsTest, RemembersTheArchiveThatItPublishesAndTheOneInItsPlace) {
    const auto digest = [](const std::string& content) { return md5Of(content.data(), content.size()); };
    files_.addFile("/app/backup.bin", "earlier");
    describe(kUninstall);
    ASSERT_TRUE(records_.open() && records_.begin());
    job_.replaced.history.noteContent("/app/file", digest("content"));
    EXPECT_TRUE(records_.publish());
    const WrittenSums sums = ProductState(files_, machine_.environment).load("/app/install.log");
    EXPECT_TRUE(sums.holds("/app/backup.bin", digest("earlier")));
    EXPECT_TRUE(sums.holds("/app/backup.bin", digest(files_.content("/app/backup.bin"))));
}

TEST_F(InstallationRecordsTest, ForgetsTheSumsOfAnEarlierInstallationThatItCannotReplace) {
    WrittenSums earlier;
    earlier.add("/app/backup.bin", md5Of("x", 1));
    ProductState state(files_, machine_.environment);
    ASSERT_TRUE(state.save("/app/install.log", earlier));
    files_.addDirectory("/app");
    describe(kUninstall);
    ASSERT_TRUE(records_.open() && records_.begin());
    files_.failFrom(Operation::kReplaceFile, "/var/state/.tandrel-1.tmp", 1);
    EXPECT_TRUE(records_.publish());
    EXPECT_TRUE(state.load("/app/install.log").isEmpty());
}

// Records that were opened, and are to be published.
// With the mark of an installation at work.
class MarkedRecordsTest : public InstallationTest {
protected:
    MarkedRecordsTest() { files_.addDirectory("/app"); }

    UnfinishedWork later() {
        RemovalJournal journal(files_, machine_.environment);
        journal.look(backups_.journal().directory());
        return WorkNotes(journal).read();
    }

    PFileConsole logFile_{files_};
    ActionLogWriter writer_{logFile_};
    ChangeJob job_{parts_, writer_, report_};
    RemovalBackups backups_{machine_.bundle()};
    InstallationMark mark_{parts_, backups_};
    InstallationRecords records_{parts_, job_, &mark_};
};

TEST_F(MarkedRecordsTest, LieBesideTheMarkUntilTheyArePublished) {
    describe(kUninstall);
    ASSERT_TRUE(records_.open());
    const std::string directory = backups_.journal().directory();
    EXPECT_TRUE(files_.hasFile(directory + "/orinstall1"));
    EXPECT_TRUE(files_.hasFile(directory + "/orinstall2"));
    EXPECT_EQ(later().stage, WorkStage::kBegun);
    ASSERT_TRUE(records_.begin());
    const UnfinishedWork work = later();
    EXPECT_EQ(work.stage, WorkStage::kInstalling);
    EXPECT_EQ(work.places.temporaryLog, directory + "/orinstall1");
    EXPECT_EQ(work.places.temporaryArchive, directory + "/orinstall2");
    EXPECT_EQ(work.places.log, "/app/install.log");
    EXPECT_EQ(work.places.archive, "/app/backup.bin");
    EXPECT_FALSE(work.places.continuesEarlier);
    EXPECT_TRUE(records_.publish());
    backups_.release();
    EXPECT_EQ(files_.allFiles(), (std::vector<std::string>{"/app/backup.bin", "/app/install.log"}));
}

TEST_F(MarkedRecordsTest, SayThatTheyContinueEarlierOnes) {
    describe(kUninstall);
    files_.addFile("/app/install.log", "/app/product.xml\r\n\r\nNUMVARS\t0\r\n");
    ASSERT_TRUE(records_.open() && records_.begin());
    EXPECT_TRUE(later().places.continuesEarlier);
}

TEST_F(MarkedRecordsTest, ContinueDirectoriesThatNoEarlierLogNames) {
    describe(kUninstall);
    backups_.leftDirectories = {"DIR\t1\t/app/un\\"};
    ASSERT_TRUE(records_.open() && records_.begin());
    EXPECT_TRUE(records_.publish());
    EXPECT_THAT(files_.content("/app/install.log"), testing::HasSubstr("DIR\t1\t/app/un\\\r\n"));
}

TEST_F(MarkedRecordsTest, FollowTheFinalNames) {
    describe(
        "<Installation><Uninstall><InstallLogFile>[WHERE]/install.log</InstallLogFile></Uninstall>"
        "</Installation>");
    variables_.set("WHERE", "/app");
    ASSERT_TRUE(records_.open() && records_.begin());
    variables_.set("WHERE", "/late");
    files_.addDirectory("/late");
    EXPECT_TRUE(records_.publish());
    EXPECT_EQ(later().places.log, "/late/install.log");
}

TEST_F(MarkedRecordsTest, StayWithTheMarkWhenTheyCannotBePublished) {
    describe(kUninstall);
    ASSERT_TRUE(records_.open() && records_.begin());
    files_.setReadOnly("/app");
    EXPECT_FALSE(records_.publish());
    backups_.release();
    EXPECT_TRUE(files_.hasFile(records_.publishedLog()));
    EXPECT_EQ(later().stage, WorkStage::kInstalling);
}

TEST_F(MarkedRecordsTest, AreNotBegunWhenTheMarkCannotBeWritten) {
    describe(kUninstall);
    ASSERT_TRUE(records_.open());
    files_.failFrom(Operation::kFlush, backups_.journal().directory() + "/journal", 1);
    EXPECT_FALSE(records_.begin());
    EXPECT_FALSE(files_.hasFile(backups_.journal().directory() + "/orinstall1"));
    EXPECT_EQ(ui_.callsOf("addMessage").size(), 2U);
}

TEST_F(MarkedRecordsTest, AreNotOpenedWithoutTheMark) {
    describe(kUninstall);
    files_.setReadOnly("/var");
    EXPECT_FALSE(records_.open());
    EXPECT_TRUE(files_.allFiles().empty());
}

class PublishTest : public InstallationRecordsTest {
protected:
    PublishTest() { files_.addDirectory("/app"); }

    bool publish(const std::string& log = "/app/install.log",
                 const std::string& archive = "/app/backup.bin") {
        describe("<Installation><Uninstall><InstallLogFile>" + log + "</InstallLogFile><InstallBackupFile>" +
                 archive + "</InstallBackupFile></Uninstall></Installation>");
        EXPECT_TRUE(records_.open() && records_.begin());
        return records_.publish();
    }
    bool hasLog(const std::string& path) { return files_.content(path).ends_with("NUMVARS\t0\r\n"); }
    bool hasArchive(const std::string& path) { return BackupFile(files_).isBackupFile(path); }
};

TEST_F(PublishTest, PublishesBothAndLeavesNoTemporaryFile) {
    EXPECT_TRUE(publish());
    EXPECT_EQ(files_.allFiles(), (std::vector<std::string>{"/app/backup.bin", "/app/install.log"}));
    EXPECT_TRUE(hasLog("/app/install.log"));
    EXPECT_TRUE(hasArchive("/app/backup.bin"));
}

TEST_F(PublishTest, ReplacesWhatIsThere) {
    files_.addFile("/app/install.log", "/app/product.xml\r\n/app/backup.bin\r\nNUMVARS\t1\r\nVAR\tA\t" +
                                           std::string(500, 'l') + "\r\n");
    files_.addFile("/app/backup.bin", std::string(500, 'a'));
    EXPECT_TRUE(publish());
    EXPECT_TRUE(hasLog("/app/install.log"));
    EXPECT_TRUE(hasArchive("/app/backup.bin"));
    EXPECT_LT(files_.content("/app/install.log").size(), 500U);
    EXPECT_LT(files_.content("/app/backup.bin").size(), 500U);
}

TEST_F(PublishTest, CopiesWhatCannotBeMovedForThisUserAlone) {
    files_.addFile("/app/backup.bin", "an old archive that all can read");
    files_.failAt(Operation::kReplaceFile, "/tmp/orinstall1", 1);
    files_.failAt(Operation::kReplaceFile, "/tmp/orinstall2", 1);
    EXPECT_TRUE(publish());
    EXPECT_EQ(files_.allFiles(), (std::vector<std::string>{"/app/backup.bin", "/app/install.log"}));
    EXPECT_TRUE(hasLog("/app/install.log"));
    EXPECT_TRUE(hasArchive("/app/backup.bin"));
    EXPECT_TRUE(files_.isPrivate("/app/install.log"));
    EXPECT_TRUE(files_.isPrivate("/app/backup.bin"));
}

TEST_F(PublishTest, GivesThePublishedRecordsTheRightsOfTheirDirectory) {
    EXPECT_TRUE(publish());
    EXPECT_TRUE(files_.hasDirectoryRights("/app/install.log"));
    EXPECT_TRUE(files_.hasDirectoryRights("/app/backup.bin"));
}

TEST_F(PublishTest, GivesCopiedRecordsTheRightsOfTheirDirectory) {
    files_.failAt(Operation::kReplaceFile, "/tmp/orinstall1", 1);
    files_.failAt(Operation::kReplaceFile, "/tmp/orinstall2", 1);
    EXPECT_TRUE(publish());
    EXPECT_TRUE(files_.hasDirectoryRights("/app/install.log"));
    EXPECT_TRUE(files_.hasDirectoryRights("/app/backup.bin"));
}

TEST_F(PublishTest, PublishesRecordsThatStayPrivate) {
    files_.failAt(Operation::kTakeDirectoryRights, "/app/install.log", 1, 5);
    EXPECT_TRUE(publish());
    EXPECT_TRUE(hasLog("/app/install.log"));
    EXPECT_EQ(log_.lines(),
              std::vector<std::string>{"WARNING: The install log /app/install.log keeps the rights "
                                       "of a private file (5)"});
}

TEST_F(PublishTest, KeepsWhatIsThereUntilTheCopyIsComplete) {
    files_.addFile("/app/backup.bin", "an old archive");
    files_.addFile("/app/backup.bin.1.tmp", "somebody's");
    files_.failAt(Operation::kReplaceFile, "/tmp/orinstall2", 1);
    files_.failAt(Operation::kReplaceFile, "/app/backup.bin.2.tmp", 1);
    EXPECT_FALSE(publish());
    EXPECT_EQ(files_.content("/app/backup.bin"), "an old archive");
    EXPECT_EQ(files_.content("/app/backup.bin.1.tmp"), "somebody's");
    EXPECT_FALSE(files_.hasFile("/app/backup.bin.2.tmp"));
}

TEST_F(PublishTest, NamesOnTheScreenWhatItLeavesInTheTemporaryDirectory) {
    EXPECT_FALSE(publish("/missing/install.log"));
    EXPECT_EQ(
        ui_.countOf("addMessage(\"The install log could not be written to /missing/install.log; it stays "
                    "at /tmp/orinstall1\")"),
        1);
}

TEST_F(PublishTest, PublishesNothingUnderEmptyNames) {
    EXPECT_TRUE(publish("", ""));
    EXPECT_TRUE(files_.allFiles().empty());
    EXPECT_TRUE(log_.lines().empty());
}

TEST_F(PublishTest, LogsALogThatCannotBePublishedAndKeepsIt) {
    EXPECT_FALSE(publish("/missing/install.log"));
    EXPECT_TRUE(hasLog("/tmp/orinstall1"));
    EXPECT_TRUE(hasArchive("/app/backup.bin"));
    EXPECT_EQ(log_.lines(), std::vector<std::string>{"ERROR: The install log could not be written to "
                                                     "/missing/install.log; it stays at /tmp/orinstall1"});
}

TEST_F(PublishTest, KeepsAnArchiveThatCannotBePublished) {
    files_.failAt(Operation::kReplaceFile, "/tmp/orinstall2", 1);
    files_.failFrom(Operation::kWrite, "/app/backup.bin.1.tmp", 1, 112);
    EXPECT_FALSE(publish());
    EXPECT_TRUE(hasArchive("/tmp/orinstall2"));
    EXPECT_EQ(log_.lines(), std::vector<std::string>{"ERROR: The backup file could not be written to "
                                                     "/app/backup.bin; it stays at /tmp/orinstall2"});
}

class LoggedVariablesTest : public EngineTest {
protected:
    std::string names() {
        std::string all;
        for (const LoggedVariable& variable : loggedVariables(parts_.model)) {
            all += std::string(variable.name) + "=" + std::string(variable.value) + ";";
        }
        return all;
    }
};

TEST_F(LoggedVariablesTest, KeepsTheStoresOrderWithoutWhatIsExcludedFromLogs) {
    for (const char* name : {"B", "HIDDEN", "A", "CONFIG"}) {
        variables_.set(name, "1");
    }
    exclusions_.add("HIDDEN", kExcludeFromAll);
    exclusions_.add("CONFIG", kExcludeFromConfig);
    EXPECT_EQ(names(), "B=1;A=1;CONFIG=1;");
}

TEST_F(LoggedVariablesTest, ComparesExclusionsExactly) {
    variables_.set("Hidden", "1");
    exclusions_.add("HIDDEN", kExcludeFromLog);
    EXPECT_EQ(names(), "Hidden=1;");
}

TEST_F(LoggedVariablesTest, HasNothingToKeepInAnEmptyStore) {
    EXPECT_EQ(names(), "");
}

}  // namespace

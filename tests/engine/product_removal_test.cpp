#include "engine/product_removal.h"

#include <gmock/gmock.h>

#include "base/errors.h"
#include "engine/product_state.h"
#include "engine/removal_playback.h"
#include "engine_fixture.h"
#include "fakes/fake_nested_sessions.h"
#include "package/backup_file.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr char kLog[] =
    "/app/product.xml\r\n/app/backup.bin\r\nNUMVARS\t0\r\nDIR\t1\t/app/\r\nFILE\tCREATE\t/app/tool\r\n";

class ProductRemovalTest : public EngineTest {
protected:
    ProductRemovalTest() {
        files_.addFile("/app/install.log", kLog);
        files_.addFile("/app/tool", "version 1");
        system_.installed = {{"Demo", "", false, "/app/install.log"}};
        sessions_.records = {"/app/install.log", "/app/backup.bin", "/app/product.xml", "/app/remove"};
    }

    bool remove(const ProductRemoval::Request& request = {"Demo", "", true}) {
        return removal_.remove(request, report_);
    }
    std::string failure(const ProductRemoval::Request& request = {"Demo", "", true}) {
        try {
            remove(request);
        } catch (const InstallerError& error) {
            return error.what();
        }
        return "(none)";
    }
    void makeArchive(const std::string& path) {
        BackupFile archive(files_);
        ASSERT_TRUE(archive.openForWriting(path));
        ASSERT_EQ(archive.close(), 0);
    }
    std::vector<std::string> temporaryFiles() const {
        std::vector<std::string> found;
        for (const std::string& path : files_.allFiles()) {
            if (path.starts_with("/tmp/")) {
                found.push_back(path);
            }
        }
        return found;
    }

    FakeNestedSessions sessions_;
    static inline const ProductRemoval::Request kReversible = {"Demo", "", true, true};

    MemoryEnvironment& environment_ = machine_.environment;
    RemovalBackups backups_{machine_.bundle()};
    ProductRemoval removal_{parts_, sessions_, backups_, errors_};
};

TEST_F(ProductRemovalTest, ReadsAPrivateCopyOfTheRegisteredLog) {
    std::string copied;
    sessions_.onLoad = [&](const std::string& log) {
        copied = files_.content(log);
        EXPECT_TRUE(files_.isPrivate(log));
    };
    EXPECT_TRUE(remove({"Demo", "", false}));
    EXPECT_EQ(copied, kLog);
    EXPECT_THAT(sessions_.calls, ElementsAre("load(/tmp/orinstall1)", "uninstall", "release"));
    EXPECT_THAT(temporaryFiles(), IsEmpty());
    EXPECT_THAT(log_.lines(), ElementsAre("Uninstalling \"Demo\"",
                                          "Skipping creation of uninstall backup file for \"Demo\""));
}

TEST_F(ProductRemovalTest, WorksOnTheMachineItselfWhereNothingComesBack) {
    EXPECT_TRUE(remove({"Demo", "", false}));
    EXPECT_EQ(sessions_.files, &files_);
    EXPECT_FALSE(backups_.isOpen());
    EXPECT_FALSE(backups_.isOnlyCopy);
}

// The journal of the session is in the way when the product's own state goes.
TEST_F(ProductRemovalTest, TakesTheStateDirectoryAlongThatWasMadeForAProductThatIsGoneForGood) {
    ASSERT_TRUE(ProductState(files_, environment_).save("/app/install.log", {}));
    ASSERT_EQ(backups_.journal().open(), 0);
    sessions_.onUninstall = [this](const platform::Platform& machine) {
        EXPECT_TRUE(ProductState(machine.files, environment_).remove("/app/install.log"));
    };
    EXPECT_TRUE(remove({"Demo", "", false}));
    EXPECT_TRUE(files_.hasDirectory("/var/state"));
    backups_.isOnlyCopy = false;
    backups_.release();
    EXPECT_FALSE(files_.hasDirectory("/var"));
}

TEST_F(ProductRemovalTest, WorksOnAMachineOnWhichTheRemovalCanBeTakenBack) {
    sessions_.onUninstall = [](const platform::Platform& machine) { machine.files.removeFile("/app/tool"); };
    EXPECT_TRUE(remove({"Demo", "", false, true}));
    EXPECT_FALSE(files_.hasFile("/app/tool"));
    EXPECT_TRUE(backups_.isOnlyCopy);
    EXPECT_TRUE(RemovalPlayback(machine_.bundle(), backups_.journal(), report_).run());
    EXPECT_EQ(files_.content("/app/tool"), "version 1");
    EXPECT_EQ(files_.content("/app/install.log"), kLog);
}

TEST_F(ProductRemovalTest, KeepsItsBackupsWithTheJournal) {
    EXPECT_TRUE(remove(kReversible));
    const std::string directory = backups_.journal().directory() + "/";
    EXPECT_TRUE(backups_.uninstallBackups[0].archivePath.starts_with(directory));
    EXPECT_TRUE(backups_.uninstallBackups[0].directoriesPath.starts_with(directory));
    EXPECT_TRUE(backups_.journal().isArchived("/app/tool"));
    EXPECT_THAT(temporaryFiles(), IsEmpty());
}

TEST_F(ProductRemovalTest, NotesForALaterRunWhatItRemovesAndWhereTheBackupsAre) {
    sessions_.onUninstall = [this](const platform::Platform&) {
        RemovalJournal& journal = backups_.journal();
        EXPECT_EQ(journal.noteOf("application 1"), "Demo");
        EXPECT_EQ(journal.noteOf("log 1"), "/app/install.log");
        EXPECT_EQ(journal.noteOf("archive 1"), backups_.uninstallBackups[0].archivePath);
        EXPECT_EQ(journal.noteOf("directories 1"), backups_.uninstallBackups[0].directoriesPath);
    };
    EXPECT_TRUE(remove(kReversible));
}

TEST_F(ProductRemovalTest, RemovesNothingWithoutAPlaceForTheJournal) {
    environment_.state.clear();
    EXPECT_EQ(failure(kReversible),
              "ERROR: The removal of earlier versions couldn't be taken back: there is no directory for its "
              "records");
    EXPECT_THAT(sessions_.calls, IsEmpty());
    EXPECT_THAT(temporaryFiles(), IsEmpty());
}

TEST_F(ProductRemovalTest, RemovesNothingWhenTheJournalCannotBeWritten) {
    backups_.openMachine();
    files_.setFreeSpace(sizeof kLog);
    EXPECT_THAT(failure(kReversible), HasSubstr("ERROR: The removal of Demo couldn't be taken back"));
    EXPECT_THAT(sessions_.calls, Not(testing::Contains("uninstall")));
}

TEST_F(ProductRemovalTest, TakesALogThatTheCallerKnows) {
    files_.addFile("/old/install.log", kLog);
    EXPECT_TRUE(remove({"Old", "/old/install.log", false}));
    EXPECT_TRUE(log_.hasLine(
        "WARNING: Running integrated uninstallation with custom install log file: \"/old/install.log\""));
}

TEST_F(ProductRemovalTest, SavesTheFilesBeforeItRemovesThem) {
    sessions_.name = "Demo 1";
    sessions_.onUninstall = [&](const platform::Platform&) {
        EXPECT_TRUE(backups_.isOnlyCopy);
        files_.removeFile("/app/tool");
    };
    EXPECT_TRUE(remove());
    ASSERT_EQ(backups_.uninstallBackups.size(), 1U);
    const UninstallBackup& backup = backups_.uninstallBackups[0];
    EXPECT_EQ(backup.productName, "Demo 1");
    EXPECT_THAT(files_.content(backup.archivePath), HasSubstr("version 1"));
    EXPECT_EQ(files_.content(backup.directoriesPath), "/app/\r\n");
    EXPECT_THAT(temporaryFiles(), ElementsAre(backup.archivePath, backup.directoriesPath));
}

TEST_F(ProductRemovalTest, HandsOverTheCopiesOfInstalledArchives) {
    makeArchive("/app/tool2");
    files_.addFile("/app/install.log", std::string(kLog) + "FILE\tCREATE\t/app/tool2\r\n");
    EXPECT_TRUE(remove());
    ASSERT_EQ(backups_.nestedBackups.size(), 1U);
    EXPECT_EQ(backups_.nestedBackups[0].originalPath, "/app/tool2");
}

TEST_F(ProductRemovalTest, GivesTheSessionTheOverridesForThisApplication) {
    describe(
        "<Installation><UninstallOverrides><Variable From='KEEP'>KEEP_DATA</Variable>"
        "<Variable AppList='Other' From='KEEP'>X</Variable></UninstallOverrides></Installation>");
    variables_.set("KEEP", "yes");
    EXPECT_TRUE(remove());
    EXPECT_THAT(sessions_.calls, testing::Contains("setVariable(KEEP_DATA, yes)"));
    EXPECT_THAT(sessions_.calls, Not(testing::Contains("setVariable(X, yes)")));
}

TEST_F(ProductRemovalTest, AddsTheErrorsOfTheRemovalToThoseOfTheSession) {
    sessions_.isRemoved = false;
    sessions_.error = "FAILED to delete /app/tool";
    EXPECT_FALSE(remove());
    EXPECT_THAT(errors_, testing::Contains("FAILED to delete /app/tool"));
}

TEST_F(ProductRemovalTest, LeavesNoRecordOfAProductThatHasGone) {
    makeArchive("/app/backup.bin");
    EXPECT_TRUE(remove());
    EXPECT_FALSE(files_.hasFile("/app/install.log"));
    EXPECT_FALSE(files_.hasFile("/app/backup.bin"));
}

TEST_F(ProductRemovalTest, RemovesNothingThatALogOnlyCallsItsArchive) {
    files_.addFile("/app/backup.bin", "a letter");
    EXPECT_TRUE(remove());
    EXPECT_TRUE(files_.hasFile("/app/backup.bin"));
}

TEST_F(ProductRemovalTest, CopiesTheRecordsThatStayForARepetition) {
    makeArchive("/app/backup.bin");
    sessions_.isRemoved = false;
    EXPECT_FALSE(remove(kReversible));
    EXPECT_TRUE(files_.hasFile("/app/install.log"));
    ASSERT_EQ(backups_.nestedBackups.size(), 2U);
    EXPECT_EQ(backups_.nestedBackups[0].originalPath, "/app/install.log");
    EXPECT_EQ(files_.content(backups_.nestedBackups[0].copyPath), kLog);
    EXPECT_EQ(backups_.nestedBackups[1].originalPath, "/app/backup.bin");
    EXPECT_TRUE(files_.isPrivate(backups_.nestedBackups[1].copyPath));
}

TEST_F(ProductRemovalTest, ContinuesTheDirectoriesOfAProductWhoseLogIsTheFirstThingToGo) {
    sessions_.isRemoved = false;
    EXPECT_FALSE(remove(kReversible));
    EXPECT_THAT(backups_.leftDirectories, IsEmpty());  // the log is still there
    sessions_.onUninstall = [](const platform::Platform& machine) {
        machine.files.removeFile("/app/install.log");
    };
    EXPECT_FALSE(remove(kReversible));
    EXPECT_THAT(backups_.leftDirectories, ElementsAre("DIR\t1\t/app/"));
}

TEST_F(ProductRemovalTest, SaysWhichRecordItCannotCopy) {
    sessions_.isRemoved = false;
    system_.temporaryNamesLeft = 3;
    EXPECT_FALSE(remove(kReversible));
    EXPECT_THAT(ui_.callsOf("addMessage"),
                ElementsAre("addMessage(\"There is no copy of " + writtenPath("/app/install.log") +
                            ", which the new version may replace\")"));
}

TEST_F(ProductRemovalTest, RemovesTheProductAlthoughItsBackupFails) {
    files_.setFreeSpace(static_cast<std::int64_t>(sizeof(kLog)) + 10);
    EXPECT_TRUE(remove());
    EXPECT_TRUE(log_.hasLine("ERROR: Failed to create uninstall backup of files"));
    EXPECT_THAT(sessions_.calls, testing::Contains("uninstall"));
    EXPECT_THAT(backups_.uninstallBackups, IsEmpty());
    EXPECT_THAT(temporaryFiles(), IsEmpty());
}

TEST_F(ProductRemovalTest, FailsForAnEntryWithoutALog) {
    system_.installed = {{"Demo", "", false, ""}};
    EXPECT_EQ(failure(), "ERROR: Obtaining actionlog filename for \"Demo\"");
}

TEST_F(ProductRemovalTest, FailsWhenTheLogHasGone) {
    files_.removeFile("/app/install.log");
    EXPECT_EQ(failure(), "ERROR: Unable to copy temporary log file for uninstallation of Demo");
    EXPECT_THAT(sessions_.calls, IsEmpty());
}

TEST_F(ProductRemovalTest, FailsWithoutNamesForItsFiles) {
    for (const auto& [names, text] : std::vector<std::pair<int, std::string>>{
             {0, "ERROR: Unable to obtain temporary file for uninstall log of Demo"},
             {1, "ERROR: Unable to obtain temporary file for files backup"},
             {2, "ERROR: Unable to obtain temporary file for dirs backup"}}) {
        system_.temporaryNamesLeft = names;
        EXPECT_EQ(failure(), text);
        EXPECT_THAT(temporaryFiles(), IsEmpty());
        EXPECT_FALSE(backups_.isOnlyCopy);
    }
    EXPECT_THAT(sessions_.calls, Not(testing::Contains("uninstall")));
}

TEST_F(ProductRemovalTest, ChangesNothingWhenTheProductCannotBeRead) {
    sessions_.loadError = "ERROR: Error parsing installation file";
    EXPECT_EQ(failure(), "ERROR: Error parsing installation file");
    EXPECT_THAT(sessions_.calls, ElementsAre("load(/tmp/orinstall1)", "release"));
    EXPECT_THAT(temporaryFiles(), IsEmpty());
    EXPECT_FALSE(backups_.isOnlyCopy);
}

}  // namespace

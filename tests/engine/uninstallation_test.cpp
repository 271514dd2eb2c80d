#include "engine/uninstallation.h"

#include <gmock/gmock.h>

#include <functional>

#include "engine/file_in_use.h"
#include "engine/product_state.h"
#include "engine_fixture.h"
#include "package/backup_file.h"
#include "platform/written_path.h"
#include "support/p_file_stream.h"
#include "support/text_mode.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class UninstallationTest : public EngineTest {
protected:
    UninstallationTest() {
        files_.addDirectory("/app");
        describe(
            "<InstallerControlVariables><UninstallError>ERR</UninstallError></InstallerControlVariables>"
            "<ProductDesc><Fullname>Demo</Fullname><Website>web</Website><MajorVersion>1</MajorVersion>"
            "<MinorVersion>2</MinorVersion><MinestVersion>3</MinestVersion></ProductDesc>"
            "<Installation><Uninstall><InstallLogFile>[DIR]/un/install.log</InstallLogFile>"
            "<InstallBackupFile>[DIR]/un/backup.bin</InstallBackupFile>"
            "<UninstallXmlFile>[DIR]/un/install.xml</UninstallXmlFile>"
            "<UninstallCmd>[DIR]/un/installer</UninstallCmd></Uninstall></Installation>");
    }

    static constexpr char kCleaning[] =
        "<UninstallWildcards><F Dest='[DIR]/un'>install.log</F><F Dest='[DIR]/un'>backup.bin</F>"
        "</UninstallWildcards>";

    // The session reads a copy of the log, as the second stage of the program does.
    void openLog(const std::string& content, const std::string& path = "/app/install.log") {
        files_.addFile(path, content);
        files_.addFile("/tmp/copy.log", content);
        log_file_ = std::make_unique<PFileStream>(files_);
        ASSERT_EQ(log_file_->openFile("/tmp/copy.log", PFileStream::kGenericRead, PFileStream::kShareRead,
                                      PFileStream::kOpenExisting),
                  0);
    }
    // Undoes a log with these records after its head.
    bool undo(const std::string& records) {
        openLog("/app/install.xml\r\n/app/backup.bin\r\nNUMVARS\t1\r\nVAR\tFILE\tCREATE\r\n" + records);
        return run();
    }
    bool run(const std::optional<std::string>& backupPath = std::nullopt) {
        Report report(&ui_, &errors_);
        return uninstallation_.run(log_file_.get(), backupPath, report, isToEnd_);
    }
    // A walk of another session over the log that is on the disk.
    bool runAgain() {
        openLog(files_.content("/app/un/install.log"), "/app/un/install.log");
        Report report(&ui_, &errors_);
        Uninstallation again(parts_);
        again.unregister(report_);
        return again.run(log_file_.get(), std::nullopt, report);
    }
    // A product whose own files are in /app/un, with an entry in the list of applications and one more file.
    // `records` are those of its other changes.
    void installProduct(const std::string& records) {
        describe(kCleaning);
        for (const char* const name : {"install.log", "install.xml", "installer"}) {
            files_.addFile(std::string("/app/un/") + name, name);
        }
        files_.removeFile("/app/un/backup.bin");
        BackupFile archive(files_);
        ASSERT_TRUE(archive.openForWriting("/app/un/backup.bin"));
        ASSERT_EQ(archive.close(), 0);
        files_.addFile("/app/tool", "");
        system_.installed = {{"Demo", "", false, ""}};
        openLog(
            "/app/un/install.xml\r\n/app/un/backup.bin\r\nNUMVARS\t1\r\nVAR\tDIR\t/app\r\n"
            "DIR\t2\t/app/un/\r\nFILE\tCREATE\t/app/un\\installer\r\nFILE\tCREATE\t/app/un\\install.xml\r\n"
            "FILE\tCREATE\t/app/tool\r\n" +
                records,
            "/app/un/install.log");
        EXPECT_TRUE(uninstallation_.unregister(report_));
    }
    bool isRepeatable() const {
        return files_.hasFile("/app/un/install.log") && files_.hasFile("/app/un/backup.bin") &&
               files_.hasFile("/app/un/install.xml") && files_.hasFile("/app/un/installer") &&
               !system_.installed.empty();
    }
    bool isGone() const { return !files_.hasDirectory("/app") && system_.installed.empty(); }

    void prepare(const std::optional<std::string>& backupPath = std::nullopt) {
        Report report(&ui_, &errors_);
        uninstallation_.prepare(log_file_.get(), backupPath, report);
    }
    std::string errorVariable() { return valueOf("ERR"); }
    // Puts `former` into the archive, as an installation does that replaces it by `installed`.
    void backUp(const std::string& path, const std::string& former, const std::string& installed) {
        files_.addFile(path, installed);
        BackupFile archive(files_);
        const std::uint32_t sum = archive.fileCheckSum(path);
        files_.addFile(path, former);
        ASSERT_TRUE(archive.openForWriting("/app/backup.bin"));
        ASSERT_EQ(archive.addFile(path, sum), std::nullopt);
        ASSERT_EQ(archive.close(), 0);
        files_.addFile(path, installed);
    }
    // As the installation that wrote the archive has remembered it.
    void rememberArchive(const std::string& path, const std::string& logPath) {
        WrittenSums sums;
        const std::string content = files_.content(path);
        sums.add(path, md5Of(content.data(), content.size()));
        ASSERT_TRUE(ProductState(files_, machine_.environment).save(logPath, sums));
    }
    std::vector<std::string> lines() const { return ui_.callsOf("addFileLine(\""); }

    std::function<bool()> isToEnd_;
    std::unique_ptr<PFileStream> log_file_;
    Uninstallation uninstallation_{parts_};
};

TEST_F(UninstallationTest, DeletesTheFilesOfTheLogAndReportsEach) {
    files_.addFile("/app/a", "");
    EXPECT_TRUE(undo("FILE\tCREATE\t/app/a\r\nFILE\tCREATE\t/app/gone\r\nFILE\tOTHER\t/app/b\r\n"));
    EXPECT_FALSE(files_.hasFile("/app/a"));
    EXPECT_THAT(lines(),
                ElementsAre("addFileLine(\"Delete /app/a\", 1)", "addFileLine(\"Missing /app/gone\", 0)"));
    EXPECT_THAT(errors_, IsEmpty());
    EXPECT_EQ(errorVariable(), "(none)");
}

TEST_F(UninstallationTest, ShowsItsStepsInOrder) {
    EXPECT_TRUE(undo("ENV\tCREATE\tX\r\nDIR\t1\t/none/\r\n"));
    EXPECT_THAT(ui_.callsOf("set"),
                ElementsAre("setStatusText(\"Uninstalling\")", "setCurrentProgress(0)",
                            "setCurrentProgress(34)", "setCurrentProgress(67)", "setCurrentProgress(100)",
                            "setStatusText(\"Updating environment\")",
                            "setStatusText(\"The uninstall was successful.\")"));
    EXPECT_EQ(ui_.countOf("beginProgress"), 1);
    EXPECT_EQ(ui_.countOf("endProgress"), 1);
}

TEST_F(UninstallationTest, GoesOnAfterAFileThatCannotBeDeleted) {
    files_.addFile("/app/a", "");
    files_.addFile("/app/b", "");
    files_.failFrom(MemoryFileSystem::Operation::kRemoveFile, "/app/a", 1);
    EXPECT_FALSE(undo("FILE\tCREATE\t/app/a\r\nFILE\tCREATE\t/app/b\r\n"));
    EXPECT_FALSE(files_.hasFile("/app/b"));
    EXPECT_THAT(errors_, ElementsAre("FAILED to delete /app/a"));
    EXPECT_EQ(errorVariable(), "1");
    EXPECT_EQ(ui_.callsOf("setStatusText").back(),
              "setStatusText(\"There were errors during the uninstall.\")");
}

TEST_F(UninstallationTest, StopsAProgramWhoseFileCannotBeDeleted) {
    files_.addFile("/app/run.exe", "");
    files_.failAt(MemoryFileSystem::Operation::kRemoveFile, "/app/run.exe", 1);
    system_.runningFrom.insert("/app/run.exe");
    system_.looksBeforeEnd = 3;
    EXPECT_TRUE(undo("FILE\tCREATE\t/app/run.exe\r\n"));
    EXPECT_FALSE(files_.hasFile("/app/run.exe"));
    EXPECT_LE(system_.slept, FileInUse::kProgramEndMilliseconds + 100);
}

TEST_F(UninstallationTest, RestoresFormerContentAndKeepsIt) {
    backUp("/app/readme", "former", "installed");
    EXPECT_TRUE(undo("FILE\tOVER\t/app/readme\r\nFILE\tCREATE\t/app/backup.bin\r\n"));
    EXPECT_EQ(files_.content("/app/readme"), "former");
    EXPECT_FALSE(files_.hasFile("/app/backup.bin"));
}

TEST_F(UninstallationTest, UsesTheDescribedArchiveWhereTheLogNamesNoneThatIsThere) {
    backUp("/app/readme", "former", "installed");
    files_.addFile("/app/un/backup.bin", files_.content("/app/backup.bin"));
    openLog(
        "/app/install.xml\r\n/app/backuq.bin\r\nNUMVARS\t1\r\nVAR\tDIR\t/app\r\nFILE\tOVER\t/app/readme\r\n");
    EXPECT_TRUE(run());
    EXPECT_EQ(files_.content("/app/readme"), "former");
    EXPECT_EQ(ui_.countOf(
                  "addMessage(\"There is no backup archive /app/backuq.bin; /app/un/backup.bin is used.\")"),
              1);
}

TEST_F(UninstallationTest, KeepsWhatItRestoredOrLeftWhenTheArchiveIsDamaged) {
    backUp("/app/readme", "former", "installed");
    files_.addFile("/app/readme", "edited");
    files_.addFile("/app/backup.bin", files_.content("/app/backup.bin") + "x");
    files_.addFile("/app/new", "installed");
    EXPECT_FALSE(undo("FILE\tOVER\t/app/readme\r\nFILE\tOVER\t/app/new\r\n"));
    EXPECT_EQ(files_.content("/app/readme"), "edited");
    EXPECT_EQ(files_.content("/app/new"), "installed");
    EXPECT_TRUE(files_.hasFile("/app/backup.bin"));
}

TEST_F(UninstallationTest, UsesTheDescribedArchiveWhereTheLogNamesNone) {
    backUp("/app/readme", "former", "installed");
    files_.addFile("/app/un/backup.bin", files_.content("/app/backup.bin"));
    openLog("/app/install.xml\r\n\r\nNUMVARS\t1\r\nVAR\tDIR\t/app\r\nFILE\tOVER\t/app/readme\r\n");
    EXPECT_TRUE(run());
    EXPECT_EQ(files_.content("/app/readme"), "former");
    EXPECT_EQ(
        ui_.countOf("addMessage(\"The install log names no backup archive; /app/un/backup.bin is used.\")"),
        1);
}

TEST_F(UninstallationTest, KeepsTheDescribedArchiveForARepetitionThatNeedsIt) {
    describe(kCleaning);
    files_.addFile("/app/un/installer", "");
    files_.addFile("/app/mine", "");
    backUp("/app/readme", "former", "installed");
    ASSERT_EQ(files_.replaceFile("/app/backup.bin", "/app/un/backup.bin"), 0);
    openLog("/app/install.xml\r\n\r\nNUMVARS\t1\r\nVAR\tDIR\t/app\r\nDIR\t1\t/app/\r\n");
    EXPECT_FALSE(run());
    EXPECT_TRUE(files_.hasFile("/app/un/backup.bin"));
}

TEST_F(UninstallationTest, SaysThatAnArchiveHasBeenChangedSinceTheInstallation) {
    installProduct("FILE\tOVER\t/shared/readme\r\n");
    backUp("/shared/readme", "former", "installed");
    ASSERT_EQ(files_.replaceFile("/app/backup.bin", "/app/un/backup.bin"), 0);
    rememberArchive("/app/un/backup.bin", "/app/un/install.log");
    std::string content = files_.content("/app/un/backup.bin");
    content.replace(content.find("former"), 6, "farmer");
    files_.addFile("/app/un/backup.bin", content);
    EXPECT_FALSE(run());
    EXPECT_EQ(ui_.countOf("addMessage(\"The backup archive /app/un/backup.bin has been changed since the "
                          "installation. What was restored from it may be damaged.\")"),
              1);
    EXPECT_TRUE(isRepeatable());
    files_.removeFile("/app/un/backup.bin");
    EXPECT_TRUE(runAgain());
    EXPECT_EQ(files_.content("/shared/readme"), "farmer");
    EXPECT_TRUE(isGone());
}

TEST_F(UninstallationTest, BelievesAnArchiveThatIsAsItWasWritten) {
    installProduct("");
    rememberArchive("/app/un/backup.bin", "/app/un/install.log");
    EXPECT_TRUE(run());
    EXPECT_TRUE(isGone());
}

TEST_F(UninstallationTest, KeepsAndNamesRestorableFilesWhenTheArchiveIsGone) {
    files_.addFile("/app/readme", "changed or not");
    EXPECT_TRUE(undo("FILE\tOVER\t/app/readme\r\nFILE\tOVER\t/app/gone\r\n"));
    EXPECT_EQ(files_.content("/app/readme"), "changed or not");
    EXPECT_THAT(lines(), ElementsAre("addFileLine(\"Left /app/readme\", 1)"));
}

TEST_F(UninstallationTest, RemovesEverythingInTheEndOfACleanWalk) {
    installProduct("");
    EXPECT_TRUE(run());
    EXPECT_TRUE(isGone());
    EXPECT_THAT(
        lines(),
        ElementsAre("addFileLine(\"Delete /app/tool\", 0)", "addFileLine(\"Delete: /app/un/install.log\", 1)",
                    "addFileLine(\"Delete: /app/un/backup.bin\", 0)",
                    "addFileLine(\"Delete " + platform::writtenPath("/app/un\\installer") + "\", 0)",
                    "addFileLine(\"Delete " + platform::writtenPath("/app/un\\install.xml") + "\", 0)",
                    "addFileLine(\"Remove /app/un\", 0)", "addFileLine(\"Remove /app\", 0)"));
}

TEST_F(UninstallationTest, CanBeRepeatedAfterAFileThatCouldNotBeDeleted) {
    installProduct("FILE\tCREATE\t/app/held\r\n");
    files_.addFile("/app/held", "");
    files_.failAt(MemoryFileSystem::Operation::kRemoveFile, "/app/held", 1);
    EXPECT_FALSE(run());
    EXPECT_FALSE(files_.hasFile("/app/tool"));
    EXPECT_TRUE(isRepeatable());
    EXPECT_EQ(
        ui_.callsOf("addMessage").back(),
        "addMessage(\"The uninstallation is not complete. What it needs to be repeated has been left.\")");
    EXPECT_FALSE(uninstallation_.unregister(report_));
    EXPECT_TRUE(isRepeatable());
    EXPECT_TRUE(runAgain());
    EXPECT_TRUE(isGone());
}

TEST_F(UninstallationTest, CanBeRepeatedAfterAFileThatCouldNotBeRestored) {
    installProduct("FILE\tOVER\t/shared/readme\r\n");
    backUp("/shared/readme", "former", "installed");
    ASSERT_EQ(files_.replaceFile("/app/backup.bin", "/app/un/backup.bin"), 0);
    files_.setReadOnly("/shared");
    EXPECT_FALSE(run());
    EXPECT_EQ(files_.content("/shared/readme"), "installed");
    EXPECT_TRUE(isRepeatable());
    files_.clearFaults();
    EXPECT_TRUE(runAgain());
    EXPECT_EQ(files_.content("/shared/readme"), "former");
    EXPECT_TRUE(isGone());
}

TEST_F(UninstallationTest, CanBeRepeatedAfterADirectoryThatHeldForeignFiles) {
    installProduct("");
    files_.addFile("/app/mine", "");
    EXPECT_FALSE(run());
    EXPECT_TRUE(isRepeatable());
    files_.removeFile("/app/mine");
    EXPECT_TRUE(runAgain());
    EXPECT_TRUE(isGone());
}

TEST_F(UninstallationTest, CanBeRepeatedAfterAnEditThatCouldNotBeUndone) {
    installProduct(
        "FILE\tCREATE\t/app/changes\r\nFILE\tCREATE\t/app/edited\r\nMODIFYFILE\tADDAFTER\t/app/edited\t/app/"
        "changes\r\n"
        "MODIFYFILE\tADDAFTER\t/shared/f\t/app/changes\r\n");
    files_.addFile("/app/changes", "1\nline\n1\nadded\n");
    files_.addFile("/app/edited", "line\nadded\n");
    files_.addFile("/shared/f", "line\nadded\n");
    files_.setReadOnly("/shared");
    EXPECT_FALSE(run());
    EXPECT_TRUE(files_.hasFile("/app/changes"));
    EXPECT_FALSE(files_.hasFile("/app/edited"));
    EXPECT_TRUE(isRepeatable());
    files_.clearFaults();
    EXPECT_TRUE(runAgain());
    EXPECT_EQ(files_.content("/shared/f"), std::string("line") + OUtils::textLineEnd());
    EXPECT_TRUE(isGone());
}

class UnreadableLogTest : public UninstallationTest, public testing::WithParamInterface<int> {};

TEST_P(UnreadableLogTest, EndsWellOrCanBeRepeated) {
    installProduct("FILE\tCREATE\t/app/changes\r\nMODIFYFILE\tADDAFTER\t/shared/f\t/app/changes\r\n");
    files_.addFile("/app/changes", "1\nline\n1\nadded\n");
    files_.addFile("/shared/f", "line\nadded\n");
    files_.failAt(MemoryFileSystem::Operation::kRead, "/tmp/copy.log", GetParam());
    if (!run()) {
        EXPECT_TRUE(isRepeatable());
        EXPECT_TRUE(files_.hasFile("/app/changes"));
        files_.clearFaults();
        EXPECT_TRUE(runAgain());
    }
    EXPECT_EQ(files_.content("/shared/f"), std::string("line") + OUtils::textLineEnd());
    EXPECT_TRUE(isGone());
}

INSTANTIATE_TEST_SUITE_P(AnyRead, UnreadableLogTest, testing::Range(1, 9));

TEST_F(UninstallationTest, CanBeRepeatedWhenItCannotForgetTheProductsFiles) {
    installProduct("");
    rememberArchive("/app/un/backup.bin", "/app/un/install.log");
    const std::vector<std::string> all = files_.allFiles();
    const auto state = std::ranges::find_if(all, [](const auto& path) { return path.starts_with("/var/"); });
    files_.failAt(MemoryFileSystem::Operation::kRemoveFile, *state, 1);
    EXPECT_FALSE(run());
    EXPECT_TRUE(isRepeatable());
    EXPECT_THAT(errors_, ElementsAre("FAILED to remove what is remembered of the product's files"));
    EXPECT_TRUE(runAgain());
    EXPECT_TRUE(isGone());
    EXPECT_FALSE(files_.hasFile(*state));
}

TEST_F(UninstallationTest, SaysThatARecordCouldNotBeDeletedInTheEnd) {
    installProduct("");
    files_.failAt(MemoryFileSystem::Operation::kRemoveFile, "/app/un/backup.bin", 1);
    EXPECT_FALSE(run());
    EXPECT_THAT(errors_, testing::Contains("FAILED to delete /app/un/backup.bin"));
    EXPECT_EQ(ui_.callsOf("addMessage").back(), "addMessage(\"The uninstallation is not complete.\")");
}

TEST_F(UninstallationTest, LeavesTheProductItselfWhenItsEntryCannotBeRemoved) {
    installProduct("");
    system_.removalWorks = false;
    EXPECT_FALSE(run());
    EXPECT_TRUE(isRepeatable());
    EXPECT_THAT(errors_, ElementsAre("FAILED to remove Demo"));
    EXPECT_THAT(ui_.callsOf("addMessage"),
                testing::Contains(testing::HasSubstr("Demo: the registry is full")));
    system_.removalWorks = true;
    EXPECT_TRUE(runAgain());
    EXPECT_TRUE(isGone());
}

TEST_F(UninstallationTest, LeavesTheProductItselfWhenItsEntryCannotBeRead) {
    installProduct("");
    system_.unreadable = {"Demo"};
    EXPECT_FALSE(run());
    EXPECT_TRUE(isRepeatable());
    EXPECT_THAT(errors_, ElementsAre("FAILED to remove Demo"));
    EXPECT_THAT(ui_.callsOf("addMessage"),
                testing::Contains(testing::HasSubstr("The entry of Demo can't be read")));
    system_.unreadable.clear();
    EXPECT_TRUE(runAgain());
    EXPECT_TRUE(isGone());
}

TEST_F(UninstallationTest, TakesAKeyThatOnlyTheListOfApplicationsStillNeeded) {
    constexpr auto kRoot = platform::RegistryRoot::kLocalMachine;
    machine_.registry.addKey(kRoot, "Software\\List");
    system_.onRemoval = [&] {
        machine_.registry.deleteKey(kRoot, "Software\\List", platform::RegistryView::kNative);
    };
    installProduct("REGKEY\t1\tHKEY_LOCAL_MACHINE\tSoftware\r\n");
    EXPECT_TRUE(run());
    EXPECT_TRUE(isGone());
    EXPECT_FALSE(machine_.registry.hasKey(kRoot, "Software"));
}

TEST_F(UninstallationTest, BringsTheEntryBackWhenTheUninstallerResists) {
    installProduct("");
    files_.failAt(MemoryFileSystem::Operation::kRemoveFile, "/app/un/installer", 1);
    EXPECT_FALSE(run());
    EXPECT_EQ(system_.calls.back(),
              "registerApplication(Demo, 1.2.3, web, \"/app/un/installer\" "
              "-uninstall=\"/app/un/install.log\" -uninstallApp=\"Demo\")");
    EXPECT_TRUE(files_.hasFile("/app/un/install.log"));
    EXPECT_TRUE(files_.hasFile("/app/un/install.xml"));
    EXPECT_TRUE(runAgain());
    EXPECT_TRUE(isGone());
}

TEST_F(UninstallationTest, RemovesWhatAKilledOneWasWritingBesideFilesThatStay) {
    files_.addDirectory("/var/state");
    installProduct("FILE\tCREATE\t/shared/a\r\n");
    files_.addFile("/shared/.tandrel-1.tmp", "half");
    ProductState(files_, machine_.environment).beginUndo("/app/un/install.log");
    EXPECT_TRUE(run());
    EXPECT_FALSE(files_.hasFile("/shared/.tandrel-1.tmp"));
    installProduct("FILE\tCREATE\t/shared/a\r\n");
    files_.addFile("/shared/.tandrel-1.tmp", "of somebody at work");
    EXPECT_TRUE(runAgain());
    EXPECT_TRUE(files_.hasFile("/shared/.tandrel-1.tmp"));
    EXPECT_TRUE(files_.hasDirectory("/var/state"));
    EXPECT_EQ(files_.allFiles().size(), 2U)
        << testing::PrintToString(files_.allFiles());  // and the copied log
}

TEST_F(UninstallationTest, PromisesNoRepetitionWithoutTheUninstaller) {
    installProduct("");
    files_.failAt(MemoryFileSystem::Operation::kRemoveFile, "/app/un/install.xml", 1);
    EXPECT_FALSE(run());
    EXPECT_FALSE(files_.hasFile("/app/un/installer"));
    EXPECT_FALSE(files_.hasFile("/app/un/install.log"));
    EXPECT_THAT(ui_.callsOf("addFileLine"),
                testing::Contains(
                    testing::HasSubstr("FAILED to delete " + platform::writtenPath("/app/un\\install.xml"))));
    EXPECT_TRUE(system_.installed.empty());
    EXPECT_EQ(ui_.callsOf("addMessage").back(), "addMessage(\"The uninstallation is not complete.\")");
}

TEST_F(UninstallationTest, RemovesTheEntryAtOnceAfterACleanWalk) {
    system_.installed = {{"Demo", "", false, ""}};
    EXPECT_TRUE(undo(""));
    EXPECT_FALSE(system_.installed.empty());
    EXPECT_TRUE(uninstallation_.unregister(report_));
    EXPECT_TRUE(system_.installed.empty());
    EXPECT_TRUE(uninstallation_.unregister(report_));  // it has gone
}

using NamelessProductTest = EngineTest;

TEST_F(NamelessProductTest, HasNoEntryToRemoveWithoutAProductsName) {
    Uninstallation uninstallation(parts_);
    EXPECT_FALSE(uninstallation.unregister(report_));
}

TEST_F(UninstallationTest, EndsAtTheNextRecordWhenItIsAskedTo) {
    installProduct("FILE\tCREATE\t/app/second\r\nENV\tCREATE\tX\r\n");
    files_.addFile("/app/second", "");
    isToEnd_ = [this] { return !files_.hasFile("/app/tool"); };
    EXPECT_FALSE(run());
    EXPECT_TRUE(files_.hasFile("/app/second"));
    EXPECT_TRUE(isRepeatable());
    EXPECT_EQ(ui_.callsOf("setStatusText").back(),
              "setStatusText(\"There were errors during the uninstall.\")");
    EXPECT_TRUE(runAgain());
    EXPECT_TRUE(isGone());
}

TEST_F(UninstallationTest, DeletesNothingWhenItIsAskedToEndBeforeItsFirstRecord) {
    installProduct("");
    isToEnd_ = [] { return true; };
    EXPECT_FALSE(run());
    EXPECT_TRUE(files_.hasFile("/app/tool"));
    EXPECT_TRUE(isRepeatable());
    EXPECT_THAT(lines(), IsEmpty());
}

TEST_F(UninstallationTest, CleansTheDirectoriesOfTheLogWhateverTheSessionsVariablesAre) {
    installProduct("");
    variables_.set("DIR", "/default");
    files_.addFile("/default/un/install.log", "of another product");
    EXPECT_TRUE(run());
    EXPECT_TRUE(isGone());
    EXPECT_EQ(files_.content("/default/un/install.log"), "of another product");
}

TEST_F(UninstallationTest, CleansNothingInADirectoryThatTheLogDoesNotGive) {
    describe("<UninstallWildcards><WC Dest='[CACHE]/x'>*</WC></UninstallWildcards>");
    variables_.set("CACHE", "/mine");
    files_.addFile("/mine/x/precious", "");
    EXPECT_TRUE(undo(""));
    EXPECT_TRUE(files_.hasFile("/mine/x/precious"));
    EXPECT_THAT(lines(), IsEmpty());
    EXPECT_THAT(ui_.callsOf("addMessage"),
                ElementsAre("addMessage(\"Nothing is cleaned in \"[CACHE]/x\" by \"*\": the install log "
                            "doesn't give the variables.\")"));
}

TEST_F(UninstallationTest, UndoesTheRecordsOfALogWhoseCountOfVariablesIsBroken) {
    for (const char* const count : {"NUMVARS\t900\r\n", "NUMVARS\tx\r\n", ""}) {
        installProduct("");
        std::string log = files_.content("/app/un/install.log");
        log.replace(log.find("NUMVARS\t1\r\n"), 11, count);
        openLog(log, "/app/un/install.log");
        Report report(&ui_, &errors_);
        Uninstallation walk(parts_);
        walk.unregister(report_);
        EXPECT_TRUE(walk.run(log_file_.get(), std::nullopt, report)) << count;
        EXPECT_TRUE(isGone()) << count;
        EXPECT_EQ(ui_.callsOf("addMessage").back(),
                  "addMessage(\"The variables of the install log are missing or damaged. Its records are "
                  "undone all the same.\")");
    }
}

TEST_F(UninstallationTest, KeepsItsUninstallerWhenALogWithoutVariablesCannotBeCleaned) {
    installProduct("");
    std::string log = files_.content("/app/un/install.log");
    const std::size_t start = log.find("NUMVARS");
    log.erase(start, log.find("DIR\t2") - start);
    variables_.set("DIR", "/default");
    openLog(log, "/app/un/install.log");
    EXPECT_FALSE(run());
    EXPECT_FALSE(files_.hasFile("/app/tool"));
    EXPECT_TRUE(isRepeatable());
}

TEST_F(UninstallationTest, UsesTheArchiveThatItIsGiven) {
    backUp("/app/readme", "former", "installed");
    ASSERT_EQ(files_.moveFile("/app/backup.bin", "/app/other.bin"), 0);
    openLog("/app/install.xml\r\n/app/backup.bin\r\nNUMVARS\t0\r\nFILE\tOVER\t/app/readme\r\n");
    EXPECT_TRUE(run("/app/other.bin"));
    EXPECT_EQ(files_.content("/app/readme"), "former");
}

TEST_F(UninstallationTest, UndoesEditsBeforeAllOtherRecords) {
    files_.addFile("/app/f", "line\nadded\n");
    files_.addFile("/app/changes", "1\nline\n1\nadded\n");
    std::string edited;
    ui_.onCall = [&](const std::string& call) {
        if (call == "beginProgress()") {
            edited = files_.content("/app/f");
        }
    };
    EXPECT_TRUE(
        undo("FILE\tCREATE\t/app/f\r\nFILE\tCREATE\t/app/changes\r\n"
             "MODIFYFILE\tADDAFTER\t/app/f\t/app/changes\r\n"));
    EXPECT_EQ(edited, std::string("line") + OUtils::textLineEnd());
    EXPECT_FALSE(files_.hasFile("/app/f"));
}

TEST_F(UninstallationTest, FailsForAnEditThatCannotBeUndone) {
    files_.addFile("/app/f", "line\n");
    EXPECT_FALSE(undo("MODIFYFILE\tADDAFTER\t/app/f\t/none\r\n"));
}

TEST_F(UninstallationTest, UndoesEachKindOfRecordAndKeysLast) {
    machine_.registry.addText(platform::RegistryRoot::kUsers, "first", "v", "x");
    machine_.registry.addKey(platform::RegistryRoot::kUsers, "second\\key");
    files_.addFile("/app/f.ini", "[s]\nk=v\n");
    files_.addFile("/m/l.lnk", "");
    EXPECT_TRUE(
        undo("REGKEY\t1\tHKEY_USERS\tfirst\r\nREGKEY\t2\tHKEY_USERS\tsecond\\key\r\n"
             "INI\tCREATE\t/app/f.ini\ts\tk\tv\r\nSHORTCUT\tCREATE\t/m/l.lnk\r\n"
             "FIREWALL\tAPP\t/app/s\r\nFIREWALL\tPORT\t80\tTCP;UDP\tName\r\n"
             "REGVAL\tHKEY_USERS\tfirst\tv\r\n"));
    EXPECT_FALSE(files_.hasFile("/m/l.lnk"));
    EXPECT_EQ(files_.content("/app/f.ini").find("k=v"), std::string::npos);
    EXPECT_THAT(machine_.registry.operations,
                ElementsAre("deleteValue HKU\\first:v", "deleteKey HKU\\second\\key", "deleteKey HKU\\second",
                            "deleteKey HKU\\first"));
}

TEST_F(UninstallationTest, FailsForNoRecordThatOnlyLeavesSomethingBehind) {
    EXPECT_TRUE(
        undo("ENV\tx\r\nINI\tx\r\nSHORTCUT\tx\r\nREGVAL\ta\tb\tc\r\nREGKEY\t1\tb\tc\r\nFIREWALL\tX\r\n"));
}

TEST_F(UninstallationTest, HandlesEventsWhileAPatternCleans) {
    describe("<UninstallWildcards><WC Dest='/app/d'>*</WC></UninstallWildcards>");
    for (int i = 0; i < 40; ++i) {
        files_.addFile("/app/d/file" + std::to_string(i), "");
    }
    EXPECT_TRUE(undo(""));
    EXPECT_GE(ui_.countOf("pumpEvents()"), 40);
}

TEST_F(UninstallationTest, IgnoresRegistryRecordsOfAnotherForm) {
    EXPECT_TRUE(undo("REGKEY\t1\tHKEY_USERS\r\nREGVAL\ta\tb\tc\td\r\n"));
    EXPECT_TRUE(log_.hasLine("WARNING: (Dev) Wrong number of tokens in the install.log for REGKEY"));
    EXPECT_TRUE(log_.hasLine("WARNING: (Dev) Wrong number of tokens in the install.log for REGVAL"));
}

TEST_F(UninstallationTest, RemovesDirectoriesLastFirstAndAfterTheWildcards) {
    describe(
        "<UninstallWildcards><WC Dest='/app/d' DeleteDirs='1==2'>*.tmp</WC>"
        "<WC Dest='/app/d' Condition='1==2'>*</WC><WC Dest=''>*</WC></UninstallWildcards>");
    files_.addFile("/app/d/e/left.tmp", "");
    files_.addFile("/app/keep", "");
    EXPECT_TRUE(undo("DIR\t1\t/app/d\\\r\nDIR\t1\t/app/d/e\\\r\n"));
    EXPECT_FALSE(files_.hasDirectory("/app/d"));
    EXPECT_TRUE(files_.hasFile("/app/keep"));
    EXPECT_THAT(lines(),
                ElementsAre("addFileLine(\"Delete: /app/d/*.tmp\", 1)", "addFileLine(\"Delete: /*\", 0)",
                            "addFileLine(\"Remove /app/d/e\", 0)", "addFileLine(\"Remove /app/d\", 0)"));
    EXPECT_TRUE(log_.hasLine("WARNING: Nothing is cleaned in \"\" by \"*\""));
}

TEST_F(UninstallationTest, FailsForADirectoryThatHoldsForeignFiles) {
    files_.addFile("/app/d/mine", "");
    EXPECT_FALSE(undo("DIR\t1\t/app/d/\r\n"));
    EXPECT_TRUE(files_.hasFile("/app/d/mine"));
    EXPECT_THAT(errors_, ElementsAre("FAILED to remove /app/d"));
}

TEST_F(UninstallationTest, WalksALogWithoutACountOfVariablesFromItsFirstLine) {
    files_.addFile("/app/a", "");
    openLog("FILE\tCREATE\t/app/a\r\nsomething else\r\n");
    EXPECT_TRUE(run(""));
    EXPECT_FALSE(files_.hasFile("/app/a"));
}

TEST_F(UninstallationTest, TakesNoVariableForARecord) {
    files_.addFile("CREATE", "");
    openLog("x\r\ny\r\nNUMVARS\t2\r\nVAR\tFILE\tCREATE\r\nVAR\tA\tb\r\nFILE\tCREATE\t/app/b\r\n");
    files_.addFile("/app/b", "");
    EXPECT_TRUE(run());
    EXPECT_TRUE(files_.hasFile("CREATE"));
    EXPECT_FALSE(files_.hasFile("/app/b"));
}

TEST_F(UninstallationTest, UndoesALogThatIsCutAnywhereAsFarAsItGoes) {
    const std::string records =
        "DIR\t1\t/app/d/\r\nFILE\tCREATE\t/app/d/file\r\nENV\tADD\tPATH\t/"
        "app\r\nREGKEY\t1\tHKEY_USERS\tk\r\n";
    const std::string whole = "/app/install.xml\r\n/app/backup.bin\r\nNUMVARS\t1\r\nVAR\tA\tb\r\n" + records;
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        files_.addFile("/mine/file", "kept");
        files_.addFile("/app/d/file", "");
        openLog(whole.substr(0, length));
        Report report(&ui_, &errors_);
        Uninstallation(parts_).run(log_file_.get(), std::nullopt, report);
        EXPECT_TRUE(files_.hasFile("/mine/file")) << length;
        EXPECT_TRUE(files_.hasFile("/app/install.log")) << length;
        // A line without its end was never finished.
        const bool isNamed = length >= whole.find("/file\r\n") + 7;
        EXPECT_EQ(files_.hasFile("/app/d/file"), !isNamed) << length;
    }
}

TEST_F(UninstallationTest, LeavesDirectoriesAloneThatFileRecordsName) {
    files_.addFile("/home/me/letter", "dear");
    EXPECT_FALSE(undo("FILE\tCREATE\t/home/me\r\nFILE\tCREATE\t\r\nFILE\r\nDIR\r\nDIR\t99999999999\t/\r\n"));
    EXPECT_EQ(files_.content("/home/me/letter"), "dear");
}

TEST_F(UninstallationTest, RunsItsActionsOnceBeforeTheWalk) {
    describe("<PreUninstall><RunProgram>stop</RunProgram></PreUninstall>");
    openLog("a\r\n /app/my backup.bin \t\r\n");
    prepare();
    EXPECT_EQ(uninstallation_.backupPath(), " /app/my backup.bin");
    prepare("/other");
    EXPECT_TRUE(run("/other"));
    EXPECT_EQ(uninstallation_.backupPath(), " /app/my backup.bin");
    EXPECT_EQ(machine_.processes.started.size(), 1U);
}

TEST_F(UninstallationTest, WarnsWithoutALogAndAnArchive) {
    prepare();
    EXPECT_TRUE(log_.hasLine(
        "WARNING: PrepareUninstall called without open action log and no specified backup file!"));
    EXPECT_FALSE(run());
    EXPECT_TRUE(log_.hasLine("ERROR: There is no action log to uninstall from"));
    EXPECT_EQ(errorVariable(), "1");
}

}  // namespace

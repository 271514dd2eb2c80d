#include "engine/installation.h"

#include <new>

#include "base/errors.h"
#include "engine/product_state.h"
#include "installation_fixture.h"
#include "package/backup_file.h"

namespace {

using Operation = MemoryFileSystem::Operation;

class InstallationRunTest : public InstallationTest {
protected:
    // An INI change that fails, as its directory can't be written to.
    static constexpr char kFailingChange[] =
        "<IniFiles><Add FileName='/ro/x.ini' Section='s' Key='k'>v</Add></IniFiles>";

    InstallationRunTest() {
        files_.addDirectory("/app");
        files_.setReadOnly("/ro");
    }
    void describeProduct(const std::string& files = "", const std::string& uninstall = kUninstall,
                         const std::string& more = "") {
        pack({{"one", "one", "1"}});
        describe(uninstall + ("<FileSet Name='S'>" + files + "</FileSet>") + more +
                 "<InstallerControlVariables><InstallError>FAILED_INSTALL</InstallError>"
                 "</InstallerControlVariables>");
    }
};

TEST_F(InstallationRunTest, ShowsThePhasesInOrderAndSucceeds) {
    describeProduct();
    EXPECT_TRUE(install());
    EXPECT_EQ(
        ui_.callsOf("set"),
        (std::vector<std::string>{
            "setStatusText(\"Updating environment variables\")", "setStatusText(\"Updating .ini files\")",
            "setStatusText(\"Modifying files\")", "setStatusText(\"Creating shortcuts\")",
            "setStatusText(\"Updating Firewall\")", "setStatusText(\"Running additional installations\")",
            "setCurrentProgress(100)", "setStatusText(\"The installation was successful.\")"}));
    EXPECT_EQ(ui_.countOf("beginProgress"), 1);
    EXPECT_EQ(ui_.countOf("endProgress"), 1);
    EXPECT_EQ(valueOf("FAILED_INSTALL"), "(none)");
    EXPECT_EQ(log_.lines(),
              std::vector<std::string>{"Running Files for installation tag: <AdditionalInstall>"});
}

TEST_F(InstallationRunTest, MakesEachKindOfChangeAndRecordsIt) {
    describeProduct("<FN Dest='/app'>one</FN>", kUninstall,
                    "<Environment><Replace VarName='V'>x</Replace></Environment>"
                    "<IniFiles><Add FileName='/app/x.ini' Section='s' Key='k'>v</Add></IniFiles>"
                    "<AdditionalInstall><Registry><AddKey Place='HKEY_USERS' Path='k'/></Registry>"
                    "</AdditionalInstall>");
    EXPECT_TRUE(install());
    EXPECT_TRUE(files_.hasFile("/app/one"));
    EXPECT_TRUE(files_.hasFile("/app/x.ini"));
    EXPECT_NE(installLog().find("FILE\tCREATE\t/app\\one\r\nENV\tCREATE\tV\r\nINI\tCREATE\t"),
              std::string::npos);
    EXPECT_TRUE(installLog().ends_with("REGKEY\t1\tHKEY_USERS\tk\r\n"));
}

TEST_F(InstallationRunTest, GoesOnAfterAFailedPhaseAndReportsIt) {
    describeProduct(
        "", kUninstall,
        std::string(kFailingChange) + "<AdditionalInstall><RunProgram>tool</RunProgram></AdditionalInstall>");
    EXPECT_FALSE(install());
    EXPECT_EQ(machine_.processes.started.size(), 1U);
    EXPECT_TRUE(log_.hasLine("WARNING: An error ocurred during installation"));
    EXPECT_EQ(log_.lines().back(), "ERROR: Encountered an error during Updating .ini files");
    EXPECT_EQ(valueOf("FAILED_INSTALL"), "1");
    EXPECT_EQ(errors_.back(), "Error during: Updating .ini files");
    EXPECT_EQ(ui_.countOf("setStatusText(\"There were errors during the installation.\")"), 1);
    EXPECT_EQ(ui_.countOf("addFileLine(\"Encountered errors during installation:\""), 1);
    EXPECT_TRUE(files_.hasFile("/app/install.log"));
}

TEST_F(InstallationRunTest, FailsWhenAnActionCouldNotWriteIntoTheRegistry) {
    machine_.registry.setReadOnly("k");
    describe(std::string(kUninstall) +
             "<AdditionalInstall><Registry><AddValue Place='HKEY_USERS' Path='k' Value='v'>x</AddValue>"
             "</Registry></AdditionalInstall>");
    EXPECT_FALSE(install());
    EXPECT_EQ(ui_.countOf("setStatusText(\"There were errors during the installation.\")"), 1);
}

TEST_F(InstallationRunTest, LeavesTheDecisionAloneWhenErrorsAreIgnored) {
    describeProduct("", kUninstall, kFailingChange);
    ui_.ignoreErrors = 1;
    EXPECT_FALSE(install());
    EXPECT_EQ(valueOf("FAILED_INSTALL"), "(none)");
    EXPECT_FALSE(log_.hasLine("WARNING: An error ocurred during installation"));
}

TEST_F(InstallationRunTest, ChangesNothingWithoutTemporaryNames) {
    describeProduct("<FN Dest='/app'>one</FN>");
    system_.temporaryNamesLeft = 0;
    EXPECT_FALSE(install());
    EXPECT_EQ(log_.lines(), std::vector<std::string>{"ERROR: Obtaining temp filename for install temp log!"});
    EXPECT_FALSE(files_.hasFile("/app/one"));
    EXPECT_EQ(ui_.callsOf("add").size(), 1U);
    EXPECT_EQ(ui_.countOf("addMessage(\"Nothing was installed: the install log can't be opened"), 1);
    EXPECT_EQ(valueOf("FAILED_INSTALL"), "1");
}

TEST_F(InstallationRunTest, ChangesNothingWhenTheArchiveCannotBeOpened) {
    describeProduct("<FN Dest='/app'>one</FN>");
    system_.temporaryNamesLeft = 1;
    EXPECT_FALSE(install());
    EXPECT_EQ(log_.lines(),
              std::vector<std::string>{"ERROR: Obtaining temp filename for install temp backup!"});
    EXPECT_FALSE(files_.hasFile("/app/one"));
    EXPECT_FALSE(files_.hasFile("/tmp/orinstall1"));
    EXPECT_EQ(files_.openFileCount(), 0);
    EXPECT_EQ(ui_.countOf("addMessage(\"Nothing was installed: the backup file can't be opened"), 1);
    EXPECT_EQ(valueOf("FAILED_INSTALL"), "1");
}

TEST_F(InstallationRunTest, SaysWhyAndWhereTheRecordsCannotBeOpened) {
    describeProduct("<FN Dest='/app'>one</FN>");
    files_.setReadOnly("/tmp", 13);
    ui_.ignoreErrors = 1;
    EXPECT_FALSE(install());
    EXPECT_FALSE(files_.hasFile("/app/one"));
    EXPECT_EQ(valueOf("FAILED_INSTALL"), "1");  // nothing was installed, so there is nothing to ignore
    EXPECT_EQ(ui_.countOf("addMessage(\"/tmp/orinstall1: "), 1);
}

TEST_F(InstallationRunTest, PreparesOnlyWhatIsPossible) {
    describeProduct("<FN Dest='/app'>one</FN>");
    int prepared = 0;
    const auto run = [&] { return installation_.run(report_, [&] { ++prepared; }); };
    EXPECT_TRUE(run());
    EXPECT_EQ(prepared, 1);
    system_.temporaryNamesLeft = 0;
    EXPECT_FALSE(run());
    EXPECT_EQ(prepared, 1);
}

TEST_F(InstallationRunTest, PublishesItsRecordsBeforeAnExceptionLeavesIt) {
    describeProduct("<FN Dest='/app'>one</FN>", kUninstall,
                    "<Environment><Replace VarName='V'>x</Replace></Environment>"
                    "<AdditionalInstall><CreateFile Dest='/app'>gone</CreateFile></AdditionalInstall>");
    EXPECT_THROW(install(), InstallerError);
    EXPECT_NE(installLog().find("FILE\tCREATE\t/app\\one\r\nENV\tCREATE\tV\r\n"), std::string::npos);
    EXPECT_TRUE(BackupFile(files_).isBackupFile("/app/backup.bin"));
    EXPECT_EQ(valueOf("FAILED_INSTALL"), "1");
    EXPECT_EQ(ui_.countOf("setStatusText(\"There were errors during the installation.\")"), 1);
    for (const std::string& file : files_.allFiles()) {
        EXPECT_FALSE(file.starts_with("/tmp")) << file;
    }
}

TEST_F(InstallationRunTest, PublishesItsRecordsWhenTheMemoryIsUsedUp) {
    describeProduct("<FN Dest='/app'>one</FN>");
    ui_.onCall = [](const std::string& call) {
        if (call == "setStatusText(\"Creating shortcuts\")") {
            throw std::bad_alloc();
        }
    };
    EXPECT_THROW(install(), std::bad_alloc);
    EXPECT_NE(installLog().find("FILE\tCREATE\t/app\\one\r\n"), std::string::npos);
    EXPECT_EQ(valueOf("FAILED_INSTALL"), "1");
}

TEST_F(InstallationRunTest, ShowsTheHeadingOfTheErrorsWithoutALine) {
    describeProduct("<FN Dest='/app'>one</FN>");
    files_.failFrom(Operation::kCreateDirectory, "/app/sub", 1);
    describeProduct("<FN Dest='/app' OkIfMissing='1'>gone</FN><FN Dest='/ro'>one</FN>");
    EXPECT_FALSE(install());
    EXPECT_EQ(ui_.countOf("addFileLine(\"Encountered errors during installation:\""), 1);
}

TEST_F(InstallationRunTest, KeepsTheSumsOfWhatItWrote) {
    describeProduct("<FN Dest='/app'>one</FN>", kUninstall,
                    "<IniFiles><Add FileName='/app/one' Section='s' Key='k'>v</Add></IniFiles>");
    EXPECT_TRUE(install());
    const WrittenSums sums = ProductState(files_, machine_.environment).load("/app/install.log");
    EXPECT_TRUE(sums.holds("/app/one", md5Of("1", 1)));
    EXPECT_TRUE(sums.holds("/app/one", *digestOfFile(files_, "/app/one")));
    EXPECT_NE(files_.content("/app/one"), "1");
}

TEST_F(InstallationRunTest, PublishesNothingForAProductWithoutUninstallation) {
    describeProduct("<FN Dest='/app'>one</FN>", "");
    EXPECT_TRUE(install());
    EXPECT_TRUE(files_.hasFile("/app/one"));
    for (const std::string& file : files_.allFiles()) {
        EXPECT_FALSE(file.starts_with("/tmp")) << file;
        EXPECT_EQ(file.find("install.log"), std::string::npos);
    }
}

TEST_F(InstallationRunTest, WritesEmptyHeaderLinesWithoutUninstallation) {
    describeProduct("",
                    "<Installation><Uninstall><InstallLogFile>/app/install.log</InstallLogFile></Uninstall>"
                    "</Installation>");
    EXPECT_TRUE(install());
    EXPECT_EQ(installLog(), "\r\n\r\nNUMVARS\t0\r\n");
}

TEST_F(InstallationRunTest, LogsVariablesThatAreNotExcluded) {
    describeProduct();
    variables_.set("FIRST", "1");
    variables_.set("HIDDEN", "2");
    variables_.set("NOT_IN_CONFIG", "3");
    variables_.set("EMPTY", "");
    exclusions_.add("HIDDEN", kExcludeFromLog);
    exclusions_.add("NOT_IN_CONFIG", kExcludeFromConfig);
    EXPECT_TRUE(install());
    EXPECT_EQ(installLog(),
              "/app/product.xml\r\n/app/backup.bin\r\nNUMVARS\t3\r\n"
              "VAR\tFIRST\t1\r\nVAR\tNOT_IN_CONFIG\t3\r\nVAR\tEMPTY\t\r\n");
}

class UnwritableHeadTest : public InstallationRunTest, public testing::WithParamInterface<Operation> {};

TEST_P(UnwritableHeadTest, ChangesNothing) {
    describeProduct("<FN Dest='/app'>one</FN>");
    files_.failAt(GetParam(), "/tmp/orinstall1", 1);
    EXPECT_FALSE(install());
    EXPECT_EQ(ui_.countOf("addMessage(\"Nothing was installed: the install log can't be written"), 1);
    EXPECT_EQ(valueOf("FAILED_INSTALL"), "1");
    for (const char* const path : {"/app/one", "/tmp/orinstall1", "/tmp/orinstall2"}) {
        EXPECT_FALSE(files_.hasFile(path)) << path;
    }
}

INSTANTIATE_TEST_SUITE_P(EachStep, UnwritableHeadTest, testing::Values(Operation::kWrite, Operation::kFlush));

TEST_F(InstallationRunTest, FailsWhenTheLogCannotBeWritten) {
    describeProduct("<FN Dest='/app'>one</FN>");
    files_.failFrom(Operation::kWrite, "/tmp/orinstall1", 4);
    EXPECT_FALSE(install());
    EXPECT_FALSE(files_.hasFile("/app/one"));
    EXPECT_TRUE(log_.hasLine("ERROR: The install log could not be written completely"));
    EXPECT_EQ(valueOf("FAILED_INSTALL"), "1");
    EXPECT_EQ(ui_.countOf("setStatusText(\"The installation was successful.\")"), 0);
}

TEST_F(InstallationRunTest, FailsWhenTheArchiveCannotBeClosed) {
    describeProduct();
    files_.failAt(Operation::kClose, "/tmp/orinstall2", 1, 112);
    EXPECT_FALSE(install());
    EXPECT_TRUE(log_.hasLine("ERROR: The backup file could not be written completely"));
}

TEST_F(InstallationRunTest, FailsWhenNothingCanBePublished) {
    describeProduct("",
                    "<Installation><Uninstall><InstallLogFile>/none/log</InstallLogFile>"
                    "<InstallBackupFile>/none/backup</InstallBackupFile></Uninstall></Installation>");
    EXPECT_FALSE(install());
    EXPECT_TRUE(
        log_.hasLine("ERROR: The install log could not be written to /none/log; it stays at "
                     "/tmp/orinstall1"));
    EXPECT_TRUE(files_.hasFile("/tmp/orinstall1"));
    EXPECT_TRUE(files_.hasFile("/tmp/orinstall2"));
    EXPECT_EQ(errors_, std::vector<std::string>{"FAILED to write the install log or the backup file"});
}

TEST_F(InstallationRunTest, MakesItsTemporaryFilesForThisUserAlone) {
    describeProduct();
    bool isPrivate = false;
    ui_.onCall = [&](const std::string& call) {
        if (call == "setStatusText(\"Modifying files\")") {
            isPrivate = files_.isPrivate("/tmp/orinstall1") && files_.isPrivate("/tmp/orinstall2");
        }
    };
    EXPECT_TRUE(install());
    EXPECT_TRUE(isPrivate);
}

constexpr char kConfigPath[] = "/opt/product/config.xml";
constexpr char kOldLog[] = "d\r\nb\r\nNUMVARS\t1\r\nVAR\tX\told\r\nDIR\t1\t/app\\\r\n";

// The last work, when the files are in place.
class InstallationFinishTest : public InstallationTest {
protected:
    InstallationFinishTest() {
        files_.addDirectory("/opt/product");
        files_.addFile("/app/install.log", kOldLog);
        describe(kUninstall);
        variables_.set("LATE", "new");
        variables_.set("UNLOGGED", "a");
        variables_.set("UNEXPORTED", "b");
        exclusions_.add("UNLOGGED", kExcludeFromLog);
        exclusions_.add("UNEXPORTED", kExcludeFromConfig);
    }
    void finish(bool leavesConfiguration = true,
                const std::optional<std::string>& directory = std::string("/opt/product")) {
        Report report(&ui_, &errors_);
        installation_.finish(report, leavesConfiguration, directory);
    }
    bool hasConfig() const { return files_.hasFile(kConfigPath); }
    std::string config() const { return files_.content(kConfigPath); }
    std::vector<std::string> lines() const { return ui_.callsOf("addFileLine(\""); }
};

TEST_F(InstallationFinishTest, BringsTheLogUpToDate) {
    finish();
    EXPECT_EQ(installLog(),
              "d\r\nb\r\nNUMVARS\t2\r\nVAR\tLATE\tnew\r\nVAR\tUNEXPORTED\tb\r\nDIR\t1\t/app\\\r\n");
}

TEST_F(InstallationFinishTest, LeavesAFileThatRepeatsTheRun) {
    finish();
    EXPECT_NE(config().find("<Value Name=\"LATE\" DataType=\"value\">new</Value>"), std::string::npos);
    EXPECT_NE(config().find("\"UNLOGGED\""), std::string::npos);
    EXPECT_EQ(config().find("\"UNEXPORTED\""), std::string::npos);
}

TEST_F(InstallationFinishTest, ReportsTheFileInThreeLinesOfWhichTheLastIsFlushed) {
    finish();
    EXPECT_EQ(
        lines(),
        (std::vector<std::string>{
            "addFileLine(\"Successfully created configuration file:\n\t\"/opt/product/config.xml\"\", 0)",
            "addFileLine(\"You can use the file to automatically install the same product on different "
            "machine with the same settings, by running the installer with the following arguments:\", 0)",
            "addFileLine(\" -configFile=\"/opt/product/config.xml\" {-ignoreErrors=1}\", 1)"}));
}

TEST_F(InstallationFinishTest, DoesNothingTheSecondTime) {
    finish();
    files_.removeFile(kConfigPath);
    files_.addFile("/app/install.log", "spoilt");
    finish();
    EXPECT_FALSE(hasConfig());
    EXPECT_EQ(installLog(), "spoilt");
    EXPECT_EQ(lines().size(), 3U);
}

TEST_F(InstallationFinishTest, LeavesNoFileUnlessAsked) {
    finish(false);
    EXPECT_FALSE(hasConfig());
    EXPECT_TRUE(lines().empty());
    EXPECT_NE(installLog(), kOldLog);
}

TEST_F(InstallationFinishTest, OnlyReportsAFileThatCannotBeWritten) {
    files_.setReadOnly("/opt/product");
    finish();
    EXPECT_EQ(lines(), std::vector<std::string>{
                           "addFileLine(\"The installer could not create configuration file!\", 1)"});
}

TEST_F(InstallationFinishTest, WritesNoFileWhenItDoesNotKnowWhere) {
    finish(true, std::nullopt);
    EXPECT_EQ(lines(), std::vector<std::string>{
                           "addFileLine(\"The installer could not create configuration file!\", 1)"});
    EXPECT_FALSE(files_.hasFile("/config.xml"));
}

TEST_F(InstallationFinishTest, JoinsTheNameWithTheSeparatorOfTheDirectory) {
    const std::vector<std::pair<std::string, std::string>> places = {
        {"/opt/product", "/opt/product/config.xml"},
        {"/opt/product/", "/opt/product/config.xml"},
        {"C:\\kits", "C:\\kits\\config.xml"},
        {"C:\\", "C:\\config.xml"},
        {"C:", "C:/config.xml"},
        {"/", "/config.xml"}};
    for (const auto& [directory, path] : places) {
        files_.addDirectory(directory);
        Report silent(nullptr, nullptr);
        Installation(parts_).finish(silent, true, directory);
        EXPECT_TRUE(files_.hasFile(path)) << path;
        files_.removeFile(path);
    }
    EXPECT_TRUE(ui_.calls.empty());
}

TEST_F(InstallationFinishTest, ThrowsWhenTheLogCannotBeRewrittenAndExportsNothing) {
    files_.removeFile("/app/install.log");
    EXPECT_THROW(finish(), InstallerError);
    EXPECT_FALSE(hasConfig());
    EXPECT_TRUE(lines().empty());
}

TEST_F(InstallationFinishTest, GoesOnWhenActionsFail) {
    machine_.processes.startError = 2;
    describe(std::string(kUninstall) + "<PostInstall><RunProgram>x</RunProgram></PostInstall>");
    finish();
    EXPECT_TRUE(log_.hasLine("ERROR: Program was NOT started : \"x \""));
    EXPECT_TRUE(hasConfig());
}

TEST_F(InstallationFinishTest, ContinuesTheProductsLogForTheRegistry) {
    describe(std::string(kUninstall) +
             "<PostInstall><Registry><AddKey Place='HKEY_USERS' Path='k'/></Registry></PostInstall>");
    finish(false);
    EXPECT_TRUE(installLog().ends_with("DIR\t1\t/app\\\r\nREGKEY\t1\tHKEY_USERS\tk\r\n"));
}

TEST_F(InstallationTest, ThrowsAtTheEndWithoutANameOfALogAndExportsNothing) {
    files_.addDirectory("/opt/product");
    describe("");
    EXPECT_THROW(installation_.finish(report_, true, "/opt/product"), InstallerError);
    EXPECT_FALSE(files_.hasFile(kConfigPath));
}

TEST_F(InstallationTest, ExtractsEntriesOfTheCabinet) {
    pack({{"tool", "tool.exe", "for [WHO]"}});
    variables_.set("WHO", "me");
    EXPECT_EQ(installation_.extractAlias("tool", "/tmp", true, true), "/tmp\\tool");
    EXPECT_EQ(files_.content("/tmp/tool"), "for me");
}

}  // namespace

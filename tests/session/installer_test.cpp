#include "session/installer.h"

#include <gmock/gmock.h>

#include "base/shared_buffer.h"
#include "platform/error_text.h"
#include "platform/written_path.h"
#include "session/command_line_parameters.h"
#include "session_fixture.h"

namespace {

using Lines = std::vector<std::string>;

class InstallerTest : public SessionTest {
protected:
    static std::string minimal(const std::string& more = "") {
        return document(std::string(kProduct) + "<Dialogs><Hello Special='Finish'/></Dialogs><DefValues/>" +
                        kControls + more);
    }
};

TEST_F(InstallerTest, TakesItsStepsInOrder) {
    load(minimal(
        "<Installation><Uninstall><InstallLogFile>/none</InstallLogFile></Uninstall></Installation>"));
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(log_.lines(), (Lines{
                                "Decompressing installation file",
                                "Parsing installation file",
                                "Getting product description",
                                "Getting file sets",
                                "Getting UI dialogs",
                                "Getting control variables names",
                                "Checking for previous and legacy installations for this product",
                                "Initializing default values",
                                "Found 0 external legacy installations.",
                                "Starting installation UI",
                                "Ending installation UI",
                            }));
    EXPECT_EQ(ui_.callsOf("run"), Lines{"run()"});
    EXPECT_EQ(ui_.callsOf("finish"), Lines{"finish()"});
    EXPECT_EQ(session_.getCurrentDialog(), 0);
}

TEST_F(InstallerTest, ReadsTheThemeForAGraphicalFrontEnd) {
    ui_.graphical = 1;
    load(minimal());
    EXPECT_EQ(run(), 0);
    EXPECT_TRUE(log_.hasLine("Getting GUI colour theme info"));
    EXPECT_TRUE(log_.hasLine("Initializing GUI colour theme"));
    EXPECT_EQ(valueOf("GUI_INSTALL"), "1");
}

TEST_F(InstallerTest, AppliesTheThemeOnlyForAGraphicalFrontEnd) {
    const std::string themed =
        document(std::string(kProduct) +
                 "<Dialogs><Hello Special='Finish' FgColour='Group:G'/></Dialogs><DefValues/>" + kControls +
                 "<ColourTheme><DialogBackground>1</DialogBackground><CustomGroup Name='G'>2</CustomGroup>"
                 "</ColourTheme>");
    for (const int graphical : {0, 1}) {
        ui_.graphical = graphical;
        load(themed);
        EXPECT_EQ(run(), 0);
        EXPECT_EQ(session_.isThemed(), graphical != 0);
        EXPECT_EQ(session_.getThemeColour(0), graphical != 0 ? 0x010000 : -1);
        const DialogDesc* page = session_.getDialog(0, -1);
        ASSERT_NE(page, nullptr);
        EXPECT_EQ(page->backgroundColour, graphical != 0 ? 0x010000 : -1);
        EXPECT_EQ(page->foregroundColour, graphical != 0 ? 0x020000 : -1) << "an unknown group is no colour";
    }
}

TEST_F(InstallerTest, NeedsAFrontEnd) {
    load(minimal());
    EXPECT_EQ(session_.run(nullptr, &log_), -1);
    EXPECT_EQ(log_.lines(), Lines{"ERROR: No installer UI handler specified"});
}

TEST_F(InstallerTest, RunsWithoutAConsole) {
    session_.setConsole(nullptr, 0);
    load(minimal());
    session_.setConsole(nullptr, 0);
    EXPECT_EQ(session_.run(&ui_, nullptr), 0);
    EXPECT_TRUE(log_.lines().empty());
}

TEST_F(InstallerTest, EndsWithoutADescriptionInTheCabinet) {
    files_.addFile("/src/x", "x");
    PackageOptions options;
    options.stripes = 1;
    PackageWriter(files_).write({{"/src/x", "x", "Install.xml"}}, options, "/package");
    ASSERT_EQ(session_.loadCabinet("/package", 0, 0), 0);
    log_.clear();
    EXPECT_EQ(run(), -1);
    EXPECT_EQ(log_.lines(),
              (Lines{"Decompressing installation file", "ERROR: Decompressing installation file",
                     "ERROR: Cannot continue due to error(s). Exiting!"}));
    EXPECT_EQ(ui_.countOf("run"), 0);
}

TEST_F(InstallerTest, EndsWithoutAProduct) {
    load(document("<Dialogs/>"));
    EXPECT_EQ(run(), -1);
    EXPECT_EQ(log_.lines().back(), "Getting product description");
}

TEST_F(InstallerTest, EndsWithADescriptionThatIsNotXml) {
    load("not xml at all");
    EXPECT_EQ(run(), -1);
    EXPECT_EQ(ui_.countOf("run"), 0);
}

TEST_F(InstallerTest, EndsWithAnEmptyDescription) {
    load("");
    EXPECT_EQ(run(), -1);
}

TEST_F(InstallerTest, EndsWithoutDialogs) {
    load(document(kProduct));
    EXPECT_EQ(run(), -1);
    EXPECT_EQ(log_.lines().back(), "ERROR: Getting dialogs info. Aborting!");
}

TEST_F(InstallerTest, StartsWithoutControlVariablesAndSetsNone) {
    system_.installed = {{"Demo", "", false, "/old.log"}};
    load(document(std::string(kProduct) + "<Dialogs><Hello/></Dialogs><DefValues/>"));
    EXPECT_EQ(run(), 0);
    EXPECT_TRUE(
        log_.hasLine("WARNING: There are no control variable names provided in the installation xml!"));
    EXPECT_EQ(valueOf("PREVIOUS"), "(none)");
    EXPECT_EQ(valueOf(""), "(none)");
}

TEST_F(InstallerTest, EndsWithoutDefaultValues) {
    load(document(std::string(kProduct) + "<Dialogs><Hello/></Dialogs>" + kControls));
    EXPECT_EQ(run(), -1);
    EXPECT_EQ(log_.lines().back(),
              "ERROR: Parsing XML Default values (This may indicate wrong configuration file format)");
    EXPECT_EQ(ui_.countOf("run"), 0);
}

TEST_F(InstallerTest, EndsWithAConfigurationFileThatCannotBeRead) {
    session_.configFile = "/none.xml";
    load(minimal());
    EXPECT_EQ(run(), -1);
    EXPECT_EQ(log_.lines().back(),
              "ERROR: Parsing XML Default values (This may indicate wrong configuration file format)");
    EXPECT_EQ(ui_.countOf("messageBox(\"Error loading configuration file \\\"/none.xml\\\"") +
                  ui_.countOf("messageBox(\"Error loading configuration file \"/none.xml\""),
              1);
    EXPECT_EQ(ui_.countOf("addMessage(\"/none.xml: "), 1);
}

TEST_F(InstallerTest, LaysConfigurationFileAndCommandLineOverTheDefaults) {
    session_.configFile = "/answers.xml";
    files_.addFile("/answers.xml", "<DefValues><Value Name='A' DataType='value'>config</Value></DefValues>");
    CommandLineParameters parameters;
    ASSERT_EQ(parameters.parse({"-VARIABLE_B=command"}), 0);
    session_.setParameters(&parameters);
    load(document(std::string(kProduct) +
                  "<Dialogs><Hello/></Dialogs><DefValues><Value Name='A' DataType='value'>one</Value>"
                  "<Value Name='B' DataType='value'>two</Value></DefValues>"));
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(valueOf("A"), "config");
    EXPECT_EQ(valueOf("B"), "command");
}

TEST_F(InstallerTest, HandsOnTheFrontEndsResult) {
    load(minimal());
    ui_.script = [] { return 5; };
    EXPECT_EQ(run(), 5);
    EXPECT_EQ(log_.lines().back(), "ERROR: There were errors during the installation");
}

TEST_F(InstallerTest, CatchesAnErrorThatLeavesTheFrontEnd) {
    load(minimal());
    ui_.script = []() -> int { throw InstallerError("broken %d", 7); };
    EXPECT_EQ(run(), -1);
    EXPECT_TRUE(log_.hasLine("broken 7"));
    EXPECT_EQ(ui_.countOf("messageBox(\"broken 7\n\""), 1);
    EXPECT_EQ(ui_.countOf("finish"), 1);
}

TEST_F(InstallerTest, CatchesWhatTheLibraryThrows) {
    load(minimal());
    ui_.script = []() -> int { throw std::bad_alloc(); };
    EXPECT_EQ(run(), -1);
    EXPECT_EQ(ui_.countOf("messageBox("), 1);
}

TEST_F(InstallerTest, ReportsARegisteredInstallationAndImportsItsVariables) {
    files_.addFile("/old.log", "x\r\ny\r\nNUMVARS\t1\r\nVAR\tROOT\t/kept\r\n");
    system_.installed = {{"Demo", "", false, "/old.log"}};
    load(document(
        std::string(kProduct) +
        "<Dialogs><Hello/></Dialogs><DefValues><Value Name='ROOT' DataType='value' UseOld='1'>/new</Value>"
        "<Value Name='SHOULD' DataType='value'>0</Value></DefValues>" +
        kControls));
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(valueOf("PREVIOUS"), "1");
    EXPECT_EQ(valueOf("SHOULD"), "1");  // a default can't hide it
    EXPECT_EQ(valueOf("ROOT"), "/kept");
    EXPECT_EQ(valueOf("EXTERNAL"), "0");
    EXPECT_EQ(session_.getPreviousInstallationKind(), 1);
    EXPECT_TRUE(log_.hasLine("Initializing previous install's variable values from log"));
}

TEST_F(InstallerTest, GoesOnWhenTheEarlierLogCannotBeRead) {
    system_.installed = {{"Demo", "", false, "/lost.log"}};
    load(minimal());
    EXPECT_EQ(run(), 0);
    EXPECT_TRUE(log_.hasLine("ERROR: Opening action file (/lost.log)"));
    EXPECT_EQ(valueOf("PREVIOUS"), "1");
}

TEST_F(InstallerTest, GoesOnWhenTheEarlierInstallationNamesNoLog) {
    system_.installed = {{"Demo", "", false, ""}};
    load(minimal());
    EXPECT_EQ(run(), 0);
    EXPECT_TRUE(log_.hasLine("ERROR: Obtaining actionlog filename (Demo)"));
}

TEST_F(InstallerTest, GoesOnWithADamagedEarlierLog) {
    files_.addFile("/old.log", "x\r\ny\r\nNUMVARS\t5\r\nVAR\tROOT\t/kept\r\n");
    system_.installed = {{"Demo", "", false, "/old.log"}};
    load(minimal());
    EXPECT_EQ(run(), 0);
    EXPECT_TRUE(log_.hasLine("ERROR: Encountered EOF before expected number of variables (5)!"));
    EXPECT_EQ(valueOf("ROOT"), "/kept");
}

TEST_F(InstallerTest, ReportsAnInstallationThatOnlyItsLogShows) {
    files_.addFile("/app/install.log", "x");
    load(
        minimal("<Installation><Uninstall><InstallLogFile>/app/install.log</InstallLogFile></Uninstall>"
                "</Installation>"));
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(valueOf("PREVIOUS"), "2");
    EXPECT_EQ(valueOf("SHOULD"), "1");
}

TEST_F(InstallerTest, ReportsLegacyAndExternalInstallations) {
    system_.installed = {{"Old", "", false, ""}, {"Foreign", "", false, ""}};
    std::string description = minimal();
    description.insert(description.find("</ProductDesc>"),
                       "<LegacyApplication>Old</LegacyApplication>"
                       "<ExternalLegacyApplication>Foreign</ExternalLegacyApplication>");
    load(description);
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(valueOf("LEGACY"), "1");
    EXPECT_EQ(valueOf("SHOULD"), "1");
    EXPECT_EQ(valueOf("EXTERNAL"), "1");
    EXPECT_EQ(valueOf("PREVIOUS"), "(none)");
}

TEST_F(InstallerTest, WarnsOfExternalInstallationsWithoutAVariableForThem) {
    system_.installed = {{"Foreign", "", false, ""}};
    load(
        document("<ProductDesc><Fullname>Demo</Fullname><ExternalLegacyApplication>Foreign"
                 "</ExternalLegacyApplication></ProductDesc><Dialogs><Hello/></Dialogs><DefValues/>"));
    EXPECT_EQ(run(), 0);
    EXPECT_TRUE(log_.hasLine(
        "WARNING: External legacy installation variable is not specified and installations were found!"));
}

TEST_F(InstallerTest, ListsTheVariablesFromLevelTwoOn) {
    load(document(
        std::string(kProduct) +
        "<Dialogs><Hello/></Dialogs><DefValues><Value Name='A' DataType='value'>1</Value></DefValues>"));
    session_.setConsole(&log_, 2);
    EXPECT_EQ(run(), 0);
    EXPECT_TRUE(log_.hasLine("Installation variables used (1):"));
    EXPECT_TRUE(log_.hasLine("  [A] = \"1\""));
}

// Sessions that uninstall.

TEST_F(InstallerTest, ReadsTheDescriptionThatTheActionLogNames) {
    files_.addFile("/app/product.xml",
                   document(std::string(kProduct) + "<Dialogs><Never/></Dialogs><UninstallDialogs><Bye/>"
                                                    "<End/></UninstallDialogs><DefValues/>"));
    ASSERT_EQ(loadLog("/app/product.xml\r\n/app/backup.bin\r\nNUMVARS\t1\r\nVAR\tROOT\t/app\r\n"), 0);
    EXPECT_TRUE(session_.isUninstalling());
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(session_.getDialogCount(), 2);
    EXPECT_EQ(valueOf("ROOT"), "/app");
    const Lines expected = {"Reading installation file name from action log",
                            "Reading previous installation variables", "Reading installation file",
                            "Parsing installation file"};
    const Lines lines = log_.lines();
    EXPECT_EQ(Lines(lines.begin(), lines.begin() + 4), expected);
}

TEST_F(InstallerTest, NeverReadsTheCabinetWhenUninstalling) {
    ASSERT_EQ(loadLog("/x\r\n\r\nNUMVARS\t0\r\n"), 0);
    SharedBuffer buffer;
    EXPECT_EQ(session_.readAlias(buffer, "install.xml", nullptr), -1);
}

TEST_F(InstallerTest, CannotOpenALogThatIsNotThere) {
    EXPECT_EQ(session_.loadCabinet("/none.log", 0, kSessionActionLog), -1);
    EXPECT_EQ(log_.lines(), Lines{"ERROR: Failed to open the installation log file (/none.log)"});
}

TEST_F(InstallerTest, EndsWithAnEmptyActionLog) {
    ASSERT_EQ(loadLog(""), 0);
    EXPECT_EQ(run(), -1);
    EXPECT_EQ(log_.lines(), (Lines{"Reading installation file name from action log",
                                   "ERROR: Could not obtain installation file from action log. Exiting!"}));
}

TEST_F(InstallerTest, EndsWithAnActionLogThatNamesAMissingFile) {
    ASSERT_EQ(loadLog("/lost.xml\r\n\r\nNUMVARS\t0\r\n"), 0);
    EXPECT_EQ(run(), -1);
    EXPECT_EQ(log_.lines(), (Lines{"Reading installation file name from action log",
                                   "Reading previous installation variables", "Reading installation file",
                                   "ERROR: Failed reading installation file",
                                   "ERROR: Cannot continue due to error(s). Exiting!"}));
}

TEST_F(InstallerTest, UninstallsInSpiteOfBadVariableLines) {
    files_.addFile("/p.xml", document(std::string(kProduct) + "<UninstallDialogs><Bye/></UninstallDialogs>"
                                                              "<DefValues/>"));
    ASSERT_EQ(loadLog("/p.xml\r\n\r\nNUMVARS\t2\r\nVAR\tEMPTY\t\r\nVAR\tROOT\t/app\r\n"), 0);
    EXPECT_EQ(run(), 0);
    EXPECT_TRUE(log_.hasLine("ERROR: Format error in variable format in log file (Read buff: VAR\tEMPTY)"));
    EXPECT_TRUE(log_.hasLine("ERROR: Failed to read variables from log"));
    EXPECT_EQ(valueOf("ROOT"), "/app");
}

TEST_F(InstallerTest, UninstallsWithoutTheVariablesOfTheLog) {
    files_.addFile("/p.xml", document(std::string(kProduct) + "<UninstallDialogs><Bye/></UninstallDialogs>"
                                                              "<DefValues/>"));
    ASSERT_EQ(loadLog("/p.xml\r\n\r\n"), 0);
    EXPECT_EQ(run(), 0);
    EXPECT_TRUE(log_.hasLine("ERROR: No variable number found in the provided log file!"));
    EXPECT_TRUE(log_.hasLine("ERROR: Failed to read variables from log"));
}

TEST_F(InstallerTest, TakesTheVariablesThatFollowABrokenCount) {
    files_.addFile("/p.xml", document(std::string(kProduct) + "<UninstallDialogs><Bye/></UninstallDialogs>"
                                                              "<DefValues/>"));
    ASSERT_EQ(loadLog("/p.xml\r\n\r\nNUMVARS\tx\r\nVAR\tROOT\t/app\r\n"), 0);
    EXPECT_EQ(run(), 0);
    EXPECT_TRUE(log_.hasLine("ERROR: Error parsing the number of variables in log file!"));
    EXPECT_EQ(valueOf("ROOT"), "/app");
}

// A whole walk.

TEST_F(InstallerTest, InstallsFromTheWalk) {
    load(document(std::string(kProduct) +
                  "<Dialogs><Hello/><CopyProgress Special='AutoNext'/><Finish Special='Finish'/></Dialogs>"
                  "<DefValues><Value Name='ROOT' DataType='value'>/app</Value></DefValues>" +
                  kControls +
                  "<Installation><Uninstall><InstallLogFile>[ROOT]/install.log</InstallLogFile>"
                  "<InstallBackupFile>[ROOT]/backup.bin</InstallBackupFile>"
                  "<UninstallXmlFile>[ROOT]/product.xml</UninstallXmlFile></Uninstall></Installation>"
                  "<FileSet Name='S'><FN Dest='[ROOT]'>tool.txt</FN>"
                  "<FN Dest='[ROOT]/bin' Alias='install.xml'>product.xml</FN></FileSet>"),
         {{"tool.txt", "content"}});
    ui_.script = [this] { return session_.dialogNext(&ui_, 1); };
    EXPECT_EQ(run(), 0);
    EXPECT_FALSE(session_.hasErrors());
    EXPECT_EQ(session_.getCurrentDialog(), 2);
    EXPECT_EQ(files_.content("/app/tool.txt"), "content");
    EXPECT_EQ(
        files_.content("/app/install.log"),
        "/app/product.xml\r\n/app/backup.bin\r\nNUMVARS\t2\r\nVAR\tROOT\t/app\r\nVAR\tEXTERNAL\t0\r\n"
        "DIR\t2\t/app/bin\\\r\nFILE\tCREATE\t/app/bin\\product.xml\r\nFILE\tCREATE\t/app\\tool.txt\r\n");
    EXPECT_TRUE(files_.hasFile("/app/backup.bin"));
}

// The rest of the life.

TEST_F(InstallerTest, ReleasesCabinetLogAndKeptFiles) {
    load(minimal());
    files_.addFile("/tmp/a", "x");
    files_.addFile("/tmp/d", "x");
    files_.addFile("/tmp/n", "x");
    session_.removed.uninstallBackups = {{"Old", "/tmp/a", "/tmp/d"}, {"None", "", ""}};
    session_.removed.nestedBackups = {{"/app/backup.bin", "/tmp/n"}};
    EXPECT_EQ(session_.releaseSession(), 0);
    EXPECT_FALSE(files_.hasFile("/tmp/a"));
    EXPECT_FALSE(files_.hasFile("/tmp/d"));
    EXPECT_FALSE(files_.hasFile("/tmp/n"));
    EXPECT_TRUE(session_.removed.uninstallBackups.empty());
    EXPECT_EQ(session_.removed.nestedBackups.size(), 1U);
    SharedBuffer buffer;
    EXPECT_EQ(session_.readAlias(buffer, "install.xml", nullptr), -1);
}

TEST_F(InstallerTest, KeepsWhatIsLeftOfAnEarlierInstallationAndSaysWhere) {
    load(minimal());
    for (const char* path : {"/tmp/a", "/tmp/d", "/tmp/n"}) {
        files_.addFile(path, "x");
    }
    session_.removed.uninstallBackups = {{"Old", "/tmp/a", "/tmp/d"}};
    session_.removed.nestedBackups = {{"/app/backup.bin", "/tmp/n"}};
    session_.removed.isOnlyCopy = true;
    run();
    EXPECT_EQ(session_.releaseSession(), 0);
    for (const char* path : {"/tmp/a", "/tmp/d", "/tmp/n"}) {
        EXPECT_TRUE(files_.hasFile(path)) << path;
    }
    const std::vector<std::string> messages = ui_.callsOf("addMessage");
    const auto saying = [](const std::string& text) { return "addMessage(\"" + text + "\")"; };
    EXPECT_THAT(messages,
                testing::Contains(saying("An earlier version was removed and isn't completely back.")));
    EXPECT_THAT(messages, testing::Contains(
                              saying("The files of Old are in " + platform::writtenPath("/tmp/a") +
                                     ", its directories are listed in " + platform::writtenPath("/tmp/d"))));
    EXPECT_THAT(messages, testing::Contains(saying(platform::writtenPath("/app/backup.bin") + " is in " +
                                                   platform::writtenPath("/tmp/n"))));
}

TEST_F(InstallerTest, HoldsNoActionLogOpen) {
    ASSERT_EQ(loadLog("/x\r\n"), 0);
    EXPECT_EQ(files_.openFileCount(), 0);
}

TEST_F(InstallerTest, IsCancelledWhenTheFrontEndConfirms) {
    EXPECT_EQ(session_.cancel(nullptr), -1);
    ui_.confirmCancelResult = 0;
    EXPECT_EQ(session_.cancel(&ui_), 0);
    EXPECT_FALSE(session_.isCancelled());
    ui_.confirmCancelResult = 1;
    EXPECT_EQ(session_.cancel(&ui_), 0);
    EXPECT_TRUE(session_.isCancelled());
}

TEST_F(InstallerTest, GivesTheDirectoryOfItsImageUnlessItWasSet) {
    environment_.program = "/opt/product/setup";
    char buffer[64] = "";
    EXPECT_EQ(session_.getApplicationPath(buffer, sizeof buffer), 0);
    EXPECT_STREQ(buffer, "/opt/product");
    session_.setApplicationPath("/other");
    EXPECT_EQ(session_.getApplicationPath(buffer, sizeof buffer), 0);
    EXPECT_STREQ(buffer, "/other");
    session_.setApplicationPath(nullptr);
    environment_.program = "";
    EXPECT_EQ(session_.getApplicationPath(buffer, sizeof buffer), -1);
    EXPECT_STREQ(buffer, "");
}

TEST_F(InstallerTest, PassesOnTheCabinetsResult) {
    files_.addFile("/bad", std::string(200, 'x'));
    EXPECT_EQ(session_.loadCabinet("/bad", 0, 0), -5);
    EXPECT_EQ(session_.loadCabinet("/none", 0, 0), -2);
    EXPECT_TRUE(log_.hasLine("ERROR: Failed to open /none for decompressing!"));
}

// What a session says when it doesn't do its work.

TEST_F(InstallerTest, SaysThatTheDescriptionNamesNoProduct) {
    load(document("<Dialogs/>"));
    EXPECT_EQ(run(), -1);
    EXPECT_EQ(ui_.callsOf("addMessage"),
              Lines{"addMessage(\"The installation can't start: the description doesn't name a product\")"});
}

TEST_F(InstallerTest, SaysThatTheDescriptionHasNoPages) {
    load(document(kProduct));
    EXPECT_EQ(run(), -1);
    EXPECT_EQ(ui_.callsOf("addMessage"),
              Lines{"addMessage(\"The installation can't start: the description has no pages that can be "
                    "shown\")"});
}

TEST_F(InstallerTest, SaysThatTheDescriptionHasNoDefaultValues) {
    load(document(std::string(kProduct) + "<Dialogs><Hello/></Dialogs>"));
    EXPECT_EQ(run(), -1);
    EXPECT_EQ(ui_.callsOf("addMessage"),
              Lines{"addMessage(\"The installation can't start: the description has no default values\")"});
}

TEST_F(InstallerTest, SaysWhichFileKeepsItFromUninstalling) {
    ASSERT_EQ(loadLog("/lost.xml\r\n\r\nNUMVARS\t0\r\n"), 0);
    EXPECT_EQ(run(), -1);
    const Lines messages = ui_.callsOf("addMessage");
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_TRUE(messages[0].starts_with("addMessage(\"The uninstallation can't start: /lost.xml: "))
        << messages[0];
}

TEST_F(InstallerTest, KnowsWhyALogCannotBeOpened) {
    EXPECT_EQ(session_.loadCabinet("/none.log", 0, kSessionActionLog), -1);
    EXPECT_FALSE(session_.loadError().empty());
    files_.addFile("/none.log", "x");
    EXPECT_EQ(session_.loadCabinet("/none.log", 0, kSessionBackup), -5);
    EXPECT_EQ(session_.loadError(), "the package can't be read (-5)");
    EXPECT_EQ(session_.loadCabinet("/none", 0, kSessionBackup), -2);
    EXPECT_EQ(session_.loadError(),
              "the package can't be read (-2): " + platform::errorText(MemoryFileSystem::kNotFound));
}

TEST_F(InstallerTest, SaysWhereARunEndedThatInstalledNothing) {
    load(document(
        std::string(kProduct) +
        "<Dialogs><Hello/><CopyProgress Condition='0==1'/><End Special='Finish'/></Dialogs><DefValues/>"));
    ui_.script = [this] { return session_.dialogNext(&ui_, 1); };
    EXPECT_EQ(run(), 0);
    EXPECT_TRUE(session_.hasErrors());
    EXPECT_EQ(session_.endOfRun().end(), RunEnd::kRefused);
    EXPECT_EQ(session_.endOfRun().why(), "End");
    EXPECT_EQ(ui_.callsOf("addMessage"),
              Lines{"addMessage(\"Nothing was installed: the run ended on the page \"End\"\")"});
}

TEST_F(InstallerTest, FailsWhenTheFrontEndDoesAfterTheWork) {
    load(document(std::string(kProduct) +
                  "<Dialogs><Hello/><CopyProgress/><End Special='Finish'/></Dialogs><DefValues/>"
                  "<Installation><Uninstall><InstallLogFile>/tmp/install.log</InstallLogFile></Uninstall>"
                  "</Installation>"));
    ui_.script = [this] {
        session_.dialogNext(&ui_, 1);
        EXPECT_FALSE(session_.hasErrors());
        return -1;
    };
    EXPECT_EQ(run(), -1);
    EXPECT_TRUE(session_.hasErrors());
    EXPECT_EQ(session_.endOfRun().end(), RunEnd::kFailed);
    EXPECT_EQ(ui_.countOf("addMessage"), 0);
}

TEST_F(InstallerTest, FailsWhenItIsCancelledAfterTheWork) {
    load(document(std::string(kProduct) +
                  "<Dialogs><Hello/><CopyProgress/><End Special='Finish'/></Dialogs><DefValues/>"
                  "<Installation><Uninstall><InstallLogFile>/tmp/install.log</InstallLogFile></Uninstall>"
                  "</Installation>"));
    ui_.script = [this] {
        session_.dialogNext(&ui_, 1);
        session_.cancel(&ui_);
        return 0;
    };
    EXPECT_EQ(run(), 0);
    EXPECT_TRUE(session_.hasErrors());
    EXPECT_EQ(session_.endOfRun().end(), RunEnd::kCancelled);
}

TEST_F(InstallerTest, RemarksOnNamesThatNobodyKnows) {
    session_.configFile = "/answers.xml";
    files_.addFile("/answers.xml", "<DefValues><Value Name='C' DataType='value'>x</Value></DefValues>");
    CommandLineParameters parameters;
    ASSERT_EQ(parameters.parse({"-VARIABLE_A=1", "-VARIABLE_B=1", "-known=1", "-unknown"}), 0);
    session_.setParameters(&parameters, {"known"});
    load(document(
        std::string(kProduct) +
        "<Dialogs><Hello/></Dialogs><DefValues><Value Name='A' DataType='value'>1</Value></DefValues>"));
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(ui_.callsOf("addMessage(\"-"),
              (Lines{"addMessage(\"-VARIABLE_B: the description has no variable B\")",
                     "addMessage(\"-unknown: there is no such option, and it has no effect\")"}));
    EXPECT_EQ(ui_.countOf("addMessage(\"/answers.xml: the description has no variable C\""), 1);
}

TEST_F(InstallerTest, AGraphicalRunThatCannotStartShowsABox) {
    ui_.graphical = 1;
    load(document("<DefValues/>"));
    EXPECT_EQ(run(), -1);
    EXPECT_EQ(
        ui_.callsOf("setFatalMessage"),
        Lines{"setFatalMessage(\"The installation can't start: the description doesn't name a product\", "
              "\"Installation\")"});
    EXPECT_EQ(ui_.calls.back(), "showFatalMessage()");
    EXPECT_EQ(ui_.countOf("run"), 0);
    EXPECT_EQ(ui_.countOf("addMessage"), 0);
}

TEST_F(InstallerTest, AGraphicalRunBesideAnotherOneShowsABox) {
    ui_.graphical = 1;
    machine_.events.lockResults = {platform::LockResult::kBusy};
    load(minimal());
    EXPECT_EQ(run(), Installer::kAnotherRunIsAtWork);
    EXPECT_EQ(
        ui_.callsOf("setFatalMessage"),
        Lines{"setFatalMessage(\"Another setup or uninstallation of Demo is at work. Nothing was changed; "
              "please try again later.\", \"Installation\")"});
}

TEST_F(InstallerTest, AnErrorThatEndsAGraphicalRunIsShownAfterItsWindow) {
    ui_.graphical = 1;
    load(minimal());
    ui_.script = []() -> int { throw InstallerError("a step failed"); };
    EXPECT_EQ(run(), -1);
    const Lines calls = ui_.take();
    ASSERT_GE(calls.size(), 3U);
    EXPECT_EQ(calls[calls.size() - 3], "finish()");
    EXPECT_EQ(calls[calls.size() - 2],
              "setFatalMessage(\"a step failed\nNothing was installed: the run was held on the page "
              "\"Hello\"\", \"Installation\")");
    EXPECT_EQ(calls[calls.size() - 1], "showFatalMessage()");
    EXPECT_EQ(ui_.countOf("messageBox"), 0);
}

TEST_F(InstallerTest, AWindowThatWasReadToItsEndNeedsNoBox) {
    ui_.graphical = 1;
    load(minimal());
    ui_.script = [this] { return session_.shift(&ui_, 1); };
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(ui_.countOf("setFatalMessage"), 0);
    EXPECT_EQ(ui_.countOf("showFatalMessage"), 0);
}

TEST_F(InstallerTest, WhatStaysOfAnEarlierVersionIsShownAfterTheWindow) {
    ui_.graphical = 1;
    load(minimal());
    ui_.script = [this] {
        session_.removed.isToBeContinued = true;
        return 0;
    };
    run();
    EXPECT_EQ(
        ui_.callsOf("setFatalMessage"),
        Lines{"setFatalMessage(\"The same setup, run again, tries once more to take back what is left of "
              "this run.\", \"Installation\")"});
}

TEST_F(InstallerTest, TheConsoleNeedsNoBoxes) {
    load(document("<DefValues/>"));
    EXPECT_EQ(run(), -1);
    EXPECT_EQ(ui_.countOf("setFatalMessage"), 0);
    EXPECT_EQ(ui_.countOf("showFatalMessage"), 0);
}

}  // namespace

#include "session/installation_finish.h"

#include "description/product_description.h"
#include "engine/action_log_rewriter.h"
#include "engine/additional_actions.h"
#include "engine/alias_extractor.h"
#include "engine/configuration_export.h"
#include "engine/file_contents.h"
#include "engine/logged_variables.h"
#include "session_fixture.h"
#include "support/debug_log.h"

namespace {

using Lines = std::vector<std::string>;

constexpr char kLogPath[] = "/app/install.log";
constexpr char kConfigPath[] = "/opt/product/config.xml";
constexpr char kOldLog[] = "d\r\nb\r\nNUMVARS\t1\r\nVAR\tX\told\r\nDIR\t1\t/app\\\r\n";

// The last work of a session whose files stand: reached through the pages, as in a run, with a second page of
// the same name behind the first.
class InstallationFinishTest : public SessionTest {
protected:
    InstallationFinishTest() {
        files_.addDirectory("/opt/product");
        files_.addFile(kLogPath, kOldLog);
        environment_.programPath = "/opt/product/setup";
    }

    void prepare(const std::string& more = "") {
        const std::string uninstall =
            "<Uninstall><InstallLogFile>" + std::string(kLogPath) + "</InstallLogFile></Uninstall>";
        load(document(std::string(kProduct) +
                      "<Dialogs><Hello/><PostInstall/><PostInstall/><End Special='Finish'/></Dialogs>"
                      "<InstallerExcludeVariables><Variable ExcludeFrom='log'>UNLOGGED</Variable>"
                      "<Variable ExcludeFrom='config'>UNEXPORTED</Variable></InstallerExcludeVariables>"
                      "<DefValues><Value Name='LATE' DataType='value'>old</Value>"
                      "<Value Name='UNLOGGED' DataType='value'>a</Value>"
                      "<Value Name='UNEXPORTED' DataType='value'>b</Value></DefValues>"
                      "<Installation>" +
                      (hasLog_ ? uninstall : "") + "</Installation>" + more));
        ui_.script = [this] {
            session_.setVariable("LATE", "new");
            return session_.dialogNext(&ui_, 1);
        };
    }
    int finish(const std::string& more = "") {
        prepare(more);
        return run();
    }
    bool hasConfig() const { return files_.hasFile(kConfigPath); }
    std::string config() const { return files_.content(kConfigPath); }
    Lines told() const { return ui_.callsOf("addFileLine(\""); }

    bool hasLog_ = true;

    // What a finish of its own works on.
    DebugLog console_{log_};
    std::int32_t isGraphical_ = 0;
    PXML description_;
    PredefinedVariables predefined_{isGraphical_, environment_, console_};
    VariableStore variables_{predefined_, environment_, console_};
    Expressions expressions_{variables_, console_};
    VariableExclusions exclusions_;
};

TEST_F(InstallationFinishTest, BringsTheLogUpToDate) {
    EXPECT_EQ(finish(), 0);
    EXPECT_EQ(files_.content(kLogPath),
              "d\r\nb\r\nNUMVARS\t2\r\nVAR\tLATE\tnew\r\nVAR\tUNEXPORTED\tb\r\nDIR\t1\t/app\\\r\n");
}

TEST_F(InstallationFinishTest, LeavesAFileThatRepeatsARunByHand) {
    EXPECT_EQ(finish(), 0);
    EXPECT_NE(config().find("<Value Name=\"LATE\" DataType=\"value\">new</Value>"), std::string::npos);
    EXPECT_NE(config().find("\"UNLOGGED\""), std::string::npos);
    EXPECT_EQ(config().find("\"UNEXPORTED\""), std::string::npos);
    EXPECT_EQ(session_.navigation.lastResult, 0);
}

TEST_F(InstallationFinishTest, TellsOfTheFileInThreeLinesOfWhichTheLastIsFlushed) {
    EXPECT_EQ(finish(), 0);
    EXPECT_EQ(
        told(),
        (Lines{"addFileLine(\"Successfully created configuration file:\n\t\"/opt/product/config.xml\"\", 0)",
               "addFileLine(\"You can use the file to automatically install the same product on different "
               "machine with the same settings, by running the installer with the following arguments:\", 0)",
               "addFileLine(\" -configFile=\"/opt/product/config.xml\" {-ignoreErrors=1}\", 1)"}));
}

TEST_F(InstallationFinishTest, DoesNothingOnASecondPage) {
    prepare();
    ui_.onCall = [this](const std::string& call) {
        if (call == "showPage(1, -1, 1)") {  // behind the work of the first page
            files_.removeFile(kConfigPath);
            files_.addFile(kLogPath, "spoilt");
        }
    };
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(ui_.countOf("showPage(2, -1, 1)"), 1);
    EXPECT_FALSE(hasConfig());
    EXPECT_EQ(files_.content(kLogPath), "spoilt");
    EXPECT_EQ(told().size(), 3U);
    EXPECT_TRUE(session_.isFinished() || session_.getCurrentDialog() == 3);
}

TEST_F(InstallationFinishTest, LeavesNoFileOfAnUnattendedRun) {
    session_.setUnattended(true);
    EXPECT_EQ(finish(), 0);
    EXPECT_FALSE(hasConfig());
    EXPECT_TRUE(told().empty());
    EXPECT_NE(files_.content(kLogPath), kOldLog);
}

TEST_F(InstallationFinishTest, LeavesNoFileOfARunThatWasStartedWithOne) {
    files_.addFile("/answers.xml", "<DefValues/>");
    session_.configFile = "/answers.xml";
    EXPECT_EQ(finish(), 0);
    EXPECT_FALSE(hasConfig());
    EXPECT_TRUE(told().empty());
    EXPECT_NE(files_.content(kLogPath), kOldLog);
}

TEST_F(InstallationFinishTest, LeavesNoFileOfAGraphicalRun) {
    ui_.graphical = 1;
    EXPECT_EQ(finish(), 0);
    EXPECT_FALSE(hasConfig());
    EXPECT_TRUE(told().empty());
    EXPECT_NE(files_.content(kLogPath), kOldLog);
}

TEST_F(InstallationFinishTest, OnlyTellsThatTheFileCannotBeWritten) {
    files_.setReadOnly("/opt/product");
    EXPECT_EQ(finish(), 0);
    EXPECT_EQ(told(), Lines{"addFileLine(\"The installer could not create configuration file!\", 1)"});
    EXPECT_EQ(session_.navigation.lastResult, 0);
    EXPECT_EQ(session_.getCurrentDialog(), 3);
}

TEST_F(InstallationFinishTest, WritesNoFileWhenItDoesNotKnowWhere) {
    environment_.programPath = "";
    EXPECT_EQ(finish(), 0);
    EXPECT_EQ(told(), Lines{"addFileLine(\"The installer could not create configuration file!\", 1)"});
    EXPECT_FALSE(files_.hasFile("/config.xml"));
}

TEST_F(InstallationFinishTest, PutsTheFileBesideTheProgramOrWhereItWasTold) {
    const std::vector<std::pair<std::string, std::string>> places = {
        {"/opt/product", "/opt/product/config.xml"},
        {"/opt/product/", "/opt/product/config.xml"},
        {"C:\\kits", "C:\\kits\\config.xml"},
        {"C:\\", "C:\\config.xml"},
        {"C:", "C:/config.xml"},
        {"/", "/config.xml"}};
    ConfigurationExport configuration(variables_, exclusions_, files_, log_);
    ActionLogRewriter rewriter(files_);
    ProductDescription product(description_, expressions_);
    SessionState session(files_);
    InstallingSystem system(files_);
    FakeSystemModifications modifications;
    DescriptionTags tags(description_, expressions_);
    ActionLogWriter writer(session.installLog);
    FileContents contents(session.cabinet, expressions_, log_);
    AliasExtractor extractor(session.cabinet, contents, files_);
    AdditionalActions actions(
        {{tags, modifications, writer, session.errorList, log_}, product, extractor, system, files_});
    const LoggedVariables logged(variables_, exclusions_);
    description_.addPath(-1, "TandrelGroupInstallation/Installation/Uninstall/InstallLogFile", kLogPath,
                         false);
    for (const auto& [directory, path] : places) {
        files_.addDirectory(directory);
        session_.setApplicationPath(directory.c_str());
        SessionState state(files_);
        InstallationFinish last(state, {actions, product, logged, rewriter, configuration, session_});
        EXPECT_EQ(last.finishInstallation(nullptr), 0);
        EXPECT_TRUE(files_.hasFile(path)) << path;
        files_.removeFile(path.c_str());
    }
    EXPECT_TRUE(ui_.calls.empty());
}

TEST_F(InstallationFinishTest, PassesOnThatThereIsNoNameOfALogAndExportsNothing) {
    hasLog_ = false;
    EXPECT_EQ(finish(), -1);
    EXPECT_TRUE(log_.hasLine("ERROR: Obtaining install actionlog filename"));
    EXPECT_EQ(ui_.countOf("messageBox(\"ERROR: Obtaining install actionlog filename\n\""), 1);
    EXPECT_FALSE(hasConfig());
}

TEST_F(InstallationFinishTest, PassesOnWhyTheLogCannotBeRewrittenAndExportsNothing) {
    files_.removeFile(kLogPath);
    EXPECT_EQ(finish(), -1);
    EXPECT_TRUE(log_.hasLine("ERROR: Opening action file (/app/install.log)"));
    EXPECT_TRUE(session_.hasErrors());
    EXPECT_FALSE(hasConfig());
    EXPECT_TRUE(told().empty());
}

TEST_F(InstallationFinishTest, GoesOnWhenActionsFail) {
    session_.modifications.failing = {"runAssociatedProgram"};
    EXPECT_EQ(finish("<PostInstall><RunProgram>x</RunProgram></PostInstall>"), 0);
    EXPECT_TRUE(log_.hasLine("ERROR: Program was NOT started : \"x \""));
    EXPECT_TRUE(hasConfig());
    EXPECT_EQ(session_.navigation.lastResult, 0);
}

}  // namespace

#include "session_fixture.h"

namespace {

using Lines = std::vector<std::string>;

constexpr char kLogPath[] = "/app/install.log";
constexpr char kConfigPath[] = "/opt/product/config.xml";
constexpr char kOldLog[] = "d\r\nb\r\nNUMVARS\t1\r\nVAR\tX\told\r\nDIR\t1\t/app\\\r\n";

// The last work of a session whose files are in place: reached through the pages, as in a run, with a second
// page of the same name after the first.
class PageWorkFinishTest : public SessionTest {
protected:
    PageWorkFinishTest() {
        files_.addDirectory("/opt/product");
        files_.addFile(kLogPath, kOldLog);
        environment_.program = "/opt/product/setup";
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
    Lines shown() const { return ui_.callsOf("addFileLine(\""); }

    bool hasLog_ = true;
};

TEST_F(PageWorkFinishTest, BringsTheLogUpToDate) {
    EXPECT_EQ(finish(), 0);
    EXPECT_EQ(files_.content(kLogPath),
              "d\r\nb\r\nNUMVARS\t2\r\nVAR\tLATE\tnew\r\nVAR\tUNEXPORTED\tb\r\nDIR\t1\t/app\\\r\n");
}

TEST_F(PageWorkFinishTest, LeavesAFileThatRepeatsARunByHand) {
    EXPECT_EQ(finish(), 0);
    EXPECT_NE(config().find("<Value Name=\"LATE\" DataType=\"value\">new</Value>"), std::string::npos);
    EXPECT_NE(config().find("\"UNLOGGED\""), std::string::npos);
    EXPECT_EQ(config().find("\"UNEXPORTED\""), std::string::npos);
    EXPECT_FALSE(session_.navigation().lastWorkFailed);
}

TEST_F(PageWorkFinishTest, ReportsTheFileInThreeLinesAndFlushesTheLast) {
    EXPECT_EQ(finish(), 0);
    EXPECT_EQ(
        shown(),
        (Lines{"addFileLine(\"Successfully created configuration file:\n\t\"/opt/product/config.xml\"\", 0)",
               "addFileLine(\"You can use the file to automatically install the same product on different "
               "machine with the same settings, by running the installer with the following arguments:\", 0)",
               "addFileLine(\" -configFile=\"/opt/product/config.xml\" {-ignoreErrors=1}\", 1)"}));
}

TEST_F(PageWorkFinishTest, DoesNothingOnASecondPage) {
    prepare();
    ui_.onCall = [this](const std::string& call) {
        if (call == "showPage(1, -1, 1)") {  // after the work of the first page
            files_.removeFile(kConfigPath);
            files_.addFile(kLogPath, "spoilt");
        }
    };
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(ui_.countOf("showPage(2, -1, 1)"), 1);
    EXPECT_FALSE(hasConfig());
    EXPECT_EQ(files_.content(kLogPath), "spoilt");
    EXPECT_EQ(shown().size(), 3U);
    EXPECT_TRUE(session_.isFinished() || session_.getCurrentDialog() == 3);
}

TEST_F(PageWorkFinishTest, LeavesNoFileOfAnUnattendedRun) {
    session_.setUnattended(true);
    EXPECT_EQ(finish(), 0);
    EXPECT_FALSE(hasConfig());
    EXPECT_TRUE(shown().empty());
    EXPECT_NE(files_.content(kLogPath), kOldLog);
}

TEST_F(PageWorkFinishTest, LeavesNoFileOfARunThatWasStartedWithOne) {
    files_.addFile("/answers.xml", "<DefValues/>");
    session_.configFile = "/answers.xml";
    EXPECT_EQ(finish(), 0);
    EXPECT_FALSE(hasConfig());
    EXPECT_TRUE(shown().empty());
    EXPECT_NE(files_.content(kLogPath), kOldLog);
}

TEST_F(PageWorkFinishTest, LeavesNoFileOfAGraphicalRun) {
    ui_.graphical = 1;
    EXPECT_EQ(finish(), 0);
    EXPECT_FALSE(hasConfig());
    EXPECT_TRUE(shown().empty());
    EXPECT_NE(files_.content(kLogPath), kOldLog);
}

TEST_F(PageWorkFinishTest, OnlyReportsAFileThatCannotBeWritten) {
    files_.setReadOnly("/opt/product");
    EXPECT_EQ(finish(), 0);
    EXPECT_EQ(shown(), Lines{"addFileLine(\"The installer could not create configuration file!\", 1)"});
    EXPECT_FALSE(session_.navigation().lastWorkFailed);
    EXPECT_EQ(session_.getCurrentDialog(), 3);
}

TEST_F(PageWorkFinishTest, WritesNoFileWhenItDoesNotKnowWhere) {
    environment_.program = "";
    EXPECT_EQ(finish(), 0);
    EXPECT_EQ(shown(), Lines{"addFileLine(\"The installer could not create configuration file!\", 1)"});
    EXPECT_FALSE(files_.hasFile("/config.xml"));
}

TEST_F(PageWorkFinishTest, PutsTheFileBesideTheProgramOrIntoTheDirectoryThatWasSet) {
    const std::vector<std::pair<std::string, std::string>> places = {
        {"/opt/product", "/opt/product/config.xml"},
        {"/opt/product/", "/opt/product/config.xml"},
        {"C:\\kits", "C:\\kits\\config.xml"},
        {"C:\\", "C:\\config.xml"},
        {"C:", "C:/config.xml"},
        {"/", "/config.xml"}};
    prepare();
    for (const auto& [directory, path] : places) {
        MemoryPlatform machine;
        machine.files.addDirectory("/tmp");
        machine.files.addDirectory(directory);
        machine.files.addFile(kLogPath, kOldLog);
        machine.files.addFile("/package", files_.content("/package"));
        InstallingSystem system(machine.files);
        AnswersFile answers(machine.files);
        TestSession session(machine.bundle(), system, answers, nested_, DebugLog());
        session.setApplicationPath(directory.c_str());
        ASSERT_EQ(session.loadCabinet("/package", 0, kSessionBackup), 0);
        ui_.script = [&] { return session.dialogNext(&ui_, 1); };
        EXPECT_EQ(session.run(&ui_, &log_), 0);
        EXPECT_TRUE(machine.files.hasFile(path)) << path;
    }
}

TEST_F(PageWorkFinishTest, ExportsNothingWithoutANameForTheLog) {
    hasLog_ = false;
    EXPECT_EQ(finish(), -1);
    EXPECT_TRUE(log_.hasLine("ERROR: Obtaining install actionlog filename"));
    EXPECT_EQ(ui_.countOf("messageBox(\"ERROR: Obtaining install actionlog filename\n\""), 1);
    EXPECT_FALSE(hasConfig());
}

TEST_F(PageWorkFinishTest, ExportsNothingWhenTheLogCannotBeRewritten) {
    files_.removeFile(kLogPath);
    EXPECT_EQ(finish(), -1);
    EXPECT_TRUE(log_.hasLine("ERROR: Opening action file (/app/install.log)"));
    EXPECT_TRUE(session_.hasErrors());
    EXPECT_FALSE(hasConfig());
    EXPECT_TRUE(shown().empty());
}

TEST_F(PageWorkFinishTest, GoesOnWhenActionsFail) {
    machine_.processes.startError = 5;
    EXPECT_EQ(finish("<PostInstall><RunProgram>x</RunProgram></PostInstall>"), 0);
    EXPECT_TRUE(log_.hasLine("ERROR: Program was NOT started : \"x \""));
    EXPECT_TRUE(hasConfig());
    EXPECT_FALSE(session_.navigation().lastWorkFailed);
}

}  // namespace

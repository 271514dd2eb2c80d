#include "session/page_work.h"

#include "session_fixture.h"

namespace {

// Reached through a session, whose pages it serves.
class PageWorkTest : public SessionTest {
protected:
    // Walks to a page of this name behind a first one; a page behind it ends the walk.
    int walkTo(const std::string& page, const std::string& more = "") {
        load(document(std::string(kProduct) +
                      "<Dialogs><Hello><Field Type='Directory'>ROOT</Field></Hello><" + page +
                      "/><End Special='Finish'/></Dialogs><DefValues/>" + kControls + more));
        ui_.script = [this] {
            if (beforePage_) {
                beforePage_();
            }
            return session_.dialogNext(&ui_, 1);
        };
        const int result = run();
        return result != 0 ? result : session_.navigation.lastResult;
    }
    // The same in a session that uninstalls.
    int uninstallWalkTo(const std::string& page) {
        files_.addFile("/p.xml", document(std::string(kProduct) + "<UninstallDialogs><Bye/><" + page +
                                          "/><End Special='Finish'/></UninstallDialogs><DefValues/>"));
        EXPECT_EQ(loadLog("/p.xml\r\n\r\nNUMVARS\t0\r\n"), 0);
        ui_.script = [this] { return session_.dialogNext(&ui_, 1); };
        const int result = run();
        return result != 0 ? result : session_.navigation.lastResult;
    }
    bool refused(const std::string& work) {
        return log_.hasLine("ERROR: " + work + " is not carried out: this version can not do that");
    }

    std::function<void()> beforePage_;
};

TEST_F(PageWorkTest, RefusesWhatItDoesNotHave) {
    EXPECT_EQ(walkTo("RevertInstallation"), 1);
    EXPECT_TRUE(refused("The revert of the installation"));
}

TEST_F(PageWorkTest, RefusesTheRevertOfAnUninstallation) {
    EXPECT_EQ(walkTo("RevertUninstallation"), 1);
    EXPECT_TRUE(refused("The revert of the uninstallation"));
}

TEST_F(PageWorkTest, RegistersTheApplication) {
    EXPECT_EQ(walkTo("RegisterApplication"), 0);
    EXPECT_EQ(session_.modifications.calls, std::vector<std::string>{"registerApplication()"});
}

TEST_F(PageWorkTest, TellsThatTheRegistrationFailed) {
    session_.modifications.failing = {"registerApplication"};
    EXPECT_EQ(walkTo("RegisterApplication"), 1);
}

TEST_F(PageWorkTest, RemovesNoRegistrationInAnInstallation) {
    EXPECT_EQ(walkTo("UnregisterApplication"), 0);
    EXPECT_TRUE(session_.modifications.calls.empty());
}

TEST_F(PageWorkTest, RemovesTheRegistrationInAnUninstallation) {
    EXPECT_EQ(uninstallWalkTo("UnregisterApplication"), 0);
    EXPECT_EQ(session_.modifications.calls, std::vector<std::string>{"removeUninstallEntry(Demo)"});
}

TEST_F(PageWorkTest, TellsThatTheRegistrationStays) {
    session_.modifications.failing = {"removeUninstallEntry"};
    EXPECT_EQ(uninstallWalkTo("UnregisterApplication"), 1);
}

TEST_F(PageWorkTest, RegistersNothingInAnUninstallation) {
    EXPECT_EQ(uninstallWalkTo("RegisterApplication"), 1);
    EXPECT_TRUE(session_.modifications.calls.empty());
}

TEST_F(PageWorkTest, RunsTheUninstallersOfOtherProductsAndWaits) {
    system_.installed = {{"Old Tool", "", true, ""}};
    walkTo(
        "ExternalUninstall><ExternalLegacyApplication Details='x86' Arguments='-silent'>Old Tool"
        "</ExternalLegacyApplication></ExternalUninstall><Next");
    EXPECT_EQ(session_.modifications.calls,
              std::vector<std::string>{"uninstallApplication(Old Tool, -silent, 3)"});
}

TEST_F(PageWorkTest, SaysThatEarlierInstallationsStayAndInstallsAllTheSame) {
    files_.addFile("/app/install.log", "x");
    EXPECT_EQ(walkTo("CopyProgress",
                     "<Installation><Uninstall><InstallLogFile>/app/install.log</InstallLogFile></Uninstall>"
                     "</Installation><FileSet Name='S'><FN Dest='/app'>install.xml</FN></FileSet>"),
              0);
    EXPECT_TRUE(log_.hasLine("ERROR: Earlier installations are not removed: this version can not do that"));
    EXPECT_TRUE(files_.hasFile("/app/install.xml"));
    EXPECT_EQ(session_.earlier.previousUninstallDone, 1);
}

TEST_F(PageWorkTest, FailsAnInstallationWithAChangeThatFails) {
    session_.modifications.failing = {"addEnvironmentEntry"};
    EXPECT_EQ(
        walkTo("CopyProgress",
               "<Installation><Environment><Replace VarName='V'>x</Replace></Environment></Installation>"),
        -1);
    EXPECT_EQ(valueOf("INSTALL_ERROR"), "1");
    EXPECT_TRUE(log_.hasLine("ERROR: Encountered an error during Updating environment variables"));
    EXPECT_EQ(session_.errorList, std::vector<std::string>{"Error during: Updating environment variables"});
}

TEST_F(PageWorkTest, ShowsTheStatusOfEachPhaseInOrder) {
    EXPECT_EQ(walkTo("CopyProgress"), 0);
    EXPECT_EQ(
        ui_.callsOf("setStatusText"),
        (std::vector<std::string>{
            "setStatusText(\"Updating environment variables\")", "setStatusText(\"Updating .ini files\")",
            "setStatusText(\"Modifying files\")", "setStatusText(\"Creating shortcuts\")",
            "setStatusText(\"Updating Firewall\")", "setStatusText(\"Running additional installations\")",
            "setStatusText(\"The installation was successful.\")"}));
}

TEST_F(PageWorkTest, GoesOnToTheEndWhenErrorsAreIgnored) {
    ui_.ignoreErrors = 1;
    EXPECT_EQ(walkTo("CopyProgress", "<FileSet Name='S'><FN Dest='/app'>gone</FN></FileSet>"), -1);
    EXPECT_EQ(valueOf("INSTALL_ERROR"), "(none)");
    EXPECT_EQ(session_.dialogNext(&ui_, 1), 0);
    EXPECT_EQ(session_.getCurrentDialog(), 2);
}

TEST_F(PageWorkTest, NormalizesTheValuesOfDirectoryFields) {
    beforePage_ = [this] { session_.setVariable("ROOT", " /opt/demo "); };
    EXPECT_EQ(walkTo("CopyProgress", "<FileSet Name='S'><FN Dest='[ROOT]'>install.xml</FN></FileSet>"), 0);
    EXPECT_EQ(valueOf("ROOT"), "\\opt\\demo");
    EXPECT_TRUE(files_.hasFile("/opt/demo/install.xml"));
}

TEST_F(PageWorkTest, UninstallsTheProductOfTheActionLog) {
    EXPECT_EQ(uninstallWalkTo("CopyProgress"), 0);
    EXPECT_EQ(ui_.callsOf("setStatusText").back(), "setStatusText(\"The uninstall was successful.\")");
    EXPECT_FALSE(session_.hasErrors());
}

}  // namespace

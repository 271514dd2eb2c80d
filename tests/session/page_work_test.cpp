#include "session/page_work.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "platform/written_path.h"
#include "session_fixture.h"

namespace {

// Reached through a session, whose pages it serves.
class PageWorkTest : public SessionTest {
protected:
    // Walks to a page of this name after a first one; a page after it ends the walk. Whether all of it
    // worked.
    bool walkTo(const std::string& page, const std::string& more = "") {
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
        return result == 0 && !session_.navigation().lastWorkFailed;
    }
    // The same in a session that uninstalls, by a log with these records.
    bool uninstallWalkTo(const std::string& page, const std::string& records = "") {
        files_.addFile("/p.xml", document(std::string(kProduct) + "<UninstallDialogs><Bye/><" + page +
                                          "/><End Special='Finish'/></UninstallDialogs><DefValues/>"));
        EXPECT_EQ(loadLog("/p.xml\r\n\r\nNUMVARS\t0\r\n" + records), 0);
        ui_.script = [this] { return session_.dialogNext(&ui_, 1); };
        const int result = run();
        return result == 0 && !session_.navigation().lastWorkFailed;
    }
    // What the system was asked to do, without the looks at its list of applications.
    std::vector<std::string> registrations() const {
        std::vector<std::string> calls;
        for (const std::string& call : system_.calls) {
            if (call.find("egisterApplication(") != std::string::npos || call.starts_with("remove") ||
                call.starts_with("uninstall")) {
                calls.push_back(call);
            }
        }
        return calls;
    }

    static constexpr char kRegistrable[] =
        "<Installation><Uninstall><UninstallCmd>/app/uninstall</UninstallCmd>"
        "<InstallLogFile>/app/install.log</InstallLogFile></Uninstall></Installation>";

    static constexpr char kUnregisterFirst[] = "UnregisterApplication Special='AutoNext'/><CopyProgress";
    static constexpr char kUnregisterLast[] = "CopyProgress Special='AutoNext'/><UnregisterApplication";

    static constexpr char kInstallable[] =
        "<Installation><Uninstall><InstallLogFile>/app/install.log</InstallLogFile></Uninstall>"
        "<UninstallWildcards><F Dest='/app'>install.log</F></UninstallWildcards></Installation>"
        "<FileSet Name='S'><FN Dest='/app'>install.xml</FN></FileSet>";
    static constexpr char kFailing[] =
        "<Installation><Uninstall><InstallLogFile>/app/install.log</InstallLogFile></Uninstall>"
        "</Installation><FileSet Name='S'><FN Dest='/app'>install.xml</FN><FN "
        "Dest='/app'>gone</FN></FileSet>";

    // An earlier version, which a second session takes away.
    void installVersionOne() {
        files_.addFile("/app/tool", "version 1");
        files_.addFile("/app/install.log", "/x\r\n/y\r\nNUMVARS\t0\r\nFILE\tCREATE\t/app/tool\r\n");
        system_.installed = {{"Demo", "", false, "/app/install.log"}};
        nested_.onUninstall = [this](const platform::Platform& machine) {
            if (nested_.isRemoved) {
                machine.files.removeFile("/app/tool");
            }
        };
    }
    bool upgradeTo(const std::string& page, const std::string& more) {
        beforePage_ = [this] {
            session_.setVariable("SHOULD", "1");
            whenUpgrading_();
        };
        return walkTo(page, more);
    }

    std::function<void()> beforePage_;
    std::function<void()> whenUpgrading_ = [] {};
};

TEST_F(PageWorkTest, FailsARevertThatHasNothingToTakeBack) {
    EXPECT_FALSE(walkTo("RevertInstallation"));
    EXPECT_TRUE(log_.hasLine("Reverting installation!"));
}

TEST_F(PageWorkTest, HasNothingToBringBackWhereNothingWasRemoved) {
    EXPECT_TRUE(walkTo("RevertUninstallation"));
    EXPECT_TRUE(log_.hasLine("Reverting uninstallation"));
}

TEST_F(PageWorkTest, TakesBackWhatItInstalled) {
    EXPECT_TRUE(walkTo("CopyProgress Special='AutoNext'/><RevertInstallation", kInstallable));
    EXPECT_FALSE(files_.hasFile("/app/install.xml"));
    EXPECT_FALSE(files_.hasFile("/app/install.log"));
}

// Its log would be taken for that of this session.
TEST_F(PageWorkTest, LeavesAVersionAloneThatItDidNotInstall) {
    files_.addFile("/app/tool", "version 1");
    files_.addFile("/app/install.log", "/x\r\n/y\r\nNUMVARS\t0\r\nFILE\tCREATE\t/app/tool\r\n");
    system_.temporaryNamesLeft = 0;
    EXPECT_FALSE(walkTo("CopyProgress Special='AutoNext'/><RevertInstallation", kInstallable));
    EXPECT_TRUE(files_.hasFile("/app/tool"));
    EXPECT_TRUE(files_.hasFile("/app/install.log"));
}

TEST_F(PageWorkTest, BringsBackWhatWasRemovedForAFailedInstallation) {
    installVersionOne();
    EXPECT_FALSE(upgradeTo("CopyProgress Special='AutoNext'/><RevertInstallation", kFailing));
    EXPECT_EQ(files_.content("/app/tool"), "version 1");
    EXPECT_FALSE(files_.hasFile("/app/install.xml"));
    EXPECT_FALSE(session_.removed.isOnlyCopy);
}

TEST_F(PageWorkTest, SaysThatAVersionOverAnotherOneTakesThatAlong) {
    files_.addFile("/app/tool", "version 1");
    files_.addFile("/app/install.log", "/x\r\n/y\r\nNUMVARS\t0\r\nFILE\tCREATE\t/app/tool\r\n");
    beforePage_ = [this] { session_.setVariable("SHOULD", "0"); };
    walkTo("CopyProgress Special='AutoNext'/><RevertInstallation", kFailing);
    EXPECT_FALSE(files_.hasFile("/app/tool"));
    EXPECT_THAT(
        ui_.callsOf("addMessage(\"The earlier version, over which the new one was installed, has been "
                    "taken back with it."),
        testing::SizeIs(1));
}

TEST_F(PageWorkTest, SaysNothingOfAnEarlierVersionThatComesBack) {
    installVersionOne();
    nested_.isRemoved = false;  // so that its records are continued
    upgradeTo("CopyProgress Special='AutoNext'/><RevertInstallation", kFailing);
    EXPECT_EQ(files_.content("/app/tool"), "version 1");
    EXPECT_TRUE(ui_.callsOf("addMessage(\"The earlier version, over").empty());
}

// The space is looked at by whichever page removes it.
class PageWithRemovalTest : public PageWorkTest, public testing::WithParamInterface<const char*> {};

TEST_P(PageWithRemovalTest, RemovesNothingWhereTheBackupHasNoRoom) {
    installVersionOne();
    files_.addFile("/app/tool", std::string(10000, '1'));
    files_.setVolume("/var");
    whenUpgrading_ = [this] { files_.reportFreeSpace("/var", 9000); };
    EXPECT_FALSE(upgradeTo(GetParam(), kInstallable));
    EXPECT_TRUE(files_.hasFile("/app/tool"));
    EXPECT_FALSE(files_.hasFile("/app/install.xml"));
    EXPECT_THAT(ui_.callsOf("addMessage(\"There is too little space for "), testing::SizeIs(1));
}

INSTANTIATE_TEST_SUITE_P(Pages, PageWithRemovalTest, testing::Values("CopyProgress", "Uninstall"));

TEST_F(PageWorkTest, TakesTheEntryOfAVersionAlongThatDoesNotComeBack) {
    files_.addFile("/app/install.log", "/x\r\n/y\r\nNUMVARS\t0\r\n");
    system_.installed = {{"Demo", "", false, "/app/install.log"}};
    beforePage_ = [this] { session_.setVariable("SHOULD", "0"); };
    walkTo("CopyProgress Special='AutoNext'/><RevertInstallation", kInstallable);
    EXPECT_TRUE(system_.installed.empty());
}

TEST_F(PageWorkTest, NeedsNoBackupAfterAnInstallationThatWorked) {
    installVersionOne();
    EXPECT_TRUE(upgradeTo("CopyProgress", kInstallable));
    EXPECT_EQ(session_.removed.uninstallBackups.size(), 1U);
    EXPECT_FALSE(session_.removed.isOnlyCopy);
}

TEST_F(PageWorkTest, KeepsTheBackupOfAVersionThatIsNotReplaced) {
    installVersionOne();
    EXPECT_FALSE(upgradeTo("CopyProgress", kFailing));
    EXPECT_TRUE(session_.removed.isOnlyCopy);
    EXPECT_THAT(ui_.callsOf("addMessage(\"An earlier version was removed and isn't completely back."),
                testing::SizeIs(1));
}

TEST_F(PageWorkTest, MakesNoBackupWhereTheSessionHasNone) {
    installVersionOne();
    whenUpgrading_ = [this] { session_.sessionFlags = 0; };
    EXPECT_TRUE(upgradeTo("Uninstall", kInstallable));
    EXPECT_TRUE(session_.removed.uninstallBackups.empty());
    EXPECT_TRUE(log_.hasLine("Skipping creation of uninstall backup file for \"Demo\""));
    EXPECT_FALSE(files_.hasFile("/app/tool"));
}

TEST_F(PageWorkTest, RemovesTheEarlierVersionOnceWhicheverPageComesFirst) {
    installVersionOne();
    EXPECT_TRUE(upgradeTo("Uninstall Special='AutoNext'/><Uninstall Special='AutoNext'/><CopyProgress",
                          kInstallable));
    EXPECT_EQ(std::count(nested_.calls.begin(), nested_.calls.end(), "uninstall"), 1);
}

TEST_F(PageWorkTest, SaysThatTheEarlierVersionIsNotGone) {
    installVersionOne();
    nested_.isRemoved = false;
    EXPECT_FALSE(upgradeTo("Uninstall", kInstallable));
    EXPECT_EQ(valueOf("UNINSTALL_ERROR"), "1");
}

TEST_F(PageWorkTest, InstallsOverAVersionThatIsNotGone) {
    installVersionOne();
    nested_.isRemoved = false;
    EXPECT_TRUE(upgradeTo("CopyProgress", kInstallable));
    EXPECT_EQ(valueOf("UNINSTALL_ERROR"), "");
    EXPECT_TRUE(files_.hasFile("/app/install.xml"));
}

TEST_F(PageWorkTest, RemovesNothingForAnInstallationThatIsKnownToFail) {
    installVersionOne();
    EXPECT_FALSE(
        upgradeTo("CopyProgress", "<FileSet Name='S'><FN Dest='relative'>install.xml</FN></FileSet>"));
    EXPECT_TRUE(nested_.calls.empty());
    EXPECT_EQ(files_.content("/app/tool"), "version 1");
}

TEST_F(PageWorkTest, EndsWithTheErrorOfARemovalThatCannotBegin) {
    installVersionOne();
    nested_.loadError = "ERROR: Error parsing installation file";
    EXPECT_FALSE(upgradeTo("CopyProgress", kInstallable));
    EXPECT_EQ(ui_.countOf("messageBox(\"ERROR: Error parsing installation file"), 1);
    EXPECT_EQ(valueOf("INSTALL_ERROR"), "1");
    EXPECT_EQ(files_.content("/app/tool"), "version 1");
    EXPECT_FALSE(files_.hasFile("/app/install.xml"));
    for (const std::string& path : files_.allFiles()) {
        EXPECT_FALSE(path.starts_with("/tmp/")) << path;
    }
}

TEST_F(PageWorkTest, RegistersTheApplicationWithItsValues) {
    EXPECT_TRUE(walkTo("RegisterApplication", kRegistrable));
    EXPECT_EQ(registrations(),
              std::vector<std::string>{"registerApplication(Demo, 1.2.3, web, \"/app/uninstall\" "
                                       "-uninstall=\"/app/install.log\" -uninstallApp=\"Demo\")"});
}

TEST_F(PageWorkTest, ReportsAFailedRegistration) {
    system_.registrationWorks = false;
    EXPECT_FALSE(walkTo("RegisterApplication", kRegistrable));
}

TEST_F(PageWorkTest, RemovesNoRegistrationInAnInstallation) {
    EXPECT_TRUE(walkTo("UnregisterApplication"));
    EXPECT_TRUE(registrations().empty());
}

TEST_F(PageWorkTest, RemovesTheRegistrationThatAPageAskedForBeforeTheProduct) {
    system_.installed = {{"Demo", "", false, ""}};
    EXPECT_TRUE(uninstallWalkTo(kUnregisterFirst));
    EXPECT_EQ(registrations(), std::vector<std::string>{"removeUninstallEntry(Demo)"});
}

TEST_F(PageWorkTest, RemovesTheRegistrationAfterTheProduct) {
    system_.installed = {{"Demo", "", false, ""}};
    EXPECT_TRUE(uninstallWalkTo(kUnregisterLast));
    EXPECT_EQ(registrations(), std::vector<std::string>{"removeUninstallEntry(Demo)"});
}

TEST_F(PageWorkTest, KeepsTheRegistrationOfAProductThatIsNotUninstalled) {
    system_.installed = {{"Demo", "", false, ""}};
    uninstallWalkTo("UnregisterApplication");
    EXPECT_TRUE(registrations().empty());
}

TEST_F(PageWorkTest, KeepsTheRegistrationOfAProductThatIsNotRemovedCompletely) {
    files_.addFile("/app/mine", "");
    system_.installed = {{"Demo", "", false, ""}};
    EXPECT_FALSE(uninstallWalkTo(kUnregisterFirst, "DIR\t1\t/app/\r\n"));
    EXPECT_TRUE(registrations().empty());
}

TEST_F(PageWorkTest, KeepsTheRegistrationAfterAWalkThatFailed) {
    files_.addFile("/app/mine", "");
    system_.installed = {{"Demo", "", false, ""}};
    EXPECT_FALSE(uninstallWalkTo(kUnregisterLast, "DIR\t1\t/app/\r\n"));
    EXPECT_TRUE(registrations().empty());
}

TEST_F(PageWorkTest, ReportsARegistrationThatStays) {
    system_.installed = {{"Demo", "", false, ""}};
    system_.removalWorks = false;
    EXPECT_FALSE(uninstallWalkTo(kUnregisterFirst));
    EXPECT_EQ(registrations(), std::vector<std::string>{"removeUninstallEntry(Demo)"});
}

TEST_F(PageWorkTest, RegistersNothingInAnUninstallation) {
    EXPECT_FALSE(uninstallWalkTo("RegisterApplication"));
    EXPECT_TRUE(registrations().empty());
}

TEST_F(PageWorkTest, RunsTheUninstallersOfOtherProductsAndWaits) {
    system_.installed = {{"Old Tool", "", true, ""}};
    walkTo(
        "ExternalUninstall><ExternalLegacyApplication Details='x86' Arguments='-silent'>Old Tool"
        "</ExternalLegacyApplication></ExternalUninstall><Next");
    EXPECT_EQ(registrations(),
              std::vector<std::string>{"uninstallApplication(Old Tool, -silent, x86, wait)"});
}

TEST_F(PageWorkTest, FailsAnInstallationWithAChangeThatFails) {
    machine_.registry.setForbidden("SYSTEM\\CurrentControlSet\\Control\\Session Manager\\Environment");
    EXPECT_FALSE(
        walkTo("CopyProgress",
               "<Installation><Environment><Replace VarName='V'>x</Replace></Environment></Installation>"));
    EXPECT_EQ(valueOf("INSTALL_ERROR"), "1");
    EXPECT_TRUE(log_.hasLine("ERROR: Encountered an error during Updating environment variables"));
    EXPECT_EQ(session_.errorList, (std::vector<std::string>{"FAILED to create V",
                                                            "Error during: Updating environment variables"}));
}

TEST_F(PageWorkTest, ShowsTheStatusOfEachPhaseInOrder) {
    EXPECT_TRUE(walkTo("CopyProgress"));
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
    EXPECT_FALSE(walkTo("CopyProgress", "<FileSet Name='S'><FN Dest='/app'>gone</FN></FileSet>"));
    EXPECT_EQ(valueOf("INSTALL_ERROR"), "(none)");
    EXPECT_EQ(session_.dialogNext(&ui_, 1), 0);
    EXPECT_EQ(session_.getCurrentDialog(), 2);
}

TEST_F(PageWorkTest, NormalizesTheValuesOfDirectoryFields) {
    beforePage_ = [this] { session_.setVariable("ROOT", " /opt/demo "); };
    EXPECT_TRUE(walkTo("CopyProgress", "<FileSet Name='S'><FN Dest='[ROOT]'>install.xml</FN></FileSet>"));
    EXPECT_EQ(valueOf("ROOT"), "\\opt\\demo");
    EXPECT_TRUE(files_.hasFile("/opt/demo/install.xml"));
}

TEST_F(PageWorkTest, UninstallsTheProductOfTheActionLog) {
    EXPECT_TRUE(uninstallWalkTo("CopyProgress"));
    EXPECT_EQ(ui_.callsOf("setStatusText").back(), "setStatusText(\"The uninstall was successful.\")");
    EXPECT_FALSE(session_.hasErrors());
}

// The bar of the whole job.
class PageWorkProgressTest : public PageWorkTest {
protected:
    PageWorkProgressTest() { ui_.graphical = 1; }

    // What the bar showed, which must only grow and end at 100.
    std::vector<int> shares() const {
        std::vector<int> shares;
        for (const std::string& call : ui_.callsOf("setOverallProgress(")) {
            shares.push_back(std::stoi(call.substr(call.find('(') + 1)));
        }
        EXPECT_TRUE(std::ranges::is_sorted(shares)) << testing::PrintToString(shares);
        EXPECT_EQ(std::ranges::adjacent_find(shares), shares.end()) << testing::PrintToString(shares);
        return shares;
    }
    int shareAt(const std::string& status) const {
        int share = -1;
        for (const std::string& call : ui_.calls) {
            if (call.starts_with("setOverallProgress(")) {
                share = std::stoi(call.substr(call.find('(') + 1));
            } else if (call.starts_with(status)) {
                return share;
            }
        }
        return -2;
    }
    // Two files that differ much in size.
    bool install(const std::string& pages) {
        std::string text =
            document(std::string(kProduct) + "<Dialogs><Hello/><" + pages +
                     "/><End Special='Finish'/></Dialogs><DefValues/>" + kControls + kRegistrable +
                     "<FileSet Name='S'><FN Dest='/app'>big</FN><FN Dest='/app'>small</FN></FileSet>");
        load(text, {{"big", std::string(900 * 1024, 'b')}, {"small", std::string(100 * 1024, 's')}});
        ui_.script = [this] {
            if (beforePage_) {
                beforePage_();
            }
            return session_.dialogNext(&ui_, 1);
        };
        return run() == 0 && !session_.navigation().lastWorkFailed;
    }
};

TEST_F(PageWorkProgressTest, FollowsTheBytesOfAnInstallation) {
    EXPECT_TRUE(install("CopyProgress"));
    const std::vector<int> found = shares();
    ASSERT_FALSE(found.empty());
    EXPECT_EQ(found.front(), 0);
    EXPECT_EQ(found.back(), 100);
    // The smaller file comes first, and has a tenth of the bytes.
    const int small = shareAt("setStatusText(\"" + platform::writtenPath("/app\\big"));
    const int both = shareAt("setStatusText(\"Updating environment");
    EXPECT_GT(small, 0);
    EXPECT_GT(both - small, 4 * small);
}

TEST_F(PageWorkProgressTest, CountsTheRemovalOfAnEarlierVersion) {
    installVersionOne();
    std::string log = "/x\r\n/y\r\nNUMVARS\t0\r\n";
    for (int i = 0; i < 40; ++i) {
        log += "FILE\tCREATE\t/app/old" + std::to_string(i) + "\r\n";
    }
    files_.addFile("/app/install.log", log);
    beforePage_ = [this] { session_.setVariable("SHOULD", "1"); };
    EXPECT_TRUE(install("Uninstall Special='AutoNext'/><CopyProgress"));
    EXPECT_EQ(shares().back(), 100);
    EXPECT_GT(shareAt("setStatusText(\"" + platform::writtenPath("/app\\big")), 40)
        << "the removal weighs as much as the copying";
}

TEST_F(PageWorkProgressTest, WaitsForThePagesAfterTheInstallation) {
    EXPECT_TRUE(
        install("CopyProgress Special='AutoNext'/><RegisterApplication Special='AutoNext'/><PostInstall"));
    EXPECT_EQ(shares().back(), 100);
    EXPECT_LT(shareAt("setStatusText(\"The installation was successful."), 100);
}

TEST_F(PageWorkProgressTest, IsCompleteWithoutAPageWhoseConditionIsFalse) {
    EXPECT_TRUE(install("CopyProgress/><RegisterApplication Condition='1==2'"));
    EXPECT_EQ(shares().back(), 100);
}

TEST_F(PageWorkProgressTest, FollowsAnUninstallation) {
    std::string records;
    for (int i = 0; i < 50; ++i) {
        records += "FILE\tCREATE\t/app/file" + std::to_string(i) + "\r\n";
    }
    EXPECT_TRUE(uninstallWalkTo("CopyProgress", records));
    EXPECT_GT(shares().size(), 20U);
    EXPECT_EQ(shares().back(), 100);
}

TEST_F(PageWorkProgressTest, IsNotShownOnTheConsole) {
    ui_.graphical = 0;
    installVersionOne();
    EXPECT_TRUE(install("CopyProgress"));
    EXPECT_EQ(ui_.countOf("setOverallProgress"), 0);
}

}  // namespace

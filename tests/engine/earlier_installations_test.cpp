#include "engine/earlier_installations.h"

#include "engine_fixture.h"

namespace {

constexpr char kProduct[] = "<ProductDesc><Fullname>Demo</Fullname>";

class EarlierInstallationsTest : public EngineTest {
protected:
    // The lines about what was found, without those that are always there.
    std::vector<std::string> findings() const {
        std::vector<std::string> lines;
        for (const std::string& line : log_.lines()) {
            if (!line.starts_with("Checking for") && !line.starts_with("Found 0 external") &&
                line != "Initializing previous install's variable values from log" &&
                !line.starts_with("ERROR: Obtaining actionlog filename")) {
                lines.push_back(line);
            }
        }
        return lines;
    }

    EarlierInstallations earlier_{parts_};
};

TEST_F(EarlierInstallationsTest, FindsNothingOnAFreshMachine) {
    describe(std::string(kProduct) + "</ProductDesc>");
    earlier_.findRegistered(false);
    EXPECT_EQ(earlier_.kind(), 0);
    EXPECT_EQ(earlier_.legacyCount(), 0);
}

TEST_F(EarlierInstallationsTest, FindsTheOwnNameAndLegacyApplications) {
    system_.installed = {{"Demo", "", false, ""}, {"Old Demo", "", false, ""}};
    describe(std::string(kProduct) +
             "<LegacyApplication>Old Demo</LegacyApplication><LegacyApplication/>"
             "<LegacyApplication>Other</LegacyApplication></ProductDesc>");
    earlier_.findRegistered(false);
    EXPECT_EQ(earlier_.kind(), 1);
    EXPECT_EQ(earlier_.legacyCount(), 1);
    EXPECT_EQ(findings(), std::vector<std::string>{"Found installed legacy app: \"Old Demo\""});
}

TEST_F(EarlierInstallationsTest, HasNoEarlierInstallationInASessionThatUninstalls) {
    system_.installed = {{"Demo", "", false, ""}};
    files_.addFile("/app/install.log", "x");
    describe(std::string(kProduct) +
             "</ProductDesc><Installation><Uninstall>"
             "<InstallLogFile>/app/install.log</InstallLogFile></Uninstall></Installation>");
    earlier_.findRegistered(true);
    earlier_.findOthers(true);
    EXPECT_EQ(earlier_.kind(), 0);
    EXPECT_TRUE(findings().empty());
}

TEST_F(EarlierInstallationsTest, KeepsWhatItFoundOnceTheRemovalWasTried) {
    system_.installed = {{"Demo", "", false, ""}};
    describe(std::string(kProduct) + "</ProductDesc>");
    earlier_.findRegistered(false);
    EXPECT_FALSE(earlier_.wasRemovalTried());
    earlier_.remove();
    EXPECT_TRUE(earlier_.wasRemovalTried());
    system_.installed.clear();
    earlier_.findRegistered(false);
    EXPECT_EQ(earlier_.kind(), 1);
}

TEST_F(EarlierInstallationsTest, FindsTheOwnLogWithoutAnEntry) {
    variables_.set("ROOT", "/app");
    files_.addFile("/app/install.log", "x");
    describe(std::string(kProduct) +
             "</ProductDesc><Installation><Uninstall>"
             "<InstallLogFile>[ROOT]/install.log</InstallLogFile></Uninstall></Installation>");
    earlier_.findRegistered(false);
    earlier_.findOthers(false);
    EXPECT_EQ(earlier_.kind(), 2);
    ASSERT_EQ(earlier_.legacyLogFiles().size(), 1U);
    EXPECT_EQ(earlier_.legacyLogFiles()[0].applicationName, "Demo");
    EXPECT_EQ(earlier_.legacyLogFiles()[0].logPath, "\\app\\install.log");
    EXPECT_EQ(findings(), std::vector<std::string>{
                              "WARNING: Previous installation log detected with no previous installation "
                              "in registry (\\app\\install.log)"});
}

TEST_F(EarlierInstallationsTest, LooksForNoLogOfARegisteredInstallation) {
    system_.installed = {{"Demo", "", false, ""}};
    describe(std::string(kProduct) + "</ProductDesc>");
    earlier_.findRegistered(false);
    earlier_.findOthers(false);
    EXPECT_EQ(earlier_.kind(), 1);
    EXPECT_TRUE(findings().empty());
}

TEST_F(EarlierInstallationsTest, LogsThatTheDescriptionNamesNoLog) {
    describe(std::string(kProduct) + "</ProductDesc>");
    earlier_.findOthers(false);
    EXPECT_EQ(findings(),
              std::vector<std::string>{"ERROR: Installation does not have specified uninstall log file!"});
}

TEST_F(EarlierInstallationsTest, LogsNothingForAnEmptyNameOfTheLog) {
    describe(std::string(kProduct) +
             "</ProductDesc><Installation><Uninstall><InstallLogFile></InstallLogFile></Uninstall>"
             "</Installation>");
    earlier_.findOthers(false);
    EXPECT_EQ(earlier_.kind(), 0);
    EXPECT_TRUE(findings().empty());
}

TEST_F(EarlierInstallationsTest, CountsLegacyLogs) {
    files_.addFile("/old/a.log", "x");
    files_.addFile("/old/b.log", "x");
    describe(std::string(kProduct) +
             "</ProductDesc><Installation><Uninstall>"
             "<InstallLogFile>/app/install.log</InstallLogFile>"
             "<LegacyInstallLogFile AppName='A'>/old/a.log</LegacyInstallLogFile>"
             "<LegacyInstallLogFile>/old/b.log</LegacyInstallLogFile>"
             "<LegacyInstallLogFile AppName='C'>/old/c.log</LegacyInstallLogFile>"
             "</Uninstall></Installation><InstallerControlVariables>"
             "<LegacyInstallation>LEGACY</LegacyInstallation></InstallerControlVariables>");
    earlier_.findOthers(false);
    earlier_.findOthers(false);  // starts anew
    EXPECT_EQ(valueOf("LEGACY"), "1");
    ASSERT_EQ(earlier_.legacyLogFiles().size(), 1U);
    EXPECT_EQ(earlier_.legacyLogFiles()[0].applicationName, "A");
    EXPECT_TRUE(log_.hasLine("WARNING: No Application name specified to a legacy application!"));
    EXPECT_TRUE(log_.hasLine(
        "WARNING: Count of legacy installation log files is more than detected from registry (1 > 0)"));
}

TEST_F(EarlierInstallationsTest, CountsApplicationsOfOtherInstallers) {
    system_.installed = {{"Tool 1", "Maker", false, ""},
                         {"Tool 2", "Other", false, ""},
                         {"Tool 3", "Maker", true, ""},
                         {"Plain", "", false, ""}};
    describe(
        std::string(kProduct) +
        "<ExternalLegacyApplication>Plain</ExternalLegacyApplication>"
        "<ExternalLegacyApplication>Tool</ExternalLegacyApplication>"
        "<ExternalLegacyApplication Details=';SubString' Publisher='Make'>Tool</ExternalLegacyApplication>"
        "<ExternalLegacyApplication Details='X86;substring'>Tool</ExternalLegacyApplication>"
        "<ExternalLegacyApplication Condition='1==2'>Plain</ExternalLegacyApplication>"
        "<ExternalLegacyApplication/></ProductDesc><InstallerControlVariables>"
        "<ExternalLegacyInstallation>EXTERNAL</ExternalLegacyInstallation></InstallerControlVariables>");
    earlier_.findOthers(true);
    EXPECT_EQ(valueOf("EXTERNAL"), "3");
    EXPECT_EQ(findings(), std::vector<std::string>{"Found 3 external legacy installations."});
}

constexpr char kRoles[] =
    "<InstallerControlVariables><PreviousInstallation>PREVIOUS</PreviousInstallation>"
    "<LegacyInstallation>LEGACY</LegacyInstallation><ShouldUninstall>SHOULD</ShouldUninstall>"
    "<UninstallError>UNINSTALL_ERROR</UninstallError></InstallerControlVariables>";

class EarlierVariablesTest : public EarlierInstallationsTest {
protected:
    void describeDemo(const std::string& more = "") {
        describe(std::string(kProduct) + "</ProductDesc>" + kRoles + more);
    }
};

TEST_F(EarlierVariablesTest, TakesTheVariablesOfARegisteredInstallation) {
    files_.addFile("/old.log", "d\r\nb\r\nNUMVARS\t1\r\nVAR\tROOT\t/old\r\n");
    system_.installed = {{"Demo", "", false, "/old.log"}};
    describeDemo();
    earlier_.findRegistered(false);
    EXPECT_EQ(valueOf("ROOT"), "/old");
    EXPECT_EQ(valueOf("SHOULD"), "1");
    EXPECT_EQ(valueOf("PREVIOUS"), "(none)");
    earlier_.findOthers(false);
    EXPECT_EQ(valueOf("PREVIOUS"), "1");
    EXPECT_EQ(valueOf("LEGACY"), "(none)");
}

TEST_F(EarlierVariablesTest, LogsWhyTheVariablesCannotBeTaken) {
    system_.installed = {{"Demo", "", false, ""}};
    describeDemo();
    earlier_.findRegistered(false);
    EXPECT_TRUE(log_.hasLine("ERROR: Obtaining actionlog filename (Demo)"));
    system_.installed = {{"Demo", "", false, "/none.log"}};
    earlier_.findRegistered(false);
    EXPECT_TRUE(log_.hasLine("ERROR: Opening action file (/none.log)"));
    EXPECT_EQ(earlier_.kind(), kRegisteredInstallation);
}

TEST_F(EarlierVariablesTest, SetsTheRolesOfWhatOnlyALogShows) {
    files_.addFile("/app/install.log", "x");
    describeDemo(
        "<Installation><Uninstall><InstallLogFile>/app/install.log</InstallLogFile></Uninstall>"
        "</Installation>");
    earlier_.findRegistered(false);
    EXPECT_EQ(valueOf("SHOULD"), "(none)");
    earlier_.findOthers(false);
    EXPECT_EQ(valueOf("PREVIOUS"), "2");
    EXPECT_EQ(valueOf("SHOULD"), "1");
}

TEST_F(EarlierVariablesTest, WarnsOfExternalInstallationsWithoutAVariable) {
    system_.installed = {{"Plain", "", false, ""}};
    describe(std::string(kProduct) +
             "<ExternalLegacyApplication>Plain</ExternalLegacyApplication></ProductDesc>");
    earlier_.findOthers(true);
    EXPECT_TRUE(log_.hasLine(
        "WARNING: External legacy installation variable is not specified and installations were found!"));
}

class EarlierRemovalTest : public EarlierVariablesTest {};

TEST_F(EarlierRemovalTest, RemovesNothingUnlessAskedTo) {
    system_.installed = {{"Demo", "", false, ""}};
    describeDemo();
    earlier_.findRegistered(false);
    log_.clear();
    for (const char* wish : {"", "0"}) {
        variables_.set("SHOULD", wish);
        EXPECT_TRUE(earlier_.remove());
    }
    EXPECT_TRUE(earlier_.wasRemovalTried());
    EXPECT_TRUE(log_.lines().empty());
}

TEST_F(EarlierRemovalTest, HasNothingToDoWithoutEarlierInstallations) {
    describeDemo();
    variables_.set("SHOULD", "1");
    EXPECT_TRUE(earlier_.remove());
    EXPECT_TRUE(log_.lines().empty());
}

TEST_F(EarlierRemovalTest, LogsThatItCannotRemoveARegisteredInstallation) {
    system_.installed = {{"Demo", "", false, ""}};
    describeDemo();
    earlier_.findRegistered(false);
    variables_.set("UNINSTALL_ERROR", "old");
    log_.clear();
    EXPECT_FALSE(earlier_.remove());
    EXPECT_EQ(valueOf("UNINSTALL_ERROR"), "");
    EXPECT_EQ(log_.lines(),
              std::vector<std::string>{
                  "ERROR: Earlier installations are not removed: this version can not do that"});
}

TEST_F(EarlierRemovalTest, FailsForALegacyApplication) {
    system_.installed = {{"Old Demo", "", false, ""}};
    describe(std::string(kProduct) + "<LegacyApplication>Old Demo</LegacyApplication></ProductDesc>" +
             kRoles);
    earlier_.findRegistered(false);
    EXPECT_FALSE(earlier_.remove());
}

TEST_F(EarlierRemovalTest, FailsForALog) {
    files_.addFile("/old/a.log", "x");
    describe(std::string(kProduct) + "</ProductDesc>" + kRoles +
             "<Installation><Uninstall><LegacyInstallLogFile AppName='A'>/old/a.log</LegacyInstallLogFile>"
             "</Uninstall></Installation>");
    earlier_.findOthers(false);
    variables_.set("SHOULD", "1");
    EXPECT_FALSE(earlier_.remove());
}

}  // namespace

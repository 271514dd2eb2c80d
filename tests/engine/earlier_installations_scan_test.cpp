#include "engine/earlier_installations_scan.h"

#include "engine_fixture.h"

namespace {

constexpr char kProduct[] = "<ProductDesc><Fullname>Demo</Fullname>";

class EarlierInstallationsScanTest : public EngineTest {
protected:
    EarlierInstallationsScan scan_{{document_, product_, expressions_, system_, files_}, found_, console_};
    EarlierInstallations found_;
};

TEST_F(EarlierInstallationsScanTest, findsNothingOnAFreshMachine) {
    describe(std::string(kProduct) + "</ProductDesc>");
    scan_.scanForEarlierInstallations(false);
    EXPECT_EQ(found_.previousInstallationKind, 0);
    EXPECT_EQ(found_.legacyInstallationCount, 0);
}

TEST_F(EarlierInstallationsScanTest, findsTheOwnNameAndLegacyApplications) {
    system_.installed = {{"Demo", "", false, ""}, {"Old Demo", "", false, ""}};
    describe(std::string(kProduct) +
             "<LegacyApplication>Old Demo</LegacyApplication><LegacyApplication/>"
             "<LegacyApplication>Other</LegacyApplication></ProductDesc>");
    scan_.scanForEarlierInstallations(false);
    EXPECT_EQ(found_.previousInstallationKind, 1);
    EXPECT_EQ(found_.legacyInstallationCount, 1);
    EXPECT_EQ(log_.lines(), std::vector<std::string>{"Found installed legacy app: \"Old Demo\""});
}

TEST_F(EarlierInstallationsScanTest, hasNoEarlierInstallationInASessionThatUninstalls) {
    system_.installed = {{"Demo", "", false, ""}};
    files_.addFile("/app/install.log", "x");
    describe(std::string(kProduct) +
             "</ProductDesc><Installation><Uninstall>"
             "<InstallLogFile>/app/install.log</InstallLogFile></Uninstall></Installation>");
    scan_.scanForEarlierInstallations(true);
    scan_.scanLegacyLogFiles(true);
    EXPECT_EQ(found_.previousInstallationKind, 0);
    EXPECT_TRUE(log_.lines().empty());
}

TEST_F(EarlierInstallationsScanTest, keepsWhatItFoundOnceTheRemovalWasTried) {
    found_.previousUninstallDone = 1;
    found_.previousInstallationKind = 2;
    describe(std::string(kProduct) + "</ProductDesc>");
    scan_.scanForEarlierInstallations(false);
    EXPECT_EQ(found_.previousInstallationKind, 2);
}

TEST_F(EarlierInstallationsScanTest, findsTheOwnLogWithoutAnEntry) {
    variables_.setVariable("ROOT", "/app");
    files_.addFile("/app/install.log", "x");
    describe(std::string(kProduct) +
             "</ProductDesc><Installation><Uninstall>"
             "<InstallLogFile>[ROOT]/install.log</InstallLogFile></Uninstall></Installation>");
    scan_.scanForEarlierInstallations(false);
    scan_.scanLegacyLogFiles(false);
    EXPECT_EQ(found_.previousInstallationKind, 2);
    ASSERT_EQ(found_.legacyLogFiles.size(), 1U);
    EXPECT_EQ(found_.legacyLogFiles[0].applicationName, "Demo");
    EXPECT_EQ(found_.legacyLogFiles[0].logPath, "\\app\\install.log");
    EXPECT_EQ(log_.lines(), std::vector<std::string>{
                                "WARNING: Previous installation log detected with no previous installation "
                                "in registry (\\app\\install.log)"});
}

TEST_F(EarlierInstallationsScanTest, doesNotLookForTheLogOfARegisteredInstallation) {
    system_.installed = {{"Demo", "", false, ""}};
    describe(std::string(kProduct) + "</ProductDesc>");
    scan_.scanForEarlierInstallations(false);
    scan_.scanLegacyLogFiles(false);
    EXPECT_EQ(found_.previousInstallationKind, 1);
    EXPECT_TRUE(log_.lines().empty());
}

TEST_F(EarlierInstallationsScanTest, saysThatTheDescriptionNamesNoLog) {
    describe(std::string(kProduct) + "</ProductDesc>");
    scan_.scanLegacyLogFiles(false);
    EXPECT_EQ(log_.lines(),
              std::vector<std::string>{"ERROR: Installation does not have specified uninstall log file!"});
}

TEST_F(EarlierInstallationsScanTest, countsLegacyLogs) {
    files_.addFile("/old/a.log", "x");
    files_.addFile("/old/b.log", "x");
    describe(std::string(kProduct) +
             "</ProductDesc><Installation><Uninstall>"
             "<InstallLogFile>/app/install.log</InstallLogFile>"
             "<LegacyInstallLogFile AppName='A'>/old/a.log</LegacyInstallLogFile>"
             "<LegacyInstallLogFile>/old/b.log</LegacyInstallLogFile>"
             "<LegacyInstallLogFile AppName='C'>/old/c.log</LegacyInstallLogFile>"
             "</Uninstall></Installation>");
    found_.externalLegacyCount = 7;
    scan_.scanLegacyLogFiles(false);
    scan_.scanLegacyLogFiles(false);  // starts anew
    EXPECT_EQ(found_.externalLegacyCount, 1);
    ASSERT_EQ(found_.legacyLogFiles.size(), 1U);
    EXPECT_EQ(found_.legacyLogFiles[0].applicationName, "A");
    EXPECT_TRUE(log_.hasLine("WARNING: No Application name specified to a legacy application!"));
    EXPECT_TRUE(log_.hasLine(
        "WARNING: Count of legacy installation log files is more than detected from registry (1 > 0)"));
}

TEST_F(EarlierInstallationsScanTest, countsApplicationsOfOtherInstallers) {
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
        "<ExternalLegacyApplication/></ProductDesc>");
    scan_.scanExternalLegacy();
    EXPECT_EQ(found_.externalLegacyCount, 3);
    EXPECT_EQ(log_.lines(), std::vector<std::string>{"Found 3 external legacy installations."});
}

}  // namespace

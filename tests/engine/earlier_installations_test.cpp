#include "engine/earlier_installations.h"

#include <set>

#include "base/errors.h"
#include "engine_fixture.h"
#include "platform/error_text.h"

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
    earlier_.remove({});
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

TEST_F(EarlierVariablesTest, EndTheRunWhenTheirLogCannotBeRead) {
    files_.addFile("/old.log", "d\r\nb\r\nNUMVARS\t1\r\nVAR\tROOT\t/old\r\n");
    system_.installed = {{"Demo", "", false, "/old.log"}};
    describeDemo();
    for (const auto operation : {MemoryFileSystem::Operation::kOpen, MemoryFileSystem::Operation::kRead}) {
        files_.failAt(operation, "/old.log", 1, MemoryFileSystem::kAccessDenied);
        try {
            earlier_.findRegistered(false);
            ADD_FAILURE() << "it counts as none";
        } catch (const InstallerError& error) {
            EXPECT_EQ(error.what(),
                      "ERROR: The action log of the earlier installation, " + writtenPath("/old.log") +
                          ", can't be read: " + platform::errorText(MemoryFileSystem::kAccessDenied));
        }
        EXPECT_EQ(valueOf("ROOT"), "(none)");
    }
}

TEST_F(EarlierVariablesTest, EndTheRunWhenTheEntryCannotBeRead) {
    system_.unreadable = {"Demo"};
    describeDemo();
    EXPECT_THROW(earlier_.findRegistered(false), InstallerError);
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

class EarlierRemovalTest : public EarlierVariablesTest {
protected:
    void describeProduct(const std::string& more, const std::string& uninstall = "") {
        describe(std::string(kProduct) + more + "</ProductDesc>" + kRoles + "<Installation><Uninstall>" +
                 uninstall + "</Uninstall></Installation>");
        earlier_.findRegistered(false);
        earlier_.findOthers(false);
        variables_.set("SHOULD", "1");
        variables_.set("UNINSTALL_ERROR", "old");
        log_.clear();
    }
    bool remove() {
        removals_.clear();
        return earlier_.remove(
            {[this](const ProductRemoval::Request& request) {
                 removals_.push_back(request.applicationName +
                                     (request.logPath.empty() ? "" : " by " + request.logPath) +
                                     (request.isBackedUp ? ", backed up" : ""));
                 if (!request.logPath.empty()) {
                     files_.removeFile(request.logPath);
                 }
                 return !staying_.contains(request.applicationName);
             },
             [this](const std::string& name) { return system_.removeUninstallEntry(name); }});
    }

    std::vector<std::string> removals_;
    std::set<std::string> staying_;
};

TEST_F(EarlierRemovalTest, RemovesNothingUnlessAskedTo) {
    system_.installed = {{"Demo", "", false, ""}};
    describeProduct("");
    for (const char* wish : {"", "0"}) {
        EarlierInstallations asked(parts_);
        variables_.set("SHOULD", wish);
        EXPECT_TRUE(asked.remove({[](const ProductRemoval::Request& request) {
                                      ADD_FAILURE() << request.applicationName;
                                      return false;
                                  },
                                  {}}));
        EXPECT_TRUE(asked.wasRemovalTried());
    }
    EXPECT_TRUE(log_.lines().empty());
}

TEST_F(EarlierRemovalTest, RemovesOnceInASession) {
    system_.installed = {{"Demo", "", false, ""}};
    staying_ = {"Demo"};
    describeProduct("");
    EXPECT_FALSE(remove());
    EXPECT_EQ(removals_.size(), 1U);
    EXPECT_FALSE(remove());
    EXPECT_TRUE(removals_.empty());
}

TEST_F(EarlierRemovalTest, RemovesNothingWithoutAVariableThatSaysSo) {
    system_.installed = {{"Demo", "", false, ""}};
    describe(std::string(kProduct) + "</ProductDesc>");
    EXPECT_TRUE(remove());
    EXPECT_TRUE(removals_.empty());
}

TEST_F(EarlierRemovalTest, HasNothingToDoWithoutEarlierInstallations) {
    describeProduct("<LegacyApplication>Old Demo</LegacyApplication>");
    EXPECT_TRUE(remove());
    EXPECT_TRUE(removals_.empty());
    EXPECT_EQ(valueOf("UNINSTALL_ERROR"), "old");
}

TEST_F(EarlierRemovalTest, RemovesTheEarlierVersionAndKeepsItsEntry) {
    system_.installed = {{"Demo", "", false, ""}};
    describeProduct("");
    EXPECT_TRUE(remove());
    EXPECT_EQ(removals_, std::vector<std::string>{"Demo, backed up"});
    EXPECT_EQ(system_.installed.size(), 1U);
}

TEST_F(EarlierRemovalTest, SaysWhatItWouldRemove) {
    system_.installed = {{"Demo", "", false, ""}, {"First", "", false, ""}};
    files_.addFile("/old/a.log", "x");
    files_.addFile("/old/b.log", "x");
    describeProduct("<LegacyApplication>First</LegacyApplication>",
                    "<LegacyInstallLogFile AppName='A'>/old/a.log</LegacyInstallLogFile>"
                    "<LegacyInstallLogFile AppName='B'>/old/b.log</LegacyInstallLogFile>");
    std::vector<std::string> wanted;
    for (const ProductRemoval::Request& request : earlier_.wanted()) {
        wanted.push_back(request.applicationName + (request.logPath.empty() ? "" : " by " + request.logPath) +
                         (request.isBackedUp ? ", backed up" : ""));
    }
    EXPECT_TRUE(remove());
    EXPECT_EQ(wanted, removals_);
    EXPECT_EQ(wanted.size(), 4U);
    EXPECT_TRUE(earlier_.wanted().empty());  // once
}

TEST_F(EarlierRemovalTest, WantsNothingUnlessAskedTo) {
    system_.installed = {{"Demo", "", false, ""}};
    describeProduct("");
    variables_.set("SHOULD", "0");
    EXPECT_TRUE(earlier_.wanted().empty());
}

TEST_F(EarlierRemovalTest, RemovesALogOnceThatTwoNamesHave) {
    files_.addFile("/old/a.log", "x");
    describeProduct("",
                    "<LegacyInstallLogFile AppName='A'>/old/a.log</LegacyInstallLogFile>"
                    "<LegacyInstallLogFile AppName='B'>/old/a.log</LegacyInstallLogFile>");
    EXPECT_TRUE(remove());
    EXPECT_EQ(removals_, std::vector<std::string>{"A by \\old\\a.log"});
}

TEST_F(EarlierRemovalTest, RemovesFormerNamesWithTheirEntriesBeforeTheOwnOne) {
    system_.installed = {{"Demo", "", false, ""}, {"First", "", false, ""}, {"Second", "", false, ""}};
    describeProduct(
        "<LegacyApplication>Second</LegacyApplication><LegacyApplication/>"
        "<LegacyApplication>None</LegacyApplication><LegacyApplication>First</LegacyApplication>");
    EXPECT_TRUE(remove());
    EXPECT_EQ(removals_, (std::vector<std::string>{"Second", "First", "Demo, backed up"}));
    ASSERT_EQ(system_.installed.size(), 1U);
    EXPECT_EQ(system_.installed[0].name, "Demo");
}

TEST_F(EarlierRemovalTest, GoesOnAfterAFailureAndReportsIt) {
    system_.installed = {{"Demo", "", false, ""}, {"First", "", false, ""}};
    staying_ = {"First"};
    describeProduct("<LegacyApplication>First</LegacyApplication>");
    EXPECT_FALSE(remove());
    EXPECT_EQ(removals_, (std::vector<std::string>{"First", "Demo, backed up"}));
    EXPECT_EQ(valueOf("UNINSTALL_ERROR"), "");
}

TEST_F(EarlierRemovalTest, LeavesTheEntryOfAnApplicationThatIsNotGone) {
    system_.installed = {{"First", "", false, ""}};
    staying_ = {"First"};
    describeProduct("<LegacyApplication>First</LegacyApplication>");
    EXPECT_FALSE(remove());
    EXPECT_EQ(system_.installed.size(), 1U);
}

TEST_F(EarlierRemovalTest, FailsWhenAnEntryStays) {
    system_.installed = {{"First", "", false, ""}};
    system_.removalWorks = false;
    describeProduct("<LegacyApplication>First</LegacyApplication>");
    EXPECT_FALSE(remove());
}

TEST_F(EarlierRemovalTest, FallsBackOnTheLogOfAVersionWithoutAnEntry) {
    files_.addFile("/app/install.log", "x");
    describeProduct("", "<InstallLogFile>/app/install.log</InstallLogFile>");
    EXPECT_TRUE(remove());
    EXPECT_EQ(removals_, std::vector<std::string>{"Demo by \\app\\install.log"});
    EXPECT_EQ(log_.lines(), std::vector<std::string>{"WARNING: Uninstalling previous installation using "
                                                     "fallback logic : Demo (\\app\\install.log)"});
}

TEST_F(EarlierRemovalTest, FallsBackOnLogsOfFormerNamesThatTheListHasLost) {
    system_.installed = {{"A", "", false, ""}};
    for (const char* log : {"/old/a.log", "/old/b.log"}) {
        files_.addFile(log, "x");
    }
    describeProduct("<LegacyApplication>A</LegacyApplication>",
                    "<LegacyInstallLogFile AppName='A'>/old/a.log</LegacyInstallLogFile>"
                    "<LegacyInstallLogFile AppName='B'>/old/b.log</LegacyInstallLogFile>");
    files_.removeFile("/old/a.log");  // as the removal of A does
    EXPECT_TRUE(remove());
    EXPECT_EQ(removals_, (std::vector<std::string>{"A", "B by \\old\\b.log"}));
}

TEST_F(EarlierRemovalTest, LooksAtNoLogWhereTheListKnowsAll) {
    system_.installed = {{"A", "", false, ""}};
    files_.addFile("/old/a.log", "x");
    describeProduct("<LegacyApplication>A</LegacyApplication>",
                    "<LegacyInstallLogFile AppName='A'>/old/a.log</LegacyInstallLogFile>");
    EXPECT_TRUE(remove());
    EXPECT_EQ(removals_, std::vector<std::string>{"A"});
}

// The scan for other makers' products comes later and has a count of its own.
TEST_F(EarlierRemovalTest, CountsLogsApartFromOtherMakersProducts) {
    system_.installed = {{"Tool", "", false, ""}, {"A", "", false, ""}};
    files_.addFile("/old/a.log", "x");
    describeProduct(
        "<LegacyApplication>A</LegacyApplication><ExternalLegacyApplication>Tool</ExternalLegacyApplication>"
        "<ExternalLegacyApplication>Tool</ExternalLegacyApplication>",
        "<LegacyInstallLogFile AppName='A'>/old/a.log</LegacyInstallLogFile>");
    EXPECT_TRUE(remove());
    EXPECT_EQ(removals_, std::vector<std::string>{"A"});
}

TEST_F(EarlierRemovalTest, NeedsANameOfTheProduct) {
    describe(std::string("<ProductDesc></ProductDesc>") + kRoles);
    variables_.set("SHOULD", "1");
    try {
        remove();
        ADD_FAILURE() << "no error";
    } catch (const InstallerError& error) {
        EXPECT_STREQ(error.what(), "ERROR: Could not obtain Application name");
    }
}

}  // namespace

#include "wini/wini.h"

#include <gtest/gtest.h>

#include "contracts/system_operations.h"
#include "description/answers_file.h"
#include "fakes/fake_console.h"
#include "fakes/recording_ui.h"
#include "package/package_writer.h"
#include "platform/memory/memory_platform.h"
#include "wini/nested_sessions.h"

namespace {

class WalkingUI : public RecordingUI {
public:
    InstallExchangeInfo* engine = nullptr;
    int run() override { return engine->dialogNext(this, 1); }
};

// A session whose errors a test can look at.
class TestWini : public Wini {
public:
    using SessionState::errorList;
    using Wini::Wini;
};

class WiniTest : public testing::Test {
protected:
    WiniTest() {
        files_.setTemporaryDirectory("/tmp");
        ui_.engine = &wini_;
    }
    void load(const std::string& description) {
        files_.addFile("/src/install.xml", description);
        files_.addFile("/src/tool", "#!/bin/sh\n");
        PackageOptions options;
        options.stripes = 1;
        PackageWriter(files_).write(
            {{"/src/install.xml", "install.xml", "install.xml"}, {"/src/tool", "tool", "tool"}}, options,
            "/package");
        ASSERT_EQ(wini_.loadCabinet("/package", 0, kSessionBackup), 0);
    }

    MemoryPlatform machine_;
    MemoryFileSystem& files_ = machine_.files;
    MemoryRegistry& registry_ = machine_.registry;
    FakeConsole log_;
    DebugLog debugLog_{log_, 2};
    WalkingUI ui_;
    SystemServices services_{machine_.bundle(), debugLog_};
    AnswersFile answers_{files_};
    NestedSessions nestedSessions_{debugLog_};
    TestWini wini_{machine_.bundle(), services_, answers_, nestedSessions_, debugLog_, {2, 0, 1}};
    std::string undo_;
};

TEST_F(WiniTest, KeepsTheArgumentsOfItsConstruction) {
    EXPECT_EQ(wini_.getDebugLevelArgument(), 2);
    EXPECT_EQ(wini_.getGuiArgument(), 0);
    EXPECT_EQ(wini_.getIgnoreErrorsArgument(), 1);
}

TEST_F(WiniTest, InstallsAProductOnItsMachine) {
    machine_.environment.variables["PLACE"] = "/opt/demo";
    registry_.addText(platform::RegistryRoot::kLocalMachine, "Software\\Demo", "Kind", "full");
    load(
        "<TandrelGroupInstallation><ProductDesc><Fullname>Demo</Fullname></ProductDesc>"
        "<Dialogs><Hello/><CopyProgress/><End Special='Finish'/></Dialogs><DefValues>"
        "<Value Name='ROOT' DataType='envvar'>PLACE</Value>"
        "<Value Name='KIND' DataType='registry' RegPlace='HKEY_LOCAL_MACHINE' "
        "RegKey='Software/Demo'>Kind</Value>"
        "</DefValues><Installation><Uninstall><InstallLogFile>[ROOT]/install.log</InstallLogFile></Uninstall>"
        "</Installation><FileSet Name='S'><FN Dest='[ROOT]' Executable='1'>tool</FN></FileSet>"
        "</TandrelGroupInstallation>");
    EXPECT_EQ(wini_.run(&ui_, &log_), 0);
    EXPECT_FALSE(wini_.hasErrors());
    EXPECT_TRUE(files_.isExecutable("/opt/demo/tool"));
    EXPECT_EQ(files_.content("/opt/demo/install.log"),
              "\r\n\r\nNUMVARS\t2\r\nVAR\tROOT\t/opt/demo\r\nVAR\tKIND\tfull\r\n"
              "DIR\t2\t/opt/demo\\\r\nFILE\tCREATE\t/opt/demo\\tool\r\n");
    EXPECT_EQ(wini_.releaseSession(), 0);
    EXPECT_EQ(files_.openFileCount(), 0);
}

TEST_F(WiniTest, StopsWhereTheConfigurationFileIsMissing) {
    wini_.setConfigFile("/none/config.xml");
    load(
        "<TandrelGroupInstallation><ProductDesc/><Dialogs><A/></Dialogs><DefValues/></"
        "TandrelGroupInstallation>");
    EXPECT_EQ(wini_.run(&ui_, &log_), -1);
    EXPECT_EQ(ui_.countOf("messageBox("), 1);
}

TEST_F(WiniTest, NamesTheFileOfAnswersThatItWasStartedWith) {
    EXPECT_EQ(wini_.getConfigFile(), "");
    wini_.setConfigFile("/none/config.xml");
    EXPECT_EQ(wini_.getConfigFile(), "/none/config.xml");
    wini_.setConfigFile(std::string(2000, 'x'));
    EXPECT_EQ(wini_.getConfigFile().size(), 1559U);
    wini_.setConfigFile("");
    EXPECT_EQ(wini_.getConfigFile(), "");
}

TEST_F(WiniTest, AnswersForTheSystem) {
    registry_.addText(platform::RegistryRoot::kLocalMachine, UninstallList::keyOf("Demo"), "UninstallString",
                      "x -uninstall=\"/log\"");
    machine_.processes.ownId = 7;
    machine_.processes.running = {{20, "tool", "/bin/tool"}};
    EXPECT_TRUE(wini_.findUninstallEntry("Demo", 0));
    EXPECT_EQ(wini_.getApplicationLogFile("Demo"), "/log");
    std::vector<std::string> names = {"kept"};
    wini_.findEntriesByPublisher(names, "De", "", 0);
    EXPECT_EQ(names, (std::vector<std::string>{"kept", "Demo"}));
    EXPECT_TRUE(wini_.isApplicationRunning("tool", nullptr));
    EXPECT_TRUE(wini_.closeApplication("tool", false, nullptr));
    files_.addFile("/a", "content");
    EXPECT_TRUE(wini_.copyFile("/a", "/b"));
    EXPECT_TRUE(wini_.openInDefaultBrowser("http://example.com"));
    EXPECT_FALSE(wini_.openInDefaultBrowser(nullptr));
}

TEST_F(WiniTest, TakesMissingNamesForThoseOfNoApplication) {
    EXPECT_FALSE(wini_.findUninstallEntry(nullptr, 0));
    EXPECT_FALSE(wini_.removeUninstallEntry(nullptr));
    EXPECT_FALSE(wini_.uninstallApplication(nullptr, nullptr, 0, nullptr));
    EXPECT_FALSE(wini_.isApplicationRunning(nullptr, nullptr));
}

TEST_F(WiniTest, DoesNotCutATextThatDoesNotFitItsBuffer) {
    char buffer[8] = "old";
    EXPECT_EQ(wini_.getTemporaryFileName(buffer, 5), -1);
    EXPECT_STREQ(buffer, "");
    char path[256] = "";
    EXPECT_EQ(wini_.getTemporaryFileName(path, sizeof path), 0);
    EXPECT_NE(std::string(path).find("orinstall"), std::string::npos);
}

TEST_F(WiniTest, RegistersNothingWithoutADescription) {
    EXPECT_FALSE(wini_.registerApplication());
    EXPECT_TRUE(log_.hasLine("ERROR: Could not obtain uninstall cmd! (check <UninstallCmd> tag)"));
}

TEST_F(WiniTest, ChangesTheRegistryOfTheMachine) {
    constexpr auto kUser = platform::RegistryRoot::kCurrentUser;
    int created = 0;
    EXPECT_EQ(wini_.writeRegistryValue("HKEY_CURRENT_USER", "Software/Demo", nullptr, "n", "d", created), 0);
    EXPECT_EQ(created, 2);
    EXPECT_EQ(wini_.createRegistryKey("HKEY_CURRENT_USER", "Software/Demo/Sub"), 1);
    EXPECT_EQ(wini_.deleteRegistryValue("HKEY_CURRENT_USER", "Software/Demo", "n"), 0);
    EXPECT_EQ(registry_.value(kUser, "Software\\Demo", "n"), nullptr);
    EXPECT_EQ(wini_.deleteRegistryKeys("HKEY_CURRENT_USER", "Software/Demo/Sub", 3), 3);
    EXPECT_FALSE(registry_.hasKey(kUser, "Software"));
}

TEST_F(WiniTest, RefusesRegistryChangesWithoutTheirTexts) {
    int created = 7;
    EXPECT_EQ(wini_.writeRegistryValue(nullptr, "a", nullptr, "n", "d", created), -1);
    EXPECT_EQ(created, 0);
    EXPECT_EQ(wini_.writeRegistryValue("HKEY_USERS", "a", nullptr, "n", nullptr, created), -1);
    EXPECT_EQ(wini_.writeRegistryValue("elsewhere", "a", nullptr, "n", "d", created), -1);
    EXPECT_EQ(wini_.deleteRegistryValue("HKEY_USERS", "a", nullptr), -1);
    EXPECT_EQ(wini_.deleteRegistryValue("elsewhere", "a", "n"), -1);
    EXPECT_EQ(wini_.createRegistryKey(nullptr, "a"), 0);
    EXPECT_EQ(wini_.deleteRegistryKeys(nullptr, "a", 1), 0);
}

TEST_F(WiniTest, RunsProgramsAndDocuments) {
    machine_.processes.exitCodes = {0, 3};
    EXPECT_TRUE(wini_.runAssociatedProgram("tool", "-x", kRunWait, "/dir", nullptr, 0));
    EXPECT_FALSE(wini_.runAssociatedProgram("tool", nullptr, kRunAsynchronous, nullptr, nullptr, 0));
    ASSERT_EQ(machine_.processes.started.size(), 2U);
    EXPECT_EQ(machine_.processes.started[0].workDirectory, "/dir");
    EXPECT_EQ(machine_.processes.started[1].commandLine, "\"tool\"");
    EXPECT_TRUE(wini_.runAssociatedProgram("page.html", "", kRunOpenWithShell, "", nullptr, 0));
    EXPECT_EQ(machine_.shell.opened, std::vector<std::string>{"page.html"});
}

TEST_F(WiniTest, RunsNothingWithoutAPath) {
    for (const std::uint32_t flags : {0U, 1U, 2U, 8U}) {
        EXPECT_FALSE(wini_.runAssociatedProgram(nullptr, "-x", flags, "", &ui_, 0));
    }
    EXPECT_TRUE(machine_.processes.started.empty());
    EXPECT_TRUE(machine_.shell.opened.empty());
}

TEST_F(WiniTest, RunsTheUninstallersOfOthers) {
    registry_.addText(platform::RegistryRoot::kLocalMachine, UninstallList::keyOf("Other"), "UninstallString",
                      "\"/opt/un\" -x");
    machine_.events.createFails = true;  // no second program is waited for
    EXPECT_TRUE(wini_.uninstallApplication("Other", "-y", kEntryWait, nullptr));
    ASSERT_EQ(machine_.processes.started.size(), 1U);
    EXPECT_EQ(machine_.processes.started[0].commandLine, "\"/opt/un\" -x -y");
}

TEST_F(WiniTest, MakesAndRemovesShortcuts) {
    ShortcutRequest shortcut;
    shortcut.linkPath = "/d/a.lnk";
    shortcut.target = "/d/a";
    EXPECT_TRUE(wini_.addShortcut(shortcut, undo_, nullptr));
    EXPECT_EQ(undo_, "CREATE\t/d/a.lnk");
    EXPECT_EQ(machine_.shell.links.count("/d/a.lnk"), 1U);
    files_.addFile("/d/a.lnk", "x");
    EXPECT_TRUE(wini_.removeShortcut(undo_.c_str(), nullptr));
    EXPECT_FALSE(files_.hasFile("/d/a.lnk"));
    EXPECT_TRUE(wini_.removeShortcut(nullptr, nullptr));
    shortcut.type = static_cast<ShortcutType>(0);
    EXPECT_FALSE(wini_.addShortcut(shortcut, undo_, nullptr));
    EXPECT_EQ(undo_, "");
    EXPECT_EQ(wini_.errorList.size(), 1U);
}

TEST_F(WiniTest, ChangesTheFirewall) {
    EXPECT_EQ(wini_.firewallAddApplication("/a", "n"), FirewallResult::kDone);
    EXPECT_EQ(machine_.firewall.applications.count("/a"), 1U);
    EXPECT_EQ(wini_.firewallRemoveApplication("/a"), FirewallResult::kDone);
    EXPECT_TRUE(machine_.firewall.applications.empty());
    EXPECT_EQ(wini_.firewallAddPort({80, "n", kFirewallTcp}), FirewallResult::kDone);
    EXPECT_EQ(machine_.firewall.ports.size(), 1U);
    EXPECT_EQ(wini_.firewallRemovePort("80\tTCP\tn"), FirewallResult::kDone);
    EXPECT_TRUE(machine_.firewall.ports.empty());
}

TEST_F(WiniTest, RefusesFirewallChangesWithoutTheirTexts) {
    EXPECT_EQ(wini_.firewallAddApplication(nullptr, "n"), FirewallResult::kFailed);
    EXPECT_EQ(wini_.firewallAddApplication("/a", nullptr), FirewallResult::kFailed);
    EXPECT_EQ(wini_.firewallRemoveApplication(nullptr), FirewallResult::kFailed);
    EXPECT_EQ(wini_.firewallRemovePort(nullptr), FirewallResult::kFailed);
    EXPECT_TRUE(machine_.firewall.operations.empty());
    EXPECT_TRUE(log_.lines().empty());
}

TEST_F(WiniTest, ChangesTheEnvironment) {
    EXPECT_TRUE(
        wini_.addEnvironmentEntry("DEMO", "v", EnvironmentChange::Mode::kReplace, undo_, nullptr, false));
    EXPECT_EQ(undo_, "CREATE\tDEMO");
    EXPECT_TRUE(wini_.broadcastEnvironmentChange());
    EXPECT_EQ(machine_.shell.broadcasts, 1);
    EXPECT_TRUE(wini_.removeEnvironmentEntry(undo_.c_str(), nullptr));
    EXPECT_FALSE(wini_.removeEnvironmentEntry(undo_.c_str(), &ui_));
    EXPECT_EQ(ui_.countOf("addFileLine(\"FAILED to remove DEMO\""), 1);
    EXPECT_EQ(wini_.errorList, std::vector<std::string>{"FAILED to remove DEMO"});
}

TEST_F(WiniTest, EditsFiles) {
    files_.addFile("/d/a.ini", "");
    EXPECT_TRUE(wini_.addIniEntry("/d/a.ini", "S", "k", "v", undo_, nullptr, false, "b"));
    EXPECT_EQ(undo_, "CREATE\t/d/a.ini\tS\tk\tv");
    EXPECT_TRUE(wini_.removeIniEntry(undo_.c_str(), nullptr));
    EXPECT_TRUE(wini_.writeIniValue("/d/a.ini", "S", "x", "1", IniChange::Mode::kWriteValue, nullptr));
    EXPECT_NE(files_.content("/d/a.ini").find("x=1"), std::string::npos);
    EXPECT_FALSE(wini_.writeIniValue(nullptr, "S", "x", "1", IniChange::Mode::kWriteValue, nullptr));
    files_.addFile("/d/changes", "1\na\n1\nb\n");
    EXPECT_FALSE(wini_.modifyFile("/d/none", "/d/changes", undo_, &ui_));
    EXPECT_EQ(ui_.countOf("addFileLine(\"FAILED : Modifying /d/none\""), 1);
    // What has gone needs no undo.
    EXPECT_TRUE(wini_.undoFileModification(undo_.c_str(), &ui_));
    EXPECT_EQ(ui_.countOf("addFileLine(\"Undoing modifications to /d/none\""), 1);
}

}  // namespace

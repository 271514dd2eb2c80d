#include "wini/wini_modifications.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "fakes/fake_console.h"
#include "fakes/fake_engine.h"
#include "fakes/fake_platform.h"

namespace {

TEST(WiniModificationsTest, ChangesNothingAheadOfTheSession) {
    FakePlatform machine;
    WiniModifications modifications(machine.bundle());
    EXPECT_THROW(modifications.registerApplication(), std::logic_error);
}

class WiniModificationsFamiliesTest : public testing::Test {
protected:
    WiniModificationsFamiliesTest() { modifications_.attach(product_, errors_, log_); }

    FakePlatform machine_;
    FakeEngine product_;
    ErrorList errors_;
    FakeConsole log_;
    WiniModifications modifications_{machine_.bundle()};
};

TEST_F(WiniModificationsFamiliesTest, changeTheRegistryOfTheMachine) {
    constexpr auto kUser = platform::RegistryRoot::kCurrentUser;
    int created = 0;
    EXPECT_EQ(
        modifications_.writeRegistryValue("HKEY_CURRENT_USER", "Software/Demo", nullptr, "n", "d", created),
        0);
    EXPECT_EQ(created, 2);
    EXPECT_EQ(modifications_.createRegistryKey("HKEY_CURRENT_USER", "Software/Demo/Sub"), 1);
    EXPECT_EQ(modifications_.deleteRegistryValue("HKEY_CURRENT_USER", "Software/Demo", "n"), 0);
    EXPECT_EQ(machine_.registry.value(kUser, "Software\\Demo", "n"), nullptr);
    EXPECT_EQ(modifications_.deleteRegistryKeys("HKEY_CURRENT_USER", "Software/Demo/Sub", 3), 3);
    EXPECT_FALSE(machine_.registry.hasKey(kUser, "Software"));
}

TEST_F(WiniModificationsFamiliesTest, registerTheProductOfTheSession) {
    EXPECT_TRUE(modifications_.registerApplication());
    EXPECT_TRUE(modifications_.removeUninstallEntry("Full name"));
    EXPECT_FALSE(modifications_.removeUninstallEntry("Full name"));
}

TEST_F(WiniModificationsFamiliesTest, runProgramsAndDocuments) {
    machine_.processes.exitCodes = {0, 3};
    EXPECT_TRUE(modifications_.runAssociatedProgram("tool", "-x", kRunWait, "/dir", nullptr, 0));
    EXPECT_FALSE(modifications_.runAssociatedProgram("tool", nullptr, kRunAsynchronous, "", nullptr, 0));
    EXPECT_EQ(machine_.processes.started.size(), 2U);
    EXPECT_TRUE(modifications_.runAssociatedProgram("page.html", "", kRunOpenWithShell, "", nullptr, 0));
    EXPECT_EQ(machine_.shell.opened, std::vector<std::string>{"page.html"});
}

TEST_F(WiniModificationsFamiliesTest, runTheUninstallersOfOthers) {
    machine_.registry.addText(platform::RegistryRoot::kLocalMachine,
                              "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Other",
                              "UninstallString", "\"/opt/un\" -x");
    EXPECT_TRUE(modifications_.uninstallApplication("Other", "-y", 2, nullptr));
    ASSERT_EQ(machine_.processes.started.size(), 1U);
    EXPECT_EQ(machine_.processes.started[0].commandLine, "\"/opt/un\" -x -y");
    EXPECT_FALSE(modifications_.uninstallApplication("None", "", 2, nullptr));
}

TEST_F(WiniModificationsFamiliesTest, makeAndRemoveShortcuts) {
    ShortcutRequest shortcut;
    shortcut.linkPath = "/d/a.lnk";
    shortcut.target = "/d/a";
    std::string undo;
    EXPECT_TRUE(modifications_.addShortcut(shortcut, undo, nullptr));
    EXPECT_EQ(undo, "CREATE\t/d/a.lnk");
    EXPECT_EQ(machine_.shell.links.count("/d/a.lnk"), 1U);
    machine_.files.addFile("/d/a.lnk", "x");
    EXPECT_TRUE(modifications_.removeShortcut(undo.c_str(), nullptr));
    EXPECT_FALSE(machine_.files.hasFile("/d/a.lnk"));
    shortcut.type = ShortcutType::kSymlink;
    EXPECT_FALSE(modifications_.addShortcut(shortcut, undo, nullptr));
    EXPECT_EQ(errors_, ErrorList{"FAILED to create  shortcut /d/a.lnk"});
}

TEST_F(WiniModificationsFamiliesTest, changeTheFirewall) {
    EXPECT_EQ(modifications_.firewallAddApplication("/a", "n"), FirewallResult::kDone);
    EXPECT_EQ(machine_.firewall.applications.count("/a"), 1U);
    EXPECT_EQ(modifications_.firewallRemoveApplication("/a"), FirewallResult::kDone);
    EXPECT_TRUE(machine_.firewall.applications.empty());
    EXPECT_EQ(modifications_.firewallAddPort({80, "n", kFirewallTcp}), FirewallResult::kDone);
    EXPECT_EQ(machine_.firewall.ports.size(), 1U);
    EXPECT_EQ(modifications_.firewallRemovePort("80\tTCP\tn"), FirewallResult::kDone);
    EXPECT_TRUE(machine_.firewall.ports.empty());
}

TEST_F(WiniModificationsFamiliesTest, changeTheEnvironment) {
    std::string undo;
    EXPECT_TRUE(
        modifications_.addEnvironmentEntry("DEMO", "v", EnvironmentMode::kReplace, undo, nullptr, false));
    EXPECT_EQ(undo, "CREATE\tDEMO");
    EXPECT_TRUE(modifications_.broadcastEnvironmentChange());
    EXPECT_EQ(machine_.shell.broadcasts, 1);
    EXPECT_TRUE(modifications_.removeEnvironmentEntry(undo.c_str(), nullptr));
    EXPECT_FALSE(modifications_.removeEnvironmentEntry(undo.c_str(), nullptr));
    EXPECT_EQ(errors_, ErrorList{"FAILED to remove DEMO"});
}

TEST_F(WiniModificationsFamiliesTest, editFiles) {
    machine_.files.addFile("/d/a.ini", "");
    std::string undo;
    EXPECT_TRUE(modifications_.addIniEntry("/d/a.ini", "S", "k", "v", undo, nullptr, false, "b"));
    EXPECT_EQ(undo, "CREATE\t/d/a.ini\tS\tk\tv");
    EXPECT_TRUE(modifications_.removeIniEntry(undo.c_str(), nullptr));
    machine_.files.addFile("/d/changes", "1\na\n1\nb\n");
    EXPECT_FALSE(modifications_.modifyFile("/d/none", "/d/changes", undo, nullptr));
    EXPECT_FALSE(modifications_.undoFileModification(undo.c_str(), nullptr));
    EXPECT_EQ(errors_,
              (ErrorList{"FAILED : Modifying /d/none", "FAILED : Undoing modifications to /d/none"}));
}

}  // namespace

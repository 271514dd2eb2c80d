#include "wini/system_services.h"

#include <gtest/gtest.h>

#include "fakes/fake_console.h"
#include "platform/memory/memory_platform.h"

namespace {

using platform::RegistryRoot;

using Names = std::vector<std::string>;

class SystemServicesTest : public testing::Test {
protected:
    SystemServicesTest() { machine_.files.setTemporaryDirectory("/tmp"); }

    MemoryPlatform machine_;
    FakeConsole log_;
    SystemServices services_{machine_.bundle(), log_};
};

TEST_F(SystemServicesTest, GivesAnotherTemporaryNameAtEachCallAndMakesNoFile) {
    SystemServices others(machine_.bundle(), log_);
    const auto first = services_.temporaryFileName();
    const auto second = others.temporaryFileName();
    ASSERT_TRUE(first && second);
    EXPECT_NE(*first, *second);
    EXPECT_NE(first->find("orinstall"), std::string::npos);
    EXPECT_TRUE(machine_.files.allFiles().empty());
}

TEST_F(SystemServicesTest, PassesOverTemporaryNamesThatAreTaken) {
    const auto name = services_.temporaryFileName();
    ASSERT_TRUE(name);
    for (std::uint32_t number = 1; number < 300; ++number) {
        std::string taken;
        ASSERT_TRUE(machine_.files.temporaryName("orinstall", number, taken));
        machine_.files.addFile(taken, "another's");
    }
    const auto free = services_.temporaryFileName();
    ASSERT_TRUE(free);
    EXPECT_FALSE(machine_.files.exists(*free));
}

TEST_F(SystemServicesTest, GivesNoTemporaryNameWhenTheSystemRefuses) {
    machine_.files.setTemporaryDirectory("");
    EXPECT_EQ(services_.temporaryFileName(), std::nullopt);
}

TEST_F(SystemServicesTest, DoesNotCutATemporaryName) {
    machine_.files.setTemporaryDirectory("/" + std::string(SystemServices::kTemporaryPathLimit, 't'));
    EXPECT_EQ(services_.temporaryFileName(), std::nullopt);
}

TEST_F(SystemServicesTest, ReadsTheListOfApplications) {
    machine_.registry.addText(RegistryRoot::kLocalMachine, UninstallList::keyOf("Demo"), "UninstallString",
                              "x -uninstall=\"/log\"");
    EXPECT_TRUE(services_.findUninstallEntry("Demo", 0));
    EXPECT_EQ(services_.applicationLogFile("Demo"), "/log");
    EXPECT_EQ(services_.findEntriesByPublisher("De", "", 0), Names{"Demo"});
}

TEST_F(SystemServicesTest, RegistersAProductAndTakesItOffTheList) {
    EXPECT_TRUE(services_.registerApplication({"Demo", "1", "web", "\"/un\"", "-x"}));
    EXPECT_TRUE(services_.findUninstallEntry("Demo", 0));
    EXPECT_TRUE(services_.removeUninstallEntry("Demo"));
    EXPECT_FALSE(services_.removeUninstallEntry("Demo"));
}

TEST_F(SystemServicesTest, RunsTheUninstallersOfOthers) {
    machine_.events.createFails = true;  // no second program is waited for
    machine_.registry.addText(RegistryRoot::kLocalMachine, UninstallList::keyOf("Other"), "UninstallString",
                              "\"/opt/un\" -x");
    EXPECT_TRUE(services_.uninstallApplication("Other", "-y", kEntryWait, nullptr, [] { return false; }));
    ASSERT_EQ(machine_.processes.started.size(), 1U);
    EXPECT_EQ(machine_.processes.started[0].commandLine, "\"/opt/un\" -x -y");
    EXPECT_FALSE(services_.uninstallApplication("None", "", kEntryWait, nullptr, [] { return false; }));
}

TEST_F(SystemServicesTest, FindsAndStopsPrograms) {
    machine_.processes.ownId = 7;
    machine_.processes.running = {{20, "tool", "/bin/tool"}};
    EXPECT_TRUE(services_.isApplicationRunning("tool", ""));
    EXPECT_TRUE(services_.closeApplication("tool", false, ""));
    EXPECT_FALSE(services_.isApplicationRunning("tool", ""));
}

TEST_F(SystemServicesTest, FindsAndStopsTheProgramOfAFile) {
    machine_.processes.ownId = 7;
    machine_.processes.running = {{20, "tool", "/bin/tool"}};
    machine_.files.addFile("/bin/tool", "");
    EXPECT_TRUE(services_.isProgramRunning("/bin/tool"));
    EXPECT_TRUE(services_.closeProgram("/bin/tool"));
    EXPECT_FALSE(services_.isProgramRunning("/bin/tool"));
}

TEST_F(SystemServicesTest, CopiesWholeFiles) {
    machine_.files.addFile("/a", "content");
    EXPECT_TRUE(services_.copyFile("/a", "/b"));
    EXPECT_EQ(machine_.files.content("/b"), "content");
    EXPECT_FALSE(services_.copyFile("/none", "/c"));
}

TEST_F(SystemServicesTest, ReadsValuesAndKeysOfTheRegistry) {
    machine_.registry.addKey(RegistryRoot::kCurrentUser, "Software\\Demo\\Sub");
    machine_.registry.addText(RegistryRoot::kCurrentUser, "Software\\Demo", "Root", "/app");
    const auto value = services_.readRegistryValue("HKEY_CURRENT_USER", "Software\\Demo", "Root");
    ASSERT_TRUE(value);
    EXPECT_EQ(value->type, platform::kRegString);
    EXPECT_EQ(value->data, "/app");
    EXPECT_FALSE(services_.readRegistryValue("HKEY_CURRENT_USER", "Software\\Demo", "None"));
    EXPECT_FALSE(services_.readRegistryValue("HKEY_USERS", "Software\\Demo", "Root"));
    EXPECT_FALSE(services_.readRegistryValue("elsewhere", "Software\\Demo", "Root"));
    EXPECT_EQ(services_.listRegistryKeys("HKEY_CURRENT_USER", "Software\\Demo"), Names{"Sub"});
    EXPECT_EQ(services_.listRegistryKeys("HKEY_CURRENT_USER", "None"), std::nullopt);
    EXPECT_EQ(services_.listRegistryKeys("elsewhere", "Software"), std::nullopt);
}

TEST_F(SystemServicesTest, OpensAPageInTheDefaultBrowser) {
    EXPECT_TRUE(services_.openInDefaultBrowser("http://example.com"));
    EXPECT_EQ(machine_.shell.opened, Names{"http://example.com"});
    EXPECT_TRUE(log_.lines().empty());
}

TEST_F(SystemServicesTest, LogsThatAPageCouldNotBeOpened) {
    machine_.shell.opens = false;
    EXPECT_FALSE(services_.openInDefaultBrowser("http://example.com"));
    EXPECT_EQ(log_.lines(), Names{"WARNING: \"http://example.com\" could not be opened (2)"});
}

}  // namespace

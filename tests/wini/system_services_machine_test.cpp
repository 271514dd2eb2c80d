#include <gtest/gtest.h>

#include "fakes/fake_console.h"
#include "fakes/recording_ui.h"
#include "platform/registry.h"
#include "wini/machine_fixture.h"
#include "wini/system_services.h"

namespace {

using platform::kRegOk;
using platform::RegistryRoot;
using platform::RegistryView;

constexpr char kApplication[] = "Tandrel Test Product";
const ApplicationEntry kEntry = {kApplication, "1.2.3", "http://example.com", "\"C:\\a b\\un.exe\"",
                                 "-uninstall=\"C:\\a b\\log\" -uninstallApp=\"Tandrel Test Product\""};

class SystemServicesMachineTest : public MachineTest {
protected:
    void SetUp() override { removeAll(); }
    void TearDown() override { removeAll(); }

    void removeAll() {
        for (const RegistryView view : {RegistryView::kNative, RegistryView::k32Bit}) {
            machine_.registry.deleteKey(RegistryRoot::kLocalMachine, UninstallList::keyOf(kApplication),
                                        view);
        }
    }
    void addUninstaller(const std::string& command, RegistryView view) {
        const std::string key = UninstallList::keyOf(kApplication);
        int created = 0;
        ASSERT_EQ(machine_.registry.createKey(RegistryRoot::kLocalMachine, key, view, created), kRegOk);
        ASSERT_EQ(machine_.registry.writeValue(RegistryRoot::kLocalMachine, key, view, "UninstallString",
                                               {platform::kRegString, command}),
                  kRegOk);
    }

    FakeConsole log_;
    RecordingUI ui_;
    SystemServices services_{machine_, log_};
};

TEST_F(SystemServicesMachineTest, RegistersTheProductAndTakesItOffTheList) {
    EXPECT_TRUE(services_.registerApplication(kEntry));
    UninstallList list(machine_.registry);
    EXPECT_TRUE(list.findUninstallEntry(kApplication, 0));
    EXPECT_FALSE(list.findUninstallEntry(kApplication, kEntryIn32BitView));
    EXPECT_EQ(list.applicationLogFile(kApplication), "C:\\a b\\log");
    EXPECT_EQ(list.findEntriesByPublisher(kApplication, "Tandrel Software Ltd", 0),
              std::vector<std::string>{kApplication});
    EXPECT_TRUE(services_.removeUninstallEntry(kApplication));
    EXPECT_FALSE(list.findUninstallEntry(kApplication, 0));
    EXPECT_FALSE(services_.removeUninstallEntry(kApplication));
    EXPECT_TRUE(log_.lines().empty());
}

TEST_F(SystemServicesMachineTest, LeavesNothingOfTheRegistration) {
    const auto keysOf = [this](std::string_view path) {
        std::vector<std::string> names;
        machine_.registry.listKeys(RegistryRoot::kLocalMachine, path, RegistryView::kNative, names);
        return names;
    };
    const std::vector<std::string> top = keysOf("");
    const std::vector<std::string> list = keysOf(UninstallList::kListKey);
    EXPECT_TRUE(services_.registerApplication(kEntry));
    EXPECT_TRUE(services_.removeUninstallEntry(kApplication));
    EXPECT_EQ(keysOf(""), top);
    EXPECT_EQ(keysOf(UninstallList::kListKey), list);
}

TEST(WiniChild, DISABLED_TakesItselfOffTheList) {
    for (const RegistryView view : {RegistryView::kNative, RegistryView::k32Bit}) {
        platform::systemRegistry().deleteKey(RegistryRoot::kLocalMachine, UninstallList::keyOf(kApplication),
                                             view);
    }
}

TEST_F(SystemServicesMachineTest, RunsTheUninstallerOfTheViewThatIsAskedFor) {
    const auto uninstall = [this](std::uint32_t flags) {
        return services_.uninstallApplication(kApplication, "", flags | kEntryWait, &ui_,
                                              [] { return false; });
    };
    addUninstaller(commandOf("TakesItselfOffTheList"), RegistryView::k32Bit);
    EXPECT_FALSE(uninstall(0));
    EXPECT_TRUE(log_.hasLine("ERROR: Could not obtain uninstall string for uninstalling application: \"" +
                             std::string(kApplication) + "\""));
    EXPECT_TRUE(uninstall(kEntryIn32BitView));
    addUninstaller(commandOf("Fails"), RegistryView::kNative);
    addUninstaller(commandOf("Passes"), RegistryView::k32Bit);
    EXPECT_FALSE(uninstall(0));
    // Only the native entry is the session's own.
    EXPECT_TRUE(services_.removeUninstallEntry(kApplication));
    EXPECT_FALSE(services_.removeUninstallEntry(kApplication));
}

}  // namespace

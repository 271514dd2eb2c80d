#include <gtest/gtest.h>

#include "fakes/fake_console.h"
#include "fakes/recording_ui.h"
#include "platform/environment.h"
#include "platform/named_events.h"
#include "platform/registry.h"
#include "wini/machine_fixture.h"
#include "wini/system_services.h"
#include "wini/uninstaller_events.h"

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

TEST_F(SystemServicesMachineTest, RunsTheUninstallerOfTheViewThatIsAskedFor) {
    addUninstaller(commandOf("Passes"), RegistryView::k32Bit);
    EXPECT_FALSE(services_.uninstallApplication(kApplication, "", kEntryWait, &ui_));
    EXPECT_TRUE(log_.hasLine("ERROR: Could not obtain uninstall string for uninstalling application: \"" +
                             std::string(kApplication) + "\""));
    EXPECT_TRUE(services_.uninstallApplication(kApplication, "", kEntryIn32BitView | kEntryWait, &ui_));
    addUninstaller(commandOf("Fails"), RegistryView::kNative);
    EXPECT_FALSE(services_.uninstallApplication(kApplication, "-more", kEntryWait, &ui_));
    // Only the native entry is the session's own.
    EXPECT_TRUE(services_.removeUninstallEntry(kApplication));
    EXPECT_FALSE(services_.removeUninstallEntry(kApplication));
}

constexpr const char* kEventSuffix = "TANDREL_TEST_EVENT_SUFFIX";

// What an uninstaller does that somebody waits for.
TEST(WiniChild, DISABLED_SignalsThatItUninstalls) {
    const std::string suffix = platform::systemEnvironment().get(kEventSuffix).value_or("");
    ASSERT_FALSE(suffix.empty());
    EXPECT_TRUE(platform::systemNamedEvents().signal(kUninstallerStartEvent + suffix));
    EXPECT_TRUE(platform::systemNamedEvents().signal(kUninstallerEndEvent + suffix));
}

// The machine's events under names that no other run of the tests uses. Notes which waits were successful.
class EventsOfThisRun : public platform::NamedEvents {
public:
    std::vector<std::pair<std::string, bool>> waits;
    const std::string suffix = std::to_string(platform::systemProcesses().currentId());

    std::unique_ptr<platform::NamedEvent> create(std::string_view name) override {
        auto event = platform::systemNamedEvents().create(std::string(name) + suffix);
        return event == nullptr ? nullptr : std::make_unique<Event>(*this, name, std::move(event));
    }
    bool signal(std::string_view) override { return false; }
    platform::LockResult lock(std::string_view, std::uint32_t,
                              std::unique_ptr<platform::NamedLock>&) override {
        return platform::LockResult::kUnavailable;
    }

private:
    class Event : public platform::NamedEvent {
    public:
        Event(EventsOfThisRun& owner, std::string_view name, std::unique_ptr<platform::NamedEvent> event)
            : owner_(owner), name_(name), event_(std::move(event)) {}
        bool wait(std::uint32_t milliseconds) override {
            owner_.waits.emplace_back(name_, event_->wait(milliseconds));
            return owner_.waits.back().second;
        }

    private:
        EventsOfThisRun& owner_;
        std::string name_;
        std::unique_ptr<platform::NamedEvent> event_;
    };
};

TEST_F(SystemServicesMachineTest, WaitsForTheEventsOfAnotherProcess) {
    EventsOfThisRun events;
    ASSERT_TRUE(platform::systemEnvironment().set(kEventSuffix, events.suffix));
    addUninstaller(commandOf("SignalsThatItUninstalls"), RegistryView::kNative);
    const platform::Platform machine{machine_.files,       machine_.registry, machine_.processes,
                                     machine_.environment, machine_.console,  events,
                                     machine_.shell,       machine_.firewall};
    SystemServices services(machine, log_);
    EXPECT_TRUE(services.uninstallApplication(kApplication, "", 0, &ui_));
    EXPECT_EQ(events.waits, (std::vector<std::pair<std::string, bool>>{{kUninstallerStartEvent, true},
                                                                       {kUninstallerEndEvent, true}}));
}

}  // namespace

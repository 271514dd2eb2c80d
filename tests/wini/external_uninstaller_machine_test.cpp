#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "contracts/system_operations.h"
#include "fakes/fake_console.h"
#include "fakes/recording_ui.h"
#include "platform/environment.h"
#include "platform/named_events.h"
#include "platform/registry.h"
#include "wini/external_uninstaller.h"
#include "wini/machine_fixture.h"
#include "wini/uninstaller_events.h"

namespace {

using platform::RegistryRoot;
using platform::RegistryView;

constexpr char kApplication[] = "Tandrel Test Foreigner";
constexpr char kReleaseEvent[] = "TandrelTestRelease";
constexpr const char* kEventSuffix = "TANDREL_TEST_EVENT_SUFFIX";

std::string suffixOfParent() {
    return platform::systemEnvironment().get(kEventSuffix).value_or("");
}

bool signalForParent(const char* name) {
    return platform::systemNamedEvents().signal(name + suffixOfParent());
}

void removeEntry() {
    platform::systemRegistry().deleteKey(RegistryRoot::kLocalMachine, UninstallList::keyOf(kApplication),
                                         RegistryView::kNative);
}

// What uninstallers do.

TEST(WiniChild, DISABLED_SignalsThatItUninstalls) {
    ASSERT_FALSE(suffixOfParent().empty());
    EXPECT_TRUE(signalForParent(kUninstallerStartEvent));
    removeEntry();
    EXPECT_TRUE(signalForParent(kUninstallerEndEvent));
}

TEST(WiniChild, DISABLED_HandsItsWorkToAnother) {
    EXPECT_NE(MachineTest::startChild("SignalsThatItUninstalls", MachineTest::ownImage()), nullptr);
}

TEST(WiniChild, DISABLED_TakesTheForeignerOffTheList) {
    removeEntry();
}

TEST(WiniChild, DISABLED_WaitsToBeReleased) {
    const auto release = platform::systemNamedEvents().create(kReleaseEvent + suffixOfParent());
    ASSERT_NE(release, nullptr);
    release->wait(MachineTest::kLongEnough);
}

// The machine's events under names that no other run of the tests uses.
class EventsOfThisRun : public platform::NamedEvents {
public:
    const std::string suffix = std::to_string(platform::systemProcesses().currentId());

    std::unique_ptr<platform::NamedEvent> create(std::string_view name) override {
        return platform::systemNamedEvents().create(std::string(name) + suffix);
    }
    bool signal(std::string_view name) override {
        return platform::systemNamedEvents().signal(std::string(name) + suffix);
    }
    platform::LockResult lock(std::string_view, std::uint32_t,
                              std::unique_ptr<platform::NamedLock>&) override {
        return platform::LockResult::kUnavailable;
    }
};

class ExternalUninstallerMachineTest : public MachineTest {
protected:
    void SetUp() override { ASSERT_TRUE(platform::systemEnvironment().set(kEventSuffix, events_.suffix)); }
    void TearDown() override { removeEntry(); }

    // Runs a child as the uninstaller.
    bool uninstallBy(const std::string& childTest, std::uint32_t flags,
                     UninstallerWatch::Limits limits = {}) {
        const std::string key = UninstallList::keyOf(kApplication);
        int created = 0;
        machine_.registry.createKey(RegistryRoot::kLocalMachine, key, RegistryView::kNative, created);
        machine_.registry.writeValue(RegistryRoot::kLocalMachine, key, RegistryView::kNative,
                                     "UninstallString", {platform::kRegString, commandOf(childTest)});
        ExternalUninstaller uninstaller({machine_.registry, machine_.processes, events_}, log_, limits);
        return uninstaller.uninstallApplication(kApplication, "", flags, &ui_, [] { return false; });
    }
    bool isRegistered() { return UninstallList(machine_.registry).findUninstallEntry(kApplication, 0); }
    void expectNoEvents() {
        EXPECT_FALSE(events_.signal(kUninstallerStartEvent));
        EXPECT_FALSE(events_.signal(kUninstallerEndEvent));
    }

    EventsOfThisRun events_;
    FakeConsole log_;
    RecordingUI ui_;
};

TEST_F(ExternalUninstallerMachineTest, WaitsForAProgramThatTakesItselfOffTheList) {
    EXPECT_TRUE(uninstallBy("TakesTheForeignerOffTheList", kEntryWait));
    EXPECT_FALSE(isRegistered());
    EXPECT_EQ(ui_.countOf("messageBox"), 0);
    expectNoEvents();
}

TEST_F(ExternalUninstallerMachineTest, WaitsForTheSecondProgramThatSignals) {
    EXPECT_TRUE(uninstallBy("HandsItsWorkToAnother", kEntryWait));
    EXPECT_FALSE(isRegistered());
    EXPECT_EQ(ui_.countOf("messageBox"), 0);
    EXPECT_EQ(ui_.countOf("addMessage"), 0);
    expectNoEvents();
}

TEST_F(ExternalUninstallerMachineTest, ShowsTheCodeOfAProgramThatFails) {
    EXPECT_FALSE(uninstallBy("Fails", kEntryWait));
    EXPECT_EQ(ui_.callsOf("addMessage"),
              std::vector<std::string>{"addMessage(\"The uninstaller of \"" + std::string(kApplication) +
                                       "\" ended with the code 42\")"});
    expectNoEvents();
}

TEST_F(ExternalUninstallerMachineTest, LeavesAProgramThatNeverEndsAtTheLimit) {
    const auto release = events_.create(kReleaseEvent);
    ASSERT_NE(release, nullptr);
    EXPECT_FALSE(uninstallBy("WaitsToBeReleased", kEntryWait, {1000, 1000}));
    EXPECT_EQ(ui_.countOf("messageBox"), 1);
    expectNoEvents();
    EXPECT_TRUE(events_.signal(kReleaseEvent));
}

TEST_F(ExternalUninstallerMachineTest, WaitsForTheEventsWhereItNeedNotWaitForTheEnd) {
    EXPECT_TRUE(uninstallBy("SignalsThatItUninstalls", 0));
    EXPECT_FALSE(isRegistered());
}

}  // namespace

#include <gtest/gtest.h>

#include "contracts/system_operations.h"
#include "fakes/fake_console.h"
#include "fakes/fake_engine.h"
#include "fakes/recording_ui.h"
#include "fakes/temporary_directory.h"
#include "platform/environment.h"
#include "platform/named_events.h"
#include "platform/registry.h"
#include "wini/external_uninstaller.h"
#include "wini/machine_fixture.h"
#include "wini/program_runner.h"
#include "wini/uninstaller_events.h"
#include "wini/wini_modifications.h"

namespace {

using platform::kRegNotFound;
using platform::kRegOk;
using platform::RegistryRoot;
using platform::RegistryValue;
using platform::RegistryView;

constexpr char kUser[] = "HKEY_CURRENT_USER";
constexpr char kApplication[] = "Tandrel Test Product";

class TestProduct : public FakeEngine {
public:
    int getFullName(char* buffer, int size) override { return tell(kApplication, buffer, size); }
    int getInstallLogFile(char* buffer, int size) override { return tell("C:\\a b\\log", buffer, size); }
    int getUninstallCmd(char* buffer, int size) override { return tell("C:\\a b\\un.exe", buffer, size); }

private:
    static int tell(const char* text, char* buffer, int size) {
        OUtils::copyText(buffer, text, size);
        return 0;
    }
};

class WiniModificationsMachineTest : public MachineTest {
protected:
    void SetUp() override {
        modifications_.attach(product_, errors_, log_);
        int created = 0;
        ASSERT_EQ(machine_.registry.createKey(RegistryRoot::kCurrentUser, "Software", RegistryView::kNative,
                                              created),
                  kRegOk);
        removeAll();
    }
    void TearDown() override { removeAll(); }

    void removeAll() {
        for (const char* key : {"a\\b", "a\\foreign", "a", ""}) {
            machine_.registry.deleteKey(RegistryRoot::kCurrentUser,
                                        (std::string("Software\\TandrelWiniTest\\") + key).c_str(),
                                        RegistryView::kNative);
        }
        for (const RegistryView view : {RegistryView::kNative, RegistryView::k32Bit}) {
            machine_.registry.deleteKey(RegistryRoot::kLocalMachine,
                                        UninstallList::keyOf(kApplication).c_str(), view);
        }
    }
    void addUninstaller(const std::string& command, RegistryView view) {
        const std::string key = UninstallList::keyOf(kApplication);
        int created = 0;
        ASSERT_EQ(machine_.registry.createKey(RegistryRoot::kLocalMachine, key.c_str(), view, created),
                  kRegOk);
        ASSERT_EQ(machine_.registry.writeValue(RegistryRoot::kLocalMachine, key.c_str(), view,
                                               "UninstallString", {platform::kRegString, command}),
                  kRegOk);
    }
    int write(const char* path, const char* type, const char* data, int& outCreated) {
        return modifications_.writeRegistryValue(kUser, path, type, "Name", data, outCreated);
    }
    RegistryValue userValue(const char* key) {
        RegistryValue value;
        EXPECT_EQ(machine_.registry.readValue(RegistryRoot::kCurrentUser, key, RegistryView::kNative, "Name",
                                              value),
                  kRegOk);
        return value;
    }
    int testUserKey(const char* key) {
        return machine_.registry.testKey(RegistryRoot::kCurrentUser, key, RegistryView::kNative);
    }
    bool run(const std::string& childTest, std::uint32_t flags, const char* workDir = nullptr) {
        return modifications_.runAssociatedProgram(ownImage().c_str(), argumentsOf(childTest).c_str(), flags,
                                                   workDir, &ui_, 1);
    }

    TestProduct product_;
    ErrorList errors_;
    FakeConsole log_;
    RecordingUI ui_;
    WiniModifications modifications_{machine_};
};

TEST_F(WiniModificationsMachineTest, writesValuesOfEachTypeAndTakesThemBack) {
    constexpr char kKey[] = "Software\\TandrelWiniTest\\a\\b";
    int created = 0;
    EXPECT_EQ(write("Software/TandrelWiniTest/a/b", "REG_DWORD", "ff", created), 0);
    EXPECT_EQ(created, 3);
    EXPECT_EQ(userValue(kKey).type, platform::kRegDword);
    EXPECT_EQ(userValue(kKey).data, std::string("\xff\0\0\0", 4));
    EXPECT_EQ(write(kKey, "REG_BINARY", "00Ff", created), 0);
    EXPECT_EQ(created, 0);
    EXPECT_EQ(userValue(kKey).type, platform::kRegBinary);
    EXPECT_EQ(userValue(kKey).data, std::string("\0\xff", 2));
    EXPECT_EQ(write(kKey, nullptr, "Gr\xc3\xbc\xc3\x9f", created), 0);
    EXPECT_EQ(userValue(kKey).type, platform::kRegString);
    EXPECT_EQ(userValue(kKey).data, "Gr\xc3\xbc\xc3\x9f");
    EXPECT_EQ(write(kKey, "REG_OTHER", "x", created), 0);
    EXPECT_EQ(userValue(kKey).type, platform::kRegString);
    EXPECT_EQ(userValue(kKey).data, "");
    EXPECT_EQ(modifications_.deleteRegistryValue(kUser, kKey, "Name"), 0);
    EXPECT_EQ(modifications_.deleteRegistryValue(kUser, kKey, "Name"), kRegNotFound);
    EXPECT_EQ(modifications_.deleteRegistryKeys(kUser, kKey, 3), 3);
    EXPECT_EQ(testUserKey("Software\\TandrelWiniTest"), kRegNotFound);
    EXPECT_EQ(testUserKey("Software"), kRegOk);
}

TEST_F(WiniModificationsMachineTest, keepsAForeignSubkey) {
    EXPECT_EQ(modifications_.createRegistryKey(kUser, "Software/TandrelWiniTest/a/b"), 3);
    EXPECT_EQ(modifications_.createRegistryKey(kUser, "Software/TandrelWiniTest/a/b"), 0);
    EXPECT_EQ(modifications_.createRegistryKey(kUser, "Software/TandrelWiniTest/a/foreign"), 1);
    EXPECT_EQ(modifications_.deleteRegistryKeys(kUser, "Software/TandrelWiniTest/a/b", 3), 1);
    EXPECT_EQ(testUserKey("Software\\TandrelWiniTest\\a\\foreign"), kRegOk);
    EXPECT_EQ(testUserKey("Software\\TandrelWiniTest\\a\\b"), kRegNotFound);
}

TEST_F(WiniModificationsMachineTest, leavesNoLevelOfAKeyThatCannotBeMade) {
    const std::string path = "Software/TandrelWiniTest/a/" + std::string(300, 'k');
    EXPECT_EQ(modifications_.createRegistryKey(kUser, path.c_str()), 0);
    EXPECT_EQ(testUserKey("Software\\TandrelWiniTest"), kRegNotFound);
    int created = 77;
    EXPECT_NE(write(path.c_str(), nullptr, "x", created), 0);
    EXPECT_EQ(created, 0);
    EXPECT_EQ(testUserKey("Software\\TandrelWiniTest"), kRegNotFound);
}

TEST_F(WiniModificationsMachineTest, registersTheProductAndTakesItOffTheList) {
    EXPECT_TRUE(modifications_.registerApplication());
    UninstallList list(machine_.registry);
    char buffer[64] = "";
    EXPECT_TRUE(list.findUninstallEntry(kApplication, 0));
    EXPECT_FALSE(list.findUninstallEntry(kApplication, kEntryIn32BitView));
    EXPECT_TRUE(list.getApplicationLogFile(kApplication, buffer, sizeof buffer));
    EXPECT_STREQ(buffer, "C:\\a b\\log");
    std::vector<std::string> names;
    list.findEntriesByPublisher(names, kApplication, "Tandrel Software Ltd", 0);
    EXPECT_EQ(names, std::vector<std::string>{kApplication});
    EXPECT_TRUE(modifications_.removeUninstallEntry(kApplication));
    EXPECT_FALSE(list.findUninstallEntry(kApplication, 0));
    EXPECT_FALSE(modifications_.removeUninstallEntry(kApplication));
    EXPECT_TRUE(log_.lines().empty());
}

TEST_F(WiniModificationsMachineTest, leavesNothingOfTheRegistration) {
    const auto keysOf = [this](const char* path) {
        std::vector<std::string> names;
        machine_.registry.listKeys(RegistryRoot::kLocalMachine, path, RegistryView::kNative, names);
        return names;
    };
    const std::vector<std::string> top = keysOf("");
    const std::vector<std::string> list = keysOf(UninstallList::listKey());
    EXPECT_TRUE(modifications_.registerApplication());
    EXPECT_TRUE(modifications_.removeUninstallEntry(kApplication));
    EXPECT_EQ(keysOf(""), top);
    EXPECT_EQ(keysOf(UninstallList::listKey()), list);
}

TEST_F(WiniModificationsMachineTest, runsAProgramToItsEnd) {
    for (const std::uint32_t flags : {kRunWait + 0U, kRunAsynchronous + 0U, kRunAsynchronous | kRunWait}) {
        EXPECT_TRUE(run("Passes", flags));
        EXPECT_FALSE(run("Fails", flags));
    }
}

TEST_F(WiniModificationsMachineTest, runsAWholeCommandLineInADirectory) {
    const TemporaryDirectory directory;
    EXPECT_TRUE(modifications_.runAssociatedProgram(commandOf("LeavesAFileInItsDirectory").c_str(), nullptr,
                                                    kRunAsynchronous | kRunWholeCommandLine,
                                                    directory.path().c_str(), nullptr, 1));
    EXPECT_TRUE(testFileExists(directory.file("left behind")));
}

TEST_F(WiniModificationsMachineTest, tellsThatAProgramIsMissing) {
    const TemporaryDirectory directory;
    for (const std::uint32_t flags : {0U, kRunWait + 0U, kRunAsynchronous + 0U}) {
        EXPECT_FALSE(modifications_.runAssociatedProgram(directory.file("none.exe").c_str(), "", flags, "",
                                                         nullptr, 1));
    }
}

TEST_F(WiniModificationsMachineTest, runsTheUninstallerOfTheViewThatIsAskedFor) {
    addUninstaller(commandOf("Passes"), RegistryView::k32Bit);
    EXPECT_FALSE(modifications_.uninstallApplication(kApplication, nullptr, kEntryWait, &ui_));
    EXPECT_TRUE(log_.hasLine("ERROR: Could not obtain uninstall string for uninstalling application: \"" +
                             std::string(kApplication) + "\""));
    EXPECT_TRUE(
        modifications_.uninstallApplication(kApplication, nullptr, kEntryIn32BitView | kEntryWait, &ui_));
    addUninstaller(commandOf("Fails"), RegistryView::kNative);
    EXPECT_FALSE(modifications_.uninstallApplication(kApplication, "-more", kEntryWait, &ui_));
    // Only the native entry is the session's own.
    EXPECT_TRUE(modifications_.removeUninstallEntry(kApplication));
    EXPECT_FALSE(modifications_.removeUninstallEntry(kApplication));
}

constexpr const char* kEventSuffix = "TANDREL_TEST_EVENT_SUFFIX";

// What an uninstaller does that somebody waits for.
TEST(WiniChild, DISABLED_TellsThatItUninstalls) {
    const std::string suffix = platform::systemEnvironment().get(kEventSuffix).value_or("");
    ASSERT_FALSE(suffix.empty());
    EXPECT_TRUE(platform::systemNamedEvents().signal((kUninstallerStartEvent + suffix).c_str()));
    EXPECT_TRUE(platform::systemNamedEvents().signal((kUninstallerEndEvent + suffix).c_str()));
}

// The machine's events under names that no other run of the tests uses. Notes which waits were successful.
class EventsOfThisRun : public platform::NamedEvents {
public:
    std::vector<std::pair<std::string, bool>> waits;
    const std::string suffix = std::to_string(platform::systemProcesses().currentId());

    std::unique_ptr<platform::NamedEvent> create(std::string_view name) override {
        auto event = platform::systemNamedEvents().create((name + suffix).c_str());
        return event == nullptr ? nullptr : std::make_unique<Event>(*this, name, std::move(event));
    }
    bool signal(const char*) override { return false; }

private:
    class Event : public platform::NamedEvent {
    public:
        Event(EventsOfThisRun& owner, const char* name, std::unique_ptr<platform::NamedEvent> event)
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

TEST_F(WiniModificationsMachineTest, waitsForTheEventsOfAnotherProcess) {
    EventsOfThisRun events;
    ASSERT_TRUE(platform::systemEnvironment().set(kEventSuffix, events.suffix.c_str()));
    addUninstaller(commandOf("TellsThatItUninstalls"), RegistryView::kNative);
    ProgramRunner runner(machine_.processes, machine_.shell, log_);
    ExternalUninstaller uninstaller({machine_.registry, machine_.processes, events, runner}, log_);
    EXPECT_TRUE(uninstaller.uninstallApplication(kApplication, nullptr, 0, &ui_));
    EXPECT_EQ(events.waits, (std::vector<std::pair<std::string, bool>>{{kUninstallerStartEvent, true},
                                                                       {kUninstallerEndEvent, true}}));
}

}  // namespace

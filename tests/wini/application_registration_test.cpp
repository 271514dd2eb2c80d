#include "wini/application_registration.h"

#include <gtest/gtest.h>

#include "contracts/system_operations.h"
#include "fakes/fake_console.h"
#include "platform/memory/memory_registry.h"
#include "wini/uninstall_list.h"

namespace {

using platform::RegistryRoot;

constexpr char kList[] = "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall";
constexpr char kEntry[] = "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Demo 1";

ApplicationEntry entryOf(const std::string& name) {
    return {name, "1.2.3", "http://example.com", "\"C:\\demo app\\installer.exe\"",
            "-uninstall=\"C:\\demo app\\install.log\" -uninstallApp=\"" + name + "\""};
}

class FussyRegistry : public MemoryRegistry {
public:
    std::string refused;  // a value that can't be written
    int writeValue(RegistryRoot root, std::string_view path, platform::RegistryView view,
                   std::string_view name, const platform::RegistryValue& value) override {
        const int status = MemoryRegistry::writeValue(root, path, view, name, value);
        if (name != refused) {
            return status;
        }
        MemoryRegistry::deleteValue(root, path, view, name);
        return platform::kRegDiskFull;
    }
};

class ApplicationRegistrationTest : public testing::Test {
protected:
    ApplicationRegistrationTest() { registry_.addKey(RegistryRoot::kLocalMachine, kList); }

    std::string text(const char* name) {
        const platform::RegistryValue* value = registry_.value(RegistryRoot::kLocalMachine, kEntry, name);
        return value == nullptr ? "(none)" : value->type == platform::kRegString ? value->data : "(other)";
    }
    bool hasEntry() { return registry_.hasKey(RegistryRoot::kLocalMachine, kEntry); }
    bool registerDemo() { return registration_.registerApplication(entryOf("Demo 1")); }

    FussyRegistry registry_;
    FakeConsole log_;
    ApplicationRegistration registration_{registry_, log_};
};

TEST_F(ApplicationRegistrationTest, WritesThePublisherOfTheProduct) {
    ApplicationEntry entry = entryOf("Demo 1");
    entry.publisher = "Demo Ltd";
    EXPECT_TRUE(registration_.registerApplication(entry));
    EXPECT_EQ(text("Publisher"), "Demo Ltd");
}

TEST_F(ApplicationRegistrationTest, WritesTheSixValuesInTheirOrder) {
    EXPECT_TRUE(registerDemo());
    EXPECT_EQ(text("DisplayIcon"), "\"C:\\demo app\\installer.exe\"");
    EXPECT_EQ(text("DisplayName"), "Demo 1");
    EXPECT_EQ(text("DisplayVersion"), "1.2.3");
    EXPECT_EQ(text("HelpLink"), "http://example.com");
    EXPECT_EQ(text("Publisher"), "Tandrel Software Ltd");
    EXPECT_EQ(text("UninstallString"),
              "\"C:\\demo app\\installer.exe\" -uninstall=\"C:\\demo app\\install.log\" "
              "-uninstallApp=\"Demo 1\"");
    const std::string key = std::string("HKLM\\") + kEntry;
    EXPECT_EQ(
        registry_.operations,
        (std::vector<std::string>{
            "createKey " + key, "writeValue " + key + ":DisplayIcon", "writeValue " + key + ":DisplayName",
            "writeValue " + key + ":DisplayVersion", "writeValue " + key + ":HelpLink",
            "writeValue " + key + ":Publisher", "writeValue " + key + ":UninstallString"}));
    EXPECT_TRUE(log_.lines().empty());
}

TEST_F(ApplicationRegistrationTest, WritesWhatTheReaderOfTheListReadsBack) {
    EXPECT_TRUE(registerDemo());
    UninstallList list(registry_);
    EXPECT_TRUE(list.findUninstallEntry("Demo 1", 0));
    EXPECT_EQ(list.applicationLogFile("Demo 1"), "C:\\demo app\\install.log");
    EXPECT_EQ(list.findEntriesByPublisher("", "Tandrel Software Ltd", 0), std::vector<std::string>{"Demo 1"});
}

TEST_F(ApplicationRegistrationTest, RenewsAnEntry) {
    registry_.addText(RegistryRoot::kLocalMachine, kEntry, "DisplayVersion", "1.0.0");
    registry_.addText(RegistryRoot::kLocalMachine, kEntry, "Other", "kept");
    EXPECT_TRUE(registerDemo());
    EXPECT_EQ(text("DisplayVersion"), "1.2.3");
    EXPECT_EQ(text("Other"), "kept");
}

TEST_F(ApplicationRegistrationTest, WritesTheOtherValuesWhenOneFails) {
    registry_.refused = "HelpLink";
    EXPECT_FALSE(registerDemo());
    EXPECT_EQ(text("HelpLink"), "(none)");
    EXPECT_EQ(text("DisplayVersion"), "1.2.3");
    EXPECT_EQ(text("Publisher"), "Tandrel Software Ltd");
    EXPECT_EQ(log_.lines().size(), 1U);
}

TEST_F(ApplicationRegistrationTest, LogsThatTheEntryCanNotBeMade) {
    registry_.setReadOnly(kList);
    EXPECT_FALSE(registerDemo());
    EXPECT_EQ(log_.lines(), std::vector<std::string>{std::string("ERROR: The entry \"") + kEntry +
                                                     "\" can not be made (5)"});
}

TEST_F(ApplicationRegistrationTest, RegistersNothingUnderANameThatIsNoKeyOfItsOwn) {
    for (const char* name : {"", "\\", "A\\B"}) {
        EXPECT_FALSE(registration_.registerApplication(entryOf(name)));
    }
    EXPECT_TRUE(registry_.operations.empty());
}

TEST_F(ApplicationRegistrationTest, RemovesAnEntryWithItsValues) {
    EXPECT_TRUE(registerDemo());
    EXPECT_TRUE(registration_.removeUninstallEntry("Demo 1"));
    EXPECT_FALSE(hasEntry());
    EXPECT_FALSE(registration_.removeUninstallEntry("Demo 1"));
}

TEST_F(ApplicationRegistrationTest, NeverRemovesTheListItself) {
    for (const char* name : {"", "\\", "\\\\", "A\\B"}) {
        EXPECT_FALSE(registration_.removeUninstallEntry(name));
    }
    EXPECT_TRUE(registry_.hasKey(RegistryRoot::kLocalMachine, kList));
    EXPECT_TRUE(registry_.operations.empty());
}

TEST_F(ApplicationRegistrationTest, SaysThatAnEntryStays) {
    registry_.addText(RegistryRoot::kLocalMachine, std::string(kEntry) + "\\Foreign", "n", "data");
    EXPECT_FALSE(registration_.removeUninstallEntry("Demo 1"));
    EXPECT_TRUE(hasEntry());
}

class RegistrationWithoutListTest : public testing::Test {
protected:
    bool registerDemo(const char* name = "Demo 1") {
        return registration_.registerApplication(entryOf(name));
    }
    bool hasKey(const char* path) { return registry_.hasKey(RegistryRoot::kLocalMachine, path); }

    MemoryRegistry registry_;
    FakeConsole log_;
    ApplicationRegistration registration_{registry_, log_};
};

TEST_F(RegistrationWithoutListTest, TakesTheListAwayThatItMade) {
    EXPECT_TRUE(registerDemo());
    EXPECT_TRUE(hasKey(kEntry));
    EXPECT_TRUE(registration_.removeUninstallEntry("Demo 1"));
    EXPECT_FALSE(hasKey("Software"));
}

TEST_F(RegistrationWithoutListTest, KeepsTheLevelsThatWereThere) {
    registry_.addKey(RegistryRoot::kLocalMachine, "Software\\Microsoft");
    EXPECT_TRUE(registerDemo());
    EXPECT_TRUE(registration_.removeUninstallEntry("Demo 1"));
    EXPECT_FALSE(hasKey("Software\\Microsoft\\Windows"));
    EXPECT_TRUE(hasKey("Software\\Microsoft"));
}

TEST_F(RegistrationWithoutListTest, LeavesTheListToTheLastEntry) {
    EXPECT_TRUE(registerDemo());
    EXPECT_TRUE(registerDemo("Demo 2"));
    EXPECT_TRUE(registration_.removeUninstallEntry("Demo 1"));
    EXPECT_TRUE(hasKey(kList));
    EXPECT_TRUE(registration_.removeUninstallEntry("Demo 2"));
    EXPECT_FALSE(hasKey("Software"));
}

TEST_F(RegistrationWithoutListTest, KeepsALevelInWhichOthersPutSomething) {
    EXPECT_TRUE(registerDemo());
    registry_.addText(RegistryRoot::kLocalMachine, "Software\\Microsoft\\Windows", "Foreign", "data");
    EXPECT_TRUE(registration_.removeUninstallEntry("Demo 1"));
    EXPECT_FALSE(hasKey("Software\\Microsoft\\Windows\\CurrentVersion"));
    EXPECT_NE(registry_.value(RegistryRoot::kLocalMachine, "Software\\Microsoft\\Windows", "Foreign"),
              nullptr);
}

TEST_F(RegistrationWithoutListTest, KeepsAListInWhichOthersPutSomething) {
    EXPECT_TRUE(registerDemo());
    registry_.addText(RegistryRoot::kLocalMachine, kList, "Foreign", "data");
    EXPECT_TRUE(registration_.removeUninstallEntry("Demo 1"));
    EXPECT_TRUE(hasKey(kList));
}

TEST_F(RegistrationWithoutListTest, TakesTheKeyAlongThatWasLeftToIt) {
    registry_.addKey(RegistryRoot::kLocalMachine, "Software");
    EXPECT_TRUE(registerDemo());
    EXPECT_FALSE(registration_.leaveKeysToList("Other", 1));
    EXPECT_FALSE(registration_.leaveKeysToList("Software\\Microsoft", 2));
    EXPECT_TRUE(registration_.leaveKeysToList("SOFTWARE", 1));
    EXPECT_FALSE(registration_.leaveKeysToList("Software", 1));  // once
    EXPECT_TRUE(registerDemo());
    EXPECT_TRUE(registration_.removeUninstallEntry("Demo 1"));
    EXPECT_FALSE(hasKey("Software"));
}

TEST_F(ApplicationRegistrationTest, TakesNoKeysForAListThatWasThere) {
    EXPECT_TRUE(registerDemo());
    EXPECT_FALSE(registration_.leaveKeysToList("Software", 1));
    EXPECT_FALSE(registration_.leaveKeysToList("Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall", 5));
}

TEST_F(ApplicationRegistrationTest, KeepsTheListThatWasThere) {
    EXPECT_TRUE(registerDemo());
    EXPECT_TRUE(registration_.removeUninstallEntry("Demo 1"));
    EXPECT_TRUE(registry_.hasKey(RegistryRoot::kLocalMachine, kList));
    EXPECT_EQ(registry_.value(RegistryRoot::kLocalMachine, kList, "TandrelCreatedLevels"), nullptr);
}

}  // namespace

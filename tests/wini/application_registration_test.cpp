#include "wini/application_registration.h"

#include <gtest/gtest.h>

#include <map>

#include "fakes/fake_console.h"
#include "fakes/fake_engine.h"
#include "fakes/memory_registry.h"
#include "wini/uninstall_list.h"

namespace {

using platform::RegistryRoot;

constexpr char kList[] = "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall";
constexpr char kEntry[] = "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Demo 1";

// A product whose texts a test gives or leaves out.
class Product : public FakeEngine {
public:
    std::map<std::string, std::string> texts = {{"name", "Demo 1"},
                                                {"version", "1.2.3"},
                                                {"website", "http://example.com"},
                                                {"log", "C:\\demo app\\install.log"},
                                                {"command", "C:\\demo app\\installer.exe"}};

    int getFullName(char* buffer, int size) override { return tell("name", buffer, size); }
    int getVersion(char* buffer, int size) override { return tell("version", buffer, size); }
    int getWebsite(char* buffer, int size) override { return tell("website", buffer, size); }
    int getInstallLogFile(char* buffer, int size) override { return tell("log", buffer, size); }
    int getUninstallCmd(char* buffer, int size) override { return tell("command", buffer, size); }

private:
    int tell(const char* what, char* buffer, int size) {
        const auto found = texts.find(what);
        OUtils::copyText(buffer, found == texts.end() ? "" : found->second.c_str(), size);
        return found == texts.end() ? -1 : 0;
    }
};

class FussyRegistry : public MemoryRegistry {
public:
    std::string refused;  // a value that can't be written
    int writeValue(RegistryRoot root, std::string_view path, platform::RegistryView view, std::string_view name,
                   const platform::RegistryValue& value) override {
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
    // Registering without one of the texts fails, says this and makes no entry.
    void expectMissing(const char* what, const char* message) {
        product_.texts.erase(what);
        EXPECT_FALSE(registration_.registerApplication());
        EXPECT_EQ(log_.lines(), std::vector<std::string>{message});
        EXPECT_FALSE(hasEntry());
        EXPECT_TRUE(registry_.operations.empty());
    }

    FussyRegistry registry_;
    Product product_;
    FakeConsole log_;
    ApplicationRegistration registration_{registry_, product_, log_};
};

TEST_F(ApplicationRegistrationTest, buildsTheUninstallCommand) {
    std::string command;
    std::string arguments;
    EXPECT_TRUE(registration_.buildUninstallCommand(command, arguments, true));
    EXPECT_EQ(command, "\"C:\\demo app\\installer.exe\"");
    EXPECT_EQ(arguments, "-uninstall=\"C:\\demo app\\install.log\" -uninstallApp=\"Demo 1\"");
    EXPECT_TRUE(registration_.buildUninstallCommand(command, arguments, false));
    EXPECT_EQ(command, "C:\\demo app\\installer.exe");
    EXPECT_EQ(arguments, "-uninstall=\"C:\\demo app\\install.log\" -uninstallApp=\"Demo 1\"");
    EXPECT_TRUE(log_.lines().empty());
}

TEST_F(ApplicationRegistrationTest, buildsNoCommandThatWouldBeCutOrMisread) {
    std::string command;
    std::string arguments;
    const auto isBuilt = [&] { return registration_.buildUninstallCommand(command, arguments, true); };
    product_.texts["command"] = std::string(ApplicationRegistration::kCommandSize - 4, 'c');
    EXPECT_TRUE(isBuilt());
    product_.texts["command"] += 'c';
    EXPECT_FALSE(isBuilt());
    EXPECT_EQ(command + arguments, "");
    product_.texts["command"] = std::string(10000, 'c');
    EXPECT_FALSE(isBuilt());
    product_.texts["command"] = "C:\\a\"b.exe";
    EXPECT_FALSE(isBuilt());
    product_.texts["command"] = "C:\\a.exe";
    product_.texts["log"] = "/opt/a\" -gui=\"1/install.log";
    EXPECT_FALSE(isBuilt());
    EXPECT_EQ(log_.lines().back(), "ERROR: The uninstall command is too long or holds a double quote!");
}

TEST_F(ApplicationRegistrationTest, writesTheSixValuesInTheirOrder) {
    EXPECT_TRUE(registration_.registerApplication());
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

TEST_F(ApplicationRegistrationTest, writesWhatTheReaderOfTheListReadsBack) {
    EXPECT_TRUE(registration_.registerApplication());
    UninstallList list(registry_);
    char buffer[256] = "";
    EXPECT_TRUE(list.findUninstallEntry("Demo 1", 0));
    EXPECT_TRUE(list.getApplicationLogFile("Demo 1", buffer, sizeof buffer));
    EXPECT_STREQ(buffer, "C:\\demo app\\install.log");
    std::vector<std::string> names;
    list.findEntriesByPublisher(names, "", "Tandrel Software Ltd", 0);
    EXPECT_EQ(names, std::vector<std::string>{"Demo 1"});
}

TEST_F(ApplicationRegistrationTest, renewsAnEntry) {
    registry_.addText(RegistryRoot::kLocalMachine, kEntry, "DisplayVersion", "1.0.0");
    registry_.addText(RegistryRoot::kLocalMachine, kEntry, "Other", "kept");
    EXPECT_TRUE(registration_.registerApplication());
    EXPECT_EQ(text("DisplayVersion"), "1.2.3");
    EXPECT_EQ(text("Other"), "kept");
}

TEST_F(ApplicationRegistrationTest, tellsThatTheCommandIsMissing) {
    expectMissing("command", "ERROR: Could not obtain uninstall cmd! (check <UninstallCmd> tag)");
}

TEST_F(ApplicationRegistrationTest, tellsThatTheLogIsMissing) {
    expectMissing("log", "ERROR: Could not obtain insatll log file location! (check <InstallLogFile> tag)");
}

TEST_F(ApplicationRegistrationTest, tellsThatTheNameIsMissing) {
    expectMissing("name", "ERROR: Could not obtain application name!");
}

TEST_F(ApplicationRegistrationTest, tellsThatTheVersionIsMissing) {
    expectMissing("version",
                  "ERROR: Could not obtain application full version description! (check <ProductDesc> tag)");
}

TEST_F(ApplicationRegistrationTest, tellsThatTheWebsiteIsMissing) {
    expectMissing("website", "ERROR: Could not obtain application web site! (check <ProductDesc> tag)");
}

TEST_F(ApplicationRegistrationTest, writesTheOtherValuesWhenOneFails) {
    registry_.refused = "HelpLink";
    EXPECT_FALSE(registration_.registerApplication());
    EXPECT_EQ(text("HelpLink"), "(none)");
    EXPECT_EQ(text("DisplayVersion"), "1.2.3");
    EXPECT_EQ(text("Publisher"), "Tandrel Software Ltd");
    EXPECT_EQ(log_.lines().size(), 1U);
}

TEST_F(ApplicationRegistrationTest, tellsThatTheEntryCannotBeMade) {
    registry_.setReadOnly(kList);
    EXPECT_FALSE(registration_.registerApplication());
    EXPECT_EQ(log_.lines(), std::vector<std::string>{std::string("ERROR: The entry \"") + kEntry +
                                                     "\" can not be made (5)"});
}

TEST_F(ApplicationRegistrationTest, registersNothingUnderANameThatIsNoKeyOfItsOwn) {
    for (const char* name : {"", "\\", "A\\B"}) {
        product_.texts["name"] = name;
        EXPECT_FALSE(registration_.registerApplication());
    }
    EXPECT_TRUE(registry_.operations.empty());
}

TEST_F(ApplicationRegistrationTest, removesAnEntryWithItsValues) {
    EXPECT_TRUE(registration_.registerApplication());
    EXPECT_TRUE(registration_.removeUninstallEntry("Demo 1"));
    EXPECT_FALSE(hasEntry());
    EXPECT_FALSE(registration_.removeUninstallEntry("Demo 1"));
}

TEST_F(ApplicationRegistrationTest, neverRemovesTheListItself) {
    for (const char* name : {"", "\\", "\\\\", "A\\B"}) {
        EXPECT_FALSE(registration_.removeUninstallEntry(name));
    }
    EXPECT_FALSE(registration_.removeUninstallEntry(nullptr));
    EXPECT_TRUE(registry_.hasKey(RegistryRoot::kLocalMachine, kList));
    EXPECT_TRUE(registry_.operations.empty());
}

TEST_F(ApplicationRegistrationTest, tellsThatAnEntryStays) {
    registry_.addText(RegistryRoot::kLocalMachine, std::string(kEntry) + "\\Foreign", "n", "data");
    EXPECT_FALSE(registration_.removeUninstallEntry("Demo 1"));
    EXPECT_TRUE(hasEntry());
}

class RegistrationWithoutListTest : public testing::Test {
protected:
    bool hasKey(const char* path) { return registry_.hasKey(RegistryRoot::kLocalMachine, path); }

    MemoryRegistry registry_;
    Product product_;
    FakeConsole log_;
    ApplicationRegistration registration_{registry_, product_, log_};
};

TEST_F(RegistrationWithoutListTest, takesTheListAwayThatItMade) {
    EXPECT_TRUE(registration_.registerApplication());
    EXPECT_TRUE(hasKey(kEntry));
    EXPECT_TRUE(registration_.removeUninstallEntry("Demo 1"));
    EXPECT_FALSE(hasKey("Software"));
}

TEST_F(RegistrationWithoutListTest, keepsTheLevelsThatWereThere) {
    registry_.addKey(RegistryRoot::kLocalMachine, "Software\\Microsoft");
    EXPECT_TRUE(registration_.registerApplication());
    EXPECT_TRUE(registration_.removeUninstallEntry("Demo 1"));
    EXPECT_FALSE(hasKey("Software\\Microsoft\\Windows"));
    EXPECT_TRUE(hasKey("Software\\Microsoft"));
}

TEST_F(RegistrationWithoutListTest, leavesTheListToTheLastEntry) {
    EXPECT_TRUE(registration_.registerApplication());
    product_.texts["name"] = "Demo 2";
    EXPECT_TRUE(registration_.registerApplication());
    EXPECT_TRUE(registration_.removeUninstallEntry("Demo 1"));
    EXPECT_TRUE(hasKey(kList));
    EXPECT_TRUE(registration_.removeUninstallEntry("Demo 2"));
    EXPECT_FALSE(hasKey("Software"));
}

TEST_F(RegistrationWithoutListTest, keepsALevelInWhichOthersPutSomething) {
    EXPECT_TRUE(registration_.registerApplication());
    registry_.addText(RegistryRoot::kLocalMachine, "Software\\Microsoft\\Windows", "Foreign", "data");
    EXPECT_TRUE(registration_.removeUninstallEntry("Demo 1"));
    EXPECT_FALSE(hasKey("Software\\Microsoft\\Windows\\CurrentVersion"));
    EXPECT_NE(registry_.value(RegistryRoot::kLocalMachine, "Software\\Microsoft\\Windows", "Foreign"),
              nullptr);
}

TEST_F(RegistrationWithoutListTest, keepsAListInWhichOthersPutSomething) {
    EXPECT_TRUE(registration_.registerApplication());
    registry_.addText(RegistryRoot::kLocalMachine, kList, "Foreign", "data");
    EXPECT_TRUE(registration_.removeUninstallEntry("Demo 1"));
    EXPECT_TRUE(hasKey(kList));
}

TEST_F(ApplicationRegistrationTest, keepsTheListThatWasThere) {
    EXPECT_TRUE(registration_.registerApplication());
    EXPECT_TRUE(registration_.removeUninstallEntry("Demo 1"));
    EXPECT_TRUE(registry_.hasKey(RegistryRoot::kLocalMachine, kList));
    EXPECT_EQ(registry_.value(RegistryRoot::kLocalMachine, kList, "TandrelCreatedLevels"), nullptr);
}

}  // namespace

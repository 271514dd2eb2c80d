#include "wini/uninstall_list.h"

#include <gtest/gtest.h>

#include "contracts/system_operations.h"
#include "fakes/memory_registry.h"

namespace {

using platform::RegistryRoot;
using platform::RegistryView;

constexpr char kList[] = "Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall";

class UninstallListTest : public testing::Test {
protected:
    void add(const std::string& name, const std::string& publisher, const std::string& command,
             RegistryView view = RegistryView::kNative) {
        const std::string key = std::string(kList) + "\\" + name;
        registry_.addKey(RegistryRoot::kLocalMachine, key, view);
        registry_.addText(RegistryRoot::kLocalMachine, key, "Publisher", publisher, view);
        registry_.addText(RegistryRoot::kLocalMachine, key, "UninstallString", command, view);
    }
    std::string logOf(const std::string& command, int size = 64) {
        add("Demo", "", command);
        char buffer[64] = "old";
        return list_.getApplicationLogFile("Demo", buffer, size) ? buffer : std::string("none:") + buffer;
    }

    MemoryRegistry registry_;
    UninstallList list_{registry_};
};

TEST_F(UninstallListTest, findsAnEntryInItsView) {
    add("Demo", "", "");
    add("Old", "", "", RegistryView::k32Bit);
    EXPECT_TRUE(list_.findUninstallEntry("Demo", 0));
    EXPECT_FALSE(list_.findUninstallEntry("Demo", kEntryIn32BitView));
    EXPECT_FALSE(list_.findUninstallEntry("Old", 0));
    EXPECT_TRUE(list_.findUninstallEntry("Old", kEntryIn32BitView));
    EXPECT_FALSE(list_.findUninstallEntry("None", 0));
    EXPECT_FALSE(list_.findUninstallEntry("", 0));  // the list itself is no entry
    EXPECT_FALSE(list_.findUninstallEntry(nullptr, 0));
}

TEST_F(UninstallListTest, findsEntriesByPartsOfNameAndPublisher) {
    add("Tool One", "The Maker", "");
    add("Tool Two", "Other", "");
    add("Thing", "The Maker", "");
    std::vector<std::string> names = {"kept"};
    list_.findEntriesByPublisher(names, "Tool", "Maker", 0);
    EXPECT_EQ(names, (std::vector<std::string>{"kept", "Tool One"}));
    names.clear();
    list_.findEntriesByPublisher(names, "Tool", nullptr, 0);
    EXPECT_EQ(names.size(), 2U);
    names.clear();
    list_.findEntriesByPublisher(names, "Tool", "", kEntryIn32BitView);
    EXPECT_TRUE(names.empty());
    list_.findEntriesByPublisher(names, "tool", "", 0);
    EXPECT_TRUE(names.empty());
}

TEST_F(UninstallListTest, readsTheLogFromTheUninstallCommand) {
    EXPECT_EQ(logOf("\"C:\\app\\u.exe\" -uninstall=\"C:\\app\\install.log\" -uninstallApp=\"Demo\""),
              "C:\\app\\install.log");
}

TEST_F(UninstallListTest, readsNoLogWhereTheCommandNamesNone) {
    EXPECT_EQ(logOf("\"C:\\app\\u.exe\""), "none:");
    EXPECT_EQ(logOf("\"C:\\app\\u.exe\" -uninstall=\"C:\\app"), "none:");
    EXPECT_EQ(logOf(""), "none:");
    char buffer[8] = "old";
    EXPECT_FALSE(list_.getApplicationLogFile("None", buffer, sizeof buffer));
    EXPECT_STREQ(buffer, "");
}

TEST_F(UninstallListTest, doesNotCutALogThatDoesNotFit) {
    EXPECT_EQ(logOf("-uninstall=\"1234567\"", 8), "1234567");
    EXPECT_EQ(logOf("-uninstall=\"12345678\"", 8), "none:");
}

TEST_F(UninstallListTest, readsOnlyTextAsACommand) {
    add("Demo", "", "");
    platform::RegistryValue number;
    number.type = platform::kRegDword;
    number.data = std::string("\1\0\0\0", 4);
    registry_.writeValue(RegistryRoot::kLocalMachine, (std::string(kList) + "\\Demo").c_str(),
                         RegistryView::kNative, "UninstallString", number);
    std::string command;
    EXPECT_FALSE(list_.readUninstallString("Demo", command, 0));
}

}  // namespace

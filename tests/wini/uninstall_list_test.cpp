#include "wini/uninstall_list.h"

#include <gtest/gtest.h>

#include "base/errors.h"
#include "contracts/system_operations.h"
#include "platform/error_text.h"
#include "platform/memory/memory_registry.h"

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
    std::string logOf(const std::string& command) {
        add("Demo", "", command);
        return list_.applicationLogFile("Demo").value_or("none");
    }

    MemoryRegistry registry_;
    UninstallList list_{registry_};
};

TEST_F(UninstallListTest, FindsAnEntryInItsView) {
    add("Demo", "", "");
    add("Old", "", "", RegistryView::k32Bit);
    EXPECT_TRUE(list_.findUninstallEntry("Demo", 0));
    EXPECT_FALSE(list_.findUninstallEntry("Demo", kEntryIn32BitView));
    EXPECT_FALSE(list_.findUninstallEntry("Old", 0));
    EXPECT_TRUE(list_.findUninstallEntry("Old", kEntryIn32BitView));
    EXPECT_FALSE(list_.findUninstallEntry("None", 0));
    EXPECT_FALSE(list_.findUninstallEntry("", 0));  // the list itself is no entry
}

TEST_F(UninstallListTest, FindsEntriesByPartsOfNameAndPublisher) {
    add("Tool One", "The Maker", "");
    add("Tool Two", "Other", "");
    add("Thing", "The Maker", "");
    EXPECT_EQ(list_.findEntriesByPublisher("Tool", "Maker", 0), std::vector<std::string>{"Tool One"});
    EXPECT_EQ(list_.findEntriesByPublisher("Tool", "", 0).size(), 2U);
    EXPECT_TRUE(list_.findEntriesByPublisher("Tool", "", kEntryIn32BitView).empty());
    EXPECT_TRUE(list_.findEntriesByPublisher("tool", "", 0).empty());
}

TEST_F(UninstallListTest, ReadsTheLogFromTheUninstallCommand) {
    EXPECT_EQ(logOf("\"C:\\app\\u.exe\" -uninstall=\"C:\\app\\install.log\" -uninstallApp=\"Demo\""),
              "C:\\app\\install.log");
}

TEST_F(UninstallListTest, ReadsNoLogWhereTheCommandNamesNone) {
    EXPECT_EQ(logOf("\"C:\\app\\u.exe\""), "none");
    EXPECT_EQ(logOf("\"C:\\app\\u.exe\" -uninstall=\"C:\\app"), "none");
    EXPECT_EQ(logOf(""), "none");
    EXPECT_EQ(list_.applicationLogFile("None"), std::nullopt);
}

TEST_F(UninstallListTest, DoesNotCutALogThatIsTooLong) {
    const std::string longest(UninstallList::kLogPathLimit, 'l');
    EXPECT_EQ(logOf("-uninstall=\"" + longest + "\""), longest);
    EXPECT_EQ(logOf("-uninstall=\"" + longest + "l\""), "none");
}

TEST_F(UninstallListTest, ReadsOnlyTextAsACommand) {
    add("Demo", "", "");
    platform::RegistryValue number;
    number.type = platform::kRegDword;
    number.data = std::string("\1\0\0\0", 4);
    registry_.writeValue(RegistryRoot::kLocalMachine, (std::string(kList) + "\\Demo").c_str(),
                         RegistryView::kNative, "UninstallString", number);
    EXPECT_EQ(list_.readUninstallString("Demo", 0), std::nullopt);
}

TEST_F(UninstallListTest, TakesNoEntryThatCannotBeReadForAMissingOne) {
    add("Demo", "", "\"/u\" -uninstall=\"/l\"");
    registry_.setForbidden(kList);
    const std::string text =
        "ERROR: The entry of \"Demo\" in the list of installed applications can't be read: " +
        platform::registryErrorText(platform::kRegAccessDenied);
    try {
        list_.findUninstallEntry("Demo", 0);
        ADD_FAILURE() << "the entry counts as missing";
    } catch (const InstallerError& error) {
        EXPECT_EQ(error.what(), text);
    }
    try {
        list_.applicationLogFile("Demo");
        ADD_FAILURE() << "the entry names no log";
    } catch (const InstallerError& error) {
        EXPECT_EQ(error.what(), text);
    }
    EXPECT_EQ(list_.testEntry("Demo", 0), platform::kRegAccessDenied);
}

}  // namespace

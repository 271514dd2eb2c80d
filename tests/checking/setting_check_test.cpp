#include "checking/setting_check.h"

#include "checking/check_bench.h"

namespace {

class SettingCheckTest : public testing::Test {
protected:
    static std::string shortcut(const std::string& attributes, const std::string& name) {
        return "<Shortcuts>\n<Add Dest='/x' Target='/y' " + attributes + ">" + name + "</Add></Shortcuts>";
    }
    static std::string environment(const std::string& element) {
        return "<Environment>\n" + element + "</Environment>";
    }
    static std::string value(const std::string& attributes, const std::string& data) {
        return "<PreUninstall><Registry>\n<AddValue Place='HKEY_USERS' Path='X' Value='V' " + attributes +
               ">" + data + "</AddValue></Registry></PreUninstall>";
    }

    CheckBench bench_{[](const CheckedParts& parts) { checkSettings(parts.context, parts.paths); }};
};

TEST_F(SettingCheckTest, FindsShortcutsThatAlwaysFail) {
    EXPECT_EQ(bench_.find(shortcut("Type='Symlink'", "a")), (Found{"shortcut-symlink 3:34"}));
}

TEST_F(SettingCheckTest, FindsEndingsThatASystemDoesNotKnow) {
    for (const std::string name : {"a", "a.lnk", "a.desktop"}) {
        EXPECT_EQ(bench_.find(shortcut("Type='File'", name)), (Found{"shortcut-ending 3:40"})) << name;
    }
    bench_.targets.linux = false;
    EXPECT_EQ(bench_.find(shortcut("Type='Uninstall'", "a.LNK")), Found());
    EXPECT_EQ(bench_.messages(shortcut("Type='URL'", "a.lnk")),
              (Found{"on Windows the shortcut \"a.lnk\" must end in .url"}));
    bench_.targets = {.windows = false, .linux = true};
    EXPECT_EQ(bench_.find(shortcut("Type='File'", "a.desktop")), Found());
    EXPECT_EQ(bench_.messages(shortcut("Type='File'", "a.lnk")),
              (Found{"on Linux the shortcut \"a.lnk\" must end in .desktop"}));
}

TEST_F(SettingCheckTest, LeavesEndingsAloneThatMayBeRight) {
    EXPECT_EQ(bench_.find(shortcut("Type='File'", "a[END]")), Found());
    EXPECT_EQ(bench_.find(shortcut("Type='File' Condition='[A]==1'", "a.lnk")), Found());
}

TEST_F(SettingCheckTest, FindsWhatHarmsTheListOfDirectories) {
    EXPECT_EQ(bench_.find(environment("<Replace VarName='Path'>/x</Replace>")),
              (Found{"path-list-replaced 3:1"}));
    EXPECT_EQ(bench_.find(environment("<Append VarName='PATH'>/x</Append>")),
              (Found{"path-list-repeated 3:1"}));
    EXPECT_EQ(bench_.find(environment("<Insert VarName='PATH'>/x</Insert>")),
              (Found{"path-list-repeated 3:1"}));
}

TEST_F(SettingCheckTest, LeavesOtherVariablesAlone) {
    EXPECT_EQ(
        bench_.find(environment("<Replace VarName='A_HOME'>/x</Replace><Append VarName='LIST'>x</Append>"
                                "<Append VarName='PATH' IsPath='1'>/x</Append>"
                                "<Replace VarName='PATH'>/x;[$Path]</Replace>")),
        Found());
}

TEST_F(SettingCheckTest, FindsDataThatIsNoHexadecimalNumber) {
    for (const std::string data : {"12g", "123456789", "[A]", "0x", "-1"}) {
        EXPECT_EQ(bench_.find(value("Type='REG_DWORD'", data)), (Found{"registry-data 3:66"})) << data;
    }
    for (const std::string data : {"1", "1g", "12 34"}) {
        EXPECT_EQ(bench_.find(value("Type='REG_BINARY'", data)), (Found{"registry-data 3:67"})) << data;
    }
}

TEST_F(SettingCheckTest, LeavesRightDataAlone) {
    EXPECT_EQ(bench_.find(value("Type='REG_DWORD'", "0x12345678")), Found());
    EXPECT_EQ(bench_.find(value("Type='REG_DWORD'", "aF")), Found());
    EXPECT_EQ(bench_.find(value("Type='REG_DWORD' Expand='1'", "[A]")), Found());
    EXPECT_EQ(bench_.find(value("Type='REG_BINARY'", "01aF")), Found());
    EXPECT_EQ(bench_.find(value("Type='REG_SZ'", "xyz")), Found());
    EXPECT_EQ(bench_.find(value("", "xyz")), Found());
}

}  // namespace

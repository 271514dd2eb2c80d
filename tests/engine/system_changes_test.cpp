#include "engine/system_changes.h"

#include "engine_fixture.h"

namespace {

class SystemChangesTest : public EngineTest {
protected:
    int applyAll() {
        return changes_.applyEnvironmentTags(&ui_) + changes_.applyIniTags(&ui_) +
               changes_.applyModifyFileTags(&ui_) + changes_.applyShortcutTags(&ui_) +
               changes_.applyFirewallTags(&ui_) + changes_.runAdditionalActions(&ui_, "AdditionalInstall");
    }

    SystemChanges changes_{document_, expressions_, console_};
};

TEST_F(SystemChangesTest, succeedsWhereNothingIsAskedFor) {
    describe(
        "<Installation><Environment/><Shortcuts Condition='1==2'><Add>x</Add></Shortcuts></Installation>");
    EXPECT_EQ(applyAll(), 0);
    EXPECT_TRUE(log_.lines().empty());
}

TEST_F(SystemChangesTest, refusesEachKindInTheLog) {
    describe(
        "<Installation><Environment/><Environment><Replace>x</Replace></Environment>"
        "<IniFiles><Add>x</Add></IniFiles><ModifyFiles><File>x</File></ModifyFiles>"
        "<Shortcuts><Add>x</Add></Shortcuts><Firewall><Port>x</Port></Firewall>"
        "<AdditionalInstall><RunProgram>x</RunProgram></AdditionalInstall></Installation>");
    EXPECT_EQ(applyAll(), 6);
    std::vector<std::string> expected;
    for (const char* group :
         {"Environment", "IniFiles", "ModifyFiles", "Shortcuts", "Firewall", "AdditionalInstall"}) {
        expected.push_back("ERROR: The tags of <" + std::string(group) +
                           "> are not carried out: this version can not do that");
    }
    EXPECT_EQ(log_.lines(), expected);
}

TEST_F(SystemChangesTest, takesAPageOfAContainersNameForAPage) {
    describe(
        "<Dialogs><PostInstall><Text>x</Text><Trigger Type='VarChange'/></PostInstall></Dialogs>"
        "<PostInstall Condition='0'><RunProgram>x</RunProgram></PostInstall>");
    EXPECT_EQ(changes_.runAdditionalActions(&ui_, "PostInstall"), 0);
    EXPECT_EQ(changes_.runAdditionalActions(&ui_, "Missing"), 0);
    EXPECT_TRUE(log_.lines().empty());
}

TEST_F(SystemChangesTest, refusesAContainerWithoutAName) {
    EXPECT_EQ(changes_.runAdditionalActions(&ui_, nullptr), -1);
}

}  // namespace

#include "engine/changes/settings_looks.h"

#include "engine/changes/former_state.h"
#include "engine/changes/registry_change.h"
#include "look_fixture.h"
#include "platform/system_environment.h"
#include "platform/written_path.h"

namespace {

using platform::FirewallProtocol;
using platform::RegistryRoot;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto kMachine = RegistryRoot::kLocalMachine;

class SettingsLooksTest : public LookTest {
protected:
    void setVariable(const std::string& text) {
        machine_.registry.addText(kMachine, platform::kSystemEnvironmentKey, "LIST", text);
    }
    void removeVariable() {
        machine_.registry.deleteValue(kMachine, platform::kSystemEnvironmentKey,
                                      platform::RegistryView::kNative, "LIST");
    }
    PlaceState variableState(const std::string& fields, const std::string& former = "") {
        return stateOf(makeEnvironmentLooker, fields, former);
    }
};

TEST_F(SettingsLooksTest, ACreatedVariableIsThereOrNot) {
    EXPECT_EQ(variableState("CREATE\tLIST"), PlaceState::kAbsent);
    setVariable("anything");
    EXPECT_EQ(variableState("CREATE\tList"), PlaceState::kAsMade);
}

TEST_F(SettingsLooksTest, AReplacedVariableIsKnownByItsEarlierValue) {
    setVariable("new");
    EXPECT_EQ(variableState("REPLACE\tLIST\told"), PlaceState::kAsMade);
    setVariable("old");
    EXPECT_EQ(variableState("REPLACE\tLIST\told"), PlaceState::kFormer);
    removeVariable();
    EXPECT_EQ(variableState("REPLACE\tLIST\told"), PlaceState::kAbsent);
}

TEST_F(SettingsLooksTest, AddedEntriesAreLookedForAsWholeOnes) {
    setVariable("C:\\one;C:\\two");
    EXPECT_EQ(variableState("ADD\tLIST\tC:\\two"), PlaceState::kAsMade);
    EXPECT_EQ(variableState("ADD\tLIST\tC:\\one;"), PlaceState::kAsMade);
    EXPECT_EQ(variableState("ADD\tLIST\tC:\\tw"), PlaceState::kAbsent);
    EXPECT_EQ(lookAt(makeEnvironmentLooker, "ADD\tLIST\tC:\\two").name, "LIST: C:\\two");
}

TEST_F(SettingsLooksTest, AnEntryThatWasAddedTwiceCountsTwice) {
    setVariable("a;b;b");
    const std::vector<Line> log = {{"ADD\tLIST\tb", ""}, {"ADD\tLIST\tb", ""}, {"ADD\tLIST\tb", ""}};
    const std::vector<PlaceState> expected = {PlaceState::kAsMade, PlaceState::kAsMade, PlaceState::kAbsent};
    EXPECT_EQ(statesOf(makeEnvironmentLooker, log), expected);
    EXPECT_EQ(statesOf(makeEnvironmentLooker, log), expected) << "a second walk";
}

TEST_F(SettingsLooksTest, CountsEqualEntriesOfTheUser) {
    setVariable("a;b;a");
    const RecordLook look = lookAt(makeEnvironmentLooker, "ADD\tLIST\ta");
    EXPECT_EQ(look.rule, UndoRule::kTakesOne);
    EXPECT_EQ(look.content, "2");
}

TEST_F(SettingsLooksTest, AnEarlierValueIsComparedWithoutTheProductsEntries) {
    setVariable("a;");
    EXPECT_THAT(statesOf(makeEnvironmentLooker, {{"ADD\tLIST\tb", ""}, {"REPLACE\tLIST\ta;b", ""}}),
                ElementsAre(PlaceState::kAbsent, PlaceState::kFormer));
}

TEST_F(SettingsLooksTest, TheFirstValueOfAVariableDecidesForLaterOnes) {
    setVariable("first");
    EXPECT_THAT(
        statesOf(makeEnvironmentLooker, {{"REPLACE\tLIST\tfirst", ""}, {"REPLACE\tLIST\tsecond", ""}}),
        ElementsAre(PlaceState::kFormer, PlaceState::kFormer));
}

TEST_F(SettingsLooksTest, AListAsItWasBeforeIsNotTheProducts) {
    setVariable("a;b");
    EXPECT_EQ(variableState("ADD\tLIST\tb", FormerState::ofBytes("a;b")), PlaceState::kOthers);
}

TEST_F(SettingsLooksTest, AVariableThatCanNotBeReadIsNotJudged) {
    setVariable("a");
    machine_.registry.setForbidden(platform::kSystemEnvironmentKey);
    const RecordLook look = lookAt(makeEnvironmentLooker, "CREATE\tLIST");
    EXPECT_EQ(look.state, PlaceState::kUnreadable);
    EXPECT_NE(look.note, "");
}

TEST_F(SettingsLooksTest, AnEnvironmentRecordOfNoVariableMadeNothing) {
    for (const char* fields : {"", "NONE", "CREATE", "ADD", "X\tLIST"}) {
        looker_.reset();
        EXPECT_THAT(lookAtAll(makeEnvironmentLooker, {{fields, ""}}), IsEmpty()) << fields;
    }
}

TEST_F(SettingsLooksTest, LooksAtEachLevelOfAKeyTheDeepestFirst) {
    machine_.registry.addKey(kMachine, "Software\\Demo");
    const std::vector<RecordLook> looks =
        lookAtAll(makeRegistryKeyLooker, {{"2\tHKEY_LOCAL_MACHINE\tSoftware/Demo\\Sub", ""}});
    EXPECT_THAT(namesOf(looks),
                ElementsAre("HKEY_LOCAL_MACHINE\\Software\\Demo\\Sub", "HKEY_LOCAL_MACHINE\\Software\\Demo"));
    ASSERT_EQ(looks.size(), 2U);
    EXPECT_EQ(looks[0].state, PlaceState::kAbsent);
    EXPECT_EQ(looks[1].state, PlaceState::kAsMade);
    EXPECT_EQ(looks[1].rule, UndoRule::kRemovesIfUnused);
    EXPECT_THAT(looks[1].holds, IsEmpty());
}

TEST_F(SettingsLooksTest, AKeyHoldsItsSubkeysByTheNamesOfTheirOwnLooks) {
    machine_.registry.addKey(kMachine, "Software\\Demo\\SUB");
    const std::vector<RecordLook> looks =
        lookAtAll(makeRegistryKeyLooker, {{"2\tHKEY_LOCAL_MACHINE\tSoftware\\Demo\\Sub", ""}});
    ASSERT_EQ(looks.size(), 2U);
    EXPECT_THAT(looks[1].holds, ElementsAre(looks[0].identity));
}

TEST_F(SettingsLooksTest, AKeyThatCanNotBeReadIsNotJudged) {
    machine_.registry.addKey(kMachine, "Software\\Demo");
    machine_.registry.setForbidden("Software\\Demo");
    EXPECT_EQ(stateOf(makeRegistryKeyLooker, "1\tHKEY_LOCAL_MACHINE\tSoftware\\Demo"),
              PlaceState::kUnreadable);
}

TEST_F(SettingsLooksTest, ADamagedKeyRecordMadeNothing) {
    for (const char* fields : {"", "1\tHKEY_NOWHERE\tSoftware", "1\tHKEY_LOCAL_MACHINE",
                               "0\tHKEY_LOCAL_MACHINE\tx", "-1\tHKEY_LOCAL_MACHINE\tx"}) {
        looker_.reset();
        EXPECT_THAT(lookAtAll(makeRegistryKeyLooker, {{fields, ""}}), IsEmpty()) << fields;
    }
}

TEST_F(SettingsLooksTest, AValueIsThereOrNotOrAsItWasBefore) {
    const std::string fields = "HKEY_LOCAL_MACHINE\tSoftware\\Demo\tName";
    EXPECT_EQ(stateOf(makeRegistryValueLooker, fields), PlaceState::kAbsent);
    machine_.registry.addText(kMachine, "Software\\Demo", "Name", "text");
    EXPECT_EQ(stateOf(makeRegistryValueLooker, fields), PlaceState::kAsMade);
    const std::string former = RegistryChange::formerStateOf({platform::kRegString, "text"});
    EXPECT_EQ(stateOf(makeRegistryValueLooker, fields, former), PlaceState::kOthers);
    machine_.registry.setForbidden("Software\\Demo");
    EXPECT_EQ(stateOf(makeRegistryValueLooker, fields), PlaceState::kUnreadable);
}

TEST_F(SettingsLooksTest, TheDefaultValueOfAKeyHasNoName) {
    machine_.registry.addText(kMachine, "Software\\Demo", "", "text");
    const RecordLook look = lookAt(makeRegistryValueLooker, "HKEY_LOCAL_MACHINE\tSoftware\\Demo\t\tDEFAULT");
    EXPECT_EQ(look.state, PlaceState::kAsMade);
    EXPECT_EQ(look.name, "HKEY_LOCAL_MACHINE\\Software\\Demo: (default)");
}

TEST_F(SettingsLooksTest, ADamagedValueRecordMadeNothing) {
    for (const char* fields :
         {"", "HKEY_LOCAL_MACHINE\tSoftware", "HKEY_NOWHERE\ta\tb", "HKEY_LOCAL_MACHINE\ta\tb\tc\td"}) {
        looker_.reset();
        EXPECT_THAT(lookAtAll(makeRegistryValueLooker, {{fields, ""}}), IsEmpty()) << fields;
    }
}

TEST_F(SettingsLooksTest, LooksAtEachProtocolOfAPort) {
    machine_.firewall.ports[{80, FirewallProtocol::kTcp}] = "Web TCP";
    const std::vector<RecordLook> looks = lookAtAll(makeFirewallLooker, {{"PORT\t80\tTCP;UDP\tWeb", ""}});
    EXPECT_THAT(namesOf(looks), ElementsAre("port 80 TCP", "port 80 UDP"));
    ASSERT_EQ(looks.size(), 2U);
    EXPECT_EQ(looks[0].state, PlaceState::kAsMade);
    EXPECT_EQ(looks[1].state, PlaceState::kAbsent);
}

TEST_F(SettingsLooksTest, LooksAtAProgramsException) {
    EXPECT_EQ(stateOf(makeFirewallLooker, "APP\tC:\\app.exe"), PlaceState::kAbsent);
    machine_.firewall.applications["C:\\app.exe"] = "App";
    EXPECT_EQ(stateOf(makeFirewallLooker, "APP\tC:\\app.exe"), PlaceState::kAsMade);
}

TEST_F(SettingsLooksTest, WithoutAFirewallNothingIsJudged) {
    machine_.firewall.failing = {{platform::FirewallCall::kNoService, -7}};
    const RecordLook look = lookAt(makeFirewallLooker, "APP\tC:\\app.exe");
    EXPECT_EQ(look.state, PlaceState::kUnreadable);
    EXPECT_NE(look.note, "");
}

TEST_F(SettingsLooksTest, ADamagedFirewallRecordMadeNothing) {
    for (const char* fields :
         {"", "APP", "PORT", "PORT\t0\tTCP\tn", "PORT\t80\tSCTP\tn", "PORT\tx\tTCP\tn"}) {
        looker_.reset();
        EXPECT_THAT(lookAtAll(makeFirewallLooker, {{fields, ""}}), IsEmpty()) << fields;
    }
}

TEST_F(SettingsLooksTest, NothingOnTheMachineIsChanged) {
    setVariable("a");
    machine_.registry.addText(kMachine, "Software\\Demo", "Name", "text");
    machine_.registry.operations.clear();
    variableState("ADD\tLIST\ta");
    stateOf(makeRegistryKeyLooker, "1\tHKEY_LOCAL_MACHINE\tSoftware\\Demo");
    stateOf(makeRegistryValueLooker, "HKEY_LOCAL_MACHINE\tSoftware\\Demo\tName");
    stateOf(makeFirewallLooker, "APP\tC:\\app.exe");
    EXPECT_THAT(machine_.registry.operations, IsEmpty());
    EXPECT_THAT(machine_.firewall.operations,
                ElementsAre("connect", "isApplicationEnabled C:\\app.exe", "close"));
}

}  // namespace

#include "description/variable_store.h"

#include <gtest/gtest.h>

#include "store_fixture.h"

namespace {

class VariableStoreTest : public StoreFixture {};
using VariableStoreLookup = VariableStoreTest;
using VariableStoreEnvironment = VariableStoreTest;
using VariableStoreReset = VariableStoreTest;
using VariableStoreRecalculation = VariableStoreTest;
using VariableStoreAssignment = VariableStoreTest;

TEST_F(VariableStoreLookup, NullAndEmptyNamesAreUnknown) {
    char buffer[8] = "#";
    EXPECT_EQ(store_.getVariable(nullptr, buffer, 8), -1);
    EXPECT_EQ(store_.getVariable("", buffer, 8), -1);
    EXPECT_EQ(store_.getVariable("NO", buffer, 8), -1);
    EXPECT_STREQ(buffer, "#");
    EXPECT_EQ(store_.storeVariable(nullptr, "x", nullptr, false, nullptr), -1);
    EXPECT_EQ(store_.setVariable("", "x"), -1);
    EXPECT_EQ(store_.findStored(nullptr), -1);
    EXPECT_EQ(store_.getCount(), 0);
}

TEST_F(VariableStoreLookup, IndexIsTheOrderOfCreation) {
    store_.setVariable("A", "1");
    store_.setVariable("B", "2");
    store_.setVariable("A", "3");
    EXPECT_EQ(store_.getVariable("A", nullptr, 0), 0);
    EXPECT_EQ(store_.getVariable("B", nullptr, 0), 1);
    EXPECT_EQ(store_.getCount(), 2);
    EXPECT_EQ(store_.at(0).value, "3");
}

TEST_F(VariableStoreLookup, SpellingsAreOneVariableNamedAfterTheLastStore) {
    store_.setVariable("INSTALL_DIR", "x");
    EXPECT_EQ(valueOf("install_dir"), "x");
    store_.setVariable("Install_Dir", "y");
    EXPECT_EQ(store_.getCount(), 1);
    EXPECT_EQ(store_.at(0).name, "Install_Dir");
    EXPECT_EQ(valueOf("INSTALL_DIR"), "y");
    store_.setVariable("\xC3\x84", "umlaut");
    EXPECT_EQ(valueOf("\xC3\xA4"), "(none)") << "only ASCII letters have two cases";
}

TEST_F(VariableStoreLookup, ValueIsCutToTheBufferAndTerminated) {
    store_.setVariable("A", "abcdef");
    char buffer[5] = "####";
    EXPECT_EQ(store_.getVariable("A", buffer, 4), 0);
    EXPECT_STREQ(buffer, "abc");
    EXPECT_EQ(buffer[4], '\0');
    EXPECT_EQ(store_.getVariable("A", buffer, 0), 0);
    EXPECT_STREQ(buffer, "abc");
}

TEST_F(VariableStoreLookup, PredefinedVariablesGoFirstAndStay) {
    EXPECT_EQ(store_.setVariable("GUI_INSTALL", "7"), -1);
    EXPECT_EQ(store_.setDefaultValue("gui_install", "7"), -1);
    EXPECT_EQ(store_.getVariable("gui_install", nullptr, 0), -2);
    EXPECT_EQ(valueOf("GUI_INSTALL"), "0");
    EXPECT_EQ(defaultOf("GUI_INSTALL"), "0");
    EXPECT_EQ(store_.getCount(), 0);
}

TEST_F(VariableStoreLookup, DefaultValueHasItsOwnGetter) {
    store_.setDefaultValue("A", "d");
    store_.setVariable("A", "v");
    EXPECT_EQ(valueOf("A"), "v");
    EXPECT_EQ(defaultOf("A"), "d");
    char buffer[8];
    EXPECT_EQ(store_.getDefaultValue(nullptr, buffer, 8), -1);
    EXPECT_EQ(store_.getDefaultValue("A", nullptr, 8), -1);
    EXPECT_EQ(store_.getDefaultValue("B", buffer, 8), -1);
}

TEST_F(VariableStoreTest, NewRecordTakesItsDefaultForAMissingValue) {
    EXPECT_EQ(store_.storeVariable("A", nullptr, nullptr, true, "d"), 0);
    EXPECT_EQ(record("A").value, "d");
    EXPECT_EQ(record("A").defaultValue, "d");
    EXPECT_EQ(record("A").expression, "");
    EXPECT_TRUE(record("A").recalculate);
    store_.storeVariable("B", nullptr, nullptr, false, nullptr);
    EXPECT_EQ(record("B").value, "");
    store_.storeVariable("C", "", "e", false, "d");
    EXPECT_EQ(record("C").value, "");
    EXPECT_EQ(record("C").expression, "e");
}

TEST_F(VariableStoreTest, StoreChangesOnlyWhatIsGivenButAlwaysTheFlag) {
    store_.storeVariable("A", "v", "e", true, "d");
    store_.setVariable("A", "w");
    EXPECT_EQ(record("A").value, "w");
    EXPECT_EQ(record("A").expression, "e");
    EXPECT_EQ(record("A").defaultValue, "d");
    EXPECT_FALSE(record("A").recalculate);
    store_.setDefaultValue("A", "x");
    EXPECT_EQ(record("A").value, "w");
    EXPECT_EQ(record("A").defaultValue, "x");
}

TEST_F(VariableStoreTest, RunsOfSeparatorsShrinkToTheirLast) {
    store_.storeVariable("A", "http://x//y\\/z", "a\\\\b", false, "\\\\server\\share");
    EXPECT_EQ(record("A").value, "http:/x/y/z");
    EXPECT_EQ(record("A").expression, "a\\b");
    EXPECT_EQ(record("A").defaultValue, "\\server\\share");
    store_.setVariable("A", "https://h");
    EXPECT_EQ(valueOf("A"), "https:/h");
}

TEST_F(VariableStoreTest, TextsAreCutAtTheirCapacities) {
    const std::string longText(2000, 'x');
    const std::string longName(1100, 'n');
    store_.storeVariable(longName.c_str(), longText.c_str(), longText.c_str(), false, longText.c_str());
    EXPECT_EQ(store_.at(0).name, std::string(1023, 'n'));
    EXPECT_EQ(store_.at(0).value, std::string(1559, 'x'));
    EXPECT_EQ(store_.at(0).expression, std::string(1559, 'x'));
    EXPECT_EQ(store_.at(0).defaultValue, std::string(1559, 'x'));
    EXPECT_EQ(store_.getVariable(std::string(1023, 'n').c_str(), nullptr, 0), 0);
    store_.setVariable(longName.c_str(), "y");
    EXPECT_EQ(store_.getCount(), 1);
}

TEST_F(VariableStoreTest, TextsMayComeFromTheRecordItself) {
    store_.storeVariable("A", "value", "expression", false, "default");
    const InstallVariable& a = record("A");
    store_.storeVariable(a.name.c_str(), a.defaultValue.c_str(), a.value.c_str(), false,
                         a.expression.c_str());
    EXPECT_EQ(record("A").value, "default");
    EXPECT_EQ(record("A").expression, "value");
    EXPECT_EQ(record("A").defaultValue, "expression");
}

TEST_F(VariableStoreEnvironment, DollarNamesReadTheEnvironment) {
    environment_.variables["HOME"] = "//root";
    EXPECT_EQ(store_.getVariable("$HOME", nullptr, 0), -2);
    EXPECT_EQ(valueOf("$HOME"), "//root") << "only stored texts are collapsed";
    EXPECT_EQ(defaultOf("$HOME"), "//root");
    EXPECT_TRUE(log_.lines.empty());
}

TEST_F(VariableStoreEnvironment, UndefinedOneEmptiesTheBufferAndIsLogged) {
    char buffer[8] = "#";
    EXPECT_EQ(store_.getVariable("$NO", buffer, 8), -1);
    EXPECT_STREQ(buffer, "");
    EXPECT_EQ(log_.lines, (std::vector<std::string>{"WARNING: Environment variable \"NO\" is not defined!"}));
}

TEST_F(VariableStoreEnvironment, ValueThatIsCutIsLogged) {
    environment_.variables["A"] = "abcdef";
    char buffer[4];
    EXPECT_EQ(store_.getVariable("$A", buffer, 4), -2);
    EXPECT_STREQ(buffer, "abc");
    EXPECT_EQ(log_.lines.size(), 1U);
}

TEST_F(VariableStoreEnvironment, StoreSetsItAndMakesNoRecord) {
    EXPECT_EQ(store_.setVariable("$FOO", "a//b"), -1);
    EXPECT_EQ(environment_.variables["FOO"], "a//b");
    EXPECT_EQ(store_.setDefaultValue("$FOO", "d"), -1);
    EXPECT_EQ(environment_.variables["FOO"], "d");
    EXPECT_EQ(store_.storeVariable("$FOO", nullptr, nullptr, false, nullptr), -1);
    EXPECT_EQ(environment_.variables["FOO"], "");
    EXPECT_EQ(store_.getCount(), 0);
}

TEST_F(VariableStoreEnvironment, ValueThatDoesNotFitIsNotSetCut) {
    const std::string fitting(2047 - 4, 'x');
    store_.setVariable("$FOO", fitting.c_str());
    EXPECT_EQ(environment_.variables["FOO"], fitting);
    store_.setVariable("$FOO", (fitting + "y").c_str());
    EXPECT_EQ(environment_.variables["FOO"], fitting);
    EXPECT_EQ(log_.lines.size(), 1U);
    environment_.refusesToSet = true;
    store_.setVariable("$FOO", "z");
    EXPECT_EQ(log_.lines.size(), 2U);
}

TEST_F(VariableStoreReset, UnknownNamesFail) {
    EXPECT_EQ(store_.resetVariable("NO", 1), -1);
    EXPECT_EQ(store_.resetVariable(nullptr, 1), -1);
    EXPECT_EQ(store_.resetVariable("GUI_INSTALL", 2), -1);
    EXPECT_EQ(store_.resetVariable("$PATH", 2), -1);
}

TEST_F(VariableStoreReset, ModeTwoTakesTheDefaultAndLeavesTheFlag) {
    store_.storeVariable("A", "v", "e", true, "d");
    EXPECT_EQ(store_.resetVariable("a", 2), 0);
    EXPECT_EQ(record("A").value, "d");
    EXPECT_TRUE(record("A").recalculate);
}

TEST_F(VariableStoreReset, OtherModesDeriveTheValueAndSetTheFlag) {
    store_.setVariable("B", "1");
    store_.storeVariable("A", "v", "x$B", false, "d");
    EXPECT_EQ(store_.resetVariable("A", 1), 0);
    EXPECT_EQ(record("A").value, "x1");
    EXPECT_TRUE(record("A").recalculate);
    store_.setVariable("B", "2");
    EXPECT_EQ(record("A").value, "x2") << "it follows its expression again";
    EXPECT_EQ(store_.resetVariable("A", 0), 0);
    EXPECT_FALSE(record("A").recalculate);
}

TEST_F(VariableStoreReset, PartInFrontOfAFaultStands) {
    store_.storeVariable("A", "v", "x$NO y", false, "d");
    EXPECT_EQ(store_.resetVariable("A", 0), 0);
    EXPECT_EQ(record("A").value, "x");
}

TEST_F(VariableStoreAssignment, NameAndValueAreTakenFromTheText) {
    EXPECT_EQ(store_.applyAssignment("[A]='1'"), 0);
    EXPECT_EQ(valueOf("A"), "1");
    EXPECT_EQ(store_.applyAssignment(" set [A b] to 'x y' and 'z'"), 0);
    EXPECT_EQ(valueOf("A b"), "x y");
    EXPECT_EQ(store_.applyAssignment("[A]=''"), 0);
    EXPECT_EQ(valueOf("A"), "");
}

TEST_F(VariableStoreAssignment, MissingPartsFail) {
    for (const char* text : {"", "A='1'", "[A='1'", "[A]=1", "[A]='1", "[]='1'", "]A['1'"}) {
        EXPECT_EQ(store_.applyAssignment(text), -1) << text;
    }
    EXPECT_EQ(store_.applyAssignment(nullptr), -1);
    EXPECT_EQ(store_.getCount(), 0);
}

TEST_F(VariableStoreAssignment, ValueIsCutAtItsLimit) {
    store_.applyAssignment(("[A]='" + std::string(1100, 'v') + "'").c_str());
    EXPECT_EQ(valueOf("A"), std::string(1024, 'v'));
}

TEST_F(VariableStoreRecalculation, ChangeOfARecordDerivesTheOthers) {
    store_.setVariable("BASE", "a");
    store_.storeVariable("DIR", "", "$BASE/dir", true, nullptr);
    EXPECT_EQ(valueOf("DIR"), "");
    store_.setVariable("BASE", "b");
    EXPECT_EQ(valueOf("DIR"), "b/dir");
    store_.setVariable("NEW", "1");
    EXPECT_EQ(valueOf("DIR"), "b/dir");
}

TEST_F(VariableStoreRecalculation, NewRecordDoesNotTriggerIt) {
    store_.storeVariable("DIR", "old", "$BASE/dir", true, nullptr);
    store_.setVariable("BASE", "a");
    EXPECT_EQ(valueOf("DIR"), "old");
    store_.setVariable("BASE", "a");
    EXPECT_EQ(valueOf("DIR"), "a/dir");
}

TEST_F(VariableStoreRecalculation, ChangedRecordItselfIsLeftOut) {
    store_.setVariable("BASE", "a");
    store_.storeVariable("DIR", "", "$BASE/dir", true, nullptr);
    store_.storeVariable("DIR", "mine", nullptr, true, nullptr);
    EXPECT_EQ(valueOf("DIR"), "mine");
    store_.recalculateVariables(-1);
    EXPECT_EQ(valueOf("DIR"), "a/dir");
}

TEST_F(VariableStoreRecalculation, NothingHappensWhileDefaultsAreInitialised) {
    store_.setVariable("BASE", "a");
    store_.storeVariable("DIR", "old", "$BASE/dir", true, nullptr);
    store_.setInitializingDefaults(true);
    EXPECT_TRUE(store_.isInitializingDefaults());
    store_.setVariable("BASE", "b");
    EXPECT_EQ(valueOf("DIR"), "old");
    store_.setInitializingDefaults(false);
    store_.setVariable("BASE", "c");
    EXPECT_EQ(valueOf("DIR"), "c/dir");
}

TEST_F(VariableStoreRecalculation, ReferencesGoFirst) {
    store_.setVariable("X", "0");
    store_.storeVariable("B", "", "$A-b", true, nullptr);
    store_.storeVariable("A", "", "$X", true, nullptr);
    store_.storeVariable("C", "", "$A-c", true, nullptr);
    store_.setVariable("X", "1");
    EXPECT_EQ(valueOf("A"), "1");
    EXPECT_EQ(valueOf("B"), "1-b");
    EXPECT_EQ(valueOf("C"), "1-c");
}

TEST_F(VariableStoreRecalculation, LimitAndFaultsLeaveThePartInFront) {
    store_.setVariable("X", std::string(1000, 'x').c_str());
    store_.storeVariable("A", "", "ab$X-$NO", true, nullptr);
    store_.storeVariable("B", "", "$X-$X", true, nullptr);
    store_.setVariable("X", std::string(1000, 'y').c_str());
    EXPECT_EQ(valueOf("A"), "ab" + std::string(1000, 'y') + "-");
    EXPECT_EQ(valueOf("B"), std::string(1000, 'y') + "-");
}

TEST_F(VariableStoreRecalculation, DerivedValuesAreNotCollapsed) {
    store_.setVariable("X", "a/");
    store_.storeVariable("A", "", "$X", true, nullptr);
    store_.setVariable("X", "b/");
    store_.storeVariable("C", "", "$X/c", true, nullptr);
    store_.recalculateVariables(-1);
    EXPECT_EQ(valueOf("C"), "b//c");
}

TEST_F(VariableStoreTest, TenThousandVariablesAreStoredAndFound) {
    for (int round = 0; round < 3; ++round) {
        for (int i = 0; i < 10000; ++i) {
            store_.setVariable(("Variable_" + std::to_string(i)).c_str(), std::to_string(round).c_str());
        }
    }
    EXPECT_EQ(store_.getCount(), 10000);
    EXPECT_EQ(valueOf("VARIABLE_9999"), "2");
}

TEST_F(VariableStoreTest, NothingIsLoggedWithoutALog) {
    debugLog_ = DebugLog();
    EXPECT_EQ(valueOf("$NO"), "(none)");
    store_.setVariable("$LONG", std::string(3000, 'x').c_str());
    EXPECT_TRUE(log_.lines.empty());
}

}  // namespace

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

TEST_F(VariableStoreLookup, KnowsNoEmptyName) {
    EXPECT_EQ(store_.get(""), std::nullopt);
    EXPECT_EQ(store_.get("NO"), std::nullopt);
    EXPECT_FALSE(store_.set("", "x"));
    EXPECT_EQ(store_.find(""), std::nullopt);
    EXPECT_EQ(store_.getCount(), 0);
}

TEST_F(VariableStoreLookup, NumbersVariablesInTheOrderOfCreation) {
    store_.set("A", "1");
    store_.set("B", "2");
    store_.set("A", "3");
    EXPECT_EQ(store_.read("A", 0)->index, 0);
    EXPECT_EQ(store_.read("B", 0)->index, 1);
    EXPECT_EQ(store_.getCount(), 2);
    EXPECT_EQ(store_.at(0).value, "3");
}

TEST_F(VariableStoreLookup, TreatsSpellingsAsOneVariableNamedAfterTheLastStore) {
    store_.set("INSTALL_DIR", "x");
    EXPECT_EQ(valueOf("install_dir"), "x");
    store_.set("Install_Dir", "y");
    EXPECT_EQ(store_.getCount(), 1);
    EXPECT_EQ(store_.at(0).name, "Install_Dir");
    EXPECT_EQ(valueOf("INSTALL_DIR"), "y");
    store_.set("\xC3\x84", "umlaut");
    EXPECT_EQ(valueOf("\xC3\xA4"), "(none)") << "only ASCII letters have two cases";
}

TEST_F(VariableStoreLookup, CutsTheValueAtTheLimit) {
    store_.set("A", "abcdef");
    EXPECT_EQ(store_.read("A", 3)->value, "abc");
    EXPECT_EQ(store_.read("A", 0)->value, "");
}

TEST_F(VariableStoreLookup, PrefersPredefinedVariablesAndKeepsThem) {
    EXPECT_FALSE(store_.set("GUI_INSTALL", "7"));
    EXPECT_FALSE(store_.setDefault("gui_install", "7"));
    EXPECT_FALSE(store_.read("gui_install", 9)->isStored());
    EXPECT_EQ(valueOf("GUI_INSTALL"), "0");
    EXPECT_EQ(defaultOf("GUI_INSTALL"), "0");
    EXPECT_EQ(store_.getCount(), 0);
}

TEST_F(VariableStoreLookup, ReadsTheDefaultValueSeparately) {
    store_.setDefault("A", "d");
    store_.set("A", "v");
    EXPECT_EQ(valueOf("A"), "v");
    EXPECT_EQ(defaultOf("A"), "d");
    EXPECT_FALSE(store_.readDefault("", 8));
    EXPECT_FALSE(store_.readDefault("B", 8));
}

TEST_F(VariableStoreTest, GivesANewRecordItsDefaultForAMissingValue) {
    EXPECT_TRUE(store_.store("A", {std::nullopt, std::nullopt, "d"}, true));
    EXPECT_EQ(record("A").value, "d");
    EXPECT_EQ(record("A").defaultValue, "d");
    EXPECT_EQ(record("A").expression, "");
    EXPECT_TRUE(record("A").recalculate);
    store_.store("B", {std::nullopt, std::nullopt, std::nullopt}, false);
    EXPECT_EQ(record("B").value, "");
    store_.store("C", {"", "e", "d"}, false);
    EXPECT_EQ(record("C").value, "");
    EXPECT_EQ(record("C").expression, "e");
}

TEST_F(VariableStoreTest, ChangesOnlyWhatIsGivenButAlwaysTheFlag) {
    store_.store("A", {"v", "e", "d"}, true);
    store_.set("A", "w");
    EXPECT_EQ(record("A").value, "w");
    EXPECT_EQ(record("A").expression, "e");
    EXPECT_EQ(record("A").defaultValue, "d");
    EXPECT_FALSE(record("A").recalculate);
    store_.setDefault("A", "x");
    EXPECT_EQ(record("A").value, "w");
    EXPECT_EQ(record("A").defaultValue, "x");
}

TEST_F(VariableStoreTest, ShrinksRunsOfSeparatorsToTheLastOne) {
    store_.store("A", {"http://x//y\\/z", "a\\\\b", "\\\\server\\share"}, false);
    EXPECT_EQ(record("A").value, "http:/x/y/z");
    EXPECT_EQ(record("A").expression, "a\\b");
    EXPECT_EQ(record("A").defaultValue, "\\server\\share");
    store_.set("A", "https://h");
    EXPECT_EQ(valueOf("A"), "https:/h");
}

TEST_F(VariableStoreTest, CutsTextsAtTheirLimits) {
    const std::string longText(2000, 'x');
    const std::string longName(1100, 'n');
    store_.store(longName, {longText, longText, longText}, false);
    EXPECT_EQ(store_.at(0).name, std::string(1023, 'n'));
    EXPECT_EQ(store_.at(0).value, std::string(1559, 'x'));
    EXPECT_EQ(store_.at(0).expression, std::string(1559, 'x'));
    EXPECT_EQ(store_.at(0).defaultValue, std::string(1559, 'x'));
    EXPECT_EQ(store_.find(std::string(1023, 'n')), 0);
    store_.set(longName, "y");
    EXPECT_EQ(store_.getCount(), 1);
}

TEST_F(VariableStoreTest, AcceptsTextsOfTheRecordItself) {
    store_.store("A", {"value", "expression", "default"}, false);
    const InstallVariable& a = record("A");
    store_.store(a.name, {a.defaultValue, a.value, a.expression}, false);
    EXPECT_EQ(record("A").value, "default");
    EXPECT_EQ(record("A").expression, "value");
    EXPECT_EQ(record("A").defaultValue, "expression");
}

TEST_F(VariableStoreEnvironment, ReadsTheEnvironmentForDollarNames) {
    environment_.variables["HOME"] = "//root";
    EXPECT_FALSE(store_.read("$HOME", 9)->isStored());
    EXPECT_EQ(valueOf("$HOME"), "//root") << "only stored texts are collapsed";
    EXPECT_EQ(defaultOf("$HOME"), "//root");
    EXPECT_TRUE(log_.lines.empty());
}

TEST_F(VariableStoreEnvironment, LogsAnUndefinedVariable) {
    EXPECT_EQ(store_.get("$NO"), std::nullopt);
    EXPECT_EQ(log_.lines, (std::vector<std::string>{"WARNING: Environment variable \"NO\" is not defined!"}));
}

TEST_F(VariableStoreEnvironment, LogsAValueThatIsCut) {
    environment_.variables["A"] = "abcdef";
    EXPECT_EQ(store_.read("$A", 3)->value, "abc");
    EXPECT_EQ(log_.lines,
              (std::vector<std::string>{"WARNING: Environment variable \"A\" is cut to 3 bytes!"}));
}

TEST_F(VariableStoreEnvironment, SetsTheEnvironmentAndMakesNoRecord) {
    EXPECT_FALSE(store_.set("$FOO", "a//b"));
    EXPECT_EQ(environment_.variables["FOO"], "a//b");
    EXPECT_FALSE(store_.setDefault("$FOO", "d"));
    EXPECT_EQ(environment_.variables["FOO"], "d");
    EXPECT_FALSE(store_.store("$FOO", {std::nullopt, std::nullopt, std::nullopt}, false));
    EXPECT_EQ(environment_.variables["FOO"], "");
    EXPECT_EQ(store_.getCount(), 0);
}

TEST_F(VariableStoreEnvironment, DoesNotSetAValueThatDoesNotFit) {
    const std::string fitting(2047 - 4, 'x');
    store_.set("$FOO", fitting);
    EXPECT_EQ(environment_.variables["FOO"], fitting);
    store_.set("$FOO", (fitting + "y"));
    EXPECT_EQ(environment_.variables["FOO"], fitting);
    EXPECT_EQ(log_.lines.size(), 1U);
    environment_.refused.insert("FOO");
    store_.set("$FOO", "z");
    EXPECT_EQ(log_.lines.size(), 2U);
}

TEST_F(VariableStoreReset, FailsForUnknownNames) {
    EXPECT_FALSE(store_.reset("NO", kResetToExpressionAndFollow));
    EXPECT_FALSE(store_.reset("GUI_INSTALL", kResetToDefault));
    EXPECT_FALSE(store_.reset("$PATH", kResetToDefault));
}

TEST_F(VariableStoreReset, TakesTheDefaultAndLeavesTheFlag) {
    store_.store("A", {"v", "e", "d"}, true);
    EXPECT_TRUE(store_.reset("a", kResetToDefault));
    EXPECT_EQ(record("A").value, "d");
    EXPECT_TRUE(record("A").recalculate);
}

TEST_F(VariableStoreReset, DerivesTheValueAndSetsTheFlag) {
    store_.set("B", "1");
    store_.store("A", {"v", "x$B", "d"}, false);
    EXPECT_TRUE(store_.reset("A", kResetToExpressionAndFollow));
    EXPECT_EQ(record("A").value, "x1");
    EXPECT_TRUE(record("A").recalculate);
    store_.set("B", "2");
    EXPECT_EQ(record("A").value, "x2") << "it follows its expression again";
    EXPECT_TRUE(store_.reset("A", kResetToExpression));
    EXPECT_FALSE(record("A").recalculate);
}

TEST_F(VariableStoreReset, ReadsTheOldValueInAnExpressionThatRefersToItself) {
    store_.store("A", {"v", "x$A", std::nullopt}, false);
    EXPECT_TRUE(store_.reset("A", kResetToExpression));
    EXPECT_EQ(record("A").value, "xv");
}

TEST_F(VariableStoreReset, KeepsThePartBeforeAFault) {
    store_.store("A", {"v", "x$NO y", "d"}, false);
    EXPECT_TRUE(store_.reset("A", kResetToExpression));
    EXPECT_EQ(record("A").value, "x");
}

TEST_F(VariableStoreAssignment, TakesNameAndValueFromTheText) {
    EXPECT_TRUE(store_.assign("[A]='1'"));
    EXPECT_EQ(valueOf("A"), "1");
    EXPECT_TRUE(store_.assign(" set [A b] to 'x y' and 'z'"));
    EXPECT_EQ(valueOf("A b"), "x y");
    EXPECT_TRUE(store_.assign("[A]=''"));
    EXPECT_EQ(valueOf("A"), "");
}

TEST_F(VariableStoreAssignment, FailsWithoutNameOrValue) {
    for (const char* text : {"", "A='1'", "[A='1'", "[A]=1", "[A]='1", "[]='1'", "]A['1'"}) {
        EXPECT_FALSE(store_.assign(text)) << text;
    }
    EXPECT_EQ(store_.getCount(), 0);
}

TEST_F(VariableStoreAssignment, CutsTheValueAtItsLimit) {
    store_.assign(("[A]='" + std::string(1100, 'v') + "'"));
    EXPECT_EQ(valueOf("A"), std::string(1024, 'v'));
}

TEST_F(VariableStoreRecalculation, DerivesTheOthersWhenARecordChanges) {
    store_.set("BASE", "a");
    store_.store("DIR", {"", "$BASE/dir", std::nullopt}, true);
    EXPECT_EQ(valueOf("DIR"), "");
    store_.set("BASE", "b");
    EXPECT_EQ(valueOf("DIR"), "b/dir");
    store_.set("NEW", "1");
    EXPECT_EQ(valueOf("DIR"), "b/dir");
}

TEST_F(VariableStoreRecalculation, DoesNotHappenForANewRecord) {
    store_.store("DIR", {"old", "$BASE/dir", std::nullopt}, true);
    store_.set("BASE", "a");
    EXPECT_EQ(valueOf("DIR"), "old");
    store_.set("BASE", "a");
    EXPECT_EQ(valueOf("DIR"), "a/dir");
}

TEST_F(VariableStoreRecalculation, LeavesOutTheChangedRecord) {
    store_.set("BASE", "a");
    store_.store("DIR", {"", "$BASE/dir", std::nullopt}, true);
    store_.store("DIR", {"mine", std::nullopt, std::nullopt}, true);
    EXPECT_EQ(valueOf("DIR"), "mine");
    store_.recalculateVariables(-1);
    EXPECT_EQ(valueOf("DIR"), "a/dir");
}

TEST_F(VariableStoreRecalculation, DoesNotHappenWhileDefaultsAreInitialised) {
    store_.set("BASE", "a");
    store_.store("DIR", {"old", "$BASE/dir", std::nullopt}, true);
    store_.setInitializingDefaults(true);
    EXPECT_TRUE(store_.isInitializingDefaults());
    store_.set("BASE", "b");
    EXPECT_EQ(valueOf("DIR"), "old");
    store_.setInitializingDefaults(false);
    store_.set("BASE", "c");
    EXPECT_EQ(valueOf("DIR"), "c/dir");
}

TEST_F(VariableStoreRecalculation, DerivesReferencesFirst) {
    store_.set("X", "0");
    store_.store("B", {"", "$A-b", std::nullopt}, true);
    store_.store("A", {"", "$X", std::nullopt}, true);
    store_.store("C", {"", "$A-c", std::nullopt}, true);
    store_.set("X", "1");
    EXPECT_EQ(valueOf("A"), "1");
    EXPECT_EQ(valueOf("B"), "1-b");
    EXPECT_EQ(valueOf("C"), "1-c");
}

TEST_F(VariableStoreRecalculation, KeepsThePartBeforeTheLimitOrAFault) {
    store_.set("X", std::string(1000, 'x'));
    store_.store("A", {"", "ab$X-$NO", std::nullopt}, true);
    store_.store("B", {"", "$X-$X", std::nullopt}, true);
    store_.set("X", std::string(1000, 'y'));
    EXPECT_EQ(valueOf("A"), "ab" + std::string(1000, 'y') + "-");
    EXPECT_EQ(valueOf("B"), std::string(1000, 'y') + "-");
}

TEST_F(VariableStoreRecalculation, DoesNotCollapseDerivedValues) {
    store_.set("X", "a/");
    store_.store("A", {"", "$X", std::nullopt}, true);
    store_.set("X", "b/");
    store_.store("C", {"", "$X/c", std::nullopt}, true);
    store_.recalculateVariables(-1);
    EXPECT_EQ(valueOf("C"), "b//c");
}

TEST_F(VariableStoreTest, StoresAndFindsTenThousandVariables) {
    for (int round = 0; round < 3; ++round) {
        for (int i = 0; i < 10000; ++i) {
            store_.set(("Variable_" + std::to_string(i)), std::to_string(round));
        }
    }
    EXPECT_EQ(store_.getCount(), 10000);
    EXPECT_EQ(valueOf("VARIABLE_9999"), "2");
}

TEST_F(VariableStoreTest, LogsNothingWithoutATarget) {
    log_.detach();
    EXPECT_EQ(valueOf("$NO"), "(none)");
    store_.set("$LONG", std::string(3000, 'x'));
    EXPECT_TRUE(log_.lines.empty());
}

TEST_F(VariableStoreTest, KnowsWhatIsStillFromItsOrigin) {
    store_.set("DIR", "/opt");
    store_.store("DOC", {"/opt/doc", "$DIR/doc", "/opt/doc"}, true);
    const std::int32_t doc = store_.find("DOC").value();
    EXPECT_FALSE(store_.isFromItsOrigin(doc));
    store_.noteOrigin("doc", VariableOrigin::kFollowing, "/opt/doc");
    EXPECT_TRUE(store_.isFromItsOrigin(doc));
    store_.set("DIR", "/srv");
    EXPECT_TRUE(store_.isFromItsOrigin(doc));
    store_.set("DOC", "\\srv\\doc");  // as a field for a directory stores it
    EXPECT_TRUE(store_.isFromItsOrigin(doc));
    store_.set("DOC", "/opt/doc");
    EXPECT_FALSE(store_.isFromItsOrigin(doc));
    store_.noteOrigin("DOC", VariableOrigin::kExpression, "/opt/doc");
    EXPECT_TRUE(store_.isFromItsOrigin(doc));
    store_.noteOrigin("DOC", VariableOrigin::kGiven, "/opt/doc");
    EXPECT_FALSE(store_.isFromItsOrigin(doc));
    store_.noteOrigin("MISSING", VariableOrigin::kDetected, "x");
    EXPECT_FALSE(store_.find("MISSING"));
}

}  // namespace

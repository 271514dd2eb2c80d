#include "description/variable_exclusions.h"

#include "description/control_variables.h"
#include "description/description_fixture.h"
#include "description/dialog_model.h"

namespace {

class VariableExclusionsTest : public DescriptionTest {
protected:
    void build(const std::string& text) {
        parse("<Root>" + text + "</Root>");
        controls_.read(document_, DebugLog());
        exclusions_.build(document_, controls_, dialogs_, variables_);
    }
    std::string exported(const char* name) const {
        return std::string(exclusions_.isVariableExported(name, kExcludeFromLog) ? "log " : "") +
               (exclusions_.isVariableExported(name, kExcludeFromConfig) ? "config" : "");
    }

    ControlVariables controls_;
    DialogModel dialogs_;
    VariableExclusions exclusions_;
};

TEST_F(VariableExclusionsTest, WithoutAnEntryAVariableGoesEverywhere) {
    EXPECT_EQ(exported("X"), "log config");
}

TEST_F(VariableExclusionsTest, NamesCompareExactly) {
    exclusions_.add("Name", kExcludeFromAll);
    EXPECT_EQ(exported("Name"), "");
    EXPECT_EQ(exported("NAME"), "log config");
}

TEST_F(VariableExclusionsTest, TheBitsOfSeveralEntriesAddUp) {
    exclusions_.add("X", kExcludeFromLog);
    exclusions_.add("X", kExcludeFromConfig);
    EXPECT_EQ(exported("X"), "");
}

TEST_F(VariableExclusionsTest, ControlVariablesHaveTheirMasks) {
    build(
        "<InstallerControlVariables><PreviousInstallation>PREV</PreviousInstallation>"
        "<LegacyInstallation>LEGACY</LegacyInstallation><ShouldUninstall>SHOULD</ShouldUninstall>"
        "<CustomizeSettings>CUSTOM</CustomizeSettings><ProgressDetails>DETAILS</ProgressDetails>"
        "<InstallError>IERR</InstallError><UninstallError>UERR</UninstallError><DlgCondition>COND</"
        "DlgCondition>"
        "<ExternalLegacyInstallation>EXT</ExternalLegacyInstallation></InstallerControlVariables>");
    for (const char* logged : {"PREV", "LEGACY", "IERR", "UERR", "EXT"}) {
        EXPECT_EQ(exported(logged), "log ") << logged;
    }
    for (const char* hidden : {"CUSTOM", "DETAILS", "COND"}) {
        EXPECT_EQ(exported(hidden), "") << hidden;
    }
    EXPECT_EQ(exported("SHOULD"), "log config");
}

TEST_F(VariableExclusionsTest, ValidationVariablesAreExcludedAndStartAsOne) {
    DialogDesc frame;
    frame.special = kDialogHasSubDialogs;
    frame.subDialogs.resize(1);
    frame.subDialogs[0].fields.resize(1);
    frame.subDialogs[0].fields[0].validationVariable.assign("INNER_OK");
    frame.fields.resize(2);
    frame.fields[1].validationVariable.assign("OUTER_OK");
    dialogs_.add(frame);
    build("");
    for (const char* name : {"INNER_OK", "OUTER_OK"}) {
        EXPECT_EQ(exported(name), "") << name;
        EXPECT_EQ(valueOf(name), "1") << name;
        EXPECT_EQ(variables_.at(variables_.find(name).value_or(0)).expression, "1") << name;
    }
}

TEST_F(VariableExclusionsTest, TheListSaysWhatAVariableIsKeptOutOf) {
    build(
        "<InstallerExcludeVariables><V>ALL</V><V ExcludeFrom=\"LOG\">L</V><V ExcludeFrom=\"config\">C</V>"
        "<V ExcludeFrom=\"log;config\">LC</V><V ExcludeFrom=\"x;All;y\">A</V><V "
        "ExcludeFrom=\"nothing\">N</V><V/>"
        "</InstallerExcludeVariables>");
    EXPECT_EQ(exported("ALL"), "");
    EXPECT_EQ(exported("L"), "config");
    EXPECT_EQ(exported("C"), "log ");
    EXPECT_EQ(exported("LC"), "");
    EXPECT_EQ(exported("A"), "");
    EXPECT_EQ(exported("N"), "log config");
}

}  // namespace

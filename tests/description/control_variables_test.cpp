#include "description/control_variables.h"

#include "description/description_fixture.h"

namespace {

class ControlVariablesTest : public DescriptionTest {
protected:
    bool read(const std::string& children) {
        parse("<Root><InstallerControlVariables>" + children + "</InstallerControlVariables></Root>");
        return controls_.read(document_, console_);
    }

    ControlVariables controls_;
};

TEST_F(ControlVariablesTest, HasATagForEachRoleInTheFixedOrder) {
    const std::vector<std::string> tags = {
        "PreviousInstallation", "LegacyInstallation", "ShouldUninstall",
        "CustomizeSettings",    "ProgressDetails",    "InstallError",
        "UninstallError",       "DlgCondition",       "ExternalLegacyInstallation"};
    ASSERT_EQ(tags.size(), static_cast<std::size_t>(kControlVariableCount));
    std::string children;
    for (std::size_t i = 0; i < tags.size(); ++i) {
        EXPECT_EQ(ControlVariables::tagOf(static_cast<ControlVariable>(i)), tags[i]);
        children += "<" + tags[i] + ">VAR" + std::to_string(i) + "</" + tags[i] + ">";
    }
    EXPECT_TRUE(read(children));
    for (std::size_t i = 0; i < tags.size(); ++i) {
        EXPECT_EQ(controls_.nameOf(static_cast<ControlVariable>(i)), "VAR" + std::to_string(i));
    }
    EXPECT_EQ(log_.text(), "");
}

TEST_F(ControlVariablesTest, LogsMissingTagsAndLeavesTheirRolesOpen) {
    EXPECT_TRUE(read("<InstallError>E</InstallError>"));
    EXPECT_EQ(log_.lines().size(), 8U);
    EXPECT_EQ(log_.lines()[0],
              "WARNING: Missing control variable specifier in the installation template. (tag "
              "PreviousInstallation)");
    EXPECT_EQ(controls_.nameOf(ControlVariable::kPreviousInstallation), "");
    EXPECT_EQ(controls_.nameOf(ControlVariable::kInstallError), "E");
}

TEST_F(ControlVariablesTest, LogsATagWithoutText) {
    read("<DlgCondition/>");
    bool logged = false;
    for (const std::string& line : log_.lines()) {
        logged = logged ||
                 line ==
                     "WARNING: Missing tag data for variable specifier in the installation template. (tag "
                     "DlgCondition)";
    }
    EXPECT_TRUE(logged) << log_.text();
}

TEST_F(ControlVariablesTest, NamesNothingWithoutTheSection) {
    parse("<Root/>");
    EXPECT_FALSE(controls_.read(document_, console_));
    EXPECT_EQ(log_.text(), "");
    EXPECT_EQ(controls_.nameOf(ControlVariable::kInstallError), "");
}

TEST_F(ControlVariablesTest, CutsNamesAt199Bytes) {
    read("<InstallError>" + std::string(300, 'x') + "</InstallError>");
    EXPECT_EQ(controls_.nameOf(ControlVariable::kInstallError).size(), 199U);
}

TEST_F(ControlVariablesTest, WorksWithoutALogTarget) {
    parse("<Root><InstallerControlVariables/></Root>");
    EXPECT_TRUE(controls_.read(document_, DebugLog()));
}

}  // namespace

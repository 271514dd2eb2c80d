#include "description/control_variables.h"

#include "description/description_fixture.h"

namespace {

class ControlVariablesTest : public DescriptionTest {
protected:
    int read(const std::string& children) {
        parse("<Root><InstallerControlVariables>" + children + "</InstallerControlVariables></Root>");
        return controls_.read(document_, console_);
    }

    ControlVariables controls_;
};

TEST_F(ControlVariablesTest, EveryRoleHasItsTagInTheFixedOrder) {
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
    EXPECT_EQ(read(children), 0);
    for (std::size_t i = 0; i < tags.size(); ++i) {
        EXPECT_EQ(controls_.nameOf(static_cast<ControlVariable>(i)), "VAR" + std::to_string(i));
    }
    EXPECT_EQ(log_.text(), "");
}

TEST_F(ControlVariablesTest, MissingTagsAreToldAndLeaveTheirRoleOpen) {
    EXPECT_EQ(read("<InstallError>E</InstallError>"), 0);
    EXPECT_EQ(log_.lines().size(), 8U);
    EXPECT_EQ(log_.lines()[0],
              "WARNING: Missing control variable specifier in the installation template. (tag "
              "PreviousInstallation)");
    EXPECT_STREQ(controls_.nameOf(ControlVariable::kPreviousInstallation), "");
    EXPECT_STREQ(controls_.nameOf(ControlVariable::kInstallError), "E");
}

TEST_F(ControlVariablesTest, ATagWithoutTextIsTold) {
    read("<DlgCondition/>");
    bool told = false;
    for (const std::string& line : log_.lines()) {
        told =
            told || line ==
                        "WARNING: Missing tag data for variable specifier in the installation template. (tag "
                        "DlgCondition)";
    }
    EXPECT_TRUE(told) << log_.text();
}

TEST_F(ControlVariablesTest, WithoutTheSectionNothingIsNamed) {
    parse("<Root/>");
    EXPECT_EQ(controls_.read(document_, console_), 1);
    EXPECT_EQ(log_.text(), "");
    EXPECT_STREQ(controls_.nameOf(ControlVariable::kInstallError), "");
}

TEST_F(ControlVariablesTest, NamesAreCutAt199Bytes) {
    read("<InstallError>" + std::string(300, 'x') + "</InstallError>");
    EXPECT_EQ(std::string(controls_.nameOf(ControlVariable::kInstallError)).size(), 199U);
}

TEST_F(ControlVariablesTest, ANullLogIsNoDanger) {
    parse("<Root><InstallerControlVariables/></Root>");
    EXPECT_EQ(controls_.read(document_, DebugLog()), 0);
}

}  // namespace

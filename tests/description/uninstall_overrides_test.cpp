#include "description/uninstall_overrides.h"

#include "description/description_fixture.h"

namespace {

class UninstallOverridesTest : public DescriptionTest {
protected:
    UninstallOverridesTest() { variables_.set("SOURCE", "here"); }

    // What TARGET holds afterwards in the other session.
    std::string apply(const std::string& elements, std::string_view application = "") {
        parse("<TandrelGroupInstallation><Installation>" + elements +
              "</Installation></TandrelGroupInstallation>");
        UninstallOverrides(document_, variables_, expressions_, console_)
            .apply([this](std::string_view name, std::string_view value) { target_.set(name, value); },
                   application);
        return target_.get("TARGET").value_or("(none)");
    }

    VariableStore target_{predefined_, environment_, console_};
};

TEST_F(UninstallOverridesTest, CopiesAValueUnderAnotherName) {
    EXPECT_EQ(apply("<UninstallOverrides><Variable From=\"SOURCE\">TARGET</Variable></UninstallOverrides>"),
              "here");
}

TEST_F(UninstallOverridesTest, WithoutFromTheNameIsTheSame) {
    variables_.set("TARGET", "own");
    EXPECT_EQ(apply("<UninstallOverrides><Variable>TARGET</Variable></UninstallOverrides>"), "own");
}

TEST_F(UninstallOverridesTest, FalseConditionsSkip) {
    EXPECT_EQ(
        apply("<UninstallOverrides Condition=\"0\"><Variable From=\"SOURCE\">TARGET</Variable>"
              "</UninstallOverrides><UninstallOverrides><Variable Condition=\"0\" From=\"SOURCE\">TARGET"
              "</Variable></UninstallOverrides>"),
        "(none)");
}

TEST_F(UninstallOverridesTest, EveryElementIsApplied) {
    variables_.set("LATER", "later");
    EXPECT_EQ(apply("<UninstallOverrides><Variable From=\"SOURCE\">TARGET</Variable></UninstallOverrides>"
                    "<UninstallOverrides><Variable From=\"LATER\">TARGET</Variable></UninstallOverrides>"),
              "later");
}

TEST_F(UninstallOverridesTest, AListOfApplicationsMustHoldTheName) {
    const std::string text =
        "<UninstallOverrides><Variable AppList=\"A;B\" "
        "From=\"SOURCE\">TARGET</Variable></UninstallOverrides>";
    EXPECT_EQ(apply(text, "b"), "(none)");
    EXPECT_EQ(apply(text, "B"), "here");
    EXPECT_EQ(apply(text), "here");
}

TEST_F(UninstallOverridesTest, UnknownAndPredefinedSourcesAreTold) {
    EXPECT_EQ(apply("<UninstallOverrides><Variable From=\"NONE\">TARGET</Variable>"
                    "<Variable From=\"WX_PORT\">TARGET</Variable></UninstallOverrides>"),
              "(none)");
    EXPECT_EQ(log_.lines(),
              (std::vector<std::string>{
                  "WARNING: Trying to override uninstall variable with nonexisting variable name NONE",
                  "WARNING: Trying to override uninstall variable with a predefined one WX_PORT"}));
}

}  // namespace

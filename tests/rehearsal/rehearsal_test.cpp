#include "rehearsal/rehearsal.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "rehearsal/expectation.h"
#include "rehearsal/fault_text.h"
#include "rehearsal/small_product.h"

namespace {

using Lines = std::vector<std::string>;

const std::string kLinux = "[machine]\nsystem = linux\n";
const std::string kBoth = kLinux + "[steps]\ninstall\nuninstall\n";

std::string nothingBeside(const MachineDescription::Named&) {
    return "";
}

Outcome rehearsalOf(const std::string& machine, const RehearsedProduct& product) {
    return rehearse(readMachine(machine), product,
                    {nothingBeside, [](const std::string& name) {
                         return SmallProduct::product(SmallProduct::description("<!--" + name + "-->"));
                     }});
}

Lines section(const Outcome& outcome, std::string_view name) {
    const auto found = std::ranges::find(outcome.sections, name, &OutcomeSection::name);
    return found == outcome.sections.end() ? Lines{"no such section"} : found->lines;
}

bool has(const Lines& lines, std::string_view line) {
    return std::ranges::find(lines, line) != lines.end();
}

TEST(RehearsalTest, InstallsAndUninstallsWithoutATrace) {
    const Outcome outcome = rehearsalOf(kBoth, SmallProduct::product(SmallProduct::description()));
    EXPECT_EQ(outcome.failure, "");
    EXPECT_EQ(section(outcome, "install result"), Lines{"success"});
    EXPECT_TRUE(has(section(outcome, "install files"), "/opt/small/name.txt = \"Name: nobody\\n\""));
    EXPECT_TRUE(has(section(outcome, "install variables"), "NAME = nobody"));
    EXPECT_TRUE(has(section(outcome, "install records"), "FILE | CREATE | /opt/small\\name.txt"));
    EXPECT_TRUE(has(section(outcome, "install output"), "Create /opt/small/name.txt"));
    EXPECT_FALSE(section(outcome, "install log").empty());
    EXPECT_EQ(section(outcome, "uninstall result"), Lines{"success"});
    for (const char* name : {"uninstall files", "uninstall registry", "uninstall records"}) {
        EXPECT_EQ(section(outcome, name), Lines()) << name;
    }
}

TEST(RehearsalTest, GivesTheSameOutcomeEachTime) {
    const RehearsedProduct product = SmallProduct::product(SmallProduct::description());
    for (const char* system : {"linux", "windows"}) {
        const std::string machine =
            "[machine]\nsystem = " + std::string(system) + "\n[steps]\ninstall\ninstall\nuninstall\n";
        const Lines first = outcomeLines(rehearsalOf(machine, product));
        EXPECT_EQ(outcomeLines(rehearsalOf(machine, product)), first);
    }
}

TEST(RehearsalTest, NamesRepeatedStepsByTheirNumber) {
    const Outcome outcome = rehearsalOf(kLinux + "[steps]\ninstall\ninstall\n",
                                        SmallProduct::product(SmallProduct::description()));
    EXPECT_EQ(section(outcome, "install 2 result"), Lines{"success"});
}

TEST(RehearsalTest, InstallsFromAnotherPackageAsWell) {
    const RehearsedProduct product = SmallProduct::product(SmallProduct::description());
    const Outcome outcome = rehearsalOf(
        kLinux + "[steps]\ninstall from old/setup-1 -VARIABLE_NAME=Ada\ninstall\nuninstall\n", product);
    EXPECT_EQ(outcome.failure, "");
    EXPECT_TRUE(has(section(outcome, "install files"), "/opt/small/name.txt = \"Name: Ada\\n\""));
    EXPECT_TRUE(has(section(outcome, "install 2 files"), "/opt/small/name.txt = \"Name: nobody\\n\""));
    EXPECT_EQ(section(outcome, "uninstall files"), Lines());
    EXPECT_NE(faultOf([&] { rehearsalOf(kLinux + "[steps]\ninstall from setup\n", product); }), "");
}

TEST(RehearsalTest, TakesValuesFromOptionsAndAnswers) {
    RehearsedProduct product = SmallProduct::product(SmallProduct::description());
    product.answers = "<R><DefValues><Value Name=\"NAME\" DataType=\"value\">Ada</Value></DefValues></R>";
    Outcome outcome = rehearsalOf(kLinux, product);
    EXPECT_TRUE(has(section(outcome, "install files"), "/opt/small/name.txt = \"Name: Ada\\n\""));
    EXPECT_FALSE(has(section(outcome, "install output"), "Create /opt/small/name.txt"));
    outcome = rehearsalOf(kLinux + "[steps]\ninstall -VARIABLE_NAME=Bob\n", product);
    EXPECT_TRUE(has(section(outcome, "install files"), "/opt/small/name.txt = \"Name: Bob\\n\""));
}

TEST(RehearsalTest, EndsWhereAPageHoldsTheRun) {
    const std::string running =
        "<RunningApps Special=\"Automated\"><TestApp Directory=\"/bin\">busy</TestApp></RunningApps>";
    const RehearsedProduct product = SmallProduct::product(SmallProduct::description("", running));
    EXPECT_EQ(rehearsalOf(kLinux, product).failure, "");
    const Outcome outcome =
        rehearsalOf(kLinux + "[programs]\n/bin/busy = x\n[running]\n/bin/busy\n", product);
    EXPECT_EQ(outcome.failure, "install: the page \"RunningApps\" holds the run");
    EXPECT_EQ(section(outcome, "install result").at(0), "failure");
    EXPECT_EQ(section(outcome, "install files"), Lines());
}

TEST(RehearsalTest, ShowsWhyAnInstallationFailed) {
    const Outcome outcome =
        rehearsalOf(kBoth + "[read-only]\n/opt\n", SmallProduct::product(SmallProduct::description()));
    EXPECT_TRUE(outcome.failure.starts_with("install: ")) << outcome.failure;
    const Lines output = section(outcome, "install output");
    EXPECT_TRUE(std::ranges::any_of(output, [](const std::string& line) {
        return line.find("Permission denied") != std::string::npos;
    })) << testing::PrintToString(output);
    EXPECT_EQ(section(outcome, "uninstall result"),
              (Lines{"failure", "reason = there is no action log of an installation"}));
}

TEST(RehearsalTest, RunsNoProgram) {
    const RehearsedProduct product = SmallProduct::product(SmallProduct::description(
        "<AdditionalInstall><RunProgram Arguments=\"-x\">/bin/tool</RunProgram></AdditionalInstall>"));
    EXPECT_EQ(section(rehearsalOf(kLinux, product), "install actions"),
              Lines{"run \"\\bin\\tool\" -x -> cannot start"});
    EXPECT_EQ(section(rehearsalOf(kLinux + "[results]\ntool = 0\n", product), "install actions"),
              Lines{"run \"\\bin\\tool\" -x -> 0"});
}

TEST(RehearsalTest, RefusesWhatCannotBeStarted) {
    const RehearsedProduct product = SmallProduct::product(SmallProduct::description());
    EXPECT_EQ(faultOf([&] { rehearsalOf(kLinux + "[steps]\ninstall -gui=1\n", product); }),
              "a step has the option -gui; it can have VARIABLE_NAME, backup, ignoreErrors and quiet");
    EXPECT_NE(faultOf([&] { rehearsalOf(kLinux + "[steps]\ninstall x\n", product); }), "");
    RehearsedProduct withBadAnswers = product;
    withBadAnswers.answers = "<R/>";
    EXPECT_NE(faultOf([&] { rehearsalOf(kLinux, withBadAnswers); }), "");
    EXPECT_NE(faultOf([&] { rehearsalOf(kLinux, {"no package", 0, std::nullopt}); }), "");
}

}  // namespace

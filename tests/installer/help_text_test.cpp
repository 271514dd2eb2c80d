#include "installer/help_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "description/pxml.h"
#include "description/run_option_table.h"
#include "support/run_outcome.h"

namespace {

using testing::HasSubstr;
using testing::Not;

std::string helpFor(const std::string& sections) {
    PXML description;
    description.parseText("<TandrelGroupInstallation>" + sections + "</TandrelGroupInstallation>");
    return helpText(PackageKind::kReadable, description);
}

TEST(HelpText, NamesEveryOption) {
    const std::string text = helpText(PackageKind::kNone, PXML());
    for (const RunOptionRow& row : run_options::kTable) {
        EXPECT_THAT(text, HasSubstr("  -" + std::string(row.name) + std::string(row.value) + "\n      " +
                                    std::string(row.meaning) + "\n"));
    }
}

TEST(HelpText, NamesEveryExitCode) {
    const std::string text = helpText(PackageKind::kNone, PXML());
    for (const RunEndRow& row : kRunEnds) {
        EXPECT_THAT(text, testing::ContainsRegex("  " + std::to_string(static_cast<int>(row.end)) + " +" +
                                                 std::string(row.meaning) + "\n"));
    }
}

TEST(HelpText, SaysWhetherThereIsAProduct) {
    EXPECT_THAT(helpText(PackageKind::kNone, PXML()), HasSubstr(noPackageText()));
    EXPECT_THAT(helpText(PackageKind::kUnreadable, PXML()), HasSubstr("The package can't be read"));
    EXPECT_THAT(helpFor("<ProductDesc><Fullname>Demo</Fullname><MajorVersion>2</MajorVersion>"
                        "<MinorVersion>0</MinorVersion><MinestVersion>1</MinestVersion></ProductDesc>"),
                HasSubstr("This is the setup of Demo, version 2.0.1.\n"));
}

TEST(HelpText, DescribesVariablesByTheirFieldsAndDefaults) {
    const std::string text = helpFor(
        "<DefValues><Value Name='DIR' DataType='value'>$BASE/demo</Value>"
        "<Value Name='MODE' DataType='cmdlinearg'>slow</Value>"
        "<Value Name='HOME' DataType='envvar' Default='none'>HOME</Value></DefValues>"
        "<Dialogs><P><SubDialogs><Q><Field Type='Directory' Label='Where to'>DIR</Field>"
        "<Field Type='RadioButtons' Label='Kind' Content='small;large'>KIND</Field>"
        "<Field Type='CheckBox' Label='Start it'>START</Field></Q></SubDialogs></P></Dialogs>"
        "<UninstallDialogs><P><Field Type='EditBox' Label='Never "
        "asked'>OTHER</Field></P></UninstallDialogs>");
    EXPECT_THAT(text, HasSubstr("  DIR\n      Where to\n      default: \"$BASE/demo\"\n"));
    EXPECT_THAT(text, HasSubstr("  MODE\n      default: \"slow\"\n      also the option -MODE=VALUE\n"));
    EXPECT_THAT(text, HasSubstr("  HOME\n      default: what the system says, otherwise \"none\"\n"));
    EXPECT_THAT(text, HasSubstr("  KIND\n      Kind\n      0: small, 1: large\n"));
    EXPECT_THAT(text, HasSubstr("  START\n      Start it\n      0 or 1\n"));
    EXPECT_THAT(text, Not(HasSubstr("OTHER")));
}

TEST(HelpText, ShowsAllDefaultsOfAVariableWithConditions) {
    EXPECT_THAT(helpFor("<DefValues><Value Name='A' DataType='value' Condition='1==1'>x</Value>"
                        "<Value Name='a' DataType='value' Condition='1==2'>y</Value></DefValues>"),
                HasSubstr("  A\n      default: \"x\"; or \"y\"\n"));
}

TEST(HelpText, LeavesOutWhatIsTheSetupsOwn) {
    const std::string text = helpFor(
        "<InstallerControlVariables><InstallError>FAILED</InstallError></InstallerControlVariables>"
        "<DefValues><Value Name='failed' DataType='value'>0</Value>"
        "<Value Name='TEMP_DIR' DataType='value'>x</Value></DefValues>");
    EXPECT_THAT(text, Not(HasSubstr("  failed\n")));
    EXPECT_THAT(text, Not(HasSubstr("TEMP_DIR")));
}

TEST(HelpText, NeverShowsAPassword) {
    EXPECT_THAT(helpFor("<DefValues><Value Name='P' DataType='value'>xyzzy</Value></DefValues>"
                        "<Dialogs><A><Field Type='Password' Label='Word'>P</Field></A></Dialogs>"),
                testing::AllOf(HasSubstr("  P\n      Word\n"), Not(HasSubstr("xyzzy"))));
}

TEST(HelpText, HostileTextsAreShownInOneLineWithoutCommands) {
    const std::string text = helpFor(
        "<ProductDesc><Fullname>A\x1b[2J\nB</Fullname></ProductDesc>"
        "<DefValues><Value Name='V' DataType='value'>\xc2\x9b" +
        std::string(400, 'x') + "</Value></DefValues>");
    EXPECT_THAT(text, HasSubstr("This is the setup of A?[2J B.\n"));
    EXPECT_THAT(text, HasSubstr("default: \"?" + std::string(298, 'x') + "...\"\n"));
}

}  // namespace

#include "checking/variable_check.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "checking/check_bench.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

std::vector<std::string> findIn(const std::string& sections) {
    return CheckBench([](const CheckedParts& parts) { checkVariables(parts.context, parts.variables); })
        .find(sections);
}

std::string values(const std::string& content) {
    return "<DefValues>" + content + "</DefValues>";
}

// A file in a directory, which uses the variables of its text.
std::string fileIn(const std::string& dest) {
    return "<FileSet Name='s'><FN Dest='" + dest + "'>f</FN></FileSet>";
}

constexpr const char* kA = "<Value Name='A' DataType='value'>1</Value>";

TEST(VariableCheck, FindsNothingWhereAllIsDeclaredAndUsed) {
    EXPECT_THAT(
        findIn(values(std::string(kA) + "<Value Name='B' DataType='value'>$a/x</Value>") + fileIn("[b]")),
        IsEmpty());
    EXPECT_THAT(findIn(fileIn("[INSTALLER_DIR]/[$HOME]/x]")), IsEmpty());
}

TEST(VariableCheck, FindsNamesThatNothingDeclares) {
    EXPECT_THAT(findIn(fileIn("[A]")), ElementsAre("variable-undeclared 2:29"));
    EXPECT_THAT(findIn(values("<Value Name='B' DataType='value'>$A</Value>") + fileIn("[B]")),
                ElementsAre("variable-undeclared 2:45"));
    EXPECT_THAT(findIn("<Dialogs><P><Field Type='EditBox'>A</Field></P></Dialogs>"),
                ElementsAre("variable-undeclared 2:35"));
}

TEST(VariableCheck, TakesATextThatShowsValuesForAUse) {
    const auto page = [](const std::string& text) {
        return "<Dialogs><P><Text x='1' y='1' ExpandVars='1'>" + text + "</Text></P></Dialogs>";
    };
    EXPECT_THAT(findIn(values(kA) + page("To [A]")), IsEmpty());
    EXPECT_THAT(findIn(page("To [A]")), ElementsAre("variable-undeclared 2:46"));
}

TEST(VariableCheck, FindsBracketsInPathsThatHoldNoName) {
    for (const char* const dest : {"[a-z]/x", "/x/[ A]", "/x[]", "[$]/x"}) {
        EXPECT_THAT(findIn(fileIn(dest)), ElementsAre("reference-name 2:29")) << dest;
    }
    EXPECT_THAT(findIn(fileIn("[$ProgramFiles(x86)]/x")), IsEmpty());
    EXPECT_THAT(findIn("<UninstallWildcards><W Dest='/x'>[a-z]*.tmp</W></UninstallWildcards>"), IsEmpty());
}

TEST(VariableCheck, FindsVariablesThatAreTakenForThoseOfTheEnvironment) {
    EXPECT_THAT(findIn(values(kA) + fileIn("[$a]/[A]")), ElementsAre("reference-form 2:94"));
    EXPECT_THAT(
        findIn(values("<Value Name='HOME' DataType='envvar'>HOME</Value>") + fileIn("[HOME]/[$HOME]")),
        IsEmpty());
}

TEST(VariableCheck, FindsDeclarationsThatNothingUses) {
    EXPECT_THAT(findIn(values(kA)), ElementsAre("variable-unused 2:12"));
    EXPECT_THAT(findIn(values(kA) + "<FileSet Name='s'><FN Dest='/x' ExpandVarsInFile='1'>f</FN></FileSet>"),
                IsEmpty())
        << "the file may use it";
}

TEST(VariableCheck, FindsWhatCannotBeSet) {
    EXPECT_THAT(findIn(values("<Value Name='TEMP_DIR' DataType='value'>1</Value>")),
                Contains("variable-predefined 2:25"));
    EXPECT_THAT(findIn("<Dialogs><P><Field Type='EditBox'>temp_dir</Field></P></Dialogs>"),
                ElementsAre("variable-predefined 2:35"));
    EXPECT_THAT(findIn("<Dialogs><P><Button x='1' y='1' Action=\"[WX_PORT]='1'\">b</Button></P></Dialogs>"),
                Contains("variable-predefined 2:41"));
    EXPECT_THAT(findIn("<Dialogs><P><Button x='1' y='1' Action='Next'>b</Button></P></Dialogs>"),
                ElementsAre("action-invalid 2:41"));
}

TEST(VariableCheck, FindsOptionsThatSetupsHaveThemselves) {
    const auto option = [](const std::string& name, const std::string& type = "cmdlinearg") {
        return findIn(values("<Value Name='" + name + "' DataType='" + type + "'>0</Value>") +
                      fileIn("[" + name + "]"));
    };
    for (const char* const name : {"quiet", "QUIET", "Help", "H", "uninstall"}) {
        EXPECT_THAT(option(name), Contains(StartsWith("variable-option-taken 2:"))) << name;
    }
    EXPECT_THAT(option("version"), Not(Contains(StartsWith("variable-option-taken"))));
    EXPECT_THAT(option("quieter"), Not(Contains(StartsWith("variable-option-taken"))));
    EXPECT_THAT(option("quiet", "value"), Not(Contains(StartsWith("variable-option-taken"))));
}

TEST(VariableCheck, FindsReferencesInTheWrongForm) {
    EXPECT_THAT(findIn(values(kA) + fileIn("[A]/$A")), ElementsAre("reference-form 2:94"));
    EXPECT_THAT(
        findIn(values(std::string(kA) + "<Value Name='B' DataType='value'>[A]</Value>") + fileIn("[B][A]")),
        ElementsAre("reference-form 2:87"));
    EXPECT_THAT(findIn(values(kA) + fileIn("[A]/[A")), ElementsAre("reference-unclosed 2:94"));
    EXPECT_THAT(findIn(values(kA) + "<Dialogs><P><Text x='1' y='1'>Into [A]</Text></P></Dialogs>"),
                ElementsAre("reference-shown 2:96"));
}

TEST(VariableCheck, FindsValuesThatDependOnLaterOnesOrOnThemselves) {
    EXPECT_THAT(
        findIn(values("<Value Name='B' DataType='value'>$A</Value>" + std::string(kA)) + fileIn("[B]")),
        ElementsAre("variable-order 2:45"));
    EXPECT_THAT(findIn(values("<Value Name='A' DataType='value' Recalculate='1'>$B</Value>"
                              "<Value Name='B' DataType='value' Recalculate='1'>$A</Value>")),
                Contains("variable-circular 2:120"));
}

TEST(VariableCheck, FindsPasswordsThatAreRecordedOrShown) {
    const std::string field = "\n<Dialogs><P><Field Type='Password'>P</Field></P></Dialogs>";
    const std::string value = values("<Value Name='P' DataType='value'></Value>");
    EXPECT_THAT(findIn(value + field), ElementsAre("password-recorded 3:36"));
    const std::string excluded = "<InstallerExcludeVariables><V>P</V></InstallerExcludeVariables>";
    EXPECT_THAT(findIn(value + excluded + field), IsEmpty());
    EXPECT_THAT(findIn(values("<Value Name='P' DataType='value'>secret</Value>") + excluded + field),
                ElementsAre("password-shown 3:36"));
    EXPECT_THAT(findIn(values(kA) + fileIn("[A]") +
                       "\n<InstallerExcludeVariables><V>a</V></InstallerExcludeVariables>"),
                ElementsAre("exclusion-unknown 3:31"));
}

TEST(VariableCheck, ComparesChoicesWithWhatIsSaidOfThem) {
    const auto field = [](const std::string& attributes) {
        return values("<Value Name='A' DataType='value'>0</Value>") +
               "\n<Dialogs><P><Field Type='RadioButtons' " + attributes + ">A</Field></P></Dialogs>";
    };
    EXPECT_THAT(findIn(field("Content='a;b' Description='c;d' Enable='1|1'")), IsEmpty());
    EXPECT_THAT(findIn(field("")), ElementsAre("field-choices 3:13"));
    EXPECT_THAT(findIn(field("Content='a' Description='c;d'")), ElementsAre("field-choices 3:65"));
    EXPECT_THAT(findIn(values("<Value Name='A' DataType='value'>2</Value>") +
                       "\n<Dialogs><P><Field Type='RadioButtons' Content='a;b'>A</Field></P></Dialogs>"),
                ElementsAre("field-choices 3:54"));
}

TEST(VariableCheck, FindsValuesThatAnUninstallationLoses) {
    const std::string field = "<Dialogs><P><Field Type='EditBox'>A</Field></P></Dialogs>";
    const std::string use = "<PreUninstall><RemoveFile>[A]</RemoveFile></PreUninstall>";
    EXPECT_THAT(findIn(values(kA) + field + use), ElementsAre("variable-use-old 2:12"));
    EXPECT_THAT(findIn(values("<Value Name='A' DataType='value' UseOld='1'>1</Value>") + field + use),
                IsEmpty());
}

}  // namespace

#include "description/variables.h"

#include <gtest/gtest.h>

#include "description/answers_file.h"
#include "description/default_values_fixture.h"
#include "description/dialog_model.h"
#include "log_lines.h"
#include "platform/memory/memory_environment.h"
#include "platform/memory/memory_file_system.h"

namespace {

class VariablesTest : public testing::Test {
protected:
    void parse(const std::string& children) { document_.parseText("<Root>" + children + "</Root>"); }

    FakeSystemOperations system_;
    MemoryEnvironment environment_;
    MemoryFileSystem files_;
    TableLogs logs_;
    LogLines log_;
    AnswersFile answers_{files_};
    std::int32_t isGraphical_ = 1;
    Variables variables_{isGraphical_, {system_, environment_, files_, logs_, answers_}, log_.console()};
    std::string message_;
    PXML document_;
};

TEST_F(VariablesTest, StoresAndExpandsValues) {
    EXPECT_TRUE(variables_.set("A", "1"));
    EXPECT_TRUE(variables_.assign("[B]='2'"));
    EXPECT_EQ(variables_.get("a"), "1");
    EXPECT_EQ(variables_.expand("[A][B][GUI_INSTALL]"), "121");
    EXPECT_TRUE(variables_.holds("[A]<[B]"));
    EXPECT_FALSE(variables_.holds("[A]>[B]"));
    EXPECT_EQ(variables_.get("C"), std::nullopt);
}

TEST_F(VariablesTest, LoadsDefaultsAndResetsToThem) {
    parse("<DefValues><Value Name=\"A\" DataType=\"value\">one</Value></DefValues>");
    EXPECT_EQ(variables_.loadDefaults(document_, "", nullptr, message_), DefaultsOutcome::kLoaded);
    variables_.set("A", "two");
    EXPECT_EQ(variables_.getDefault("A"), "one");
    EXPECT_TRUE(variables_.reset("A", kResetToDefault));
    EXPECT_EQ(variables_.get("A"), "one");
}

TEST_F(VariablesTest, SetsTheVariableOfARole) {
    variables_.setControl(ControlVariable::kInstallError, "0");
    EXPECT_EQ(variables_.store().getCount(), 0) << "no variable plays the role yet";
    EXPECT_EQ(variables_.getControl(ControlVariable::kInstallError), std::nullopt);
    parse("<InstallerControlVariables><InstallError>FAILED</InstallError></InstallerControlVariables>");
    EXPECT_TRUE(variables_.readControls(document_));
    variables_.setControl(ControlVariable::kInstallError, "1");
    EXPECT_EQ(variables_.get("FAILED"), "1");
    EXPECT_EQ(variables_.getControl(ControlVariable::kInstallError), "1");
}

TEST_F(VariablesTest, KeepsControlsAndCommandLineOutOfTheConfiguration) {
    parse(
        "<InstallerControlVariables><InstallError>FAILED</InstallError></"
        "InstallerControlVariables><DefValues/>");
    variables_.readControls(document_);
    variables_.readExclusions(document_, DialogModel());
    TableArguments arguments;
    arguments.list = {{"VARIABLE_EXTRA", "x"}};
    EXPECT_EQ(variables_.loadDefaults(document_, "", &arguments, message_), DefaultsOutcome::kLoaded);
    EXPECT_EQ(variables_.get("EXTRA"), "x");
    EXPECT_FALSE(variables_.exclusions().isVariableExported("FAILED", kExcludeFromConfig));
    EXPECT_FALSE(variables_.exclusions().isVariableExported("EXTRA", kExcludeFromLog));
}

TEST_F(VariablesTest, ReportsAFileOfAnswersThatCannotBeUsed) {
    parse("<DefValues/>");
    EXPECT_EQ(variables_.loadDefaults(document_, "/missing.xml", nullptr, message_),
              DefaultsOutcome::kBadConfiguration);
    EXPECT_EQ(message_,
              "Error loading configuration file \"/missing.xml\" (2). Installation can not continue.");
    EXPECT_EQ(log_.lines, std::vector<std::string>{"ERROR: " + message_});
}

TEST_F(VariablesTest, NeedsDefaultValues) {
    parse("");
    EXPECT_EQ(variables_.loadDefaults(document_, "", nullptr, message_), DefaultsOutcome::kNoDefaults);
    EXPECT_EQ(message_, "");
}

}  // namespace

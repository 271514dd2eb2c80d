#include "description/predefined_variables.h"

#include "description/description_fixture.h"

namespace {

using PredefinedVariablesTest = DescriptionTest;

TEST_F(PredefinedVariablesTest, NamesTheFrontEnd) {
    EXPECT_EQ(valueOf("GUI_INSTALL"), "0");
    isGraphical_ = 1;
    EXPECT_EQ(valueOf("gui_install"), "1");
}

TEST_F(PredefinedVariablesTest, NamesThePlaceOfTheProgram) {
    environment_.program = "C:\\dir\\setup.exe";
    EXPECT_EQ(valueOf("INSTALLER_DIR"), "C:\\dir");
    EXPECT_EQ(valueOf("INSTALLER_FILE_NAME"), "setup.exe");
    environment_.program = "/setup";
    EXPECT_EQ(valueOf("INSTALLER_DIR"), "/");
}

TEST_F(PredefinedVariablesTest, GivesFixedNamesForTheSystem) {
    EXPECT_EQ(valueOf("WX_PORT"), "win");
    EXPECT_EQ(valueOf("OPERATING_SYSTEM"), "win");
}

TEST_F(PredefinedVariablesTest, NamesTheTemporaryDirectory) {
    EXPECT_EQ(valueOf("TEMP_DIR"), "/tmp");
}

TEST_F(PredefinedVariablesTest, GivesNothingWithoutATemporaryDirectory) {
    files_.setTemporaryDirectory("");
    EXPECT_EQ(predefined_.get("TEMP_DIR"), std::nullopt);
    EXPECT_EQ(log_.lines(),
              std::vector<std::string>{"WARNING: Failed to obtain temp directory for variable usage!"});
}

TEST_F(PredefinedVariablesTest, KnowsNoOtherName) {
    EXPECT_EQ(predefined_.get("OTHER"), std::nullopt);
    EXPECT_FALSE(PredefinedVariables::isPredefined("OTHER"));
    EXPECT_FALSE(PredefinedVariables::isPredefined(""));
    EXPECT_TRUE(PredefinedVariables::isPredefined("Temp_Dir"));
}

TEST_F(PredefinedVariablesTest, CutsTheValueAtTheLimit) {
    files_.setTemporaryDirectory("/var/tmp");
    const std::optional<VariableReading> reading = variables_.read("TEMP_DIR", 4);
    ASSERT_TRUE(reading);
    EXPECT_EQ(reading->value, "/var");
    EXPECT_FALSE(reading->isStored());
}

}  // namespace

#include "description/predefined_variables.h"

#include "description/description_fixture.h"

namespace {

using PredefinedVariablesTest = DescriptionTest;

TEST_F(PredefinedVariablesTest, TellsTheFrontEnd) {
    EXPECT_EQ(valueOf("GUI_INSTALL"), "0");
    isGraphical_ = 1;
    EXPECT_EQ(valueOf("gui_install"), "1");
}

TEST_F(PredefinedVariablesTest, TellsWhereTheProgramIs) {
    environment_.programPath = "C:\\dir\\setup.exe";
    EXPECT_EQ(valueOf("INSTALLER_DIR"), "C:\\dir");
    EXPECT_EQ(valueOf("INSTALLER_FILE_NAME"), "setup.exe");
    environment_.programPath = "/setup";
    EXPECT_EQ(valueOf("INSTALLER_DIR"), "/");
}

TEST_F(PredefinedVariablesTest, TheSystemNamesAreFixed) {
    EXPECT_EQ(valueOf("WX_PORT"), "win");
    EXPECT_EQ(valueOf("OPERATING_SYSTEM"), "win");
}

TEST_F(PredefinedVariablesTest, TellsTheTemporaryDirectory) {
    EXPECT_EQ(valueOf("TEMP_DIR"), "/tmp");
}

TEST_F(PredefinedVariablesTest, WithoutATemporaryDirectoryTheBufferIsEmptied) {
    environment_.tempDirectory = "";
    char buffer[20] = "old";
    EXPECT_EQ(predefined_.read("TEMP_DIR", buffer, sizeof buffer), -1);
    EXPECT_STREQ(buffer, "");
    EXPECT_EQ(log_.lines(),
              std::vector<std::string>{"WARNING: Failed to obtain temp directory for variable usage!"});
}

TEST_F(PredefinedVariablesTest, AnotherNameLeavesTheBuffer) {
    char buffer[20] = "old";
    EXPECT_EQ(predefined_.read("OTHER", buffer, sizeof buffer), -1);
    EXPECT_STREQ(buffer, "old");
    EXPECT_FALSE(PredefinedVariables::isPredefined("OTHER"));
    EXPECT_FALSE(PredefinedVariables::isPredefined(nullptr));
    EXPECT_TRUE(PredefinedVariables::isPredefined("Temp_Dir"));
}

TEST_F(PredefinedVariablesTest, CutsTheValueAtTheBuffer) {
    environment_.tempDirectory = "/var/tmp";
    char buffer[5];
    EXPECT_EQ(predefined_.read("TEMP_DIR", buffer, sizeof buffer), -2);
    EXPECT_STREQ(buffer, "/var");
}

}  // namespace

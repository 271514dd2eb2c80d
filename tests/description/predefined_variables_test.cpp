#include "description/predefined_variables.h"

#include <gtest/gtest.h>

#include "store_fixture.h"

namespace {

class Predefined : public StoreFixture {
protected:
    std::string read(const char* name) {
        char buffer[64] = "#";
        const int result = predefined_.read(name, buffer, sizeof buffer);
        return std::string(buffer) + "|" + std::to_string(result);
    }
};

TEST_F(Predefined, SixNamesHaveTheirValues) {
    EXPECT_EQ(read("GUI_INSTALL"), "0|-2");
    isGraphical_ = 1;
    EXPECT_EQ(read("GUI_INSTALL"), "1|-2");
    EXPECT_EQ(read("INSTALLER_DIR"), "C:\\Setup|-2");
    EXPECT_EQ(read("INSTALLER_FILE_NAME"), "setup.exe|-2");
    EXPECT_EQ(read("TEMP_DIR"), "C:\\Temp|-2");
    EXPECT_EQ(read("WX_PORT"), "win|-2");
    EXPECT_EQ(read("OPERATING_SYSTEM"), "win|-2");
}

TEST_F(Predefined, NamesIgnoreCaseAndNothingElseIsPredefined) {
    EXPECT_TRUE(PredefinedVariables::isPredefined("gui_Install"));
    EXPECT_FALSE(PredefinedVariables::isPredefined("GUI_INSTALL2"));
    EXPECT_FALSE(PredefinedVariables::isPredefined("GUI"));
    EXPECT_FALSE(PredefinedVariables::isPredefined(""));
    EXPECT_FALSE(PredefinedVariables::isPredefined(nullptr));
    EXPECT_EQ(read("OTHER"), "#|-1");
}

TEST_F(Predefined, BufferIsCutAndMayBeNull) {
    char buffer[4];
    EXPECT_EQ(predefined_.read("TEMP_DIR", buffer, 4), -2);
    EXPECT_STREQ(buffer, "C:\\");
    EXPECT_EQ(predefined_.read("TEMP_DIR", nullptr, 0), -2);
}

TEST_F(Predefined, ProgramBelowTheRootLiesInTheRoot) {
    environment_.programPath = "/setup";
    EXPECT_EQ(read("INSTALLER_DIR"), "/|-2");
    EXPECT_EQ(read("INSTALLER_FILE_NAME"), "setup|-2");
    environment_.programPath = "";
    EXPECT_EQ(read("INSTALLER_DIR"), "|-2");
    EXPECT_EQ(read("INSTALLER_FILE_NAME"), "|-2");
}

TEST_F(Predefined, MissingTemporaryDirectoryIsLogged) {
    environment_.tempDirectory = "";
    EXPECT_EQ(read("TEMP_DIR"), "|-1");
    EXPECT_EQ(log_.lines,
              (std::vector<std::string>{"WARNING: Failed to obtain temp directory for variable usage!"}));
    EXPECT_EQ(store_.setVariable("TEMP_DIR", "x"), -1) << "it can't be written all the same";
    EXPECT_EQ(store_.getCount(), 0);
}

}  // namespace

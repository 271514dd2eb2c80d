#include "engine/action_log_variables.h"

#include <gtest/gtest.h>

#include "fakes/memory_file_system.h"

namespace {

TEST(ActionLogVariablesTest, FindsAVariableInALog) {
    MemoryFileSystem files;
    files.addFile("/log", "a\r\nb\r\nNUMVARS\t1\r\nVAR\tROOT\t/app\r\n");
    std::string value;
    EXPECT_TRUE(ActionLogVariables(files).findVariableInLog("/log", "root", value));
    EXPECT_EQ(value, "/app");
    EXPECT_EQ(files.openFileCount(), 0);
}

TEST(ActionLogVariablesTest, KeepsTheOutputWhenThereIsNothingToFind) {
    MemoryFileSystem files;
    files.addFile("/log", "not a log");
    std::string value = "old";
    ActionLogVariables variables(files);
    EXPECT_FALSE(variables.findVariableInLog("/log", "ROOT", value));
    EXPECT_FALSE(variables.findVariableInLog("/none", "ROOT", value));
    EXPECT_FALSE(variables.findVariableInLog(nullptr, "ROOT", value));
    EXPECT_FALSE(variables.findVariableInLog("/log", nullptr, value));
    EXPECT_EQ(value, "old");
}

TEST(ActionLogVariablesTest, FindsWhatComesBeforeAFault) {
    MemoryFileSystem files;
    files.addFile("/log", "NUMVARS\t3\nVAR\tROOT\t/app\nbroken\n");
    std::string value;
    EXPECT_TRUE(ActionLogVariables(files).findVariableInLog("/log", "ROOT", value));
    EXPECT_EQ(value, "/app");
}

}  // namespace

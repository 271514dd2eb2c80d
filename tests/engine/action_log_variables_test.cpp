#include "engine/action_log_variables.h"

#include <gtest/gtest.h>

#include "platform/memory/memory_file_system.h"

namespace {

TEST(ActionLogVariablesTest, FindsAVariableInALog) {
    MemoryFileSystem files;
    files.addFile("/log", "a\r\nb\r\nNUMVARS\t1\r\nVAR\tROOT\t/app\r\n");
    EXPECT_EQ(ActionLogVariables(files).findVariableInLog("/log", "root"), "/app");
    EXPECT_EQ(files.openFileCount(), 0);
}

TEST(ActionLogVariablesTest, FindsNothingInAMissingOrForeignFile) {
    MemoryFileSystem files;
    files.addFile("/log", "not a log");
    ActionLogVariables variables(files);
    EXPECT_EQ(variables.findVariableInLog("/log", "ROOT"), std::nullopt);
    EXPECT_EQ(variables.findVariableInLog("/none", "ROOT"), std::nullopt);
    EXPECT_EQ(variables.findVariableInLog("", "ROOT"), std::nullopt);
    EXPECT_EQ(variables.findVariableInLog("/log", ""), std::nullopt);
}

TEST(ActionLogVariablesTest, FindsWhatComesBeforeAFault) {
    MemoryFileSystem files;
    files.addFile("/log", "NUMVARS\t3\nVAR\tROOT\t/app\nbroken\n");
    EXPECT_EQ(ActionLogVariables(files).findVariableInLog("/log", "ROOT"), "/app");
}

}  // namespace

#include "description/path_variables.h"

#include <gtest/gtest.h>

#include "description/pxml.h"
#include "map_lookup.h"
#include "platform/written_path.h"

namespace {

PathVariables variablesOf(const std::string& content) {
    PXML description;
    description.parseText("<R>" + content + "</R>");
    return PathVariables(description);
}

TEST(PathVariablesTest, HasNoneWithoutADescription) {
    EXPECT_FALSE(PathVariables().contains("DIR"));
    EXPECT_FALSE(PathVariables().contains(""));
}

TEST(PathVariablesTest, TakesWhatADirectoryFieldAsksFor) {
    const PathVariables paths =
        variablesOf("<Field Type='Directory'>Dir</Field><Field Type='EditBox'>NAME</Field>");
    EXPECT_TRUE(paths.contains("dir"));
    EXPECT_TRUE(paths.contains("DIR"));
    EXPECT_FALSE(paths.contains("NAME"));
}

TEST(PathVariablesTest, TakesWhatPathsOfTheDescriptionBeginWith) {
    const PathVariables paths = variablesOf(
        "<FN Dest='[A]/x'>f</FN><Add FileName='[B]' Section='[S]'>[V]</Add><RunProgram "
        "Arguments='[ARG]'>[C]/p"
        "</RunProgram><InstallLogFile>[D]/log</InstallLogFile><FN Dest='x[E]'>f</FN><Add Type='URL' "
        "Target='[U]'>x</Add><Add Type='File' Target='[T]'>x</Add>");
    for (const char* name : {"A", "B", "C", "D", "T"}) {
        EXPECT_TRUE(paths.contains(name)) << name;
    }
    for (const char* name : {"S", "V", "ARG", "E", "U"}) {
        EXPECT_FALSE(paths.contains(name)) << name;
    }
}

TEST(PathVariablesTest, FollowsTheExpressionsOfDefaultValues) {
    const PathVariables paths = variablesOf(
        "<FN Dest='[BIN]'>f</FN><DefValues><Value Name='BIN' DataType='value'>$HOME_DIR\\bin</Value>"
        "<Value Name='DEEP' DataType='value'>$BIN/deep</Value><Value Name='SAME' "
        "DataType='value'>$deep</Value>"
        "<Value Name='TEXT' DataType='value'>in $BIN</Value><Value Name='SUFFIX' "
        "DataType='value'>$BIN-x</Value>"
        "<Value Name='LIST' DataType='value'>$BIN;$DEEP</Value>"
        "<Value Name='ENV' DataType='envvar'>$BIN</Value></DefValues>");
    for (const char* name : {"BIN", "HOME_DIR", "DEEP", "SAME"}) {
        EXPECT_TRUE(paths.contains(name)) << name;
    }
    for (const char* name : {"TEXT", "SUFFIX", "LIST", "ENV"}) {
        EXPECT_FALSE(paths.contains(name)) << name;
    }
}

TEST(PathVariablesTest, EndsWithExpressionsThatReferToEachOther) {
    const PathVariables paths = variablesOf(
        "<FN Dest='[A]'>f</FN><Value Name='A' DataType='value'>$B</Value>"
        "<Value Name='B' DataType='value'>$A</Value>");
    EXPECT_TRUE(paths.contains("B"));
}

TEST(WrittenPathLookupTest, WritesOnlyPathsAsTheSystemDoes) {
    MapLookup variables;
    variables.values = {{"DIR", "\\opt\\demo"}, {"TEXT", "\\d+\\n"}};
    const PathVariables paths = variablesOf("<FN Dest='[DIR]'>f</FN>");
    WrittenPathLookup lookup(variables, paths);
    EXPECT_EQ(platform::writtenPath("\\opt\\demo"), lookup.get("DIR"));
    EXPECT_EQ("\\d+\\n", lookup.get("TEXT"));
    EXPECT_EQ(std::nullopt, lookup.get("NONE"));
}

}  // namespace

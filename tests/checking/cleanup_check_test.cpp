#include "checking/cleanup_check.h"

#include "checking/check_bench.h"

namespace {

class CleanUpCheckTest : public testing::Test {
protected:
    // The pattern begins in line 3.
    static std::string pattern(const std::string& directory, const std::string& names) {
        return "<UninstallWildcards>\n<P Dest='" + directory + "'>" + names + "</P></UninstallWildcards>";
    }
    static std::string set(const std::string& files) { return "<FileSet Name='S'>" + files + "</FileSet>"; }
    static std::string asked() {
        return "<DefValues><Value Name='D' DataType='value'>/x</Value></DefValues>"
               "<Dialogs><P><Field Type='Directory'>D</Field></P></Dialogs>";
    }

    CheckBench bench_{[](const CheckedParts& parts) {
        checkCleanUps(parts.context, parts.variables, parts.files, parts.paths);
    }};
};

TEST_F(CleanUpCheckTest, FindsPatternsWithSeparators) {
    EXPECT_EQ(bench_.find(pattern("/x", "a/*.log")), (Found{"cleanup-pattern 3:14"}));
    EXPECT_EQ(bench_.find(pattern("/x", "a\\b")), (Found{"cleanup-pattern 3:14"}));
    EXPECT_EQ(bench_.find(pattern("/x", "a?.*")), Found());
}

TEST_F(CleanUpCheckTest, FindsPatternsForAllFilesOfTheProduct) {
    for (const std::string names : {"*", "*.*", "**"}) {
        EXPECT_EQ(bench_.find(asked() + pattern("[D]", names)), (Found{"cleanup-everything 3:15"})) << names;
    }
    EXPECT_EQ(bench_.find(pattern("/x", "*") + set("<FN Dest='/x/a'>a</FN><FN Dest='/x/b'>b</FN>")),
              (Found{"cleanup-everything 3:14"}));
}

TEST_F(CleanUpCheckTest, LetsADirectoryBelowBeEmptied) {
    EXPECT_EQ(bench_.find(asked() + pattern("[D]/cache", "*")), Found());
    EXPECT_EQ(bench_.find(asked() + pattern("[D]", "*.tmp")), Found());
    EXPECT_EQ(bench_.find(pattern("/x/cache", "*") + set("<FN Dest='/x'>a</FN><FN Dest='/x/cache'>b</FN>")),
              Found());
    EXPECT_EQ(bench_.find(pattern("/x", "*")), Found());
}

TEST_F(CleanUpCheckTest, FindsVariablesThatTheLogDoesNotHave) {
    const auto exclude = [](const std::string& attributes) {
        return "<InstallerExcludeVariables><Variable" + attributes +
               ">D</Variable></InstallerExcludeVariables>" + asked();
    };
    for (const std::string attributes : {"", " ExcludeFrom='all'", " ExcludeFrom='config;LOG'"}) {
        EXPECT_EQ(bench_.find(exclude(attributes) + pattern("[d]/x", "a")), (Found{"cleanup-excluded 3:10"}))
            << attributes;
    }
    EXPECT_EQ(bench_.find(exclude(" ExcludeFrom='config'") + pattern("[D]/x", "a")), Found());
}

TEST_F(CleanUpCheckTest, FindsDirectoriesThatAreNotTheProducts) {
    const std::string values =
        "<DefValues><Value Name='E' DataType='envvar'>SHARED_TOOLS</Value></DefValues>";
    EXPECT_EQ(bench_.find(values + pattern("[E]", "a")), (Found{"cleanup-outside 3:10"}));
    EXPECT_EQ(bench_.find(values + pattern("[E]", "a") + set("<FN Dest='[E]'>a</FN>")), Found());
    EXPECT_EQ(bench_.find(values + pattern("[E]/x", "a")), Found());
    EXPECT_EQ(bench_.find(pattern("/x/../y", "a")), (Found{"cleanup-outside 3:10"}));
    EXPECT_EQ(bench_.find(pattern("/x..y/..z", "a")), Found());
}

}  // namespace

#include "ui/console/typed_directory.h"

#include <gtest/gtest.h>

#include "platform/memory/memory_environment.h"

namespace {

struct TypedDirectoryTest : testing::Test {
    MemoryEnvironment environment;

    std::string meant(std::string_view typed) { return typedDirectory(typed, environment); }
    void SetUp() override { environment.set("HOME", "/home/ann"); }
};

TEST_F(TypedDirectoryTest, LeavesAbsolutePathsAsTheyAre) {
    for (const std::string_view path : {"/opt/x", "/opt/../x", "C:\\x", "C:x", "\\\\host\\share", ""}) {
        EXPECT_EQ(meant(path), path);
    }
}

TEST_F(TypedDirectoryTest, KnowsTheHomeDirectory) {
    EXPECT_EQ(meant("~"), "/home/ann");
    EXPECT_EQ(meant("~/apps"), "/home/ann\\apps");
    EXPECT_EQ(meant("~\\apps"), "/home/ann\\apps");
    EXPECT_EQ(meant("~/../bob"), "/home/bob");
}

TEST_F(TypedDirectoryTest, PrefersTheProfileOfAUserOfWindows) {
    environment.set("USERPROFILE", "C:\\Users\\ann");
    EXPECT_EQ(meant("~/apps"), "C:\\Users\\ann\\apps");
}

TEST_F(TypedDirectoryTest, CountsRelativePathsFromTheCurrentDirectory) {
    environment.current = "/work";
    EXPECT_EQ(meant("apps"), "/work\\apps");
    EXPECT_EQ(meant("./apps//x/"), "/work\\apps\\x");
    EXPECT_EQ(meant("."), "/work");
    EXPECT_EQ(meant(".."), "/");
    EXPECT_EQ(meant("../../../x"), "/x");
    EXPECT_EQ(meant("~bob/x"), "/work\\~bob\\x");
}

TEST_F(TypedDirectoryTest, LeavesVariablesToTheDescription) {
    EXPECT_EQ(meant("[INSTALL_DIR]/x"), "[INSTALL_DIR]/x");
    EXPECT_EQ(meant("x/[NAME]"), "x/[NAME]");
}

TEST_F(TypedDirectoryTest, LeavesWhatCannotBeResolved) {
    MemoryEnvironment empty;
    empty.current.clear();
    EXPECT_EQ(typedDirectory("~/apps", empty), "~/apps");
    empty.set("HOME", "relative");
    EXPECT_EQ(typedDirectory("~/apps", empty), "~/apps");
    EXPECT_EQ(typedDirectory("apps", empty), "apps");
}

}  // namespace

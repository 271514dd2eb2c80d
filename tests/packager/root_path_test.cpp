#include "packager/root_path.h"

#include <gtest/gtest.h>

#include "base/errors.h"

namespace {

TEST(RootPathTest, CleansThePath) {
    EXPECT_EQ(pathBelowRoot("a/b.txt"), "a/b.txt");
    EXPECT_EQ(pathBelowRoot("/a//./b\\c/"), "a/b/c");
    EXPECT_EQ(pathBelowRoot("."), "");
    EXPECT_EQ(pathBelowRoot(""), "");
    EXPECT_EQ(pathBelowRoot("..."), "...");
}

TEST(RootPathTest, RefusesWhatMayLeadOut) {
    for (const std::string path : {"..", "a/../b", "a\\..", "C:/a", "a/b:c"}) {
        EXPECT_THROW(pathBelowRoot(path), InstallerError) << path;
    }
}

TEST(RootPathTest, TheDefaultAliasHasNoSeparators) {
    EXPECT_EQ(defaultAliasOf("bin/x\\tool.exe"), "binxtool.exe");
}

}  // namespace

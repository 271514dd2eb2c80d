#include "engine/changes/removed_files.h"

#include <gtest/gtest.h>

namespace {

TEST(RemovedFilesTest, KnowsAPathInEachSpelling) {
    RemovedFiles removed;
    EXPECT_FALSE(removed.contains("/opt/tool.ini"));
    removed.add("\\opt\\demo/tool.ini");
    for (const char* path : {"/opt/demo/tool.ini", "\\opt\\demo\\tool.ini", "/opt//demo\\Tool.INI"}) {
        EXPECT_TRUE(removed.contains(path)) << path;
    }
    for (const char* path : {"/opt/demo", "/opt/demo/tool.in", "tool.ini", ""}) {
        EXPECT_FALSE(removed.contains(path)) << path;
    }
}

}  // namespace

#include "platform/written_path.h"

#include <gtest/gtest.h>

namespace {

TEST(PosixWrittenPathTest, WritesSlashesAndNoDrive) {
    EXPECT_EQ("/opt/demo/x", platform::writtenPath("\\opt\\demo/x"));
    EXPECT_EQ("/opt", platform::writtenPath("C:\\opt"));
    EXPECT_EQ("a/b", platform::writtenPath("a\\b"));
}

}  // namespace

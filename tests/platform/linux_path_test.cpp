#include "platform/linux_path.h"

#include <gtest/gtest.h>

namespace {

using platform::linuxPath;

TEST(LinuxPathTest, TurnsSeparators) {
    EXPECT_EQ(linuxPath("/opt\\product/file"), "/opt/product/file");
    EXPECT_EQ(linuxPath("\\\\a\\b\\"), "//a/b/");
}

TEST(LinuxPathTest, DropsALeadingDrive) {
    EXPECT_EQ(linuxPath("C:\\opt\\x"), "/opt/x");
    EXPECT_EQ(linuxPath("z:/opt"), "/opt");
    EXPECT_EQ(linuxPath("C:relative"), "relative");
    EXPECT_EQ(linuxPath("C:"), "");
}

TEST(LinuxPathTest, KeepsWhatIsNoDrive) {
    EXPECT_EQ(linuxPath("1:\\x"), "1:/x");
    EXPECT_EQ(linuxPath("/C:/x"), "/C:/x");
    EXPECT_EQ(linuxPath(":"), ":");
    EXPECT_EQ(linuxPath(""), "");
}

}  // namespace

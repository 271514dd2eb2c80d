#include "platform/posix/native_path.h"

#include <gtest/gtest.h>

namespace {

using platform::nativePath;

TEST(NativePathTest, TurnsSeparators) {
    EXPECT_EQ(nativePath("/opt\\product/file"), "/opt/product/file");
    EXPECT_EQ(nativePath("\\\\a\\b\\"), "//a/b/");
}

TEST(NativePathTest, DropsALeadingDrive) {
    EXPECT_EQ(nativePath("C:\\opt\\x"), "/opt/x");
    EXPECT_EQ(nativePath("z:/opt"), "/opt");
    EXPECT_EQ(nativePath("C:relative"), "relative");
    EXPECT_EQ(nativePath("C:"), "");
}

TEST(NativePathTest, KeepsWhatIsNoDrive) {
    EXPECT_EQ(nativePath("1:\\x"), "1:/x");
    EXPECT_EQ(nativePath("/C:/x"), "/C:/x");
    EXPECT_EQ(nativePath(":"), ":");
    EXPECT_EQ(nativePath(""), "");
}

}  // namespace

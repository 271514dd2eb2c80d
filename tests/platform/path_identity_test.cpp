#include "platform/path_identity.h"

#include <gtest/gtest.h>

namespace {

using platform::pathIdentity;

TEST(PathIdentityTest, IsTheSameForBothSeparatorsAndRepeatedOnes) {
    EXPECT_EQ(pathIdentity("/opt/demo/a.txt"), pathIdentity("/opt\\demo//\\a.txt"));
    EXPECT_EQ(pathIdentity(""), "");
}

TEST(PathIdentityTest, TellsFilesApart) {
    EXPECT_NE(pathIdentity("/opt/demo/a"), pathIdentity("/opt/demo/b"));
    EXPECT_NE(pathIdentity("/opt/demo/a"), pathIdentity("/opt/demo/a/"));
    EXPECT_NE(pathIdentity("/opt/demo/a"), pathIdentity("opt/demo/a"));
}

TEST(PathIdentityTest, KeepsBytesThatAreNoText) {
    EXPECT_EQ(pathIdentity("/a/\xff\xfe"), pathIdentity("/a//\xff\xfe"));
    EXPECT_NE(pathIdentity("/a/\xff\xfe"), pathIdentity("/a/\xff\xfd"));
}

}  // namespace

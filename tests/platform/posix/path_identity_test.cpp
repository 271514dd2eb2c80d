#include "platform/path_identity.h"

#include <gtest/gtest.h>

namespace {

TEST(PosixPathIdentityTest, LeavesADriveOut) {
    EXPECT_EQ(platform::pathIdentity("C:\\opt\\demo"), platform::pathIdentity("/opt/demo"));
}

TEST(PosixPathIdentityTest, TellsLettersOfEitherCaseApart) {
    EXPECT_NE(platform::pathIdentity("/opt/demo/A"), platform::pathIdentity("/opt/demo/a"));
}

}  // namespace

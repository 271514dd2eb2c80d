#include "platform/path_identity.h"

#include <gtest/gtest.h>

namespace {

TEST(WindowsPathIdentityTest, IgnoresTheCaseOfLetters) {
    EXPECT_EQ(platform::pathIdentity("C:\\Opt\\Demo\\A"), platform::pathIdentity("c:/opt/demo/a"));
    EXPECT_EQ(platform::pathIdentity("C:\\\xc3\xa4"), platform::pathIdentity("C:\\\xc3\x84"));
}

TEST(WindowsPathIdentityTest, TellsDrivesAndNetworkPathsApart) {
    EXPECT_NE(platform::pathIdentity("C:\\opt"), platform::pathIdentity("D:\\opt"));
    EXPECT_NE(platform::pathIdentity("\\\\server\\share"), platform::pathIdentity("\\server\\share"));
}

}  // namespace

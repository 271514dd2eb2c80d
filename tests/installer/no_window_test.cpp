#include "installer/no_window.h"

#include <gtest/gtest.h>

namespace {

TEST(NoWindow, SaysThatThereIsNone) {
    NoWindow windows;
    std::string reason;
    EXPECT_FALSE(windows.isAvailable(reason));
    EXPECT_EQ(reason, "this build has no window");
}

}  // namespace

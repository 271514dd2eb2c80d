#include "platform/edit_control.h"

#include <gtest/gtest.h>

namespace {

TEST(EditControlOf, FindsNoneWithoutAWindow) {
    EXPECT_EQ(platform::editControlOf(nullptr), nullptr);
    int noWindow = 0;
    EXPECT_EQ(platform::editControlOf(&noWindow), nullptr);
}

}  // namespace

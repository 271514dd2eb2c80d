#include "platform/virtual_display.h"

#include <gtest/gtest.h>

namespace {

// What there is depends on the machine; a reason is given exactly when there is nothing.
TEST(VirtualDisplay, IsThereOrSaysWhyNot) {
    std::string reason;
    const auto display = platform::startVirtualDisplay(320, 200, reason);
    EXPECT_EQ(reason.empty(), display != nullptr);
    if (display != nullptr) {
        EXPECT_GT(display->name().size(), 1U);
        EXPECT_EQ(display->name()[0], ':');
    }
}

}  // namespace

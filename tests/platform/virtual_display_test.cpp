#include "platform/virtual_display.h"

#include <gtest/gtest.h>

#include "platform/memory/memory_environment.h"

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

TEST(LetterSize, IsOfThisProcessOrOfTheDesktop) {
    MemoryEnvironment environment;
    EXPECT_TRUE(platform::setLetterSize(environment, 100));
    if (platform::setLetterSize(environment, 125)) {
        EXPECT_EQ(environment.get("GDK_DPI_SCALE"), "1.25");
        EXPECT_TRUE(platform::setLetterSize(environment, 205));
        EXPECT_EQ(environment.get("GDK_DPI_SCALE"), "2.05");
    } else {
        EXPECT_TRUE(environment.variables.empty());
    }
}

}  // namespace

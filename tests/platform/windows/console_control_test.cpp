#include "platform/windows/console_control.h"

#include <gtest/gtest.h>

#include <vector>

#include "platform/console_device.h"

namespace {

using platform::ControlEvent;
using platform::dispatchControlEvent;

std::vector<int> heard;

bool takeAllButBreak(ControlEvent event) {
    heard.push_back(static_cast<int>(event));
    return event != ControlEvent::kBreak;
}

bool takeNothing(ControlEvent event) {
    heard.push_back(100 + static_cast<int>(event));
    return false;
}

TEST(ConsoleControl, HandsTheKnownEventsToTheHandler) {
    heard.clear();
    ASSERT_TRUE(platform::setControlHandler(takeAllButBreak));
    for (const DWORD event : {0, 2, 5, 6}) {
        EXPECT_TRUE(dispatchControlEvent(event)) << event;
    }
    EXPECT_FALSE(dispatchControlEvent(1));
    EXPECT_EQ(heard, (std::vector<int>{0, 2, 5, 6, 1}));
}

TEST(ConsoleControl, LeavesUnknownEventsToTheSystem) {
    heard.clear();
    ASSERT_TRUE(platform::setControlHandler(takeAllButBreak));
    EXPECT_FALSE(dispatchControlEvent(3));
    EXPECT_FALSE(dispatchControlEvent(7));
    EXPECT_TRUE(heard.empty());
}

TEST(ConsoleControl, AsksTheLastHandlerOnly) {
    heard.clear();
    ASSERT_TRUE(platform::setControlHandler(takeAllButBreak));
    ASSERT_TRUE(platform::setControlHandler(takeNothing));
    EXPECT_FALSE(dispatchControlEvent(0));
    EXPECT_EQ(heard, std::vector<int>{100});
}

}  // namespace

#include "installer/console_control.h"

#include <gtest/gtest.h>

namespace {

using platform::ControlEvent;

TEST(ConsoleControlTest, EndingEventsAreDealtWithAlsoWithoutASession) {
    setActiveInstaller(nullptr);
    for (const ControlEvent event :
         {ControlEvent::kInterrupt, ControlEvent::kClose, ControlEvent::kLogoff, ControlEvent::kShutdown}) {
        EXPECT_TRUE(handleConsoleControl(event)) << static_cast<int>(event);
    }
}

TEST(ConsoleControlTest, ABreakIsLeftToTheSystem) {
    EXPECT_FALSE(handleConsoleControl(ControlEvent::kBreak));
    EXPECT_FALSE(handleConsoleControl(static_cast<ControlEvent>(77)));
}

}  // namespace

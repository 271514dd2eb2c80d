#include "platform/message_box.h"

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/windows/child_program.h"

namespace {

// Not a test: a box on a desktop that nobody sees.
TEST(MessageChild, DISABLED_speaksOnAnInvisibleDesktop) {
    const HWINSTA station = CreateWindowStationW(nullptr, 0, WINSTA_ALL_ACCESS, nullptr);
    ASSERT_NE(station, nullptr);
    ASSERT_NE(SetProcessWindowStation(station), 0);
    platform::showMessage("The t\xC3\xA9xt.", "Caption", platform::MessageIcon::kError);
}

TEST(ShowMessage, GoesToStandardErrorWhereNobodySeesIt) {
    const ChildResult child = runChild("MessageChild.DISABLED_speaksOnAnInvisibleDesktop", "");
    EXPECT_EQ(child.exitCode, 0) << child.output;
    EXPECT_THAT(child.error, testing::HasSubstr("Caption: The t\xC3\xA9xt.\r\n"));
}

}  // namespace

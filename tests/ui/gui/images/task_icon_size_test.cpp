#include "ui/gui/images/task_icon_size.h"

#include <gtest/gtest.h>

namespace {

TEST(TaskIconSize, ReadsTheKeys) {
    EXPECT_EQ(readTaskIconSize("size=16"), (ImageSize{16, 16}));
    EXPECT_EQ(readTaskIconSize("width=20;height=10"), (ImageSize{20, 10}));
    EXPECT_EQ(readTaskIconSize("size=16;height=10"), (ImageSize{16, 10}));
    EXPECT_EQ(readTaskIconSize("height=10;size=16;"), (ImageSize{16, 16}));
    EXPECT_EQ(readTaskIconSize(" width = 20 ; height = 10 "), (ImageSize{20, 10}));
}

TEST(TaskIconSize, IgnoresWhatItDoesNotKnow) {
    EXPECT_EQ(readTaskIconSize(""), (ImageSize{0, 0}));
    EXPECT_EQ(readTaskIconSize(";;=;size;=5;Size=3;depth=4"), (ImageSize{0, 0}));
    EXPECT_EQ(readTaskIconSize("size=large"), (ImageSize{0, 0}));
    EXPECT_EQ(readTaskIconSize("size=99999999999"), (ImageSize{2147483647, 2147483647}));
}

TEST(TaskIconSize, IsTheGivenOneByTheScale) {
    EXPECT_EQ(taskIconSize({16, 20}, {64, 64}, 1.5), (ImageSize{24, 30}));
}

TEST(TaskIconSize, IsThePicturesOwnWhereNoneIsGiven) {
    EXPECT_EQ(taskIconSize({0, 20}, {64, 48}, 2), (ImageSize{128, 40}));
    EXPECT_EQ(taskIconSize({20, -1}, {64, 48}, 2), (ImageSize{40, 96}));
}

TEST(TaskIconSize, StaysASizeThatAPictureCanHave) {
    EXPECT_EQ(taskIconSize({2147483647, 2147483647}, {1, 1}, 2), (ImageSize{kMaxImageSide, kMaxImageSide}));
}

}  // namespace

#include "ui/gui/font_scale.h"

#include <gtest/gtest.h>

#include "fakes/recording_toolkit.h"

namespace {

TEST(FontScaleTest, SmallTextLeavesALayoutAsItIs) {
    EXPECT_EQ(fontScaleOf(237), 1.0);
    EXPECT_EQ(fontScaleOf(100), 1.0);
    EXPECT_EQ(fontScaleOf(0), 1.0);
}

TEST(FontScaleTest, LargerTextScalesALayout) {
    EXPECT_EQ(fontScaleOf(474), 2.0);
    EXPECT_DOUBLE_EQ(fontScaleOf(293), 293 / 237.0);
}

TEST(FontScaleTest, MeasuresALongTextInTheFontOfTheControls) {
    RecordingToolkit window;
    window.textWidth = 300;
    EXPECT_EQ(measureSampleText(window), (Extent{300, RecordingToolkit::kTextHeight}));
}

}  // namespace

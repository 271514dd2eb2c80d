#include "ui/gui/page_host.h"

#include "fakes/recording_toolkit.h"

#include <gtest/gtest.h>

namespace {

TEST(PageHostTest, ReadsTheTextOfAControl) {
    RecordingToolkit window;
    ControlSpec spec;
    spec.kind = ControlKind::kTextBox;
    const ControlId box = window.add(spec);
    window.setText(box, "typed");
    EXPECT_EQ(textOf(window, box), "typed");
    EXPECT_EQ(textOf(window, 99), "");
}

}  // namespace

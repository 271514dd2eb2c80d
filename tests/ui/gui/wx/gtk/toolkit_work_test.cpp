#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <string>

#include "ui/gui/wx/window_fixture.h"

// What is handled in the middle of long work.

namespace {

constexpr Place kBox{20, 20, 300, 150};

gboolean noteRun(gpointer isRun) {
    *static_cast<bool*>(isRun) = true;
    return G_SOURCE_REMOVE;
}

bool isDark(const Dot& dot) {
    return dot.red < 100 && dot.green < 100 && dot.blue < 100;
}

class ToolkitWork : public WindowTest {
protected:
    void handleEventsOften() {
        for (int i = 0; i < 100; ++i) {
            toolkit->processEvents();
        }
    }
    int darkDotsIn(ControlId control) { return pixelsOf(control).count(isDark); }
};

}  // namespace

TEST_F(ToolkitWork, WhatIsForIdleMomentsWaitsForThem) {
    inFrame([&] {
        bool isDrawn = false;
        bool isRun = false;
        g_idle_add_full(GDK_PRIORITY_REDRAW, noteRun, &isDrawn, nullptr);
        toolkit->processEvents();
        EXPECT_TRUE(isDrawn);
        const guint idle = g_idle_add_full(GDK_PRIORITY_REDRAW + 5, noteRun, &isRun, nullptr);
        handleEventsOften();
        ASSERT_FALSE(isRun);
        g_source_remove(idle);
    });
}

TEST_F(ToolkitWork, TheListShowsTheLastOfManyLinesAllTheSame) {
    inFrame([&] {
        const ControlId list = add(ControlKind::kLines, {}, kBox);
        toolkit->show(list, true);
        waitUntil([&] { return darkDotsIn(list) == 0; }, "an empty list");
        for (int part = 0; part < 100; ++part) {
            toolkit->appendText(list, std::string(50, '\n'));
            toolkit->processEvents();
        }
        EXPECT_EQ(darkDotsIn(list), 0);
        toolkit->appendText(list, "WWWWWWWW\nWWWWWWWW\n");
        waitUntil([&] { return darkDotsIn(list) > 50; }, "the last lines");
        toolkit->appendText(list, std::string(50, '\n'));
        waitUntil([&] { return darkDotsIn(list) == 0; }, "the lines after them");
    });
}

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "ui/gui/start/window_toolkit.h"
#include "ui/gui/wx/window_fixture.h"

namespace {

class ToolkitFrame : public WindowTest {};

}  // namespace

TEST_F(ToolkitFrame, HasExactlyTheClientSizeThatItIsGiven) {
    inFrame([&] {
        EXPECT_EQ(toolkit->clientSize(), (Extent{600, 460}));
        toolkit->setClientSize({741, 568});
        waitUntil([&] { return toolkit->clientSize() == Extent{741, 568}; }, "the size");
        key("shift");
        EXPECT_EQ(toolkit->clientSize(), (Extent{741, 568}));
    });
}

TEST_F(ToolkitFrame, IsMadeOnceAndShownOnce) {
    inLoop([&] {
        FrameSpec spec;
        spec.clientSize = {300, 200};
        EXPECT_TRUE(toolkit->makeFrame(spec));
        EXPECT_FALSE(toolkit->makeFrame(spec));
        EXPECT_FALSE(toolkit->isActive());
        EXPECT_EQ(toolkit->clientSize(), (Extent{300, 200}));
        toolkit->showFrame();
        waitFor("first show");
        waitUntil([&] { return lastActivation && toolkit->isActive(); }, "the activation");
    });
    EXPECT_EQ(notes, (std::vector<std::string>{"start", "first show"}));
}

TEST_F(ToolkitFrame, RunsAgainAndAgain) {
    for (int i = 0; i < 3; ++i) {
        notes.clear();
        inFrame([&] {
            const ControlId button = show(ControlKind::kButton, "Next");
            click(button);
            expectNoted({press(button)});
        });
    }
}

TEST_F(ToolkitFrame, HasNoEffectOutsideARun) {
    notes.clear();
    toolkit->processEvents();
    toolkit->wake();
    EXPECT_EQ(add(ControlKind::kButton, "Next"), 0);
    EXPECT_FALSE(toolkit->makeFrame({}));
    EXPECT_EQ(toolkit->clientSize(), Extent());
    EXPECT_EQ(toolkit->measureText("words"), Extent());
    EXPECT_GE(toolkit->pixelDensity(), 1.0);
    EXPECT_TRUE(notes.empty());
}

TEST_F(ToolkitFrame, ClosesOnlyWhenTheCallerAgrees) {
    inFrame([&] {
        goOnAfterBody();
        key("Escape");
        waitFor("close");
        EXPECT_TRUE(toolkit->makeFrame({}) == false);
        mayClose = true;
        key("Escape");
        waitUntil([&] { return notes == std::vector<std::string>{"close", "close"}; }, "the second question");
    });
    EXPECT_EQ(toolkit->clientSize(), Extent());
}

TEST_F(ToolkitFrame, TheLoopEndsWhenTheFrameIsClosed) {
    inFrame([&] {
        goOnAfterBody();
        onIdled = [&] {
            if (idles == 3) {
                toolkit->closeFrame();
            }
        };
        toolkit->wake();
    });
    onIdled = nullptr;
    EXPECT_GE(idles, 3);
}

TEST_F(ToolkitFrame, ReportsTheTimerOnceASecondAndWakesFromAnotherThread) {
    inFrame([&] {
        waitUntil([&] { return timers >= 1; }, "the timer");
        std::thread other([&] { toolkit->wake(); });
        waitFor("wake");
        other.join();
        EXPECT_EQ(notes, std::vector<std::string>{"wake"});
    });
}

TEST_F(ToolkitFrame, ProcessesEventsInsideAnEventWithoutIdling) {
    inFrame([&] {
        goOnAfterBody();
        const ControlId outer = show(ControlKind::kButton, "Outer");
        const ControlId inner = show(ControlKind::kButton, "Inner");
        onPressed = [&](ControlId control) {
            if (control == outer) {
                idles = 0;
                click(inner);
                waitFor(press(inner));
                EXPECT_EQ(idles, 0);
                toolkit->closeFrame();
            }
        };
        click(outer);
        expectNoted({press(outer), press(inner)});
        onPressed = nullptr;
    });
}

TEST_F(ToolkitFrame, ChangesNest) {
    inFrame([&] {
        toolkit->beginChanges();
        toolkit->beginChanges();
        const ControlId button = show(ControlKind::kButton, "Next");
        toolkit->endChanges();
        toolkit->endChanges();
        toolkit->endChanges();
        click(button);
        expectNoted({press(button)});
    });
}

TEST_F(ToolkitFrame, MeasuresTextAndColours) {
    inLoop([&] {
        const Extent one = toolkit->measureText("The quick brown fox");
        const Extent two = toolkit->measureText("The quick brown fox jumps over the lazy dog");
        EXPECT_GT(one.width, 50);
        EXPECT_GT(two.width, one.width);
        EXPECT_EQ(two.height, one.height);
        EXPECT_GE(toolkit->pixelDensity(), 1.0);
        EXPECT_GT(toolkit->pageColour(), 0);  // no desktop has a black one
    });
}

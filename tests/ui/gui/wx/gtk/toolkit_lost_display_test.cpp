#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "ui/gui/start/window_toolkit.h"
#include "ui/gui/wx/window_fixture.h"

namespace {

class LostDisplay : public WindowTest {
protected:
    void endDisplay() {
        const std::string file = std::string(std::getenv("TANDREL_HAND")) + "/last.";
        std::ofstream(file + "new") << "end\n";
        ASSERT_EQ(std::rename((file + "new").c_str(), (file + "do").c_str()), 0);
    }
    bool isLost() const { return !notes.empty() && notes.back() == "lost"; }
    void expectNoEffect() {
        toolkit->processEvents();
        toolkit->redraw();
        toolkit->wake();
        toolkit->closeFrame();
        EXPECT_EQ(add(ControlKind::kButton, "Next"), 0);
        EXPECT_FALSE(toolkit->showMessage("words", "caption", MessageButtons::kOk, MessageSign::kError));
        EXPECT_FALSE(toolkit->isActive());
    }
};

}  // namespace

TEST_F(LostDisplay, IsReportedOnceToACallerThatHandlesEventsAndEndsTheRun) {
    int rounds = 0;
    bool done = false;
    inFrame([&] {
        goOnAfterBody();
        const ControlId button = show(ControlKind::kButton, "Next");
        onPressed = [&](ControlId) {
            endDisplay();
            while (!isLost()) {
                ++rounds;
                toolkit->setProgress(button, rounds);
                toolkit->processEvents();
            }
            expectNoEffect();
            toolkit->remove(button);
            done = true;
        };
        click(button);
        waitUntil([&] { return done; }, "the press");
    });
    ASSERT_TRUE(done);
    EXPECT_TRUE(isLost());
    EXPECT_EQ(std::count(notes.begin(), notes.end(), "lost"), 1);
    notes.clear();
    toolkit->run(*this);
    expectNoEffect();
    EXPECT_TRUE(notes.empty());
}

TEST_F(LostDisplay, WhileTheLoopWaitsEndsTheRun) {
    inFrame([&] {
        goOnAfterBody();
        show(ControlKind::kTextBox, "words");
        endDisplay();
    });
    EXPECT_TRUE(isLost());
    expectNoEffect();
}

TEST(NoDisplay, IsAReasonInOneLine) {
    for (const char* display : {"", ":98765"}) {
        EXPECT_EXIT(
            {
                setenv("DISPLAY", display, 1);
                unsetenv("WAYLAND_DISPLAY");
                std::string reason;
                const bool isOpen = openWindowToolkit(reason) != nullptr;
                const bool isOneLine = !reason.empty() && reason.find('\n') == std::string::npos;
                std::fprintf(stderr, "reason: %s\n", reason.c_str());
                std::exit(!isOpen && isOneLine ? 7 : 1);
            },
            testing::ExitedWithCode(7), "^reason: [^\n]*display[^\n]*\n$")
            << display;
    }
}

TEST_F(WindowTest, OpeningLeavesTheLocaleForNumbersAndTexts) {
    EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
    EXPECT_STREQ(std::setlocale(LC_MESSAGES, nullptr), "C");
    EXPECT_STREQ(std::setlocale(LC_TIME, nullptr), "C");
}

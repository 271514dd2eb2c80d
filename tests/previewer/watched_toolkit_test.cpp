#include "previewer/watched_toolkit.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "fakes/recording_toolkit.h"
#include "ui/gui/toolkit/copied_text.h"

namespace {

// A front end that only counts what it hears.
class Listener : public ToolkitEvents {
public:
    bool onStart() override {
        toolkit->makeFrame({"title", {300, 200}, false, -1, -1});
        toolkit->showFrame();
        return true;
    }
    void onFirstShow() override { ++shows; }
    void onActivate(bool) override {}
    void onIdle() override { ++idles; }
    void onTimer() override { ++timers; }
    bool onClose() override { return true; }
    void onPress(ControlId) override {}
    bool onEnter(bool) override { return false; }
    void onAltKey() override {}
    void onText(ControlId) override {}
    void onFocus(ControlId) override {}
    void onNavigate(bool) override {}
    void onWake() override {}
    void onDisplayLost() override {}

    Toolkit* toolkit = nullptr;
    int shows = 0;
    int idles = 0;
    int timers = 0;
};

class WatchedToolkitTest : public testing::Test {
protected:
    WatchedToolkitTest() { listener.toolkit = &watched; }

    RecordingToolkit window;
    WatchedToolkit watched{window};
    Listener listener;
};

TEST_F(WatchedToolkitTest, AsksForAStepWheneverNothingIsLeftToDo) {
    int steps = 0;
    watched.nextStep = [&] { ++steps; };
    watched.run(listener);
    EXPECT_EQ(steps, 3);
    EXPECT_EQ(listener.idles, 3);
    EXPECT_EQ(listener.shows, 1);
    EXPECT_GE(window.wakes, steps);
}

TEST_F(WatchedToolkitTest, HandsOnWhatAStepThrows) {
    watched.nextStep = [] { throw std::runtime_error("broken"); };
    EXPECT_THROW(watched.run(listener), std::runtime_error);
    EXPECT_TRUE(window.isClosed);
}

TEST_F(WatchedToolkitTest, NotesBoxesInsteadOfShowingThem) {
    EXPECT_TRUE(watched.showMessage("Really?", "Question", MessageButtons::kYesNo, MessageSign::kNone));
    CopiedText chosen;
    EXPECT_FALSE(watched.chooseDirectory("Where?", "/", chosen));
    EXPECT_TRUE(window.boxes.empty());
    EXPECT_EQ(watched.takeBoxes(), std::vector<std::string>{"Question: Really?"});
    EXPECT_TRUE(watched.takeBoxes().empty());
}

TEST_F(WatchedToolkitTest, KnowsTheControlsThatAreShown) {
    ControlSpec spec;
    spec.text = "words";
    spec.place = {1, 2, 3, 4};
    const ControlId shown = watched.add(spec);
    watched.show(shown, true);
    watched.add(spec);
    const ControlId removed = watched.add(spec);
    watched.show(removed, true);
    watched.remove(removed);
    watched.setText(shown, "more");
    const std::vector<PlacedControl> controls = watched.shownControls();
    ASSERT_EQ(controls.size(), 1U);
    EXPECT_EQ(controls[0].text, "more");
    EXPECT_EQ(controls[0].place, (Place{1, 2, 3, 4}));
    EXPECT_EQ(controls[0].words, (Extent{4 * RecordingToolkit::kCharacter, RecordingToolkit::kTextHeight}));
}

TEST_F(WatchedToolkitTest, GivesTheRowsAsTheWordsOfAListOfTasks) {
    ControlSpec spec;
    spec.kind = ControlKind::kTaskList;
    const ControlId tasks = watched.add(spec);
    watched.show(tasks, true);
    watched.addTask(tasks, {"Copy", 0, -1, false, ""});
    watched.addTask(tasks, {"Clean up", 0, -1, false, ""});
    const std::vector<PlacedControl> controls = watched.shownControls();
    ASSERT_EQ(controls.size(), 1U);
    EXPECT_EQ(controls[0].text, "Copy\nClean up");
    EXPECT_EQ(controls[0].words, (Extent{8 * RecordingToolkit::kCharacter, 0}));
}

}  // namespace

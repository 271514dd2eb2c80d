#include "ui/gui/wx/window_fixture.h"

#include <chrono>
#include <thread>

#include "ui/gui/start/window_toolkit.h"
#include "ui/gui/wx/screen_reader.h"

namespace {

constexpr std::chrono::seconds kPatience{10};
constexpr std::chrono::milliseconds kPause{2};
constexpr Extent kPage{600, 460};

}  // namespace

void WindowTest::SetUp() {
    hand_ = Hand::find();
    ASSERT_NE(hand_, nullptr) << "to be run by scripts/run-with-display";
    std::string reason;
    toolkit = openWindowToolkit(reason);
    ASSERT_NE(toolkit, nullptr) << reason;
}

bool WindowTest::onStart() {
    note("start");
    body_();
    // After a failure nobody might come who closes the frame.
    return startsLoop_ && !HasFailure();
}

void WindowTest::onIdle() {
    ++idles;
    if (onIdled) {
        onIdled();
    }
}

bool WindowTest::onClose() {
    note("close");
    return mayClose;
}

void WindowTest::onPress(ControlId control) {
    note(press(control));
    if (onPressed) {
        onPressed(control);
    }
}

bool WindowTest::onEnter(bool boxUsesEnter) {
    note(boxUsesEnter ? "enter in a box" : "enter");
    return takesEnter;
}

void WindowTest::inLoop(std::function<void()> body) {
    body_ = std::move(body);
    toolkit->run(*this);
    body_ = nullptr;
}

void WindowTest::inFrame(std::function<void()> body, bool isThemed) {
    inLoop([=, this] {
        FrameSpec spec;
        spec.title = kTitle;
        spec.clientSize = kPage;
        spec.isThemed = isThemed;
        ASSERT_TRUE(toolkit->makeFrame(spec));
        lastActivation = false;
        toolkit->showFrame();
        waitUntil(
            [&] {
                return lastActivation && toolkit->isActive() && !notes.empty() &&
                       notes.back() == "first show";
            },
            "the frame to get the focus");
        notes.clear();
        if (!HasFatalFailure()) {
            body();
        }
    });
}

void WindowTest::waitUntil(const std::function<bool()>& isSo, std::string_view what) {
    const auto end = std::chrono::steady_clock::now() + kPatience;
    while (!isSo()) {
        ASSERT_TRUE(std::chrono::steady_clock::now() < end)
            << "waited in vain for " << what << "; noted: " << testing::PrintToString(notes);
        toolkit->processEvents();
        std::this_thread::sleep_for(kPause);
    }
}

void WindowTest::focus(ControlId control) {
    toolkit->setFocus(control);
    waitUntil([&] { return lastFocus == control && toolkit->focused() == control; }, "the focus");
}

void WindowTest::waitFor(const std::string& word) {
    waitUntil([&] { return !notes.empty() && notes.back() == word; }, word);
}

void WindowTest::expectNoted(const std::vector<std::string>& words) {
    if (!words.empty()) {
        waitUntil([&] { return notes.size() >= words.size(); }, testing::PrintToString(words));
    }
    EXPECT_EQ(notes, words);
    notes.clear();
}

void WindowTest::letHandFinish() {
    waitUntil([&] { return hand_->isDone(); }, "the hand");
    EXPECT_EQ(hand_->problem(), "");
}

void WindowTest::type(const std::string& text) {
    hand_->type(text);
    letHandFinish();
}

void WindowTest::key(const std::string& name) {
    hand_->pressKey(name);
    letHandFinish();
}

void WindowTest::click(ControlId control, int fromRight) {
    const Place place = toolkit->place(control);
    const int x = fromRight < 0 ? place.x + place.width / 2 : place.x + place.width - fromRight;
    // GTK places a control some time after it was told to, and until then a click goes to what is behind.
    waitUntil([&] { return !readControl(kTitle, place).role.empty(); }, "the control in its place");
    // A pointer that rests where a control appears doesn't enter it.
    toolkit->redraw();
    hand_->movePointer(kTitle, x, place.y + place.height / 2);
    letHandFinish();
    // As with a person, a control that has just come there learns of the pointer before the button goes down.
    hand_->click();
    letHandFinish();
}

ControlId WindowTest::add(ControlKind kind, std::string_view text, Place place) {
    ControlSpec spec;
    spec.kind = kind;
    spec.text = text;
    spec.place = place;
    return toolkit->add(spec);
}

ControlId WindowTest::show(ControlKind kind, std::string_view text) {
    const ControlId control = add(kind, text, {20, nextTop_, 300, 0});
    nextTop_ += toolkit->place(control).height + 10;
    toolkit->show(control, true);
    return control;
}

WindowPixels WindowTest::pixelsOf(ControlId control) {
    toolkit->redraw();
    return {kTitle, toolkit->place(control)};
}

std::string WindowTest::textOf(ControlId control) {
    CopiedText text;
    toolkit->text(control, text);
    return text.copy;
}

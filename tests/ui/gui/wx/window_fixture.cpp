#include "ui/gui/wx/window_fixture.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include "ui/gui/start/window_toolkit.h"

namespace {

constexpr std::chrono::seconds kPatience{10};
constexpr std::chrono::milliseconds kPause{2};
constexpr Extent kPage{600, 460};

std::string contentOf(const std::filesystem::path& path) {
    std::ostringstream content;
    content << std::ifstream(path).rdbuf();
    return content.str();
}

}  // namespace

void WindowTest::SetUp() {
    ASSERT_NE(std::getenv("TANDREL_HAND"), nullptr) << "to be run by scripts/run-with-display";
    std::string reason;
    toolkit = openWindowToolkit(reason);
    ASSERT_NE(toolkit, nullptr) << reason;
}

bool WindowTest::onStart() {
    note("start");
    body_();
    return startsLoop_;
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
        spec.title = "Tandrel window test";
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

// The window manager moves a new frame to its place.
void WindowTest::waitUntilSettled() {
    const std::vector<std::string> ask = {
        "search", "--sync", "--onlyvisible", "--name", "Tandrel window test", "getwindowgeometry"};
    std::string before;
    for (std::string now = act(ask); now != before && !HasFatalFailure(); now = act(ask)) {
        before = now;
    }
}

void WindowTest::waitUntil(const std::function<bool()>& isSo, std::string_view what) {
    const auto end = std::chrono::steady_clock::now() + kPatience;
    while (!isSo()) {
        ASSERT_LT(std::chrono::steady_clock::now(), end)
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

std::string WindowTest::act(const std::vector<std::string>& arguments) {
    const std::filesystem::path hand(std::getenv("TANDREL_HAND"));
    static int actions = 0;
    const std::string name = std::to_string(++actions);
    {
        std::ofstream file(hand / (name + ".new"), std::ios::binary);
        for (const std::string& argument : arguments) {
            file << argument << "\n";
        }
    }
    std::filesystem::rename(hand / (name + ".new"), hand / (name + ".do"));
    waitUntil([&] { return std::filesystem::exists(hand / (name + ".done")); }, "the hand");
    return contentOf(hand / (name + ".out"));
}

void WindowTest::click(ControlId control, int fromRight) {
    const Place place = toolkit->place(control);
    const int x = fromRight < 0 ? place.x + place.width / 2 : place.x + place.width - fromRight;
    const std::string y = std::to_string(place.y + place.height / 2);
    // A pointer that rests where a control appears doesn't enter it.
    toolkit->redraw();
    act({"search", "--sync", "--onlyvisible", "--name", "Tandrel window test", "mousemove", "--window", "%1",
         "1", "1", "mousemove", "--window", "%1", std::to_string(x), y});
    // As with a person, a control that has just come there learns of the pointer before the button goes down.
    act({"click", "1"});
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

std::string WindowTest::textOf(ControlId control) {
    CopiedText text;
    toolkit->text(control, text);
    return text.copy;
}

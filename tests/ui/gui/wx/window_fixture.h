#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ui/gui/toolkit/copied_text.h"
#include "ui/gui/toolkit/toolkit.h"
#include "ui/gui/toolkit/toolkit_events.h"
#include "ui/gui/wx/hand.h"
#include "ui/gui/wx/window_pixels.h"

// A frame on a real display, and somebody who sits in front of it (scripts/run-with-display). What the
// toolkit reports is noted as words: "press 3", "enter", "text 2"; timers, idle and activation apart.
class WindowTest : public testing::Test, public ToolkitEvents {
public:
    bool onStart() override;
    void onFirstShow() override { note("first show"); }
    void onActivate(bool isActive) override { lastActivation = isActive; }
    void onIdle() override;
    void onTimer() override { ++timers; }
    bool onClose() override;
    void onPress(ControlId control) override;
    bool onEnter(bool boxUsesEnter) override;
    void onAltKey() override { note("alt"); }
    void onText(ControlId control) override { note("text " + std::to_string(control)); }
    void onFocus(ControlId control) override { lastFocus = control; }
    void onNavigate(bool forward) override { note(forward ? "forward" : "back"); }
    void onWake() override { note("wake"); }
    void onDisplayLost() override { note("lost"); }

protected:
    // Of the frame of inFrame.
    static constexpr const char* kTitle = "Tandrel window test";

    void SetUp() override;

    // Runs `body` while the toolkit runs; there is no frame yet.
    void inLoop(std::function<void()> body);
    // The same with a frame on the screen that has the focus.
    void inFrame(std::function<void()> body, bool isThemed = false);

    // Handles events until it is so; fails after some seconds.
    void waitUntil(const std::function<bool()>& isSo, std::string_view what);
    void focus(ControlId control);
    // Until `word` is the last one that was noted.
    void waitFor(const std::string& word);
    void expectNoted(const std::vector<std::string>& words);

    // What the user does, in the terms of xdotool.
    void type(const std::string& text);
    void key(const std::string& name);
    void click(ControlId control, int fromRight = -1);

    ControlId add(ControlKind kind, std::string_view text = {}, Place place = {});
    // Shown, below the one before.
    ControlId show(ControlKind kind, std::string_view text = {});
    std::string textOf(ControlId control);
    // Drawn anew.
    WindowPixels pixelsOf(ControlId control);
    static std::string press(ControlId control) { return "press " + std::to_string(control); }

    Toolkit* toolkit = nullptr;
    std::vector<std::string> notes;
    ControlId lastFocus = 0;
    bool lastActivation = false;
    int timers = 0;
    int idles = 0;
    bool mayClose = false;
    bool takesEnter = true;
    std::function<void(ControlId)> onPressed;
    std::function<void()> onIdled;

private:
    // Until the hand has done what it was told.
    void letHandFinish();
    void note(const std::string& word) { notes.push_back(word); }

    std::unique_ptr<Hand> hand_;
    std::function<void()> body_;
    int nextTop_ = 10;
    bool startsLoop_ = false;

protected:
    // The loop goes on after the body, until the frame is closed.
    void goOnAfterBody() { startsLoop_ = true; }
};

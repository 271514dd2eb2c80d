#pragma once

#include <exception>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "previewer/forwarding_toolkit.h"
#include "previewer/layout_check.h"
#include "ui/gui/toolkit/toolkit_events.h"

// A toolkit whose window nobody sits in front of: boxes are noted and answered with yes instead of shown, and
// whenever nothing is left to do, the walk is asked for its next step.
class WatchedToolkit : public ForwardingToolkit, private ToolkitEvents {
public:
    // `toolkit` is borrowed.
    explicit WatchedToolkit(Toolkit& toolkit) : ForwardingToolkit(toolkit) {}

    // Called when the page that the window shows is complete, and again after each step. What it throws ends
    // the loop and leaves `run`.
    std::function<void()> nextStep;

    // The controls that are shown, in the order in which they were made.
    std::vector<PlacedControl> shownControls();
    // For how long `run` has lasted, about.
    int seconds() const { return seconds_; }
    // The boxes since the last call.
    std::vector<std::string> takeBoxes();

    void run(ToolkitEvents& events) override;
    bool showMessage(std::string_view text, std::string_view caption, MessageButtons buttons,
                     MessageSign sign) override;
    bool chooseDirectory(std::string_view title, std::string_view start, TextReceiver& chosen) override;
    ControlId add(const ControlSpec& spec) override;
    void remove(ControlId control) override;
    void setText(ControlId control, std::string_view text) override;

private:
    struct Control {
        ControlKind kind = ControlKind::kText;
        std::string text;
    };

    std::string wordsOf(ControlId id, const Control& control);

    bool onStart() override { return events_->onStart(); }
    void onFirstShow() override;
    void onActivate(bool isActive) override { events_->onActivate(isActive); }
    void onIdle() override;
    // What depends on time would make each preview another one.
    void onTimer() override { ++seconds_; }
    bool onClose() override { return true; }
    // Nobody is there who could do any of these.
    void onPress(ControlId) override {}
    bool onEnter(bool) override { return false; }
    void onAltKey() override {}
    void onText(ControlId) override {}
    void onFocus(ControlId control) override { events_->onFocus(control); }
    void onNavigate(bool) override {}
    void onWake() override { events_->onWake(); }
    void onDisplayLost() override { events_->onDisplayLost(); }

    ToolkitEvents* events_ = nullptr;
    bool isFirstShown_ = false;
    int seconds_ = 0;
    std::exception_ptr exception_;
    std::map<ControlId, Control> controls_;  // ids rise
    std::vector<std::string> boxes_;
};

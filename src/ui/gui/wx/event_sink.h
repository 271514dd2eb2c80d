#pragma once

#include <type_traits>

#include "ui/gui/toolkit/toolkit_events.h"
#include "ui/gui/wx/display.h"
#include "ui/gui/wx/scoped_count.h"

// The way of events to the caller. While it handles one, the display can go: its calls of the toolkit then
// return without effect, and the window system, which called this, must not go on either.
class EventSink {
public:
    // `events` is borrowed until the next call; null drops what is reported.
    void attach(ToolkitEvents* events) { events_ = events; }

    // `call` takes the ToolkitEvents. The result of a `call` that isn't made is false.
    template <typename Call>
    auto report(Call call) {
        const ScopedCount handling(depth_);
        using Result = std::invoke_result_t<Call, ToolkitEvents&>;
        if constexpr (std::is_void_v<Result>) {
            if (events_ != nullptr) {
                call(*events_);
            }
            display::leaveIfLost();
        } else {
            const Result result = events_ != nullptr && call(*events_);
            display::leaveIfLost();
            return result;
        }
    }

    // Whether the caller is handling an event.
    bool isReporting() const { return depth_ > 0; }

    void pressed(ControlId control) {
        report([=](ToolkitEvents& events) { events.onPress(control); });
    }
    void textChanged(ControlId control) {
        report([=](ToolkitEvents& events) { events.onText(control); });
    }

private:
    ToolkitEvents* events_ = nullptr;
    int depth_ = 0;
};

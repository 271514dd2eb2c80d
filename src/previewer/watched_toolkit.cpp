#include "previewer/watched_toolkit.h"

#include <utility>

#include "ui/gui/toolkit/copied_text.h"

std::vector<PlacedControl> WatchedToolkit::shownControls() {
    std::vector<PlacedControl> shown;
    for (const auto& [id, control] : controls_) {
        if (isShown(id)) {
            shown.push_back({control.kind, place(id), wordsSize(id), wordsOf(id, control)});
        }
    }
    return shown;
}

// A list of tasks has its words in its rows.
std::string WatchedToolkit::wordsOf(ControlId id, const Control& control) {
    if (control.kind != ControlKind::kTaskList) {
        return control.text;
    }
    CopiedText rows;
    text(id, rows);
    return rows.copy;
}

std::vector<std::string> WatchedToolkit::takeBoxes() {
    return std::exchange(boxes_, {});
}

void WatchedToolkit::run(ToolkitEvents& events) {
    events_ = &events;
    isFirstShown_ = false;
    seconds_ = 0;
    inner().run(*this);
    if (exception_) {
        std::rethrow_exception(std::exchange(exception_, nullptr));
    }
}

bool WatchedToolkit::showMessage(std::string_view text, std::string_view caption, MessageButtons /*buttons*/,
                                 MessageSign /*sign*/) {
    boxes_.push_back(std::string(caption) + ": " + std::string(text));
    return true;
}

bool WatchedToolkit::chooseDirectory(std::string_view /*title*/, std::string_view /*start*/,
                                     TextReceiver& /*chosen*/) {
    return false;
}

ControlId WatchedToolkit::add(const ControlSpec& spec) {
    const ControlId id = ForwardingToolkit::add(spec);
    if (id != 0) {
        controls_[id] = {spec.kind, std::string(spec.text)};
    }
    return id;
}

void WatchedToolkit::remove(ControlId control) {
    controls_.erase(control);
    ForwardingToolkit::remove(control);
}

void WatchedToolkit::setText(ControlId control, std::string_view text) {
    if (const auto found = controls_.find(control); found != controls_.end()) {
        found->second.text = text;
    }
    ForwardingToolkit::setText(control, text);
}

void WatchedToolkit::onFirstShow() {
    isFirstShown_ = true;
    events_->onFirstShow();
    wake();
}

// A step may leave nothing that the toolkit would become idle after.
void WatchedToolkit::onIdle() {
    events_->onIdle();
    if (!isFirstShown_ || exception_) {
        return;
    }
    try {
        nextStep();
    } catch (...) {
        exception_ = std::current_exception();
        closeFrame();
    }
    wake();
}

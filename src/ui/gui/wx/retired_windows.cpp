#include "ui/gui/wx/retired_windows.h"

#include "ui/gui/wx/display.h"

void RetiredWindows::add(wxWindow* window) {
    if (display::isLost()) {
        return;
    }
    const display::Uninterrupted uninterrupted;
    window->SetEvtHandlerEnabled(false);
    window->Hide();
    windows_.push_back(window);
}

void RetiredWindows::destroyAll() {
    const display::Uninterrupted uninterrupted;
    while (!windows_.empty()) {
        wxWindow* const window = windows_.back();
        windows_.pop_back();
        window->Destroy();
    }
}

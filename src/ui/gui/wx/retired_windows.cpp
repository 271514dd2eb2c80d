#include "ui/gui/wx/retired_windows.h"

void RetiredWindows::add(wxWindow* window) {
    window->SetEvtHandlerEnabled(false);
    window->Hide();
    windows_.push_back(window);
}

void RetiredWindows::destroyAll() {
    while (!windows_.empty()) {
        wxWindow* const window = windows_.back();
        windows_.pop_back();
        window->Destroy();
    }
}

#pragma once

#include <string>

#include "ui/gui/toolkit/control.h"

// What a screen reader learns about a control. Texts are UTF-8.
struct SpokenControl {
    std::string name;
    std::string role;  // "button", "link", "check box", "radio button", "progress bar", "document", "list",
                       // or another
    std::string description;
    int percent = -1;  // of a progress bar
    bool isEnabled = false;
    bool isChecked = false;
};

// Asks the system, in place of a screen reader, for the control at exactly this place in the window with this
// title. Each system has its own implementation (gtk/, msw/). Without such a control the result is empty.
SpokenControl readControl(const std::string& title, const Place& place);

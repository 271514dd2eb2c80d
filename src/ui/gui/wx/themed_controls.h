#pragma once

#include <memory>

#include "ui/gui/wx/page_control.h"

// Buttons, links, check boxes, radio buttons, progress bars and ornaments in colours of the application's
// choice, which the system's own controls don't offer: normal ones, and others under the mouse and with the
// focus. Null for other kinds. Has one implementation for each system (gtk/, msw/).
std::unique_ptr<PageControl> makeThemedControl(const ControlSite& site, const ControlSpec& spec);

// All themed controls of the frame underline their access keys, or none does.
void underlineAccessKeys(wxWindow& frame, bool underline);

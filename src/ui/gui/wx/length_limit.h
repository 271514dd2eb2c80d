#pragma once

#include <wx/textctrl.h>

// Lets a text of many lines become as long as it will. Has one implementation for each system (gtk/, msw/).
void liftLengthLimit(wxTextCtrl& text);

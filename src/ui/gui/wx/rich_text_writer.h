#pragma once

#include <wx/richtext/richtextctrl.h>

#include <span>

#include "ui/gui/toolkit/control.h"

// Replaces what `document` holds by what the commands write, and shows its beginning. Styles that they leave
// open end with them.
void writeRichText(wxRichTextCtrl& document, std::span<const RichTextCommand> commands);

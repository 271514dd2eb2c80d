#include "ui/gui/wx/native_look.h"

#include <wx/cursor.h>

namespace native_look {

// The system's controls follow the letters by themselves.
void prepare() {}

wxSize bestSizeOf(const wxWindow& window) {
    return window.GetBestSize();
}

void fillHeight(wxGauge& /*bar*/, int /*height*/) {}

// The system knows none at the top.
void setMargin(wxTextCtrl& lines, int margin) {
    lines.SetMargins(margin);
}

void showAsLink(wxButton& button) {
    button.SetFont(button.GetFont().Underlined());
    button.SetCursor(wxCursor(wxCURSOR_HAND));
}

}  // namespace native_look

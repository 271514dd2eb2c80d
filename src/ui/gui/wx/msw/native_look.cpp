#include "ui/gui/wx/native_look.h"

#include <wx/cursor.h>
#include <wx/dcscreen.h>
#include <wx/settings.h>

namespace native_look {

// The system's controls follow the letters by themselves.
void prepare() {}

// Not on a bitmap: whatever the screen's resolution, one has 96 dots per inch.
wxSize sizeOf(const wxString& text) {
    wxScreenDC context;
    context.SetFont(wxSystemSettings::GetFont(wxSYS_DEFAULT_GUI_FONT));
    return context.GetTextExtent(text);
}

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

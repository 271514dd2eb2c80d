#include "ui/gui/wx/native_look.h"

#include <wx/checkbox.h>
#include <wx/cursor.h>
#include <wx/dcclient.h>
#include <wx/dcmemory.h>
#include <wx/dcscreen.h>
#include <wx/image.h>
#include <wx/radiobut.h>
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

// The mark of a box or a button of a group is as large as a letter is high.
wxSize captionSizeOf(const wxControl& control) {
    const wxSize words = sizeOf(control.GetLabelText());
    const bool hasMark = dynamic_cast<const wxCheckBox*>(&control) != nullptr ||
                         dynamic_cast<const wxRadioButton*>(&control) != nullptr;
    return {words.x + (hasMark ? words.y : 0), words.y};
}

// Of what the screen shows: other windows in front of it are in the picture.
bool draw(wxWindow& window, PictureReceiver& outPicture) {
    window.Update();
    wxClientDC screen(&window);
    const wxSize size = screen.GetSize();
    wxBitmap bitmap;
    if (!bitmap.Create(size)) {
        return false;
    }
    wxMemoryDC context(bitmap);
    if (!context.Blit(wxPoint(), size, &screen, wxPoint())) {
        return false;
    }
    context.SelectObject(wxNullBitmap);
    const wxImage image = bitmap.ConvertToImage();
    if (!image.IsOk()) {
        return false;
    }
    outPicture.take({image.GetWidth(), image.GetHeight(), image.GetData(), nullptr});
    return true;
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

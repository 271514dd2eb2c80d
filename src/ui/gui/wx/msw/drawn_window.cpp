#include "ui/gui/wx/msw/drawn_window.h"

#include <wx/dcbuffer.h>
#include <wx/settings.h>

#include "ui/gui/wx/conversion.h"
#include "ui/gui/wx/msw/named_window.h"

namespace {

class DrawnWindowAccessible : public wxWindowAccessible, public NamedWindow {
public:
    explicit DrawnWindowAccessible(DrawnWindow& window) : wxWindowAccessible(&window), window_(window) {}

    wxAccStatus GetName(int /*child*/, wxString* name) override {
        *name = this->name().empty() ? window_.GetLabelText() : this->name();
        return wxACC_OK;
    }
    wxAccStatus GetRole(int /*child*/, wxAccRole* role) override {
        *role = window_.role();
        return wxACC_OK;
    }
    wxAccStatus GetState(int /*child*/, long* state) override {
        *state = window_.state();
        return wxACC_OK;
    }
    wxAccStatus GetValue(int /*child*/, wxString* value) override {
        *value = window_.value();
        return value->empty() ? wxACC_NOT_IMPLEMENTED : wxACC_OK;
    }
    wxAccStatus DoDefaultAction(int /*child*/) override {
        window_.press();
        return wxACC_OK;
    }

private:
    DrawnWindow& window_;
};

wxColour between(const wxColour& one, const wxColour& other) {
    const auto middle = [](unsigned a, unsigned b) { return static_cast<unsigned char>((a + b) / 2); };
    return {middle(one.Red(), other.Red()), middle(one.Green(), other.Green()),
            middle(one.Blue(), other.Blue())};
}

}  // namespace

DrawnWindow::DrawnWindow(wxWindow* parent, const wxString& caption, wxAccRole role) : role_(role) {
    Hide();
    Create(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxBORDER_NONE | wxWANTS_CHARS);
    SetBackgroundStyle(wxBG_STYLE_PAINT);
    SetLabel(caption);
    SetAccessible(new DrawnWindowAccessible(*this));
    bindEvents();
}

void DrawnWindow::bindEvents() {
    Bind(wxEVT_PAINT, [this](wxPaintEvent&) { onPaint(); });
    const auto redraw = [this](wxEvent& event) {
        event.Skip();
        Refresh();
    };
    Bind(wxEVT_SET_FOCUS, redraw);
    Bind(wxEVT_KILL_FOCUS, redraw);
    Bind(wxEVT_ENTER_WINDOW, [this](wxMouseEvent&) {
        isHovered_ = true;
        Refresh();
    });
    Bind(wxEVT_LEAVE_WINDOW, [this](wxMouseEvent&) {
        isHovered_ = false;
        Refresh();
    });
    const auto pushDown = [this](wxMouseEvent&) {
        SetFocus();
        isDown_ = true;
        CaptureMouse();
        Refresh();
    };
    Bind(wxEVT_LEFT_DOWN, pushDown);
    Bind(wxEVT_LEFT_DCLICK, pushDown);
    Bind(wxEVT_LEFT_UP, [this](const wxMouseEvent& event) { onMouseUp(event); });
    Bind(wxEVT_MOUSE_CAPTURE_LOST, [this](wxMouseCaptureLostEvent&) {
        isDown_ = false;
        Refresh();
    });
    Bind(wxEVT_KEY_DOWN, [this](wxKeyEvent& event) { onKey(event); });
}

void DrawnWindow::onMouseUp(const wxMouseEvent& event) {
    const bool wasDown = isDown_;
    isDown_ = false;
    if (HasCapture()) {
        ReleaseMouse();
    }
    Refresh();
    if (wasDown && GetClientRect().Contains(event.GetPosition())) {
        press();
    }
}

void DrawnWindow::onKey(wxKeyEvent& event) {
    switch (event.GetKeyCode()) {
        case WXK_SPACE:
        case WXK_RETURN:
        case WXK_NUMPAD_ENTER:
            press();
            break;
        case WXK_LEFT:
        case WXK_UP:
            move(false);
            break;
        case WXK_RIGHT:
        case WXK_DOWN:
            move(true);
            break;
        default:
            event.Skip();
    }
}

void DrawnWindow::setColours(const ControlColours& colours, const PageColours& page) {
    colours_ = colours;
    page_ = page;
    Refresh();
}

void DrawnWindow::underline(bool shown) {
    isUnderlined_ = shown;
    Refresh();
}

void DrawnWindow::setChecked(bool checked) {
    if (isChecked_ != checked) {
        isChecked_ = checked;
        Refresh();
        wxAccessible::NotifyEvent(wxACC_EVENT_OBJECT_STATECHANGE, this, wxOBJID_CLIENT, wxACC_SELF);
    }
}

bool DrawnWindow::Enable(bool enable) {
    const bool changed = wxControl::Enable(enable);
    Refresh();
    return changed;
}

long DrawnWindow::state() const {
    long state = 0;
    if (AcceptsFocus()) {
        state |= wxACC_STATE_SYSTEM_FOCUSABLE;
    }
    if (HasFocus()) {
        state |= wxACC_STATE_SYSTEM_FOCUSED;
    }
    if (!IsThisEnabled()) {
        state |= wxACC_STATE_SYSTEM_UNAVAILABLE;
    }
    if (!IsShown()) {
        state |= wxACC_STATE_SYSTEM_INVISIBLE;
    }
    if (isChecked_) {
        state |= wxACC_STATE_SYSTEM_CHECKED;
    }
    return state;
}

wxSize DrawnWindow::DoGetBestClientSize() const {
    return GetTextExtent(GetLabelText()) + FromDIP(wxSize(24, 10));
}

wxColour DrawnWindow::pageBackground() const {
    return page_.background == -1 ? GetParent()->GetBackgroundColour() : colourOf(page_.background);
}

wxColour DrawnWindow::background(const wxColour& otherwise) const {
    if (isActive() && colours_.activeBackground != -1) {
        return colourOf(colours_.activeBackground);
    }
    const wxColour colour = colours_.background == -1 ? otherwise : colourOf(colours_.background);
    return IsThisEnabled() ? colour : between(colour, pageBackground());
}

wxColour DrawnWindow::foreground() const {
    wxColour colour = wxSystemSettings::GetColour(wxSYS_COLOUR_BTNTEXT);
    if (isActive() && colours_.activeForeground != -1) {
        colour = colourOf(colours_.activeForeground);
    } else if (colours_.foreground != -1) {
        colour = colourOf(colours_.foreground);
    } else if (page_.foreground != -1) {
        colour = colourOf(page_.foreground);
    }
    return IsThisEnabled() ? colour : between(colour, background(pageBackground()));
}

void DrawnWindow::onPaint() {
    wxAutoBufferedPaintDC context(this);
    context.SetFont(GetFont());
    draw(context, GetClientRect());
}

void DrawnWindow::drawCaption(wxDC& context, const wxRect& area, int alignment) {
    wxString words;
    const int key = FindAccelIndex(GetLabel(), &words);
    context.SetTextForeground(foreground());
    context.DrawLabel(words, area, alignment | wxALIGN_CENTRE_VERTICAL, isUnderlined_ ? key : -1);
}

void DrawnWindow::drawFocus(wxDC& context, const wxRect& area) {
    if (HasFocus()) {
        context.SetPen(wxPen(foreground(), 1, wxPENSTYLE_DOT));
        context.SetBrush(*wxTRANSPARENT_BRUSH);
        context.DrawRectangle(area);
    }
}

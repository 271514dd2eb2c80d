#include "ui/gui/wx/page_frame.h"

#include <wx/settings.h>

#include <cwctype>

#include "ui/gui/wx/conversion.h"
#include "ui/gui/wx/themed_controls.h"

namespace {

constexpr long kFrameStyle = wxCAPTION | wxCLIP_CHILDREN | wxCLOSE_BOX | wxSYSTEM_MENU | wxMINIMIZE_BOX;

bool isSameLetter(char32_t one, char32_t other) {
    return std::towlower(static_cast<wint_t>(one)) == std::towlower(static_cast<wint_t>(other));
}

}  // namespace

PageFrame::PageFrame(const FrameSpec& spec, EventSink& events, PageControls& controls,
                     std::function<void()> close)
    : wxFrame(nullptr, wxID_ANY, wideText(spec.title), wxDefaultPosition, wxDefaultSize, kFrameStyle,
              "frame"),
      events_(events),
      controls_(controls),
      close_(std::move(close)),
      panel_(new wxPanel(this, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxTAB_TRAVERSAL | wxNO_BORDER,
                         "panel")),
      isThemed_(spec.isThemed) {
    SetFont(wxSystemSettings::GetFont(wxSYS_DEFAULT_GUI_FONT));
    panel_->SetFont(GetFont());
    controls_.enter(*panel_, isThemed_);
    setPageColours(spec.foreground, spec.background);
    setPageSize(spec.clientSize);
    Bind(wxEVT_CLOSE_WINDOW, &PageFrame::onClose, this);
    Bind(wxEVT_ACTIVATE, &PageFrame::onActivate, this);
    Bind(wxEVT_SYS_COLOUR_CHANGED, &PageFrame::onColourChange, this);
    panel_->Bind(wxEVT_CHILD_FOCUS, &PageFrame::onFocus, this);
    CentreOnScreen();
}

PageFrame::~PageFrame() {
    controls_.clear();
}

void PageFrame::setPageSize(Extent size) {
    SetClientSize(size.width, size.height);
    panel_->SetSize(0, 0, size.width, size.height);
}

Extent PageFrame::pageSize() const {
    const wxSize size = panel_->GetClientSize();
    return {size.x, size.y};
}

void PageFrame::setPageColours(std::int32_t foreground, std::int32_t background) {
    panel_->SetForegroundColour(colourOf(foreground));
    panel_->SetBackgroundColour(colourOf(background));
    controls_.setPageColours({foreground, background});
    panel_->Refresh();
}

void PageFrame::showAccessKeys(bool show) {
    if (isThemed_) {
        underlineAccessKeys(*this, show);
        controls_.showAccessKeys(show);
    }
}

void PageFrame::drawNow() {
    Refresh(true, nullptr);
    Update();
}

void PageFrame::onClose(wxCloseEvent& event) {
    const bool closes = events_.report([](ToolkitEvents& events) { return events.onClose(); });
    if (event.CanVeto() && !closes) {
        event.Veto();
        return;
    }
    close_();
}

void PageFrame::onActivate(wxActivateEvent& event) {
    event.Skip();
    altAlone_ = false;
    const bool isActive = event.GetActive();
    events_.report([=](ToolkitEvents& events) { events.onActivate(isActive); });
}

void PageFrame::onColourChange(wxSysColourChangedEvent& event) {
    event.Skip();
    // After the controls, some of which take the system's colours now.
    CallAfter([this] { controls_.updateColours(); });
}

void PageFrame::onFocus(wxChildFocusEvent& event) {
    event.Skip();
    if (const PageControl* control = controls_.owner(event.GetWindow())) {
        events_.report([id = control->id()](ToolkitEvents& events) { events.onFocus(id); });
    }
}

bool PageFrame::handleKey(const wxKeyEvent& event) {
    const bool isShiftedAtMost = (event.GetModifiers() & ~wxMOD_SHIFT) == 0;
    switch (event.GetKeyCode()) {
        case WXK_RETURN:
        case WXK_NUMPAD_ENTER:
            // No kind of control has a use of its own for it: boxes have one line, and documents are only
            // read.
            return event.GetModifiers() == wxMOD_NONE &&
                   events_.report([](ToolkitEvents& events) { return events.onEnter(false); });
        case WXK_ESCAPE:
            if (event.GetModifiers() == wxMOD_NONE) {
                Close();
                return true;
            }
            return false;
        case WXK_TAB:
            // Left to the systems, Tab would follow the places of the controls, or stay in a document.
            if (isShiftedAtMost) {
                const bool forward = !event.ShiftDown();
                events_.report([=](ToolkitEvents& events) { events.onNavigate(forward); });
                controls_.moveFocus(forward);
                return true;
            }
            return false;
        default:
            return event.GetModifiers() == wxMOD_ALT && pressAccessKey(event);
    }
}

bool PageFrame::pressAccessKey(const wxKeyEvent& event) {
    const auto pressed = static_cast<char32_t>(event.GetUnicodeKey());
    for (const AccessKey& key : keys_) {
        const PageControl* const control = controls_.find(key.control);
        if (pressed != 0 && isSameLetter(key.key, pressed) && control != nullptr &&
            control->window()->IsShown() && control->window()->IsThisEnabled()) {
            events_.pressed(key.control);
            return true;
        }
    }
    return false;
}

bool PageFrame::notice(wxEvent& event) {
    const wxEventType type = event.GetEventType();
    if (type == wxEVT_LEFT_DOWN) {
        altAlone_ = false;
    }
    if (type == wxEVT_CHAR_HOOK && isInside(event.GetEventObject())) {
        const auto& key = static_cast<const wxKeyEvent&>(event);
        altAlone_ = key.GetKeyCode() == WXK_ALT;
        return handleKey(key);
    }
    return type == wxEVT_KEY_UP && noticeRelease(static_cast<const wxKeyEvent&>(event));
}

bool PageFrame::isInside(wxObject* object) {
    auto* const window = wxDynamicCast(object, wxWindow);
    return window != nullptr && wxGetTopLevelParent(window) == this;
}

bool PageFrame::noticeRelease(const wxKeyEvent& event) {
    if (!isThemed_ || !altAlone_ || event.GetKeyCode() != WXK_ALT) {
        return false;
    }
    altAlone_ = false;
    events_.report([](ToolkitEvents& events) { events.onAltKey(); });
    return true;
}

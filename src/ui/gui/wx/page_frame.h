#pragma once

#include <wx/frame.h>
#include <wx/panel.h>

#include <functional>
#include <span>
#include <vector>

#include "ui/gui/wx/page_controls.h"

// The one frame, with a panel that holds the controls. What the user does to it as a whole it reports.
class PageFrame : public wxFrame {
public:
    // `close` is called when the user closes the frame and the caller agrees. `spec` is borrowed for the
    // call, the others live longer.
    PageFrame(const FrameSpec& spec, EventSink& events, PageControls& controls, std::function<void()> close);
    ~PageFrame() override;

    void setPageSize(Extent size);
    Extent pageSize() const;
    void setPageColours(std::int32_t foreground, std::int32_t background);
    void setAccessKeys(std::span<const AccessKey> keys) { keys_.assign(keys.begin(), keys.end()); }
    void showAccessKeys(bool show);
    void drawNow();
    wxPanel& panel() { return *panel_; }
    // To be called for all events of the application, before their receivers see them: where a key is
    // released isn't reported to a frame, and a button of Windows would keep Return for itself. True: the
    // event has been handled.
    bool notice(wxEvent& event);

private:
    void onClose(wxCloseEvent& event);
    void onActivate(wxActivateEvent& event);
    void onColourChange(wxSysColourChangedEvent& event);
    void onFocus(wxChildFocusEvent& event);
    bool isInside(wxObject* object);
    bool noticeRelease(const wxKeyEvent& event);
    bool handleKey(const wxKeyEvent& event);
    bool pressAccessKey(const wxKeyEvent& event);

    EventSink& events_;
    PageControls& controls_;
    std::function<void()> close_;
    wxPanel* panel_;
    std::vector<AccessKey> keys_;
    bool isThemed_;
    // Alt is down, and nothing else has been pressed since.
    bool altAlone_ = false;
};

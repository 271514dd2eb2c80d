#pragma once

#include <wx/window.h>

#include <memory>
#include <span>

#include "ui/gui/toolkit/control.h"
#include "ui/gui/toolkit/toolkit.h"
#include "ui/gui/wx/event_sink.h"
#include "ui/gui/wx/retired_windows.h"

class RadioGroup;

// Where a control is made.
struct ControlSite {
    wxWindow* parent = nullptr;
    ControlId id = 0;
    EventSink* events = nullptr;
    RetiredWindows* retired = nullptr;
    std::shared_ptr<RadioGroup> group;  // of a radio button
};

// The colours of the page under a control.
struct PageColours {
    std::int32_t foreground = -1;
    std::int32_t background = -1;
};

// A control of the page with its window, which goes with it. What a kind of control can't do has no effect,
// as the border demands.
class PageControl {
public:
    explicit PageControl(const ControlSite& site) : site_(site) {}
    virtual ~PageControl();
    PageControl(const PageControl&) = delete;
    PageControl& operator=(const PageControl&) = delete;

    ControlId id() const { return site_.id; }
    // Null when it could not be made.
    wxWindow* window() const { return window_; }

    // A width or height below 1 is the control's own.
    virtual void setPlace(Place place);
    Place place() const;
    // As Toolkit::wordsSize.
    virtual wxSize wordsSize() const { return {0, 0}; }
    // Whether Tab stops here, as far as it is the control's own matter.
    virtual bool isTabStop() const;

    virtual void takeFocus() { window_->SetFocus(); }

    void setColours(const ControlColours& colours);
    void setPageColours(const PageColours& page);

    virtual void setText(const wxString& /*text*/) {}
    virtual wxString text() const { return {}; }
    virtual void appendText(const wxString& /*text*/) {}
    virtual void setChecked(bool /*checked*/) {}
    virtual bool isChecked() const { return false; }
    virtual void setProgress(int /*percent*/) {}
    virtual void setPicture(const Picture& /*picture*/) {}
    virtual void setHtml(const wxString& /*page*/) {}
    virtual void setRichText(std::span<const RichTextCommand> /*commands*/) {}
    virtual void setTaskIcons(Extent /*size*/, std::span<const Picture> /*icons*/) {}
    virtual void addTask(const TaskRow& /*row*/) {}
    virtual void setTask(int /*index*/, const TaskRow& /*row*/) {}
    // Whether access keys are underlined, where the control draws itself.
    virtual void showAccessKey(bool /*show*/) {}

protected:
    // The control owns the window from now on; it is hidden.
    void adopt(wxWindow* window);
    const ControlSite& site() const { return site_; }
    const ControlColours& colours() const { return colours_; }
    const PageColours& pageColours() const { return pageColours_; }
    // Brings colours() and pageColours() to the screen.
    virtual void applyColours();

private:
    ControlSite site_;
    wxWindow* window_ = nullptr;
    ControlColours colours_;
    PageColours pageColours_;
};

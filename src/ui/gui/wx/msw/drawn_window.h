#pragma once

#include <wx/access.h>
#include <wx/control.h>
#include <wx/dc.h>

#include "ui/gui/wx/page_control.h"

// A window that the application draws in its own colours: others under the mouse and with the focus, paler
// ones when it is disabled. It is pressed by mouse, by the space bar and by Return.
class DrawnWindow : public wxControl {
public:
    DrawnWindow(wxWindow* parent, const wxString& caption, wxAccRole role);

    void setColours(const ControlColours& colours, const PageColours& page);
    void underline(bool shown);
    void setChecked(bool checked);
    bool isChecked() const { return isChecked_; }

    bool Enable(bool enable = true) override;
    // For a screen reader.
    wxAccRole role() const { return role_; }
    long state() const;
    virtual wxString value() const { return {}; }
    // As the user does it.
    virtual void press() {}

protected:
    wxSize DoGetBestClientSize() const override;
    virtual void draw(wxDC& context, const wxRect& area) = 0;
    virtual void move(bool /*forward*/) {}

    bool isActive() const { return IsThisEnabled() && (isHovered_ || HasFocus()); }
    bool isDown() const { return isDown_ && isHovered_; }
    wxColour foreground() const;
    // `otherwise` where the control has none of its own.
    wxColour background(const wxColour& otherwise) const;
    wxColour pageBackground() const;
    void drawCaption(wxDC& context, const wxRect& area, int alignment);
    void drawFocus(wxDC& context, const wxRect& area);

private:
    void bindEvents();
    void onPaint();
    void onMouseUp(const wxMouseEvent& event);
    void onKey(wxKeyEvent& event);

    wxAccRole role_;
    ControlColours colours_;
    PageColours page_;
    bool isHovered_ = false;
    bool isDown_ = false;
    bool isUnderlined_ = false;
    bool isChecked_ = false;
};

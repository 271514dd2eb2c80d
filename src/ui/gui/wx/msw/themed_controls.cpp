#include "ui/gui/wx/themed_controls.h"

#include <wx/settings.h>

#include <algorithm>
#include <vector>

#include "ui/gui/wx/conversion.h"
#include "ui/gui/wx/msw/drawn_window.h"
#include "ui/gui/wx/radio_group.h"

namespace {

// What all of these have in common: `Window` is a DrawnWindow that takes its control.
template <typename Window>
class DrawnControl : public PageControl {
public:
    DrawnControl(const ControlSite& site, const ControlSpec& spec) : PageControl(site) {
        window_ = new Window(*this, site, wideText(spec.text));
        adopt(window_);
    }
    void setText(const wxString& text) override {
        window_->SetLabel(text);
        window_->Refresh();
    }
    wxString text() const override { return window_->GetLabel(); }
    void setChecked(bool checked) override { window_->setChecked(checked); }
    bool isChecked() const override { return window_->isChecked(); }
    void showAccessKey(bool show) override { window_->underline(show); }

protected:
    void applyColours() override { window_->setColours(colours(), pageColours()); }
    Window* window_;
};

class DrawnButton : public DrawnWindow {
public:
    DrawnButton(const PageControl& /*control*/, const ControlSite& site, const wxString& caption)
        : DrawnWindow(site.parent, caption, wxROLE_SYSTEM_PUSHBUTTON), site_(site) {}

    void press() override { site_.events->pressed(site_.id); }

protected:
    void draw(wxDC& context, const wxRect& area) override {
        const wxColour face = background(wxSystemSettings::GetColour(wxSYS_COLOUR_BTNFACE));
        context.SetBrush(wxBrush(face));
        context.SetPen(wxPen(face.ChangeLightness(80)));
        context.DrawRectangle(area);
        wxRect words = area;
        if (isDown()) {
            words.Offset(1, 1);
        }
        drawCaption(context, words, wxALIGN_CENTRE_HORIZONTAL);
        drawFocus(context, wxRect(area).Deflate(FromDIP(2)));
    }

private:
    ControlSite site_;
};

class DrawnLink : public DrawnWindow {
public:
    DrawnLink(const PageControl& /*control*/, const ControlSite& site, const wxString& caption)
        : DrawnWindow(site.parent, caption, wxROLE_SYSTEM_LINK), site_(site) {
        SetCursor(wxCursor(wxCURSOR_HAND));
    }

    void press() override { site_.events->pressed(site_.id); }

protected:
    void draw(wxDC& context, const wxRect& area) override {
        context.SetBrush(wxBrush(background(pageBackground())));
        context.SetPen(*wxTRANSPARENT_PEN);
        context.DrawRectangle(area);
        context.SetFont(GetFont().Underlined());
        drawCaption(context, area, wxALIGN_CENTRE_HORIZONTAL);
        drawFocus(context, area);
    }

private:
    ControlSite site_;
};

// A mark with a caption after it.
class DrawnChoice : public DrawnWindow {
public:
    using DrawnWindow::DrawnWindow;

protected:
    wxSize DoGetBestClientSize() const override {
        return GetTextExtent(GetLabelText()) + wxSize(markSize() + FromDIP(8), FromDIP(3));
    }
    void draw(wxDC& context, const wxRect& area) override {
        context.SetBrush(wxBrush(background(pageBackground())));
        context.SetPen(*wxTRANSPARENT_PEN);
        context.DrawRectangle(area);
        context.SetPen(wxPen(foreground(), FromDIP(1)));
        drawMark(context, {FromDIP(1), (area.height - markSize()) / 2, markSize(), markSize()});
        const int start = markSize() + FromDIP(6);
        const wxRect words(start, 0, area.width - start, area.height);
        drawCaption(context, words, wxALIGN_LEFT);
        drawFocus(context, wxRect(start - FromDIP(2), 0, area.width - start + FromDIP(2), area.height));
    }
    virtual void drawMark(wxDC& context, const wxRect& area) = 0;
    int markSize() const { return FromDIP(13); }
};

class DrawnCheckBox : public DrawnChoice {
public:
    DrawnCheckBox(const PageControl& /*control*/, const ControlSite& site, const wxString& caption)
        : DrawnChoice(site.parent, caption, wxROLE_SYSTEM_CHECKBUTTON), site_(site) {}

    void press() override {
        setChecked(!isChecked());
        site_.events->pressed(site_.id);
    }

protected:
    void drawMark(wxDC& context, const wxRect& area) override {
        context.DrawRectangle(area);
        if (isChecked()) {
            context.SetPen(wxPen(foreground(), FromDIP(2)));
            const wxPoint corner(area.x + area.width * 2 / 5, area.y + area.height * 3 / 4);
            context.DrawLine({area.x + area.width / 5, area.y + area.height / 2}, corner);
            context.DrawLine(corner, {area.x + area.width * 4 / 5, area.y + area.height / 4});
        }
    }

private:
    ControlSite site_;
};

class DrawnRadioButton : public DrawnChoice {
public:
    DrawnRadioButton(PageControl& control, const ControlSite& site, const wxString& caption)
        : DrawnChoice(site.parent, caption, wxROLE_SYSTEM_RADIOBUTTON), control_(control), site_(site) {
        site_.group->join(control_);
    }

    void choose() {
        for (PageControl* member : site_.group->members()) {
            if (member != &control_) {
                member->setChecked(false);
            }
        }
        setChecked(true);
    }

    void press() override {
        if (!isChecked()) {
            choose();
            site_.events->pressed(site_.id);
        }
    }

protected:
    void drawMark(wxDC& context, const wxRect& area) override {
        context.DrawEllipse(area);
        if (isChecked()) {
            context.SetBrush(wxBrush(foreground()));
            context.DrawEllipse(wxRect(area).Deflate(area.width / 4));
        }
    }

    // The arrows choose, as in every group of the system.
    void move(bool forward) override {
        const std::vector<PageControl*>& members = site_.group->members();
        const auto count = members.size();
        auto index =
            static_cast<std::size_t>(std::find(members.begin(), members.end(), &control_) - members.begin());
        for (std::size_t i = 0; i < count; ++i) {
            index = (index + (forward ? 1 : count - 1)) % count;
            wxWindow* const window = members[index]->window();
            if (window->IsShown() && window->IsThisEnabled()) {
                window->SetFocus();
                static_cast<DrawnRadioButton*>(window)->press();
                return;
            }
        }
    }

private:
    PageControl& control_;
    ControlSite site_;
};

class RadioButton : public DrawnControl<DrawnRadioButton> {
public:
    using DrawnControl::DrawnControl;
    ~RadioButton() override { site().group->leave(*this); }

    bool isTabStop() const override { return site().group->isEntry(*this); }
    void setChecked(bool checked) override {
        if (checked) {
            window_->choose();
        } else {
            window_->setChecked(false);
        }
    }
};

class DrawnBar : public DrawnWindow {
public:
    DrawnBar(const PageControl& /*control*/, const ControlSite& site, const wxString& /*caption*/)
        : DrawnWindow(site.parent, wxString(), wxROLE_SYSTEM_PROGRESSBAR) {}

    bool AcceptsFocus() const override { return false; }
    wxString value() const override { return wxString::Format("%d%%", percent_); }
    void setPercent(int percent) {
        if (percent_ != percent) {
            percent_ = percent;
            Refresh();
            wxAccessible::NotifyEvent(wxACC_EVENT_OBJECT_VALUECHANGE, this, wxOBJID_CLIENT, wxACC_SELF);
        }
    }

protected:
    void draw(wxDC& context, const wxRect& area) override {
        const wxColour trough = background(wxSystemSettings::GetColour(wxSYS_COLOUR_BTNFACE));
        context.SetBrush(wxBrush(trough));
        context.SetPen(wxPen(trough.ChangeLightness(80)));
        context.DrawRectangle(area);
        wxRect done = wxRect(area).Deflate(FromDIP(4));
        done.width = done.width * percent_ / 100;
        context.SetBrush(wxBrush(foreground()));
        context.SetPen(*wxTRANSPARENT_PEN);
        context.DrawRectangle(done);
    }

private:
    int percent_ = 0;
};

class Bar : public DrawnControl<DrawnBar> {
public:
    using DrawnControl::DrawnControl;
    bool isTabStop() const override { return false; }
    void setText(const wxString& /*text*/) override {}
    void setProgress(int percent) override { window_->setPercent(percent); }
};

class DrawnLine : public DrawnWindow {
public:
    DrawnLine(const PageControl& /*control*/, const ControlSite& site, const wxString& caption)
        : DrawnWindow(site.parent, caption, wxROLE_SYSTEM_SEPARATOR) {}

    bool AcceptsFocus() const override { return false; }

protected:
    wxSize DoGetBestClientSize() const override { return FromDIP(wxSize(1, 1)); }
    void draw(wxDC& context, const wxRect& area) override {
        context.SetBrush(wxBrush(foreground()));
        context.SetPen(*wxTRANSPARENT_PEN);
        context.DrawRectangle(area);
    }
};

class Line : public DrawnControl<DrawnLine> {
public:
    using DrawnControl::DrawnControl;
    bool isTabStop() const override { return false; }
};

}  // namespace

std::unique_ptr<PageControl> makeThemedControl(const ControlSite& site, const ControlSpec& spec) {
    switch (spec.kind) {
        case ControlKind::kButton:
            return std::make_unique<DrawnControl<DrawnButton>>(site, spec);
        case ControlKind::kLinkButton:
            return std::make_unique<DrawnControl<DrawnLink>>(site, spec);
        case ControlKind::kCheckBox:
            return std::make_unique<DrawnControl<DrawnCheckBox>>(site, spec);
        case ControlKind::kRadioButton:
            return std::make_unique<RadioButton>(site, spec);
        case ControlKind::kProgressBar:
            return std::make_unique<Bar>(site, spec);
        case ControlKind::kLine:
            // A theme need not have a colour for lines.
            return spec.colours.foreground == -1 ? nullptr : std::make_unique<Line>(site, spec);
        default:
            return nullptr;
    }
}

// Each control underlines its own.
void underlineAccessKeys(wxWindow& /*frame*/, bool /*underline*/) {}

#pragma once

#include <map>
#include <memory>
#include <vector>

#include "ui/gui/wx/page_control.h"

// The controls of the frame, in the order in which they were added: Tab follows it.
class PageControls {
public:
    explicit PageControls(EventSink& events) : events_(events) {}

    // From now on controls are made in `panel`. The earlier ones must have been cleared.
    void enter(wxWindow& panel, bool isThemed);
    void clear();
    // What was cleared or removed; only while no event is handled.
    void destroyRetired() { retired_.destroyAll(); }

    // 0 when the control can't be made.
    ControlId add(const ControlSpec& spec);
    void remove(ControlId id);
    // Null for an unknown id.
    PageControl* find(ControlId id) const;
    PageControl* focused() const;
    // The control that `window` belongs to, or null.
    PageControl* owner(const wxWindow* window) const;
    void setPageColours(const PageColours& colours);
    // The system's colours are others now.
    void updateColours() { setPageColours(colours_); }
    // Moves the focus to the next control that takes it, the first after the last.
    void moveFocus(bool forward);
    void showAccessKeys(bool show);

private:
    std::unique_ptr<PageControl> make(const ControlSite& site, const ControlSpec& spec) const;
    ControlSite siteOf(const ControlSpec& spec);

    EventSink& events_;
    wxWindow* panel_ = nullptr;
    bool isThemed_ = false;
    PageColours colours_;
    ControlId lastId_ = 0;
    RetiredWindows retired_;
    std::shared_ptr<RadioGroup> group_;
    // Ids rise, so this is the order of creation.
    std::map<ControlId, std::unique_ptr<PageControl>> controls_;
};

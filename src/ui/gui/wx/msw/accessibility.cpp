#include "ui/gui/wx/accessibility.h"

#include <wx/access.h>
#include <wx/arrstr.h>
#include <wx/stattext.h>

#include <optional>

#include "ui/gui/wx/msw/drawn_window.h"

namespace accessibility {

namespace {

constexpr const char* kAnnouncement = "announcement";

// Adds what the system doesn't know of a window; the rest is the system's answer.
class Description : public wxAccessible {
public:
    using wxAccessible::wxAccessible;

    void setName(const wxString& name) { name_ = name; }
    void setRows(const wxString& text) { rows_ = wxSplit(text, '\n', '\0'); }
    void setContent(wxAccRole role, const wxString& text) {
        role_ = role;
        content_ = text;
    }

    wxAccStatus GetName(int child, wxString* name) override {
        const wxString& words = child == wxACC_SELF ? name_ : rowAt(child);
        if (words.empty()) {
            return wxACC_NOT_IMPLEMENTED;
        }
        *name = words;
        return wxACC_OK;
    }

    wxAccStatus GetRole(int child, wxAccRole* role) override {
        if (child != wxACC_SELF || !role_) {
            return wxACC_NOT_IMPLEMENTED;
        }
        *role = *role_;
        return wxACC_OK;
    }

    wxAccStatus GetDescription(int child, wxString* description) override {
        if (child != wxACC_SELF || !role_) {
            return wxACC_NOT_IMPLEMENTED;
        }
        *description = content_;
        return wxACC_OK;
    }

private:
    // The system counts from 1.
    const wxString& rowAt(int child) const {
        static const wxString kNone;
        return child >= 1 && static_cast<std::size_t>(child) <= rows_.size()
                   ? rows_[static_cast<std::size_t>(child) - 1]
                   : kNone;
    }

    wxString name_;
    wxArrayString rows_;
    wxString content_;
    std::optional<wxAccRole> role_;
};

// Null for a window that describes itself in another way.
Description* descriptionOf(wxWindow& window) {
    if (window.GetAccessible() == nullptr) {
        window.SetAccessible(new Description(&window));
    }
    return dynamic_cast<Description*>(window.GetAccessible());
}

}  // namespace

void setName(wxWindow& window, const wxString& name) {
    if (auto* drawn = dynamic_cast<DrawnWindow*>(&window)) {
        drawn->setSpokenName(name);
    } else if (Description* description = descriptionOf(window)) {
        description->setName(name);
    }
}

void setLabel(wxWindow& window, wxWindow& /*label*/, const wxString& name) {
    setName(window, name);
}

void setContent(wxWindow& window, Role role, const wxString& text) {
    Description* const description = descriptionOf(window);
    if (description == nullptr) {
        return;
    }
    if (role == Role::kList) {
        // The list is the system's own, which knows all but the meaning of its icons.
        description->setRows(text);
    } else {
        description->setContent(wxROLE_SYSTEM_DOCUMENT, text);
    }
}

// An alert is read out with the name of its window, which is one that nobody sees.
void announce(wxWindow& frame, const wxString& text) {
    wxWindow* words = frame.FindWindow(kAnnouncement);
    if (words == nullptr) {
        words = new wxStaticText(frame.GetChildren().front(), wxID_ANY, wxString(), wxPoint(-2, -2),
                                 wxSize(1, 1), wxST_NO_AUTORESIZE, kAnnouncement);
    }
    words->SetLabel(text);
    wxAccessible::NotifyEvent(wxACC_EVENT_SYSTEM_ALERT, words, wxOBJID_CLIENT, wxACC_SELF);
}

}  // namespace accessibility

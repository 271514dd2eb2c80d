#include "ui/gui/wx/accessibility.h"

#include <wx/access.h>
#include <wx/arrstr.h>
#include <wx/stattext.h>

#include <optional>

#include "ui/gui/wx/msw/named_window.h"

namespace accessibility {

namespace {

constexpr const char* kAnnouncement = "announcement";

// Adds what the system doesn't know of a window; the rest is the system's answer.
class Description : public wxAccessible, public NamedWindow {
public:
    using wxAccessible::wxAccessible;

    void setRole(wxAccRole role) { role_ = role; }
    void setContent(const wxString& text) { content_ = text; }
    void setRows(const wxString& text) { rows_ = wxSplit(text, '\n', '\0'); }

    wxAccStatus GetName(int child, wxString* name) override {
        const wxString& words = child == wxACC_SELF ? this->name() : rowAt(child);
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
        if (child != wxACC_SELF || !content_) {
            return wxACC_NOT_IMPLEMENTED;
        }
        *description = *content_;
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

    wxArrayString rows_;
    std::optional<wxString> content_;
    std::optional<wxAccRole> role_;
};

wxAccessible* accessibleOf(wxWindow& window) {
    if (window.GetAccessible() == nullptr) {
        window.SetAccessible(new Description(&window));
    }
    return window.GetAccessible();
}

// Null for a window that describes itself.
Description* descriptionOf(wxWindow& window) {
    return dynamic_cast<Description*>(accessibleOf(window));
}

}  // namespace

void setName(wxWindow& window, const wxString& name) {
    if (auto* named = dynamic_cast<NamedWindow*>(accessibleOf(window))) {
        named->setName(name);
    }
}

void setLabel(wxWindow& window, wxWindow& /*label*/, const wxString& name) {
    if (!name.empty()) {
        setName(window, name);
    }
}

void setRole(wxWindow& window, Role role) {
    // The list is the system's own, which knows all but the meaning of its icons.
    Description* const description = role == Role::kList ? nullptr : descriptionOf(window);
    if (description != nullptr) {
        description->setRole(role == Role::kLink ? wxROLE_SYSTEM_LINK : wxROLE_SYSTEM_DOCUMENT);
    }
}

void setContent(wxWindow& window, Role role, const wxString& text) {
    setRole(window, role);
    Description* const description = descriptionOf(window);
    if (description == nullptr) {
        return;
    }
    if (role == Role::kList) {
        description->setRows(text);
    } else {
        description->setContent(text);
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

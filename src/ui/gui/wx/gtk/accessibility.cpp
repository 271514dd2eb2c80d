#include "ui/gui/wx/accessibility.h"

#include <gtk/gtk.h>

namespace accessibility {

namespace {

AtkObject* objectOf(wxWindow& window) {
    return gtk_widget_get_accessible(window.GetHandle());
}

AtkRole roleOf(Role role) {
    switch (role) {
        case Role::kLink:
            return ATK_ROLE_LINK;
        case Role::kDocument:
            return ATK_ROLE_DOCUMENT_TEXT;
        case Role::kList:
            return ATK_ROLE_LIST;
    }
    return ATK_ROLE_UNKNOWN;
}

}  // namespace

void setName(wxWindow& window, const wxString& name) {
    atk_object_set_name(objectOf(window), name.utf8_str());
}

void setLabel(wxWindow& window, wxWindow& label, const wxString& name) {
    AtkObject* const object = objectOf(window);
    atk_object_add_relationship(object, ATK_RELATION_LABELLED_BY, objectOf(label));
    atk_object_add_relationship(objectOf(label), ATK_RELATION_LABEL_FOR, object);
    // Not all readers follow the relation to a window that isn't a field.
    if (!name.empty()) {
        setName(window, name);
    }
}

void setRole(wxWindow& window, Role role) {
    atk_object_set_role(objectOf(window), roleOf(role));
}

void setContent(wxWindow& window, Role role, const wxString& text) {
    setRole(window, role);
    atk_object_set_description(objectOf(window), text.utf8_str());
}

void announce(wxWindow& frame, const wxString& text) {
    AtkObject* const object = objectOf(frame);
    const wxScopedCharBuffer words = text.utf8_str();
    constexpr int kPolite = 1;
    // The signal's name and form depend on the version of the desktop's library.
    if (g_signal_lookup("notification", ATK_TYPE_OBJECT) != 0) {
        g_signal_emit_by_name(object, "notification", words.data(), kPolite);
    } else if (g_signal_lookup("announcement", ATK_TYPE_OBJECT) != 0) {
        g_signal_emit_by_name(object, "announcement", words.data());
    }
}

}  // namespace accessibility

#include "ui/gui/wx/screen_reader.h"

#include <gtk/gtk.h>

namespace {

struct Search {
    GtkWidget* window;
    Place place;
    GtkWidget* found;
};

// The outermost one that fills the place.
void lookAt(GtkWidget* widget, gpointer data) {
    auto& search = *static_cast<Search*>(data);
    int x = 0;
    int y = 0;
    if (search.found != nullptr || !gtk_widget_get_mapped(widget) ||
        !gtk_widget_translate_coordinates(widget, search.window, 0, 0, &x, &y)) {
        return;
    }
    const Place place{x, y, gtk_widget_get_allocated_width(widget), gtk_widget_get_allocated_height(widget)};
    if (place == search.place) {
        search.found = widget;
    } else if (GTK_IS_CONTAINER(widget)) {
        gtk_container_forall(GTK_CONTAINER(widget), &lookAt, data);
    }
}

GtkWidget* windowOf(const std::string& title) {
    GtkWidget* window = nullptr;
    GList* const windows = gtk_window_list_toplevels();
    for (const GList* entry = windows; entry != nullptr; entry = entry->next) {
        const char* const name = gtk_window_get_title(GTK_WINDOW(entry->data));
        if (name != nullptr && name == title && gtk_widget_get_mapped(GTK_WIDGET(entry->data))) {
            window = GTK_WIDGET(entry->data);
        }
    }
    g_list_free(windows);
    return window;
}

std::string textOf(const char* text) {
    return text == nullptr ? std::string() : text;
}

std::string roleOf(AtkRole role) {
    switch (role) {
        case ATK_ROLE_PUSH_BUTTON:
            return "button";
        case ATK_ROLE_DOCUMENT_TEXT:
            return "document";
        default:
            return textOf(atk_role_get_name(role));
    }
}

bool hasState(AtkObject* object, AtkStateType state) {
    AtkStateSet* const states = atk_object_ref_state_set(object);
    const bool isSet = atk_state_set_contains_state(states, state) != FALSE;
    g_object_unref(states);
    return isSet;
}

int percentOf(AtkObject* object) {
    if (!ATK_IS_VALUE(object)) {
        return -1;
    }
    double value = 0;
    char* text = nullptr;
    atk_value_get_value_and_text(ATK_VALUE(object), &value, &text);
    g_free(text);
    return static_cast<int>(value * 100 + 0.5);
}

}  // namespace

SpokenControl readControl(const std::string& title, const Place& place) {
    Search search{windowOf(title), place, nullptr};
    if (search.window == nullptr) {
        return {};
    }
    gtk_container_forall(GTK_CONTAINER(search.window), &lookAt, &search);
    if (search.found == nullptr) {
        return {};
    }
    AtkObject* const object = gtk_widget_get_accessible(search.found);
    return {textOf(atk_object_get_name(object)),        roleOf(atk_object_get_role(object)),
            textOf(atk_object_get_description(object)), percentOf(object),
            hasState(object, ATK_STATE_ENABLED),        hasState(object, ATK_STATE_CHECKED)};
}

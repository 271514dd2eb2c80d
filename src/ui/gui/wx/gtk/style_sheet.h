#pragma once

#include <gtk/gtk.h>

#include <string>

// Rules for the looks of a widget and of what it is made of.
class StyleSheet {
public:
    StyleSheet() : provider_(gtk_css_provider_new()) {}
    ~StyleSheet() { g_object_unref(provider_); }
    StyleSheet(const StyleSheet&) = delete;
    StyleSheet& operator=(const StyleSheet&) = delete;

    // `rules`, in the toolkit's CSS, take the place of the earlier ones. Always for the same widget.
    void apply(GtkWidget* widget, const std::string& rules);
    // The same for all widgets. What the user's own rules say counts more.
    void applyToAll(const std::string& rules);

private:
    static void addTo(GtkWidget* widget, gpointer provider);

    GtkCssProvider* provider_;
    bool applied_ = false;
};

// The sheet of this name that lives as long as the widget; made when it is first asked for.
StyleSheet& ownSheet(GtkWidget* widget, const char* name);

// A progress bar of this height, with a margin around what moves in it, in pixels.
void setBarHeight(GtkWidget* bar, int height, int margin);

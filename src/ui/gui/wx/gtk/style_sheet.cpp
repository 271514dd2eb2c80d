#include "ui/gui/wx/gtk/style_sheet.h"

#include <algorithm>

namespace {

constexpr int kBorder = 1;

void destroySheet(gpointer sheet) {
    delete static_cast<StyleSheet*>(sheet);
}

std::string minimum(int pixels) {
    return "min-height:" + std::to_string(std::max(0, pixels)) + "px;";
}

}  // namespace

void StyleSheet::apply(GtkWidget* widget, const std::string& rules) {
    gtk_css_provider_load_from_data(provider_, rules.data(), static_cast<gssize>(rules.size()), nullptr);
    if (!applied_) {
        applied_ = true;
        addTo(widget, provider_);
    }
}

void StyleSheet::applyToAll(const std::string& rules) {
    gtk_css_provider_load_from_data(provider_, rules.data(), static_cast<gssize>(rules.size()), nullptr);
    gtk_style_context_add_provider_for_screen(gdk_screen_get_default(), GTK_STYLE_PROVIDER(provider_),
                                              GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
}

void StyleSheet::addTo(GtkWidget* widget, gpointer provider) {
    gtk_style_context_add_provider(gtk_widget_get_style_context(widget), GTK_STYLE_PROVIDER(provider),
                                   GTK_STYLE_PROVIDER_PRIORITY_APPLICATION + 1);
    if (GTK_IS_CONTAINER(widget)) {
        gtk_container_forall(GTK_CONTAINER(widget), addTo, provider);
    }
}

StyleSheet& ownSheet(GtkWidget* widget, const char* name) {
    auto* sheet = static_cast<StyleSheet*>(g_object_get_data(G_OBJECT(widget), name));
    if (sheet == nullptr) {
        sheet = new StyleSheet;
        g_object_set_data_full(G_OBJECT(widget), name, sheet, destroySheet);
    }
    return *sheet;
}

void setBarHeight(GtkWidget* bar, int height, int margin) {
    const int trough = height - 2 * (kBorder + margin);
    ownSheet(bar, "tandrel-bar-height")
        .apply(bar, "trough{" + minimum(trough) + "padding:" + std::to_string(margin) + "px;}progress{" +
                        minimum(trough - 2 * kBorder) + "}");
}

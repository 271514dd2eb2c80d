#include "ui/gui/wx/native_look.h"

#include <gtk/gtk.h>
#include <wx/dcmemory.h>
#include <wx/settings.h>

#include "ui/gui/wx/gtk/style_sheet.h"

namespace native_look {

namespace {

// In letters, where the desktop's own have a fixed number of pixels: a mark of 14 with letters of 96 dots per
// inch.
constexpr char kLetters[] =
    "entry{min-height:2em;padding:0 0.5em;}"
    "check,radio{min-width:1.05em;min-height:1.05em;}"
    "checkbutton check,radiobutton radio{margin:0 0.4em 0 0.1em;}";

constexpr char kLink[] = "label{text-decoration-line:underline;}";

// A page is laid out for letters of one size. What the program itself sets, even to the value that there is,
// counts more than what the desktop changes later.
void keepLetters(GtkSettings* settings) {
    for (const char* property : {"gtk-font-name", "gtk-xft-dpi"}) {
        GValue value = G_VALUE_INIT;
        g_object_get_property(G_OBJECT(settings), property, &value);
        g_object_set_property(G_OBJECT(settings), property, &value);
        g_value_unset(&value);
    }
}

}  // namespace

void prepare() {
    // Never deleted: at the end of the process the display may have gone in the middle of something.
    static auto* const sheet = new StyleSheet;
    sheet->applyToAll(kLetters);
    GtkSettings* const settings = gtk_settings_get_default();
    keepLetters(settings);
    // Bars that come only with the mouse don't tell that there is more to read.
    g_object_set(settings, "gtk-overlay-scrolling", FALSE, nullptr);
}

wxSize sizeOf(const wxString& text) {
    wxBitmap bitmap;
    bitmap.Create(16, 16);
    wxMemoryDC context(bitmap);
    context.SetFont(wxSystemSettings::GetFont(wxSYS_DEFAULT_GUI_FONT));
    return context.GetTextExtent(text);
}

// wxWidgets adds the place of the letters in a box, which is below zero before the box has been laid out.
wxSize bestSizeOf(const wxWindow& window) {
    wxSize best = window.GetBestSize();
    GtkWidget* const widget = window.GetHandle();
    if (GTK_IS_ENTRY(widget)) {
        // A hidden one wants nothing.
        const gboolean wasShown = gtk_widget_get_visible(widget);
        int width = -1;
        int height = -1;
        gtk_widget_get_size_request(widget, &width, &height);
        gtk_widget_show(widget);
        gtk_widget_set_size_request(widget, -1, -1);
        gtk_widget_get_preferred_height(widget, nullptr, &best.y);
        gtk_widget_set_size_request(widget, width, height);
        gtk_widget_set_visible(widget, wasShown);
    }
    return best;
}

void fillHeight(wxGauge& bar, int height) {
    setBarHeight(bar.GetHandle(), height, 0);
}

void setMargin(wxTextCtrl& lines, int margin) {
    GtkTextView* const view = GTK_TEXT_VIEW(gtk_bin_get_child(GTK_BIN(lines.GetHandle())));
    gtk_text_view_set_left_margin(view, margin);
    gtk_text_view_set_right_margin(view, margin);
    gtk_text_view_set_top_margin(view, margin);
    gtk_text_view_set_bottom_margin(view, margin);
}

void showAsLink(wxButton& button) {
    GtkWidget* const widget = button.GetHandle();
    gtk_button_set_relief(GTK_BUTTON(widget), GTK_RELIEF_NONE);
    ownSheet(widget, "tandrel-link").apply(widget, kLink);
}

}  // namespace native_look

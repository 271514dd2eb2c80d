#include "ui/gui/wx/native_look.h"

#include <gtk/gtk.h>
#include <wx/dcmemory.h>
#include <wx/settings.h>

#include <cstdint>
#include <cstring>
#include <vector>

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

// What is in the background looks paler, and what is under the mouse brighter. Neither is the page's matter.
void forgetPointer(GtkWidget* widget, gpointer /*data*/) {
    gtk_widget_unset_state_flags(
        widget, static_cast<GtkStateFlags>(GTK_STATE_FLAG_BACKDROP | GTK_STATE_FLAG_PRELIGHT));
    if (GTK_IS_CONTAINER(widget)) {
        gtk_container_forall(GTK_CONTAINER(widget), forgetPointer, nullptr);
    }
}

// Each pixel of the surface is a number 0x00RRGGBB.
std::vector<std::uint8_t> coloursOf(cairo_surface_t& surface, int width, int height) {
    std::vector<std::uint8_t> colours;
    colours.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 3);
    const unsigned char* row = cairo_image_surface_get_data(&surface);
    for (int y = 0; y < height; ++y, row += cairo_image_surface_get_stride(&surface)) {
        for (int x = 0; x < width; ++x) {
            std::uint32_t pixel = 0;
            std::memcpy(&pixel, row + std::ptrdiff_t{x} * 4, sizeof pixel);
            for (const int shift : {16, 8, 0}) {
                colours.push_back(static_cast<std::uint8_t>(pixel >> shift));
            }
        }
    }
    return colours;
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

wxSize captionSizeOf(const wxControl& control) {
    GtkWidget* const widget = control.GetHandle();
    if (GTK_IS_BUTTON(widget) && !GTK_IS_TOGGLE_BUTTON(widget)) {
        return sizeOf(control.GetLabelText());  // goes over the space that a button leaves around its caption
    }
    int width = -1;
    int height = -1;
    int needed = 0;
    gtk_widget_get_size_request(widget, &width, &height);
    gtk_widget_set_size_request(widget, -1, -1);
    gtk_widget_get_preferred_width(widget, &needed, nullptr);
    gtk_widget_set_size_request(widget, width, height);
    return {needed, sizeOf(control.GetLabelText()).y};
}

bool draw(wxWindow& window, PictureReceiver& outPicture) {
    GtkWidget* const widget = window.GetHandle();
    GtkWidget* const frame = gtk_widget_get_toplevel(widget);
    forgetPointer(frame, nullptr);
    gtk_container_check_resize(GTK_CONTAINER(frame));
    const int density = gtk_widget_get_scale_factor(widget);
    const int width = gtk_widget_get_allocated_width(widget) * density;
    const int height = gtk_widget_get_allocated_height(widget) * density;
    cairo_surface_t* const surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height);
    cairo_surface_set_device_scale(surface, density, density);
    cairo_t* const context = cairo_create(surface);
    // The frame draws what is behind the page.
    int left = 0;
    int top = 0;
    gtk_widget_translate_coordinates(widget, frame, 0, 0, &left, &top);
    cairo_translate(context, -left, -top);
    gtk_widget_draw(frame, context);
    cairo_destroy(context);
    cairo_surface_flush(surface);
    const bool isDrawn = cairo_surface_status(surface) == CAIRO_STATUS_SUCCESS && width > 0 && height > 0;
    if (isDrawn) {
        const std::vector<std::uint8_t> pixels = coloursOf(*surface, width, height);
        outPicture.take({width, height, pixels.data(), nullptr});
    }
    cairo_surface_destroy(surface);
    return isDrawn;
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

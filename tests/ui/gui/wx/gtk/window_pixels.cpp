#include "ui/gui/wx/window_pixels.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace {

bool isTitle(Display* display, Window window, const std::string& title) {
    char* name = nullptr;
    const bool is = XFetchName(display, window, &name) != 0 && title == name;
    if (name != nullptr) {
        XFree(name);
    }
    return is;
}

// A window manager puts windows into windows of its own.
Window findWindow(Display* display, Window parent, const std::string& title) {
    if (isTitle(display, parent, title)) {
        return parent;
    }
    Window ignored = None;
    Window* children = nullptr;
    unsigned count = 0;
    Window found = None;
    if (XQueryTree(display, parent, &ignored, &ignored, &children, &count) != 0 && children != nullptr) {
        for (unsigned i = 0; i < count && found == None; ++i) {
            found = findWindow(display, children[i], title);
        }
        XFree(children);
    }
    return found;
}

}  // namespace

WindowPixels::Columns WindowPixels::read(const std::string& title, const Place& place) {
    Columns columns;
    Display* const display = XOpenDisplay(nullptr);
    if (display == nullptr) {
        return columns;
    }
    const Window window = findWindow(display, DefaultRootWindow(display), title);
    XImage* const image =
        window == None ? nullptr
                       : XGetImage(display, window, place.x, place.y, static_cast<unsigned>(place.width),
                                   static_cast<unsigned>(place.height), AllPlanes, ZPixmap);
    if (image != nullptr) {
        columns.resize(static_cast<std::size_t>(place.width));
        for (int x = 0; x < place.width; ++x) {
            for (int y = 0; y < place.height; ++y) {
                const unsigned long dot = XGetPixel(image, x, y);
                columns[static_cast<std::size_t>(x)].push_back({static_cast<int>(dot >> 16U & 0xFFU),
                                                                static_cast<int>(dot >> 8U & 0xFFU),
                                                                static_cast<int>(dot & 0xFFU)});
            }
        }
        XDestroyImage(image);
    }
    XCloseDisplay(display);
    return columns;
}

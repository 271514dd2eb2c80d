#include "ui/gui/wx/gtk/window_pixels.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <algorithm>

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

WindowPixels::WindowPixels(const std::string& title, const Place& place) {
    Display* const display = XOpenDisplay(nullptr);
    if (display == nullptr) {
        return;
    }
    const Window window = findWindow(display, DefaultRootWindow(display), title);
    XImage* const image =
        window == None ? nullptr
                       : XGetImage(display, window, place.x, place.y, static_cast<unsigned>(place.width),
                                   static_cast<unsigned>(place.height), AllPlanes, ZPixmap);
    if (image != nullptr) {
        columns_.resize(static_cast<std::size_t>(place.width));
        for (int x = 0; x < place.width; ++x) {
            for (int y = 0; y < place.height; ++y) {
                const unsigned long dot = XGetPixel(image, x, y);
                columns_[static_cast<std::size_t>(x)].push_back({static_cast<int>(dot >> 16U & 0xFFU),
                                                                 static_cast<int>(dot >> 8U & 0xFFU),
                                                                 static_cast<int>(dot & 0xFFU)});
            }
        }
        XDestroyImage(image);
    }
    XCloseDisplay(display);
}

int WindowPixels::count(const std::function<bool(const Dot&)>& isCounted) const {
    long sum = 0;
    for (const std::vector<Dot>& column : columns_) {
        sum += std::count_if(column.begin(), column.end(), isCounted);
    }
    return static_cast<int>(sum);
}

int WindowPixels::highest(const std::function<bool(const Dot&)>& isCounted) const {
    long most = 0;
    for (const std::vector<Dot>& column : columns_) {
        most = std::max<long>(most, std::count_if(column.begin(), column.end(), isCounted));
    }
    return static_cast<int>(most);
}

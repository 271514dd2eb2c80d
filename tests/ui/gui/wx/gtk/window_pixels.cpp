#include "ui/gui/wx/gtk/window_pixels.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <algorithm>

WindowPixels::WindowPixels(const std::string& window, const Place& place) {
    Display* const display = XOpenDisplay(nullptr);
    if (display == nullptr) {
        return;
    }
    if (XImage* const image =
            XGetImage(display, std::stoul(window), place.x, place.y, static_cast<unsigned>(place.width),
                      static_cast<unsigned>(place.height), AllPlanes, ZPixmap)) {
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

#pragma once

#include <X11/Xlib.h>

// A daemon that tells all programs of the display the desktop's settings, as long as it lives.
class DesktopSettings {
public:
    DesktopSettings();
    ~DesktopSettings();
    DesktopSettings(const DesktopSettings&) = delete;
    DesktopSettings& operator=(const DesktopSettings&) = delete;

    // Dots per inch: letters grow with them.
    void setDensity(int dots);

private:
    void announce();

    Display* display_;
    Window window_;
};

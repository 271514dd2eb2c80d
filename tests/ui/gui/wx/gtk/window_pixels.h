#pragma once

#include <functional>
#include <string>
#include <vector>

#include "ui/gui/toolkit/toolkit.h"

// Of one dot of the screen, from 0 to 255.
struct Dot {
    int red = 0;
    int green = 0;
    int blue = 0;
    friend bool operator==(const Dot&, const Dot&) = default;
};

// What the display shows at a place of a window.
class WindowPixels {
public:
    // `window` is its number. Without a display or outside of the window there are no dots.
    WindowPixels(const std::string& window, const Place& place);

    int count(const std::function<bool(const Dot&)>& isCounted) const;
    // The most that are counted in one column.
    int highest(const std::function<bool(const Dot&)>& isCounted) const;

private:
    std::vector<std::vector<Dot>> columns_;
};

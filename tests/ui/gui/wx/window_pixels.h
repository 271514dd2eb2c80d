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

// What the display shows at a place of a window. How it is read is in gtk/ and msw/.
class WindowPixels {
public:
    // Without a display, a window with this title, or outside of it there are no dots.
    WindowPixels(const std::string& title, const Place& place);

    int count(const std::function<bool(const Dot&)>& isCounted) const;
    // The most that are counted in one column.
    int highest(const std::function<bool(const Dot&)>& isCounted) const;

private:
    using Columns = std::vector<std::vector<Dot>>;

    static Columns read(const std::string& title, const Place& place);

    Columns columns_;
};

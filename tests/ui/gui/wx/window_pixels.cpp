#include "ui/gui/wx/window_pixels.h"

#include <algorithm>

WindowPixels::WindowPixels(const std::string& title, const Place& place) : columns_(read(title, place)) {}

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

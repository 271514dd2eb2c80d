#include "ui/gui/page_geometry.h"

#include <algorithm>

#include "description/dialog_model.h"

int PageGeometry::scaled(int length) const {
    constexpr double kLimit = kMaxLength;
    return static_cast<int>(std::clamp(length * fontScale_, -kLimit, kLimit));
}

int PageGeometry::left(int x, std::int32_t horizontalAlign) const {
    return horizontalAlign == kAlignRight ? page_.width - scaled(x) : scaled(x);
}

int PageGeometry::top(int y, std::int32_t verticalAlign) const {
    return verticalAlign == kAlignBottom ? page_.height - scaled(y) : scaled(y);
}

Place PageGeometry::placeOf(const DescribedPlace& described) const {
    Place place;
    place.x = left(described.x, described.horizontalAlign);
    place.y = top(described.y, described.verticalAlign);
    place.width = length(described.width, place.x, page_.width);
    place.height = length(described.height, place.y, page_.height);
    return place;
}

int PageGeometry::length(int described, int start, int pageLength) const {
    return described < 0 ? pageLength + scaled(described) - start : scaled(described);
}

#pragma once

#include <cstdint>

#include "ui/gui/images/image_scaling.h"

// In pixels of the page.
struct ImageFrame {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

struct ImagePosition {
    int x = 0;
    int y = 0;

    bool operator==(const ImagePosition&) const = default;
};

// Where a picture's left upper corner is within the rectangle of its element: aligned by two DialogAlign
// values if it is smaller in both directions, else in the rectangle's corner. An alignment that isn't one of
// its direction is left and top.
ImagePosition placeImage(const ImageFrame& frame, ImageSize picture, std::int32_t horizontalAlign,
                         std::int32_t verticalAlign);

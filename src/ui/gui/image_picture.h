#pragma once

#include "ui/gui/images/image.h"
#include "ui/gui/toolkit/control.h"

// The image as the toolkit takes it; valid as long as the image isn't changed.
inline Picture pictureOf(const Image& image) {
    if (image.isEmpty()) {
        return {};
    }
    return {image.width(), image.height(), image.rgbRow(0), image.hasAlpha() ? image.alphaRow(0) : nullptr};
}

#include "ui/gui/images/image_blending.h"

#include <array>

std::uint32_t colourBelow(std::int32_t elementColour, std::optional<std::uint32_t> pageColour) {
    if (elementColour != -1) {
        return static_cast<std::uint32_t>(elementColour) & 0xFFFFFF;
    }
    return pageColour.value_or(0) & 0xFFFFFF;
}

Image blendOver(const Image& image, std::uint32_t colour) {
    if (!image.hasAlpha()) {
        return image;
    }
    const std::array<std::uint32_t, 3> below{colour & 0xFF, colour >> 8 & 0xFF, colour >> 16 & 0xFF};
    Image result(image.width(), image.height(), false);
    for (int y = 0; y < image.height(); ++y) {
        const std::uint8_t* rgb = image.rgbRow(y);
        const std::uint8_t* alpha = image.alphaRow(y);
        std::uint8_t* blended = result.rgbRow(y);
        for (int x = 0; x < image.width(); ++x) {
            for (const std::uint32_t background : below) {
                const std::uint32_t sum = *rgb++ * alpha[x] + background * (255U - alpha[x]);
                *blended++ = static_cast<std::uint8_t>((sum + 127) / 255);
            }
        }
    }
    return result;
}

#include "ui/gui/images/raw_image.h"

namespace {

std::uint32_t readNumber(const std::uint8_t* bytes) {
    return bytes[0] | std::uint32_t{bytes[1]} << 8 | std::uint32_t{bytes[2]} << 16 |
           std::uint32_t{bytes[3]} << 24;
}

}  // namespace

Image RawImage::decode(const std::uint8_t* data, std::size_t size) {
    if (size < kPixelsOffset) {
        return {};
    }
    const std::uint64_t width = readNumber(data + kWidthOffset);
    const std::uint64_t height = readNumber(data + kHeightOffset);
    if (!isImageSize(width, height) || kPixelsOffset + width * height * kPixelSize > size) {
        return {};
    }
    Image image(static_cast<int>(width), static_cast<int>(height), true);
    const std::uint8_t* pixel = data + kPixelsOffset;
    for (int y = 0; y < image.height(); ++y) {
        std::uint8_t* rgb = image.rgbRow(y);
        std::uint8_t* alpha = image.alphaRow(y);
        for (int x = 0; x < image.width(); ++x, pixel += kPixelSize) {
            *rgb++ = pixel[0];
            *rgb++ = pixel[1];
            *rgb++ = pixel[2];
            *alpha++ = pixel[3];
        }
    }
    return image;
}

#include "ui/gui/images/image.h"

Image::Image(int width, int height, bool hasAlpha) {
    // A negative side becomes a huge one.
    if (!isImageSize(static_cast<std::uint64_t>(width), static_cast<std::uint64_t>(height))) {
        return;
    }
    const std::size_t pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    rgb_.resize(pixels * 3);
    alpha_.resize(hasAlpha ? pixels : 0);
    width_ = width;
    height_ = height;
}

bool isImageSize(std::uint64_t width, std::uint64_t height) {
    return width >= 1 && width <= kMaxImageSide && height >= 1 && height <= kMaxImageSide;
}

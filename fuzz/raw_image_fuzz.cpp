#include <string_view>

#include "fuzz_target.h"
#include "image_check.h"
#include "ui/gui/images/raw_image.h"

// The input is a block in the raw form, also when it begins like a PNG or JPEG.
bool accepts(std::string_view input) {
    const Image image = RawImage::decode(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
    if (image.isEmpty()) {
        return false;
    }
    const auto pixels = static_cast<std::size_t>(image.width()) * static_cast<std::size_t>(image.height());
    require(image.hasAlpha() && RawImage::kPixelsOffset + pixels * RawImage::kPixelSize <= input.size());
    isPicture(input);
    return true;
}

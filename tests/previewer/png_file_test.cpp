#include "previewer/png_file.h"

#include <gtest/gtest.h>

#include "ui/gui/images/image_loader.h"

namespace {

TEST(PngFile, IsReadBackAsTheSamePicture) {
    Image image(37, 11, false);
    for (int y = 0; y < image.height(); ++y) {
        for (int i = 0; i < image.width() * 3; ++i) {
            image.rgbRow(y)[i] = static_cast<std::uint8_t>(i * 31 + y * 7);
        }
    }
    const std::string file = pngFileOf(image);
    EXPECT_EQ(ImageLoader(DebugLog()).loadImage(file.data(), file.size()), image);
    EXPECT_EQ(pngFileOf(image), file);
}

TEST(PngFile, IsEmptyForNoPicture) {
    EXPECT_EQ(pngFileOf(Image()), "");
}

}  // namespace

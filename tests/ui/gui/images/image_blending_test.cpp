#include "ui/gui/images/image_blending.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace {

Image onePixel(int red, int green, int blue, int alpha) {
    Image image(1, 1, true);
    image.rgbRow(0)[0] = static_cast<std::uint8_t>(red);
    image.rgbRow(0)[1] = static_cast<std::uint8_t>(green);
    image.rgbRow(0)[2] = static_cast<std::uint8_t>(blue);
    image.alphaRow(0)[0] = static_cast<std::uint8_t>(alpha);
    return image;
}

std::array<int, 3> blended(const Image& image, std::uint32_t colour) {
    const Image result = blendOver(image, colour);
    EXPECT_FALSE(result.hasAlpha());
    return {result.rgbRow(0)[0], result.rgbRow(0)[1], result.rgbRow(0)[2]};
}

TEST(ImageBlending, ShowsTheColourThroughTransparentPixels) {
    EXPECT_EQ(blended(onePixel(1, 2, 3, 0), 0x302010), (std::array<int, 3>{0x10, 0x20, 0x30}));
}

TEST(ImageBlending, CoversTheColourWithOpaquePixels) {
    EXPECT_EQ(blended(onePixel(1, 2, 3, 255), 0x302010), (std::array<int, 3>{1, 2, 3}));
}

TEST(ImageBlending, MixesByAlpha) {
    EXPECT_EQ(blended(onePixel(255, 0, 100, 51), 0xFF0064), (std::array<int, 3>{131, 0, 224}));
}

TEST(ImageBlending, LooksAtTheColoursLow24Bits) {
    EXPECT_EQ(blended(onePixel(0, 0, 0, 0), 0xFF000001), (std::array<int, 3>{1, 0, 0}));
}

TEST(ImageBlending, LeavesAPictureWithoutAlpha) {
    Image image(2, 1, false);
    image.rgbRow(0)[5] = 9;
    EXPECT_EQ(blendOver(image, 0xFFFFFF), image);
    EXPECT_TRUE(blendOver(Image(), 0xFFFFFF).isEmpty());
}

TEST(ImageBlending, BlendsEveryRow) {
    Image image(2, 2, true);
    image.alphaRow(1)[1] = 255;
    image.rgbRow(1)[3] = 8;
    const Image result = blendOver(image, 0x010101);
    EXPECT_EQ(std::string(result.rgbRow(0), result.rgbRow(0) + 12),
              (std::string{1, 1, 1, 1, 1, 1, 1, 1, 1, 8, 0, 0}));
}

TEST(ColourBelow, IsTheElementsThenThePagesThenBlack) {
    EXPECT_EQ(colourBelow(0x00ABCDEF, 0x123456), 0xABCDEFU);
    EXPECT_EQ(colourBelow(0, 0x123456), 0U);
    EXPECT_EQ(colourBelow(-1, 0x123456), 0x123456U);
    EXPECT_EQ(colourBelow(-1, std::nullopt), 0U);
}

}  // namespace

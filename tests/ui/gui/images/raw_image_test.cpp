#include "ui/gui/images/raw_image.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string raw(std::uint32_t width, std::uint32_t height, const std::string& pixels) {
    std::string block;
    for (const std::uint32_t side : {width, height}) {
        for (int shift = 0; shift < 32; shift += 8) {
            block += static_cast<char>(side >> shift & 0xFF);
        }
    }
    return block + pixels;
}

Image decode(const std::string& block) {
    return RawImage::decode(reinterpret_cast<const std::uint8_t*>(block.data()), block.size());
}

TEST(RawImage, HoldsRowsOfRedGreenBlueAlpha) {
    const Image image = decode(raw(2, 2, "RGBAabcd....wxyz"));
    ASSERT_EQ(image.width(), 2);
    ASSERT_EQ(image.height(), 2);
    ASSERT_TRUE(image.hasAlpha());
    EXPECT_EQ(std::string(image.rgbRow(0), image.rgbRow(0) + 6), "RGBabc");
    EXPECT_EQ(std::string(image.alphaRow(0), image.alphaRow(0) + 2), "Ad");
    EXPECT_EQ(std::string(image.rgbRow(1), image.rgbRow(1) + 6), "...wxy");
    EXPECT_EQ(std::string(image.alphaRow(1), image.alphaRow(1) + 2), ".z");
}

TEST(RawImage, IgnoresBytesAfterTheLastPixel) {
    EXPECT_EQ(decode(raw(1, 1, "RGBAmore")).width(), 1);
}

TEST(RawImage, IsEmptyWhenCutAnywhere) {
    const std::string block = raw(2, 2, "RGBAabcd....wxyz");
    for (std::size_t length = 0; length < block.size(); ++length) {
        EXPECT_TRUE(decode(std::string(block, 0, length)).isEmpty()) << length;
    }
}

TEST(RawImage, HasSidesBelow6400) {
    const std::string pixels(std::size_t{6400} * 4, 'x');
    EXPECT_TRUE(decode(raw(6400, 1, pixels)).isEmpty());
    EXPECT_TRUE(decode(raw(1, 6400, pixels)).isEmpty());
    EXPECT_EQ(decode(raw(6399, 1, pixels)).width(), 6399);
    EXPECT_EQ(decode(raw(1, 6399, pixels)).height(), 6399);
}

TEST(RawImage, IsEmptyWithoutASide) {
    EXPECT_TRUE(decode(raw(0, 1, "RGBA")).isEmpty());
    EXPECT_TRUE(decode(raw(1, 0, "RGBA")).isEmpty());
}

TEST(RawImage, IsNotFooledBySizesWhoseProductOverflows) {
    EXPECT_TRUE(decode(raw(0x80000000, 2, "RGBA")).isEmpty());
    EXPECT_TRUE(decode(raw(0xFFFFFFFF, 0xFFFFFFFF, "RGBA")).isEmpty());
    EXPECT_TRUE(decode(raw(0x10000, 0x10000, "RGBA")).isEmpty());
}

}  // namespace

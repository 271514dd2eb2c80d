#include "ui/gui/images/image.h"

#include <gtest/gtest.h>

namespace {

TEST(Image, IsEmptyByDefault) {
    const Image image;
    EXPECT_TRUE(image.isEmpty());
    EXPECT_EQ(image.width(), 0);
    EXPECT_EQ(image.height(), 0);
    EXPECT_FALSE(image.hasAlpha());
}

TEST(Image, IsBlackAndTransparentAtFirst) {
    const Image image(3, 2, true);
    ASSERT_FALSE(image.isEmpty());
    EXPECT_EQ(image.rgbRow(1)[8], 0);
    EXPECT_EQ(image.alphaRow(1)[2], 0);
}

TEST(Image, KeepsRowsApart) {
    Image image(2, 2, true);
    image.rgbRow(1)[0] = 7;
    image.alphaRow(1)[0] = 8;
    EXPECT_EQ(image.rgbRow(0)[6], 7);
    EXPECT_EQ(image.alphaRow(0)[2], 8);
}

TEST(Image, HasSidesFromOneToTheLimit) {
    EXPECT_FALSE(Image(1, 1, false).isEmpty());
    EXPECT_FALSE(Image(kMaxImageSide, 1, false).isEmpty());
    EXPECT_FALSE(Image(1, kMaxImageSide, false).isEmpty());
    EXPECT_TRUE(Image(kMaxImageSide + 1, 1, false).isEmpty());
    EXPECT_TRUE(Image(1, kMaxImageSide + 1, false).isEmpty());
    EXPECT_TRUE(Image(0, 1, false).isEmpty());
    EXPECT_TRUE(Image(1, 0, false).isEmpty());
    EXPECT_TRUE(Image(-1, 1, false).isEmpty());
    EXPECT_TRUE(Image(1, -1, true).isEmpty());
}

TEST(Image, IsAValue) {
    Image image(1, 1, false);
    Image copy = image;
    EXPECT_EQ(copy, image);
    copy.rgbRow(0)[0] = 1;
    EXPECT_NE(copy, image);
    EXPECT_EQ(image.rgbRow(0)[0], 0);
}

}  // namespace

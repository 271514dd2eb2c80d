#include "ui/gui/images/image_placing.h"

#include <gtest/gtest.h>

#include "description/dialog_model.h"

namespace {

constexpr ImageFrame kFrame{10, 20, 100, 50};

TEST(ImagePlacing, KeepsTheCornerForLeftAndTop) {
    EXPECT_EQ(placeImage(kFrame, {30, 30}, kAlignLeft, kAlignTop), (ImagePosition{10, 20}));
    EXPECT_EQ(placeImage(kFrame, {30, 30}, 0, 0), (ImagePosition{10, 20}));
}

TEST(ImagePlacing, CentresByHalfOfWhatIsFree) {
    EXPECT_EQ(placeImage(kFrame, {31, 31}, kAlignCenter, kAlignCenter), (ImagePosition{44, 29}));
}

TEST(ImagePlacing, LeavesTheLastPixelFreeAtTheFarSides) {
    EXPECT_EQ(placeImage(kFrame, {30, 30}, kAlignRight, kAlignBottom), (ImagePosition{79, 39}));
}

TEST(ImagePlacing, AlignsEachDirectionByItself) {
    EXPECT_EQ(placeImage(kFrame, {30, 30}, kAlignRight, kAlignTop), (ImagePosition{79, 20}));
    EXPECT_EQ(placeImage(kFrame, {30, 30}, kAlignLeft, kAlignCenter), (ImagePosition{10, 30}));
    // Words of the other direction.
    EXPECT_EQ(placeImage(kFrame, {30, 30}, kAlignBottom, kAlignRight), (ImagePosition{10, 20}));
}

TEST(ImagePlacing, KeepsTheCornerUnlessThePictureIsSmallerBothWays) {
    EXPECT_EQ(placeImage(kFrame, {100, 30}, kAlignRight, kAlignBottom), (ImagePosition{10, 20}));
    EXPECT_EQ(placeImage(kFrame, {30, 50}, kAlignRight, kAlignBottom), (ImagePosition{10, 20}));
    EXPECT_EQ(placeImage(kFrame, {200, 200}, kAlignCenter, kAlignCenter), (ImagePosition{10, 20}));
    EXPECT_EQ(placeImage(kFrame, {99, 49}, kAlignRight, kAlignBottom), (ImagePosition{10, 20}));
    EXPECT_EQ(placeImage({10, 20, 0, 0}, {1, 1}, kAlignRight, kAlignBottom), (ImagePosition{10, 20}));
}

}  // namespace

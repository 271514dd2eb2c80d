#include "ui/gui/images/image_scaling.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>

namespace {

using Pixel = std::array<int, 3>;

Pixel pixelAt(const Image& image, int x, int y) {
    const std::uint8_t* pixel = image.rgbRow(y) + x * 3;
    return {pixel[0], pixel[1], pixel[2]};
}

void setPixel(Image& image, int x, int y, const Pixel& colour, int alpha = 255) {
    for (std::size_t i = 0; i < colour.size(); ++i) {
        image.rgbRow(y)[x * 3 + static_cast<int>(i)] = static_cast<std::uint8_t>(colour[i]);
    }
    if (image.hasAlpha()) {
        image.alphaRow(y)[x] = static_cast<std::uint8_t>(alpha);
    }
}

Image filled(int width, int height, const Pixel& colour, bool hasAlpha = false, int alpha = 255) {
    Image image(width, height, hasAlpha);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            setPixel(image, x, y, colour, alpha);
        }
    }
    return image;
}

TEST(ScaledSize, MultipliesByTheScaleAndCuts) {
    EXPECT_EQ(scaledSize({100, 33}, 1.5, {}), (ImageSize{150, 49}));
    EXPECT_EQ(scaledSize({100, 33}, 1.0, {}), (ImageSize{100, 33}));
}

TEST(ScaledSize, IsBoundByTheElement) {
    EXPECT_EQ(scaledSize({100, 100}, 2, {150, 250}), (ImageSize{150, 200}));
    EXPECT_EQ(scaledSize({100, 100}, 2, {1, 0}), (ImageSize{1, 200}));
    EXPECT_EQ(scaledSize({100, 100}, 2, {-5, -1}), (ImageSize{200, 200}));
}

TEST(ScaledSize, StaysASizeThatAPictureCanHave) {
    EXPECT_EQ(scaledSize({6000, 2}, 3, {}), (ImageSize{kMaxImageSide, 6}));
    EXPECT_EQ(scaledSize({6000, 2}, 1e300, {}), (ImageSize{kMaxImageSide, kMaxImageSide}));
    EXPECT_EQ(scaledSize({6000, 2}, std::numeric_limits<double>::infinity(), {100000, 7}),
              (ImageSize{kMaxImageSide, 7}));
    EXPECT_EQ(scaledSize({10, 10}, 0.001, {}), (ImageSize{1, 1}));
}

TEST(ScaledSize, TakesAScaleThatIsNoneAsOne) {
    for (const double scale : {0.0, -1.0, std::nan("")}) {
        EXPECT_EQ(scaledSize({10, 20}, scale, {}), (ImageSize{10, 20}));
    }
}

TEST(ImageScaling, LeavesAPictureThatIsNearlyRight) {
    ImageScaling scaling;
    const Image source = filled(20, 30, {1, 2, 3});
    EXPECT_EQ(scaling.fit(source, {22, 28}), source);
    EXPECT_EQ(scaling.fit(source, {18, 32}), source);
}

TEST(ImageScaling, ResamplesWhenOneSideDiffersByThree) {
    ImageScaling scaling;
    const Image source = filled(20, 30, {1, 2, 3});
    EXPECT_EQ(scaling.fit(source, {23, 30}), filled(23, 30, {1, 2, 3}));
    EXPECT_EQ(scaling.fit(source, {20, 27}), filled(20, 27, {1, 2, 3}));
    EXPECT_EQ(scaling.resample(source, {21, 30}), filled(21, 30, {1, 2, 3}));
}

TEST(ImageScaling, KeepsAnEvenColourInAnySize) {
    ImageScaling scaling;
    const Image source = filled(10, 7, {255, 128, 1}, true, 200);
    for (const ImageSize& size : {ImageSize{1, 1}, {3, 40}, {40, 3}, {100, 100}, {10, 1}, {1, 7}}) {
        EXPECT_EQ(scaling.fit(source, size), filled(size.width, size.height, {255, 128, 1}, true, 200));
    }
}

TEST(ImageScaling, KeepsAPictureOfTheSameSize) {
    ImageScaling scaling;
    Image source(4, 3, true);
    for (int i = 0; i < 12; ++i) {
        setPixel(source, i % 4, i / 4, {i * 20, 255 - i, i}, 255 - i);
    }
    EXPECT_EQ(scaling.resample(source, {4, 3}), source);
}

TEST(ImageScaling, DoesNotLoseFineLines) {
    Image source = filled(100, 100, {0, 0, 0});
    for (int y = 0; y < 100; ++y) {
        setPixel(source, 37, y, {255, 255, 255});
    }
    const Image small = ImageScaling().fit(source, {10, 10});
    int light = 0;
    for (int x = 0; x < 10; ++x) {
        light += pixelAt(small, x, 5)[0];
    }
    EXPECT_NEAR(light, 25, 3);
}

TEST(ImageScaling, LendsNoColourOfTransparentPixels) {
    Image source = filled(8, 8, {255, 0, 0}, true, 0);
    for (int y = 0; y < 8; ++y) {
        for (int x = 0; x < 4; ++x) {
            setPixel(source, x, y, {0, 0, 255}, 255);
        }
    }
    ImageScaling scaling;
    for (const ImageSize& size : {ImageSize{3, 3}, {40, 40}}) {
        const Image result = scaling.fit(source, size);
        bool sawAnEdge = false;
        for (int x = 0; x < size.width; ++x) {
            const int alpha = result.alphaRow(1)[x];
            EXPECT_EQ(pixelAt(result, x, 1), (alpha != 0 ? Pixel{0, 0, 255} : Pixel{0, 0, 0})) << x;
            sawAnEdge = sawAnEdge || (alpha > 0 && alpha < 255);
        }
        EXPECT_TRUE(sawAnEdge);
    }
}

TEST(ImageScaling, StaysInRangeAtSharpEdges) {
    Image source = filled(8, 1, {0, 0, 0});
    for (int x = 4; x < 8; ++x) {
        setPixel(source, x, 0, {255, 255, 255});
    }
    const Image result = ImageScaling().fit(source, {80, 1});
    for (int x = 1; x < 80; ++x) {
        EXPECT_GE(pixelAt(result, x, 0)[0], x < 50 ? pixelAt(result, x - 1, 0)[0] : 255);
    }
}

TEST(ImageScaling, KeepsRowsAndColumnsApart) {
    Image source(8, 8, false);
    for (int i = 0; i < 16; ++i) {
        setPixel(source, 4 + i % 4, i / 4, {200, 0, 0});
        setPixel(source, i % 4, 4 + i / 4, {0, 100, 0});
    }
    const Image result = ImageScaling().fit(source, {20, 20});
    EXPECT_EQ(pixelAt(result, 19, 0), (Pixel{200, 0, 0}));
    EXPECT_EQ(pixelAt(result, 0, 19), (Pixel{0, 100, 0}));
    EXPECT_EQ(pixelAt(result, 0, 0), (Pixel{0, 0, 0}));
}

TEST(ImageScaling, NeedsMoreRowsThanItKeeps) {
    Image source(2, 400, false);
    for (int y = 0; y < 400; ++y) {
        setPixel(source, 0, y, {y / 2, 0, 0});
    }
    const Image result = ImageScaling().fit(source, {2, 8});
    for (int y = 0; y < 8; ++y) {
        EXPECT_NEAR(pixelAt(result, 0, y)[0], 12 + 25 * y, 4);
    }
}

TEST(ImageScaling, HasNothingToMakeOfAnEmptyPicture) {
    EXPECT_TRUE(ImageScaling().fit(Image(), {10, 10}).isEmpty());
}

}  // namespace

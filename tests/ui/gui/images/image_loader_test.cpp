#include "ui/gui/images/image_loader.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fakes/fake_console.h"
#include "ui/gui/images/jpeg_writer.h"
#include "ui/gui/images/png_writer.h"
#include "ui/gui/images/recording_receiver.h"

namespace {

using std::string_literals::operator""s;

class ImageLoaderTest : public ::testing::Test {
protected:
    Image load(const std::string& block) const { return loader.loadImage(block.data(), block.size()); }

    FakeConsole console;
    ImageLoader loader{DebugLog(console)};
};

TEST_F(ImageLoaderTest, RecognisesPng) {
    const Image image = load(PngWriter::file({.width = 1, .height = 2, .colourType = 6}, "\0rgba\0RGBA"s));
    ASSERT_EQ(image.height(), 2);
    ASSERT_TRUE(image.hasAlpha());
    EXPECT_EQ(std::string(image.rgbRow(1), image.rgbRow(1) + 3), "RGB");
    EXPECT_EQ(image.alphaRow(1)[0], 'A');
}

TEST_F(ImageLoaderTest, RecognisesJpeg) {
    const Image image = load(JpegWriter::file({.width = 5, .height = 4, .components = 1}, {77}));
    ASSERT_EQ(image.width(), 5);
    EXPECT_FALSE(image.hasAlpha());
    EXPECT_EQ(image.rgbRow(3)[14], 77);
}

TEST_F(ImageLoaderTest, TakesTheRestAsRaw) {
    const Image image = load("\1\0\0\0\1\0\0\0rgba"s);
    ASSERT_EQ(image.width(), 1);
    EXPECT_EQ(image.rgbRow(0)[2], 'b');
    EXPECT_THAT(console.lines(), ::testing::IsEmpty());
}

TEST_F(ImageLoaderTest, HasNoImageForFewBytes) {
    for (const std::string& block : {""s, "a"s, "ab"s, "abc"s, "\x89PN"s, "\xFF"s, "\xFF\xD8"s, "\x89PNG"s}) {
        EXPECT_TRUE(load(block).isEmpty()) << block.size();
    }
}

TEST_F(ImageLoaderTest, IsSilentAboutMissingData) {
    EXPECT_TRUE(loader.loadImage(nullptr, 10).isEmpty());
    EXPECT_TRUE(loader.loadImage("x", 0).isEmpty());
    EXPECT_THAT(console.lines(), ::testing::IsEmpty());
}

TEST_F(ImageLoaderTest, GivesNoHalfOfABrokenPng) {
    const std::string file = PngWriter::file({.width = 2, .height = 2}, "\0abcdef\0ghijkl"s);
    EXPECT_TRUE(load(file.substr(0, file.size() - 1)).isEmpty());
}

TEST_F(ImageLoaderTest, ReportsMissingDataToTheDecoders) {
    DecodedImage found;
    RecordingReceiver receiver;
    EXPECT_EQ(loader.LoadPNGArray(found, nullptr, 8, receiver), ImageResult::kNoData);
    EXPECT_EQ(loader.LoadPNGArray(found, "x", 0, receiver), ImageResult::kNoData);
    EXPECT_EQ(loader.LoadJPGArray(found, nullptr, 8, receiver), ImageResult::kNoData);
    EXPECT_EQ(loader.LoadJPGArray(found, "x", 0, receiver), ImageResult::kNoData);
    const std::string png = "ImageLoader::LoadPNGArray, level 4: Can't read NULL PNG data";
    const std::string jpeg = "ImageLoader::LoadJPGArray, level 4: Can't read NULL JPEG data";
    EXPECT_EQ(console.lines(), (std::vector<std::string>{png, png, jpeg, jpeg}));
    EXPECT_THAT(receiver.calls, ::testing::IsEmpty());
}

TEST_F(ImageLoaderTest, NumbersTheResultsAsTheFormatsDo) {
    DecodedImage found;
    RecordingReceiver receiver;
    const std::string two = JpegWriter::file({.components = 2}, {1, 2});
    EXPECT_EQ(static_cast<int>(loader.LoadJPGArray(found, two.data(), two.size(), receiver)), 3);
    EXPECT_EQ(static_cast<int>(loader.LoadJPGArray(found, two.data(), 20, receiver)), 4);
    EXPECT_EQ(static_cast<int>(loader.LoadPNGArray(found, two.data(), two.size(), receiver)), 2);
}

}  // namespace

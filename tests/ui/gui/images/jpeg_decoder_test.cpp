#include "ui/gui/images/jpeg_decoder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "fakes/fake_console.h"
#include "ui/gui/images/image.h"
#include "ui/gui/images/jpeg_writer.h"
#include "ui/gui/images/recording_receiver.h"

namespace {

class JpegDecoderTest : public ::testing::Test {
protected:
    ImageResult decode(const std::string& file) {
        found = {};
        receiver = {};
        return decodeJpeg(found, reinterpret_cast<const std::uint8_t*>(file.data()), file.size(), receiver,
                          DebugLog(console));
    }

    void expectEveryPixel(int red, int green, int blue) const {
        ASSERT_EQ(receiver.rows.size(), static_cast<std::size_t>(found.height));
        for (const std::vector<std::uint8_t>& row : receiver.rows) {
            ASSERT_EQ(row.size(), static_cast<std::size_t>(found.width) * 3);
            for (std::size_t i = 0; i < row.size(); i += 3) {
                EXPECT_NEAR(row[i], red, 3);
                EXPECT_NEAR(row[i + 1], green, 3);
                EXPECT_NEAR(row[i + 2], blue, 3);
            }
        }
    }

    DecodedImage found;
    RecordingReceiver receiver;
    FakeConsole console;
};

TEST_F(JpegDecoderTest, GivesRowsOfColoursInOrder) {
    ASSERT_EQ(decode(JpegWriter::file({.width = 9, .height = 2}, {200, 100, 50})), ImageResult::kLoaded);
    EXPECT_EQ(receiver.calls, (std::vector<std::string>{"setSize 9 2", "begin", "putRow 0", "putRow 1"}));
    expectEveryPixel(200, 100, 50);
    EXPECT_EQ(found.channels, 3);
}

TEST_F(JpegDecoderTest, CopiesGrayToThreeColours) {
    ASSERT_EQ(decode(JpegWriter::file({.components = 1}, {77})), ImageResult::kLoaded);
    expectEveryPixel(77, 77, 77);
    EXPECT_EQ(found.channels, 1);
}

TEST_F(JpegDecoderTest, ReadsProgressiveAndArithmeticFiles) {
    ASSERT_EQ(decode(JpegWriter::file({.progressive = true}, {200, 100, 50})), ImageResult::kLoaded);
    expectEveryPixel(200, 100, 50);
    ASSERT_EQ(decode(JpegWriter::file({.arithmetic = true}, {200, 100, 50})), ImageResult::kLoaded);
    expectEveryPixel(200, 100, 50);
}

TEST_F(JpegDecoderTest, ShowsInksAsTheirAuthorSawThem) {
    // Full cyan, half black.
    ASSERT_EQ(decode(JpegWriter::file({.components = 4, .adobeMarker = false}, {255, 0, 0, 128})),
              ImageResult::kLoaded);
    expectEveryPixel(0, 127, 127);
    EXPECT_EQ(found.channels, 4);
    // The same as Adobe's programs write it.
    ASSERT_EQ(decode(JpegWriter::file({.components = 4}, {0, 255, 255, 127})), ImageResult::kLoaded);
    expectEveryPixel(0, 127, 127);
    EXPECT_EQ(receiver.calls[1], "begin");
}

TEST_F(JpegDecoderTest, GivesNoImageForTwoComponents) {
    EXPECT_EQ(decode(JpegWriter::file({.components = 2}, {1, 2})), ImageResult::kUnusableChannels);
    EXPECT_THAT(receiver.calls, ::testing::IsEmpty());
}

TEST_F(JpegDecoderTest, SaysWhyAFileIsBroken) {
    EXPECT_EQ(decode("\xFF\xD8 text"), ImageResult::kBroken);
    ASSERT_EQ(console.lines().size(), 1U);
    EXPECT_THAT(console.lines()[0], ::testing::StartsWith("A JPEG picture can't be read: "));
}

TEST_F(JpegDecoderTest, IsNoPictureWhenCutInItsHeaderAndMayBeOneAfterIt) {
    for (const bool progressive : {false, true}) {
        const std::string file =
            JpegWriter::file({.width = 16, .height = 16, .progressive = progressive}, {200, 100, 50});
        const std::size_t scan = file.find("\xFF\xDA");
        for (std::size_t length = 1; length < file.size(); ++length) {
            const ImageResult result = decode(file.substr(0, length));
            EXPECT_TRUE(result == ImageResult::kBroken || length > scan) << length;
            EXPECT_EQ(result == ImageResult::kLoaded, receiver.rows.size() == 16) << length;
        }
        EXPECT_EQ(decode(file.substr(0, file.size() - 2)), ImageResult::kLoaded);
        expectEveryPixel(200, 100, 50);
    }
}

TEST_F(JpegDecoderTest, StaysInItsLimitsWithAnyDamagedByte) {
    for (const JpegWriter::Options& options : {JpegWriter::Options{},
                                               {.components = 1},
                                               {.components = 4},
                                               {.progressive = true},
                                               {.arithmetic = true}}) {
        const std::string file = JpegWriter::file(options, {200, 100, 50, 25});
        for (std::size_t at = 0; at < file.size(); ++at) {
            for (const int value : {0, 1, 127, 128, 255}) {
                std::string damaged = file;
                damaged[at] = static_cast<char>(value);
                const ImageResult result = decode(damaged);
                EXPECT_TRUE(result != ImageResult::kLoaded ||
                            isImageSize(receiver.rows.at(0).size() / 3, receiver.rows.size()))
                    << at << " " << value;
            }
        }
    }
}

TEST_F(JpegDecoderTest, HasSidesBelow6400) {
    const std::string file = JpegWriter::file({.width = 8, .height = 8, .components = 1}, {77});
    EXPECT_EQ(decode(JpegWriter::withSize(file, 6399, 8)), ImageResult::kLoaded);
    EXPECT_EQ(decode(JpegWriter::withSize(file, 8, 6399)), ImageResult::kLoaded);
    EXPECT_EQ(decode(JpegWriter::withSize(file, 6400, 8)), ImageResult::kBroken);
    EXPECT_EQ(decode(JpegWriter::withSize(file, 8, 6400)), ImageResult::kBroken);
    EXPECT_EQ(decode(JpegWriter::withSize(file, 65500, 65500)), ImageResult::kBroken);
    EXPECT_EQ(decode(JpegWriter::withSize(file, 0, 8)), ImageResult::kBroken);
}

TEST_F(JpegDecoderTest, RefusesAFileOfThousandsOfScans) {
    const std::string file = JpegWriter::file({.progressive = true}, {200, 100, 50});
    EXPECT_EQ(decode(JpegWriter::withScansRepeated(file, 50)), ImageResult::kLoaded);
    EXPECT_EQ(decode(JpegWriter::withScansRepeated(file, 5000)), ImageResult::kBroken);
    EXPECT_EQ(console.lines(),
              std::vector<std::string>{"A JPEG picture can't be read: the file has too many scans"});
    EXPECT_THAT(receiver.calls, ::testing::IsEmpty());
}

TEST_F(JpegDecoderTest, AllowsALargePictureFewerScans) {
    const std::string file = JpegWriter::file({.components = 1, .progressive = true}, {77});
    EXPECT_EQ(decode(JpegWriter::withScansRepeated(JpegWriter::withSize(file, 6399, 6399), 40)),
              ImageResult::kBroken);
}

}  // namespace

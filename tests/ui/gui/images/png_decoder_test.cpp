#include "ui/gui/images/png_decoder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fakes/fake_console.h"
#include "ui/gui/images/image.h"
#include "ui/gui/images/png_writer.h"
#include "ui/gui/images/recording_receiver.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
using std::string_literals::operator""s;

class PngDecoderTest : public ::testing::Test {
protected:
    ImageResult decode(const std::string& file) {
        found = {};
        receiver = {};
        return decodePng(found, reinterpret_cast<const std::uint8_t*>(file.data()), file.size(), receiver,
                         DebugLog(console));
    }

    DecodedImage found;
    RecordingReceiver receiver;
    FakeConsole console;
};

const PngWriter::Header kTwoByOne{.width = 2, .height = 1};

TEST_F(PngDecoderTest, GivesRowsOfColoursInOrder) {
    const PngWriter::Header header{.width = 2, .height = 2};
    ASSERT_EQ(decode(PngWriter::file(header, "\0abcdef\0ghijkl"s)), ImageResult::kLoaded);
    EXPECT_EQ(receiver.calls, (std::vector<std::string>{"setSize 2 2", "begin", "putRow 0", "putRow 1"}));
    EXPECT_EQ(receiver.rows,
              (std::vector<Bytes>{{'a', 'b', 'c', 'd', 'e', 'f'}, {'g', 'h', 'i', 'j', 'k', 'l'}}));
    EXPECT_EQ(found.channels, 3);
}

TEST_F(PngDecoderTest, GivesAlpha) {
    ASSERT_EQ(decode(PngWriter::file({.width = 1, .height = 1, .colourType = 6}, "\0rgba"s)),
              ImageResult::kLoaded);
    EXPECT_EQ(receiver.calls[1], "begin with alpha");
    EXPECT_EQ(receiver.rows, (std::vector<Bytes>{{'r', 'g', 'b', 'a'}}));
    EXPECT_EQ(found.channels, 4);
}

TEST_F(PngDecoderTest, CopiesGrayToThreeColours) {
    ASSERT_EQ(decode(PngWriter::file({.width = 2, .height = 1, .colourType = 0}, "\0xy"s)),
              ImageResult::kLoaded);
    EXPECT_EQ(receiver.rows, (std::vector<Bytes>{{'x', 'x', 'x', 'y', 'y', 'y'}}));
    EXPECT_EQ(found.channels, 1);
}

TEST_F(PngDecoderTest, SpreadsGrayOfFewBits) {
    ASSERT_EQ(decode(PngWriter::file({.width = 2, .height = 1, .depth = 1, .colourType = 0}, "\0\x40"s)),
              ImageResult::kLoaded);
    EXPECT_EQ(receiver.rows, (std::vector<Bytes>{{0, 0, 0, 255, 255, 255}}));
    ASSERT_EQ(decode(PngWriter::file({.width = 2, .height = 1, .depth = 2, .colourType = 0}, "\0\x60"s)),
              ImageResult::kLoaded);
    EXPECT_EQ(receiver.rows, (std::vector<Bytes>{{85, 85, 85, 170, 170, 170}}));
    ASSERT_EQ(decode(PngWriter::file({.width = 2, .height = 1, .depth = 4, .colourType = 0}, "\0\x1F"s)),
              ImageResult::kLoaded);
    EXPECT_EQ(receiver.rows, (std::vector<Bytes>{{17, 17, 17, 255, 255, 255}}));
}

TEST_F(PngDecoderTest, TakesTheHighByteOf16Bits) {
    ASSERT_EQ(decode(PngWriter::file({.width = 1, .height = 1, .depth = 16, .colourType = 2},
                                     "\0a\xFF"
                                     "b\xFF"
                                     "c\xFF"s)),
              ImageResult::kLoaded);
    EXPECT_EQ(receiver.rows, (std::vector<Bytes>{{'a', 'b', 'c'}}));
    ASSERT_EQ(decode(PngWriter::file({.width = 1, .height = 1, .depth = 16, .colourType = 0}, "\0g\xFF"s)),
              ImageResult::kLoaded);
    EXPECT_EQ(receiver.rows, (std::vector<Bytes>{{'g', 'g', 'g'}}));
}

TEST_F(PngDecoderTest, ExpandsAPalette) {
    const PngWriter::Header header{.width = 2, .height = 1, .depth = 1, .colourType = 3};
    ASSERT_EQ(decode(PngWriter::file(header, "\0\x40"s, PngWriter::chunk("PLTE", "rgbRGB"))),
              ImageResult::kLoaded);
    EXPECT_EQ(receiver.rows, (std::vector<Bytes>{{'r', 'g', 'b', 'R', 'G', 'B'}}));
}

TEST_F(PngDecoderTest, ExpandsThePalettesTransparency) {
    const PngWriter::Header header{.width = 2, .height = 1, .colourType = 3};
    const std::string chunks = PngWriter::chunk("PLTE", "rgbRGB") + PngWriter::chunk("tRNS", "\x09"s);
    ASSERT_EQ(decode(PngWriter::file(header, "\0\0\1"s, chunks)), ImageResult::kLoaded);
    EXPECT_EQ(receiver.rows, (std::vector<Bytes>{{'r', 'g', 'b', 9, 'R', 'G', 'B', 255}}));
}

TEST_F(PngDecoderTest, ExpandsATransparentColour) {
    const std::string colour = PngWriter::chunk("tRNS", "\0a\0b\0c"s);
    ASSERT_EQ(decode(PngWriter::file(kTwoByOne, "\0abcdef"s, colour)), ImageResult::kLoaded);
    EXPECT_EQ(receiver.rows, (std::vector<Bytes>{{'a', 'b', 'c', 0, 'd', 'e', 'f', 255}}));
}

TEST_F(PngDecoderTest, GivesNoImageForGrayWithAlpha) {
    EXPECT_EQ(decode(PngWriter::file({.width = 1, .height = 1, .colourType = 4}, "\0ga"s)),
              ImageResult::kUnusableChannels);
    const std::string transparent = PngWriter::chunk("tRNS", "\0g"s);
    EXPECT_EQ(decode(PngWriter::file({.width = 1, .height = 1, .colourType = 0}, "\0g"s, transparent)),
              ImageResult::kUnusableChannels);
    EXPECT_THAT(receiver.calls, ::testing::IsEmpty());
}

TEST_F(PngDecoderTest, PutsAnInterlacedPictureTogether) {
    // Of 2 x 2 pixels the first, sixth and seventh pass have some.
    const PngWriter::Header header{.width = 2, .height = 2, .colourType = 0, .interlace = 1};
    ASSERT_EQ(decode(PngWriter::file(header, "\0a\0b\0cd"s)), ImageResult::kLoaded);
    EXPECT_EQ(receiver.rows,
              (std::vector<Bytes>{{'a', 'a', 'a', 'b', 'b', 'b'}, {'c', 'c', 'c', 'd', 'd', 'd'}}));
    EXPECT_EQ(receiver.calls, (std::vector<std::string>{"setSize 2 2", "begin", "putRow 0", "putRow 1"}));
}

TEST_F(PngDecoderTest, RefusesAnotherSignature) {
    std::string file = PngWriter::file(kTwoByOne, "\0abcdef"s);
    EXPECT_EQ(decode(file.substr(0, 7)), ImageResult::kNotThisKind);
    file[7] = 'x';
    EXPECT_EQ(decode(file), ImageResult::kNotThisKind);
}

TEST_F(PngDecoderTest, SaysWhyAFileIsBroken) {
    EXPECT_EQ(decode(PngWriter::file(kTwoByOne, "\0abcdef"s).substr(0, 50)), ImageResult::kBroken);
    EXPECT_EQ(console.lines(),
              std::vector<std::string>{"A PNG picture can't be read: the file ends too soon"});
}

TEST_F(PngDecoderTest, FailsWhenCutAnywhere) {
    const std::string palette = PngWriter::chunk("PLTE", "rgbRGB") + PngWriter::chunk("tRNS", "\x09"s);
    for (const std::string& file :
         {PngWriter::file(kTwoByOne, "\0abcdef"s),
          PngWriter::file({.width = 2, .height = 1, .colourType = 3}, "\0\0\1"s, palette),
          PngWriter::file({.width = 2, .height = 2, .colourType = 0, .interlace = 1}, "\0a\0b\0cd"s)}) {
        ASSERT_EQ(decode(file), ImageResult::kLoaded);
        for (std::size_t length = 0; length < file.size(); ++length) {
            EXPECT_NE(decode(file.substr(0, length)), ImageResult::kLoaded) << length;
        }
    }
}

TEST_F(PngDecoderTest, NoticesEachDamagedByteOfWhatCounts) {
    const std::string file = PngWriter::file(kTwoByOne, "\0abcdef"s);
    // The length, type and checksum of the last chunk, and the lengths of others, are noticed or of no
    // importance.
    const std::size_t dataEnd = file.size() - PngWriter::chunk("IEND", {}).size();
    for (std::size_t at = 0; at < file.size(); ++at) {
        for (const int value : {0, 1, 127, 128, 255}) {
            std::string damaged = file;
            damaged[at] = static_cast<char>(value);
            const ImageResult result = decode(damaged);
            if (damaged != file && at < dataEnd) {
                EXPECT_NE(result, ImageResult::kLoaded) << at << " " << value;
            }
        }
    }
}

TEST_F(PngDecoderTest, RefusesHeadersWithARightChecksumAndWrongFields) {
    const std::string rows(64, '\0');
    for (const int value : {0, 1, 127, 128, 255}) {
        for (const PngWriter::Header& header : {PngWriter::Header{.width = 2, .height = 1, .depth = value},
                                                {.width = 2, .height = 1, .colourType = value},
                                                {.width = 2, .height = 1, .interlace = value}}) {
            const bool isPlain = header.interlace == 1 || header.colourType == 0;
            EXPECT_EQ(decode(PngWriter::file(header, rows)) == ImageResult::kLoaded,
                      isPlain || (value == 0 && header.depth == 8));
        }
    }
}

TEST_F(PngDecoderTest, HasSidesBelow6400) {
    const std::string row(1 + std::size_t{6400}, '\0');
    const auto gray = [&](std::uint32_t width, std::uint32_t height) {
        return PngWriter::file({.width = width, .height = height, .colourType = 0},
                               height == 1 ? row : std::string(std::size_t{height} * 2, '\0'));
    };
    EXPECT_EQ(decode(gray(6399, 1)), ImageResult::kLoaded);
    EXPECT_EQ(decode(gray(1, 6399)), ImageResult::kLoaded);
    EXPECT_EQ(decode(gray(6400, 1)), ImageResult::kBroken);
    EXPECT_EQ(decode(gray(1, 6400)), ImageResult::kBroken);
    EXPECT_EQ(decode(PngWriter::file({.width = 0, .height = 1}, "\0"s)), ImageResult::kBroken);
    EXPECT_EQ(decode(PngWriter::file({.width = 0x7FFFFFFF, .height = 0x7FFFFFFF}, "\0"s)),
              ImageResult::kBroken);
    EXPECT_EQ(decode(PngWriter::file({.width = 0xFFFFFFFF, .height = 1}, "\0"s)), ImageResult::kBroken);
}

TEST_F(PngDecoderTest, TakesNoMemoryForASizeThatTheDataCannotFill) {
    EXPECT_EQ(
        decode(PngWriter::file({.width = 6399, .height = 6399, .colourType = 6}, std::string(1000, '\0'))),
        ImageResult::kBroken);
    EXPECT_THAT(receiver.calls, ::testing::IsEmpty());
    EXPECT_EQ(console.lines(),
              std::vector<std::string>{"A PNG picture can't be read: the file is too short for its size"});
}

TEST_F(PngDecoderTest, LoadsTheSmallestFilesOfLargePictures) {
    const PngWriter::Header header{.width = 2000, .height = 1000, .depth = 1, .colourType = 0};
    EXPECT_EQ(decode(PngWriter::file(header, std::string(251 * 1000, '\0'))), ImageResult::kLoaded);
}

// 64 MB each when they are expanded.
TEST_F(PngDecoderTest, DoesNotReadChunksThatArePartOfNoPixel) {
    const std::string bomb = PngWriter::dataChunk(std::string(64U << 20, '\0')).substr(8);
    const std::string packed = bomb.substr(0, bomb.size() - 4);
    const std::string chunks =
        PngWriter::chunk("iCCP", "name\0\0"s + packed) + PngWriter::chunk("zTXt", "key\0\0"s + packed) +
        PngWriter::chunk("iTXt", "key\0\1\0\0\0"s + packed) + PngWriter::chunk("prVt", packed);
    ASSERT_EQ(decode(PngWriter::file(kTwoByOne, "\0abcdef"s, chunks)), ImageResult::kLoaded);
    EXPECT_THAT(console.lines(), ::testing::IsEmpty());
}

TEST_F(PngDecoderTest, StopsExpandingWhenThePictureIsFull) {
    EXPECT_EQ(decode(PngWriter::file(kTwoByOne, "\0abcdef"s + std::string(64U << 20, '\0'))),
              ImageResult::kLoaded);
    EXPECT_EQ(receiver.rows.size(), 1U);
}

}  // namespace

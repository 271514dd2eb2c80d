#include "checking/picture_header.h"

#include <gtest/gtest.h>

namespace {

using namespace std::string_literals;

std::string faultOf(const std::string& file) {
    return pictureFault(
        [&](std::int64_t offset, std::uint32_t count) {
            const auto start = static_cast<std::size_t>(offset);
            return start < file.size() ? file.substr(start, count) : std::string();
        },
        static_cast<std::int64_t>(file.size()));
}

std::string number(std::uint32_t value, int bytes) {
    std::string text;
    while (bytes-- > 0) {
        text += static_cast<char>(value >> (8 * bytes) & 0xFF);
    }
    return text;
}

std::string chunk(const std::string& type, const std::string& content) {
    return number(static_cast<std::uint32_t>(content.size()), 4) + type + content + "crc!";
}

std::string png(std::uint32_t width, std::uint32_t height, char colours) {
    return "\x89PNG\r\n\x1A\n" +
           chunk("IHDR", number(width, 4) + number(height, 4) + "\x08" + std::string(1, colours) + "\0\0\0"s);
}

std::string segment(char marker, const std::string& content) {
    return "\xFF" + std::string(1, marker) + number(static_cast<std::uint32_t>(content.size() + 2), 2) +
           content;
}

std::string frame(char marker, std::uint32_t width, std::uint32_t height, char channels) {
    return segment(marker, "\x08" + number(height, 2) + number(width, 2) + channels + std::string(9, 'c'));
}

const std::string kJpegStart = "\xFF\xD8";
const std::string kNone = "is neither a PNG nor a JPEG nor a raw picture";
const std::string kCut = "ends within its header";
const std::string kGrey = "is in shades of grey with transparency, which isn't shown";

TEST(PictureHeader, AcceptsThePngsThatAreShown) {
    for (const char colours : {0, 2, 3, 6}) {
        EXPECT_EQ(faultOf(png(6399, 1, colours) + chunk("IDAT", "tRNS")), "") << int{colours};
    }
    EXPECT_EQ(faultOf(png(1, 1, 3) + chunk("tRNS", "x") + chunk("IDAT", "")), "");
}

TEST(PictureHeader, KnowsThePngsThatAreNot) {
    EXPECT_EQ(faultOf(png(1, 1, 4)), kGrey);
    EXPECT_EQ(faultOf(png(1, 1, 0) + chunk("gAMA", "1234") + chunk("tRNS", "12") + chunk("IDAT", "")), kGrey);
    EXPECT_EQ(faultOf(png(6400, 1, 2)), "has 6400 by 1 pixels, and each side must have 1 to 6399");
    EXPECT_EQ(faultOf(png(1, 0, 2)), "has 1 by 0 pixels, and each side must have 1 to 6399");
    EXPECT_EQ(faultOf("\x89PNG\n\x1A\n and more of this file"),
              "begins as a PNG and is none: it may have been changed as a text");
}

TEST(PictureHeader, AcceptsTheJpegsThatAreShown) {
    for (const char channels : {1, 3, 4}) {
        EXPECT_EQ(faultOf(kJpegStart + segment('\xE0', "JFIF") + "\xFF" + segment('\xC4', "tables") +
                          frame('\xC2', 6399, 1, channels)),
                  "")
            << int{channels};
    }
}

TEST(PictureHeader, KnowsTheJpegsThatAreNot) {
    EXPECT_EQ(faultOf(kJpegStart + frame('\xC0', 1, 1, 2)), "is a JPEG with 2 channels, which isn't shown");
    EXPECT_EQ(faultOf(kJpegStart + frame('\xC3', 1, 1, 3)), "is a JPEG of a kind that isn't read");
    EXPECT_EQ(faultOf(kJpegStart + frame('\xC0', 6400, 2, 3)),
              "has 6400 by 2 pixels, and each side must have 1 to 6399");
    EXPECT_EQ(faultOf(kJpegStart + segment('\xDA', "scan")), "is a JPEG without a frame, or a damaged one");
    EXPECT_EQ(faultOf(kJpegStart + "text"), "is a JPEG without a frame, or a damaged one");
}

TEST(PictureHeader, KnowsRawPicturesByTheirLength) {
    EXPECT_EQ(faultOf("\x02\0\0\0\x01\0\0\0"s + std::string(8, 'p')), "");
    EXPECT_EQ(faultOf("\x02\0\0\0\x01\0\0\0"s + std::string(7, 'p')), kNone);
    EXPECT_EQ(faultOf("\0\x19\0\0\x01\0\0\0"s + std::string(25600, 'p')), kNone);
    EXPECT_EQ(faultOf("\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"s + std::string(8, 'p')), kNone);
    EXPECT_EQ(faultOf("GIF89a, and so on"), kNone);
    EXPECT_EQ(faultOf(""), kNone);
}

TEST(PictureHeader, FindsEveryCutHeader) {
    const std::string whole = png(1, 1, 2);
    for (std::size_t length = 8; length < whole.size(); ++length) {
        EXPECT_EQ(faultOf(whole.substr(0, length)), kCut) << length;
    }
    const std::string jpeg = kJpegStart + segment('\xE0', "JFIF") + frame('\xC0', 1, 1, 3);
    for (std::size_t length = 2; length < jpeg.size() - 9; ++length) {
        EXPECT_NE(faultOf(jpeg.substr(0, length)), "") << length;
    }
}

}  // namespace

#include "checking/icon_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "checking/icon_bytes.h"
#include "package/little_endian.h"

namespace {

using IconBytes::bitmap;
using IconBytes::icon;
using IconBytes::png;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::string faultOf(const std::string& content) {
    const IconFile file = readIconFile(content);
    EXPECT_EQ(file.fault.empty(), !file.pictures.empty());
    return file.fault;
}

// The file with one number of four bytes replaced.
std::string with32(std::string content, std::size_t offset, std::uint32_t value) {
    std::string number;
    LittleEndian::append32(number, value);
    return content.replace(offset, 4, number);
}

TEST(IconFile, GivesThePicturesWithTheirSizes) {
    const std::string content = IconBytes::wholeIcon();
    const IconFile file = readIconFile(content);
    EXPECT_EQ(file.fault, "");
    ASSERT_EQ(file.pictures.size(), 4U);
    const std::uint32_t sides[] = {16, 32, 48, 256};
    const std::uint16_t bits[] = {32, 8, 4, 32};
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(file.pictures[i].width, sides[i]);
        EXPECT_EQ(file.pictures[i].height, sides[i]);
        EXPECT_EQ(file.pictures[i].bits, bits[i]);
    }
    EXPECT_EQ(file.pictures[0].bytes, bitmap(16, 32));
    EXPECT_EQ(file.pictures[3].bytes, png(256, 256));
    EXPECT_THAT(missingIconSizes(file), IsEmpty());
}

TEST(IconFile, TakesASquarePngForOnePicture) {
    const std::string content = png(64, 64);
    const IconFile file = readIconFile(content);
    ASSERT_EQ(file.pictures.size(), 1U);
    EXPECT_EQ(file.pictures[0].bytes, content);
    EXPECT_THAT(missingIconSizes(file), ElementsAre(16, 32, 48, 256));
    EXPECT_THAT(faultOf(png(64, 32)), HasSubstr("square"));
    EXPECT_THAT(faultOf(png(257, 257)), HasSubstr("257 by 257"));
    EXPECT_THAT(faultOf(png(0, 0)), HasSubstr("0 by 0"));
}

TEST(IconFile, RefusesEveryPartOfAFile) {
    for (const std::string& content : {IconBytes::wholeIcon(), png(16, 16)}) {
        for (std::size_t size = 0; size < content.size(); ++size) {
            EXPECT_NE(faultOf(content.substr(0, size)), "") << size;
        }
    }
}

TEST(IconFile, RefusesWhatIsNoIcon) {
    EXPECT_THAT(faultOf("GIF89a"), HasSubstr("neither"));
    std::string cursor = IconBytes::wholeIcon();
    cursor[2] = 2;
    EXPECT_THAT(faultOf(cursor), HasSubstr("neither"));
    EXPECT_THAT(faultOf(icon({})), HasSubstr("0 pictures"));
    EXPECT_THAT(faultOf(icon(std::vector<IconBytes::Picture>(65, {16, bitmap(16, 1)}))),
                HasSubstr("65 pictures"));
    EXPECT_EQ(faultOf(icon(std::vector<IconBytes::Picture>(64, {16, bitmap(16, 1)}))), "");
    EXPECT_THAT(faultOf(std::string(1024 * 1024 + 1, '\0')), HasSubstr("1 MiB"));
}

TEST(IconFile, RefusesPicturesInImpossiblePlaces) {
    const std::string content = icon({{16, bitmap(16, 32)}, {16, bitmap(16, 32)}});
    const std::size_t size = 6 + 8;
    const std::size_t place = 6 + 12;
    EXPECT_THAT(faultOf(with32(content, size, 0xFFFFFFFF)), HasSubstr("ends within"));
    EXPECT_THAT(faultOf(with32(content, place, 0xFFFFFFFF)), HasSubstr("ends within"));
    EXPECT_THAT(faultOf(with32(content, place, 6)), HasSubstr("ends within"));
    EXPECT_THAT(faultOf(with32(content.substr(0, 6 + 32) + bitmap(16, 32), place + 16, 6 + 32)),
                HasSubstr("overlap"));
}

TEST(IconFile, RefusesAPictureOfAnotherSizeThanItsListSays) {
    EXPECT_THAT(faultOf(icon({{32, bitmap(16, 32)}})), HasSubstr("another size"));
    EXPECT_THAT(faultOf(icon({{16, png(32, 32)}})), HasSubstr("another size"));
}

TEST(IconFile, RefusesDamagedBitmaps) {
    const std::size_t start = 6 + 16;
    const std::string content = icon({{16, bitmap(16, 8)}});
    EXPECT_THAT(faultOf(with32(content, start, 12)), HasSubstr("neither PNG nor a bitmap"));
    EXPECT_THAT(faultOf(with32(content, start + 4, 0)), HasSubstr("kind"));
    EXPECT_THAT(faultOf(with32(content, start + 4, 0xFFFFFFFF)), HasSubstr("kind"));
    EXPECT_THAT(faultOf(with32(content, start + 8, 33)), HasSubstr("kind"));
    EXPECT_THAT(faultOf(with32(content, start + 16, 1)), HasSubstr("kind"));
    EXPECT_THAT(faultOf(with32(content, start + 32, 0xFFFFFFFF)), HasSubstr("kind"));
    EXPECT_THAT(faultOf(with32(content, start + 12, 7U << 16U)), HasSubstr("kind"));
    const std::string deep = icon({{16, bitmap(16, 24)}});
    EXPECT_THAT(faultOf(with32(deep, start + 12, 32U << 16U)), HasSubstr("cut"));
}

TEST(IconFile, RefusesDamagedPngs) {
    const std::string good = png(16, 16);
    const std::size_t pixels = good.find("IDAT");
    std::string withoutPixels = good;
    withoutPixels.replace(pixels, 4, "tEXt");
    EXPECT_THAT(faultOf(withoutPixels), HasSubstr("damaged"));
    std::string tooLong = good;
    tooLong[pixels - 4] = '\x7F';
    EXPECT_THAT(faultOf(tooLong), HasSubstr("damaged"));
    EXPECT_THAT(faultOf(good + "more"), HasSubstr("damaged"));
    std::string colours = good;
    colours[good.find("IHDR") + 13] = 5;
    EXPECT_THAT(faultOf(colours), HasSubstr("damaged"));
    std::string depth = good;
    depth[good.find("IHDR") + 12] = 3;
    EXPECT_THAT(faultOf(depth), HasSubstr("damaged"));
}

TEST(IconFile, NeverGivesMoreThanItHasWhenABitIsWrong) {
    const std::string good = icon({{16, bitmap(16, 4)}, {16, png(16, 16)}});
    for (std::size_t i = 0; i < good.size() * 8; ++i) {
        std::string content = good;
        content[i / 8] = static_cast<char>(content[i / 8] ^ (1 << (i % 8)));
        const IconFile file = readIconFile(content);
        for (const IconPicture& picture : file.pictures) {
            EXPECT_GE(picture.bytes.data(), content.data());
            EXPECT_LE(picture.bytes.data() + picture.bytes.size(), content.data() + content.size());
        }
    }
}

}  // namespace

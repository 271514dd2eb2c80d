#include "packager/pe_image.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/errors.h"
#include "package/executable_image.h"
#include "packager/pe_bytes.h"

namespace {

using PackageBytes::getNumber;
using PeBytes::kOptional;
using PeBytes::kSection;
using testing::HasSubstr;

std::string refusalOf(const std::string& bytes) {
    try {
        PeImage image(bytes);
        image.setResources("resources");
    } catch (const InstallerError& error) {
        return error.what();
    }
    return {};
}

std::string with(std::size_t offset, std::uint32_t value) {
    std::string bytes = PeBytes::image();
    PeBytes::setNumber(bytes, offset, value);
    return bytes;
}

TEST(PeImage, PutsResourcesIntoASectionOfTheirOwn) {
    const std::string before = PeBytes::image();
    PeImage image(before);
    EXPECT_EQ(image.resourceAddress(), 0U);
    EXPECT_EQ(image.newResourceAddress(), 0x2000U);
    const std::string content(0x1001, 'r');
    image.setResources(content);
    const std::string& after = image.bytes();
    EXPECT_EQ(measureExecutableImage(after).problem, ImageProblem::kNone);
    EXPECT_EQ(after.size(), before.size() + 0x1200);
    EXPECT_EQ(after.substr(before.size(), content.size()), content);
    EXPECT_EQ(after.substr(1024, before.size() - 1024), before.substr(1024));
    EXPECT_EQ(after[0x86], 2);
    const std::size_t header = kSection + 40;
    EXPECT_EQ(after.substr(header, 8), std::string(".rsrc\0\0\0", 8));
    EXPECT_EQ(getNumber(after, header + 8), 0x1001U);
    EXPECT_EQ(getNumber(after, header + 12), 0x2000U);
    EXPECT_EQ(getNumber(after, header + 16), 0x1200U);
    EXPECT_EQ(getNumber(after, header + 20), before.size());
    EXPECT_EQ(getNumber(after, header + 36), 0x40000040U);
    EXPECT_EQ(getNumber(after, PeBytes::kDirectory), 0x2000U);
    EXPECT_EQ(getNumber(after, PeBytes::kDirectory + 4), 0x1001U);
    EXPECT_EQ(getNumber(after, kOptional + 8), 0x1400U);   // data in memory
    EXPECT_EQ(getNumber(after, kOptional + 56), 0x4000U);  // the whole image
    EXPECT_EQ(getNumber(after, kOptional + 64), 0U);       // no checksum
}

TEST(PeImage, RenamesTheFormerSectionAndReadsTheNewOne) {
    PeImage image(PeBytes::imageWith({{{{}, 24}, {{}, 1}, 0, 0, "manifest"}}));
    EXPECT_EQ(image.resourceAddress(), 0x1000U);
    image.setResources("new");
    EXPECT_EQ(image.bytes().substr(kSection, 8), std::string(".rsrc0\0\0", 8));
    const PeImage read(image.bytes());
    EXPECT_THAT(std::string(read.contentAt(read.resourceAddress())), testing::StartsWith("new"));
}

TEST(PeImage, GivesTheContentOfAnAddress) {
    const PeImage image(PeBytes::image("0123456789"));
    EXPECT_EQ(image.contentAt(0x1004).substr(0, 6), "456789");
    EXPECT_EQ(image.contentAt(0x1004).size(), 508U);
    for (const std::uint32_t address : {0U, 0xFFFU, 0x1200U, 0xFFFFFFFFU}) {
        EXPECT_EQ(image.contentAt(address), "") << address;
    }
}

TEST(PeImage, RefusesHeadersThatContradictThemselves) {
    EXPECT_THAT(refusalOf(with(0x3C, 0xFFFFFFFF)), HasSubstr("cut"));
    EXPECT_THAT(refusalOf(with(0x80, 1)), HasSubstr("no headers"));
    EXPECT_THAT(refusalOf(with(kOptional, 0x107)), HasSubstr("no program"));
    EXPECT_THAT(refusalOf(with(kOptional + 32, 0)), HasSubstr("alignments"));
    EXPECT_THAT(refusalOf(with(kOptional + 36, 0x201)), HasSubstr("alignments"));
    EXPECT_THAT(refusalOf(with(kOptional + 36, 0x80000000)), HasSubstr("alignments"));
    EXPECT_THAT(refusalOf(with(kOptional + 108, 2)), HasSubstr("no place for resources"));
    EXPECT_THAT(refusalOf(with(kSection + 12, 0xFFFFFFFF)), HasSubstr("too large"));
    EXPECT_THAT(refusalOf(with(kSection + 12, 0x7FFFF000)), HasSubstr("too large"));
    EXPECT_EQ(refusalOf(PeBytes::image()), "");
}

TEST(PeImage, RefusesHeadersWithoutRoom) {
    EXPECT_THAT(refusalOf(with(kOptional + 60, kSection + 79)), HasSubstr("no room"));
    EXPECT_EQ(refusalOf(with(kOptional + 60, kSection + 80)), "");
    EXPECT_THAT(refusalOf(with(kSection + 76, 1)), HasSubstr("no room"));
}

TEST(PeImage, RefusesAnImageThatIsCutWithinItsHeaders) {
    const std::string whole = PeBytes::image();
    for (std::size_t size = 0; size < kSection + 80; ++size) {
        EXPECT_NE(refusalOf(whole.substr(0, size)), "") << size;
    }
}

TEST(PeImage, SurvivesEveryWrongBitOfItsHeaders) {
    const std::string whole = PeBytes::imageWith({{{{}, 24}, {{}, 1}, 0, 0, "manifest"}});
    for (std::size_t i = 0; i < (kSection + 80) * 8; ++i) {
        std::string bytes = whole;
        bytes[i / 8] = static_cast<char>(bytes[i / 8] ^ (1 << (i % 8)));
        try {
            PeImage image(bytes);
            readPeResources(image);
            image.setResources("resources");
            EXPECT_LE(image.bytes().size(), whole.size() + 0x20000);
        } catch (const InstallerError&) {
        }
    }
}

}  // namespace

#include "packager/version_resource.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/errors.h"
#include "base/wide_text_converter.h"
#include "package/little_endian.h"
#include "packager/byte_text.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::string wide(std::string_view text) {
    std::string bytes;
    LittleEndian::appendWide(bytes, OUtils::utf8ToWide(text));
    return bytes;
}

TEST(VersionNumber, HasFourParts) {
    EXPECT_THAT(versionNumber("1.20.65535.4"), ElementsAre(1, 20, 65535, 4));
    EXPECT_THAT(versionNumber("1.2.3"), ElementsAre(1, 2, 3, 0));
    EXPECT_THAT(versionNumber("1.2.3.4.5"), ElementsAre(1, 2, 3, 4));
    EXPECT_THAT(versionNumber(""), ElementsAre(0, 0, 0, 0));
}

TEST(VersionNumber, IsZeroWhereAPartIsNone) {
    EXPECT_THAT(versionNumber("65536.2b.x.-1"), ElementsAre(0, 0, 0, 0));
    EXPECT_THAT(versionNumber("..7"), ElementsAre(0, 0, 7, 0));
}

// Byte for byte as a compiler of resources lays it out.
TEST(VersionResource, HasTheLayoutOfWindows) {
    const std::string bytes = versionResource({{1, 2, 3, 0}, {{"ProductName", "P"}, {"CompanyName", "Öl"}}});
    std::string expected;
    LittleEndian::append16(expected, static_cast<std::uint32_t>(bytes.size()));
    LittleEndian::append16(expected, 52);
    LittleEndian::append16(expected, 0);
    expected += wide("VS_VERSION_INFO") + std::string(4, '\0');
    for (const std::uint32_t value : {0xFEEF04BDU, 0x10000U, 0x10002U, 0x30000U, 0x10002U, 0x30000U, 0x3FU,
                                      0U, 0x40004U, 1U, 0U, 0U, 0U}) {
        LittleEndian::append32(expected, value);
    }
    const auto add = [&expected](std::uint32_t size, std::uint32_t valueSize, std::uint32_t kind,
                                 const std::string& name, const std::string& value) {
        ByteText::pad(expected, 4);
        LittleEndian::append16(expected, size);
        LittleEndian::append16(expected, valueSize);
        LittleEndian::append16(expected, kind);
        expected += wide(name) + std::string(2, '\0');
        ByteText::pad(expected, 4);
        expected += value;
    };
    add(36 + 24 + 36 + 38, 0, 1, "StringFileInfo", "");
    add(24 + 36 + 38, 0, 1, "040904B0", "");
    add(36, 2, 1, "ProductName", wide("P") + std::string(2, '\0'));
    add(38, 3, 1, "CompanyName", wide("Öl") + std::string(2, '\0'));
    add(68, 0, 1, "VarFileInfo", "");
    add(36, 4, 0, "Translation", std::string("\x09\x04\xB0\x04", 4));
    EXPECT_EQ(bytes, expected);
}

TEST(VersionResource, RefusesTextsThatItCanNotHold) {
    EXPECT_NO_THROW(versionResource({{}, {{"ProductName", std::string(30000, 'x')}}}));
    try {
        versionResource({{}, {{"ProductName", std::string(33000, 'x')}}});
        ADD_FAILURE() << "it wasn't refused";
    } catch (const InstallerError& error) {
        EXPECT_THAT(error.what(), HasSubstr("too long"));
    }
}

}  // namespace

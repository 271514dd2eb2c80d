#include "packager/version_resource.h"

#include <charconv>
#include <cstddef>

#include "base/failure.h"
#include "base/wide_text_converter.h"
#include "package/little_endian.h"
#include "packager/byte_text.h"

namespace {

constexpr std::size_t kMostBlockSize = 0xFFFF;
constexpr std::uint32_t kLanguage = 0x0409;
constexpr std::uint32_t kCodePage = 1200;
constexpr std::string_view kLanguageBlock = "040904B0";

enum class Content : std::uint32_t { kBinary = 0, kText = 1 };

// A block: its size, that of its value (in units for a text), the kind of the value, the name, the value,
// further blocks. The name's end and each of these begin at a multiple of 4.
std::string block(std::string_view name, Content kind, const std::string& value, const std::string& blocks) {
    std::string bytes;
    LittleEndian::append16(bytes, 0);
    LittleEndian::append16(
        bytes, static_cast<std::uint32_t>(kind == Content::kText ? value.size() / 2 : value.size()));
    LittleEndian::append16(bytes, static_cast<std::uint32_t>(kind));
    LittleEndian::appendWide(bytes, OUtils::utf8ToWide(name));
    LittleEndian::append16(bytes, 0);
    ByteText::pad(bytes, 4);
    bytes += value;
    if (!blocks.empty()) {
        ByteText::pad(bytes, 4);
        bytes += blocks;
    }
    if (bytes.size() > kMostBlockSize) {
        fail("name, title, publisher and copyright are too long for the version information of a setup");
    }
    bytes[0] = static_cast<char>(bytes.size());
    bytes[1] = static_cast<char>(bytes.size() >> 8U);
    return bytes;
}

std::string textBlock(std::string_view name, std::string_view text) {
    std::string value;
    LittleEndian::appendWide(value, OUtils::utf8ToWide(text));
    LittleEndian::append16(value, 0);
    return block(name, Content::kText, value, {});
}

// VS_FIXEDFILEINFO.
std::string fixedPart(const std::array<std::uint16_t, 4>& number) {
    constexpr std::uint32_t kSignature = 0xFEEF04BD;
    constexpr std::uint32_t kStructureVersion = 0x00010000;
    constexpr std::uint32_t kAllFlags = 0x3F;
    constexpr std::uint32_t kWindows = 0x00040004;
    constexpr std::uint32_t kApplication = 1;
    const std::uint32_t high = static_cast<std::uint32_t>(number[0]) << 16U | number[1];
    const std::uint32_t low = static_cast<std::uint32_t>(number[2]) << 16U | number[3];
    std::string bytes;
    for (const std::uint32_t value : {kSignature, kStructureVersion, high, low, high, low, kAllFlags, 0U,
                                      kWindows, kApplication, 0U, 0U, 0U}) {
        LittleEndian::append32(bytes, value);
    }
    return bytes;
}

}  // namespace

std::array<std::uint16_t, 4> versionNumber(std::string_view version) {
    std::array<std::uint16_t, 4> number{};
    for (std::uint16_t& part : number) {
        const std::string_view digits = version.substr(0, version.find('.'));
        std::uint16_t value = 0;
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
        part = error == std::errc() && end == digits.data() + digits.size() ? value : std::uint16_t{0};
        version.remove_prefix(digits.size());
        version.remove_prefix(version.empty() ? 0 : 1);
    }
    return number;
}

std::string versionResource(const VersionInformation& information) {
    std::string texts;
    for (const auto& [name, text] : information.texts) {
        ByteText::pad(texts, 4);
        texts += textBlock(name, text);
    }
    std::string blocks =
        block("StringFileInfo", Content::kText, {}, block(kLanguageBlock, Content::kText, {}, texts));
    std::string translation;
    LittleEndian::append16(translation, kLanguage);
    LittleEndian::append16(translation, kCodePage);
    ByteText::pad(blocks, 4);
    blocks +=
        block("VarFileInfo", Content::kText, {}, block("Translation", Content::kBinary, translation, {}));
    return block("VS_VERSION_INFO", Content::kBinary, fixedPart(information.number), blocks);
}

#include "previewer/png_file.h"

#include <zlib.h>

#include <cstdint>
#include <string_view>

namespace {

constexpr std::string_view kSignature = "\x89PNG\r\n\x1a\n";
// Eight bits of red, green and blue; no interlace.
constexpr std::string_view kForm{"\x08\x02\x00\x00\x00", 5};
// Each byte of a row is written as its difference to that of the pixel before: areas become zeros.
constexpr char kFilterLeft = 1;
constexpr int kLevel = 9;

std::string numberText(std::uint32_t value) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8) {
        bytes += static_cast<char>(value >> shift & 0xFF);
    }
    return bytes;
}

std::string chunk(std::string_view type, std::string_view data) {
    std::string content(type);
    content += data;
    const auto sum = static_cast<std::uint32_t>(
        crc32(0, reinterpret_cast<const Bytef*>(content.data()), static_cast<uInt>(content.size())));
    return numberText(static_cast<std::uint32_t>(data.size())) + content + numberText(sum);
}

std::string rowsOf(const Image& image) {
    std::string rows;
    const auto bytes = static_cast<std::size_t>(image.width()) * 3;
    rows.reserve((bytes + 1) * static_cast<std::size_t>(image.height()));
    for (int y = 0; y < image.height(); ++y) {
        const std::uint8_t* const row = image.rgbRow(y);
        rows += kFilterLeft;
        for (std::size_t i = 0; i < bytes; ++i) {
            rows += static_cast<char>(row[i] - (i < 3 ? 0 : row[i - 3]));
        }
    }
    return rows;
}

}  // namespace

std::string pngFileOf(const Image& image) {
    if (image.isEmpty()) {
        return {};
    }
    const std::string rows = rowsOf(image);
    uLongf size = compressBound(static_cast<uLong>(rows.size()));
    std::string packed(size, '\0');
    if (compress2(reinterpret_cast<Bytef*>(packed.data()), &size, reinterpret_cast<const Bytef*>(rows.data()),
                  static_cast<uLong>(rows.size()), kLevel) != Z_OK) {
        return {};
    }
    packed.resize(size);
    std::string header = numberText(static_cast<std::uint32_t>(image.width()));
    header += numberText(static_cast<std::uint32_t>(image.height()));
    header += kForm;
    return std::string(kSignature) + chunk("IHDR", header) + chunk("IDAT", packed) + chunk("IEND", {});
}

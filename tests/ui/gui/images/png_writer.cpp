#include "ui/gui/images/png_writer.h"

#include <zlib.h>

namespace {

std::string number(std::uint32_t value) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8) {
        bytes += static_cast<char>(value >> shift & 0xFF);
    }
    return bytes;
}

}  // namespace

std::string PngWriter::chunk(std::string_view type, std::string_view data) {
    const std::string content = std::string(type) + std::string(data);
    const auto* bytes = reinterpret_cast<const Bytef*>(content.data());
    const auto sum = static_cast<std::uint32_t>(crc32(0, bytes, static_cast<uInt>(content.size())));
    return number(static_cast<std::uint32_t>(data.size())) + content + number(sum);
}

std::string PngWriter::headerChunk(const Header& header) {
    std::string data = number(header.width) + number(header.height);
    for (const int field : {header.depth, header.colourType, 0, 0, header.interlace}) {
        data += static_cast<char>(field);
    }
    return chunk("IHDR", data);
}

std::string PngWriter::dataChunk(std::string_view rows) {
    uLongf size = compressBound(static_cast<uLong>(rows.size()));
    std::string packed(size, '\0');
    compress2(reinterpret_cast<Bytef*>(packed.data()), &size, reinterpret_cast<const Bytef*>(rows.data()),
              static_cast<uLong>(rows.size()), 9);
    packed.resize(size);
    return chunk("IDAT", packed);
}

std::string PngWriter::file(const Header& header, std::string_view rows, std::string_view before) {
    return std::string(kSignature) + headerChunk(header) + std::string(before) + dataChunk(rows) +
           chunk("IEND", {});
}

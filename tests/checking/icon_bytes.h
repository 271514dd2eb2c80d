#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "package/little_endian.h"

// Files of icons put together byte by byte.
namespace IconBytes {

inline std::string bigEndian(std::uint32_t value) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8) {
        bytes += static_cast<char>(value >> shift);
    }
    return bytes;
}

// A chunk of a PNG; nothing here looks at its checksum.
inline std::string chunk(const std::string& type, const std::string& data) {
    return bigEndian(static_cast<std::uint32_t>(data.size())) + type + data + "sum!";
}

// Colours of 8 bits with transparency. The pixels aren't any.
inline std::string png(std::uint32_t width, std::uint32_t height) {
    return std::string("\x89PNG\r\n\x1A\n") +
           chunk("IHDR", bigEndian(width) + bigEndian(height) + std::string("\x08\x06\0\0\0", 5)) +
           chunk("IDAT", "pixels") + chunk("IEND", "");
}

// A bitmap without compression, with its palette and its mask.
inline std::string bitmap(std::uint32_t side, std::uint32_t bits) {
    std::string bytes;
    for (const std::uint32_t value : {40U, side, 2 * side}) {
        LittleEndian::append32(bytes, value);
    }
    LittleEndian::append16(bytes, 1);
    LittleEndian::append16(bytes, bits);
    bytes.resize(40);
    const std::size_t palette = bits <= 8 ? std::size_t{4} << bits : 0;
    const std::size_t row = (std::size_t{side} * bits + 31) / 32 * 4;
    const std::size_t maskRow = (std::size_t{side} + 31) / 32 * 4;
    return bytes + std::string(palette + side * (row + maskRow), 'p');
}

struct Picture {
    std::uint32_t side;
    std::string bytes;
};

inline std::string icon(const std::vector<Picture>& pictures) {
    std::string list;
    std::string contents;
    LittleEndian::append16(list, 0);
    LittleEndian::append16(list, 1);
    LittleEndian::append16(list, static_cast<std::uint32_t>(pictures.size()));
    for (const Picture& picture : pictures) {
        list += static_cast<char>(picture.side);
        list += static_cast<char>(picture.side);
        LittleEndian::append16(list, 0);
        LittleEndian::append16(list, 1);
        LittleEndian::append16(list, 32);
        LittleEndian::append32(list, static_cast<std::uint32_t>(picture.bytes.size()));
        LittleEndian::append32(list, static_cast<std::uint32_t>(6 + 16 * pictures.size() + contents.size()));
        contents += picture.bytes;
    }
    return list + contents;
}

// All sizes that Windows shows.
inline std::string wholeIcon() {
    return icon({{16, bitmap(16, 32)}, {32, bitmap(32, 8)}, {48, bitmap(48, 4)}, {256, png(256, 256)}});
}

}  // namespace IconBytes

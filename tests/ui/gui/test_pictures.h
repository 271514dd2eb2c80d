#pragma once

#include <cstdint>
#include <string>

// An opaque picture in the raw form, whose colours all have this value.
inline std::string rawPicture(std::uint32_t width, std::uint32_t height, std::uint8_t value) {
    std::string block;
    for (const std::uint32_t side : {width, height}) {
        for (int shift = 0; shift < 32; shift += 8) {
            block += static_cast<char>(side >> shift & 0xFF);
        }
    }
    for (std::uint32_t i = 0; i < width * height; ++i) {
        block.append(3, static_cast<char>(value));
        block += '\xFF';
    }
    return block;
}

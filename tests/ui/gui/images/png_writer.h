#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Writes PNG files byte by byte, so that tests can make those that no program would write.
namespace PngWriter {

struct Header {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    int depth = 8;
    int colourType = 2;  // 0 gray, 2 colours, 3 palette, 4 gray with alpha, 6 colours with alpha
    int interlace = 0;
};

inline constexpr std::string_view kSignature = "\x89PNG\r\n\x1a\n";

// With its length and checksum.
std::string chunk(std::string_view type, std::string_view data);
std::string headerChunk(const Header& header);
// The rows compressed; each begins with the byte for its filter.
std::string dataChunk(std::string_view rows);
// A whole file. `before` holds chunks that come before the data.
std::string file(const Header& header, std::string_view rows, std::string_view before = {});

}  // namespace PngWriter

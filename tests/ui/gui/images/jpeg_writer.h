#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

// Writes JPEG files with the library's encoder.
namespace JpegWriter {

struct Options {
    int width = 16;
    int height = 16;
    int components = 3;  // 1 gray, 2 of no known meaning, 3 red, green and blue, 4 CMYK
    bool progressive = false;
    bool adobeMarker = true;  // only for CMYK; whether readers know that the values are inverted
    bool arithmetic = false;
};

// All pixels have the values of `pixel`, one for each component, in nearly lossless quality.
std::string file(const Options& options, const std::array<std::uint8_t, 4>& pixel);

// The file with another size in its header.
std::string withSize(std::string file, int width, int height);
// The file with its last scan `count` times more. For a progressive file.
std::string withScansRepeated(const std::string& file, int count);

}  // namespace JpegWriter

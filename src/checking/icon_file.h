#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// The icon of a setup for Windows, from a file of icons (ICO) or a single picture (PNG). icon_file.md
// describes what is accepted.

struct IconPicture {
    std::uint32_t width = 0;  // in pixels, 1 to 256
    std::uint32_t height = 0;
    std::uint16_t bits = 0;  // of a pixel
    std::string_view bytes;  // as a program carries it; a part of the file
};

struct IconFile {
    std::vector<IconPicture> pictures;  // in the order of the file; empty with a fault
    std::string fault;                  // a few words that follow the file's name; empty without one
};

// Checks the whole file before anything is taken from it. The pictures borrow `content`.
IconFile readIconFile(std::string_view content);

// The sides, in pixels, that Windows shows and that none of the pictures has, smallest first.
std::vector<std::uint32_t> missingIconSizes(const IconFile& file);

#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "package/image_bytes.h"
#include "packager/pe_resources.h"

// Windows images whose resources can be replaced.
namespace PeBytes {

using ImageBytes::setNumber;
using ImageBytes::setNumber16;

inline constexpr std::size_t kOptional = 0x98;
inline constexpr std::size_t kSection = kOptional + 240;
inline constexpr std::size_t kDirectory = kOptional + 112 + 2 * 8;
inline constexpr std::uint32_t kDataAddress = 0x1000;

// One section, at the address 0x1000, with this raw data.
inline std::string image(const std::string& data = ImageBytes::installerData()) {
    std::string image = ImageBytes::peImage(data);
    setNumber16(image, kOptional, 0x20B);
    setNumber(image, kOptional + 8, 0x200);
    setNumber(image, kOptional + 32, 0x1000);
    setNumber(image, kOptional + 36, 0x200);
    setNumber(image, kOptional + 56, 0x2000);
    setNumber(image, kOptional + 64, 0x12345678);
    setNumber(image, kOptional + 108, 16);
    image.replace(kSection, 5, ".data");
    setNumber(image, kSection + 8, static_cast<std::uint32_t>(data.size()));
    setNumber(image, kSection + 12, kDataAddress);
    return image;
}

// One whose only section is a table of resources.
inline std::string imageWith(const std::vector<PeResource>& resources) {
    const std::string table = peResourceSection(resources, kDataAddress);
    std::string bytes = image(table);
    bytes.replace(kSection, 6, std::string(".rsrc\0", 6));
    setNumber(bytes, kDirectory, kDataAddress);
    setNumber(bytes, kDirectory + 4, static_cast<std::uint32_t>(table.size()));
    return bytes;
}

}  // namespace PeBytes

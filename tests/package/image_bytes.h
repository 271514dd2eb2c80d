#pragma once

#include <cstdint>
#include <string>

#include "package/package_bytes.h"
#include "package/package_stamp.h"

// Small executable images, good enough for everything that reads headers.
namespace ImageBytes {

using PackageBytes::bytesOf;
using PackageBytes::setNumber;

inline void setNumber16(std::string& bytes, std::size_t offset, std::uint16_t value) {
    bytes[offset] = static_cast<char>(value);
    bytes[offset + 1] = static_cast<char>(value >> 8);
}

// What a bare installer's data holds: the marker and the two marks.
inline std::string installerData() {
    return packageOffsetMarkerText() + "Supports" + "SolidZlib" + '\0' + "Supports" + "SignedInstallers" +
           '\0';
}

// A PE image of one section with this raw data, which is padded to the file alignment of 512.
inline std::string peImage(std::string data) {
    data.resize((data.size() + 511) / 512 * 512);
    std::string image(1024, '\0');
    image.replace(0, 2, "MZ");
    setNumber(image, 0x3C, 0x80);
    setNumber(image, 0x80, 0x00004550);
    setNumber16(image, 0x84, 0x8664);
    setNumber16(image, 0x86, 1);        // sections
    setNumber16(image, 0x94, 240);      // size of the optional header
    setNumber(image, 0x98 + 60, 1024);  // size of all headers
    const std::size_t section = 0x98 + 240;
    setNumber(image, section + 16, static_cast<std::uint32_t>(data.size()));
    setNumber(image, section + 20, 1024);
    return image + data;
}

// A 64-bit ELF image: one segment with headers and data, then a table of two sections, the second without
// bytes.
inline std::string elfImage(const std::string& data) {
    std::string image(64 + 56, '\0');
    image.replace(0, 4, "\177ELF");
    image[4] = 2;
    image[5] = 1;
    image += data;
    const auto dataEnd = static_cast<std::uint32_t>(image.size());
    setNumber(image, 32, 64);  // program table
    setNumber16(image, 54, 56);
    setNumber16(image, 56, 1);
    setNumber(image, 64 + 32, dataEnd);  // the segment's size in the file
    setNumber(image, 40, dataEnd);       // section table
    setNumber16(image, 58, 64);
    setNumber16(image, 60, 2);
    image.resize(dataEnd + 128);
    setNumber(image, dataEnd + 64 + 4, 8);  // no bytes in the file
    setNumber(image, dataEnd + 64 + 24, dataEnd);
    setNumber(image, dataEnd + 64 + 32, 0x100000);
    return image;
}

}  // namespace ImageBytes

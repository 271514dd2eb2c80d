#pragma once

#include <cstddef>
#include <cstdint>

// The fields of a file of icons for Windows; icon_file.md says what they mean. Offsets are in bytes from the
// start of their structure, numbers little-endian.
namespace IconFileFormat {

inline constexpr std::size_t kReserved = 0;
inline constexpr std::size_t kType = 2;
inline constexpr std::size_t kCount = 4;
inline constexpr std::size_t kHeaderSize = 6;
inline constexpr std::uint16_t kIcons = 1;

static_assert(kHeaderSize == kCount + 2);

// An entry of the list that follows.
inline constexpr std::size_t kWidth = 0;   // 0 stands for 256
inline constexpr std::size_t kHeight = 1;  // likewise
inline constexpr std::size_t kSize = 8;
inline constexpr std::size_t kPlace = 12;
inline constexpr std::size_t kEntrySize = 16;

static_assert(kEntrySize == kPlace + 4);

// A picture without compression: a header, a palette, the pixels, a mask of one bit each.
inline constexpr std::size_t kBitmapHeader = 0;  // its size
inline constexpr std::size_t kBitmapWidth = 4;
inline constexpr std::size_t kBitmapHeight = 8;  // of pixels and mask together
inline constexpr std::size_t kBitmapBits = 14;
inline constexpr std::size_t kBitmapCompression = 16;
inline constexpr std::size_t kBitmapColours = 32;
inline constexpr std::size_t kBitmapHeaderSize = 40;

static_assert(kBitmapHeaderSize == kBitmapColours + 8);

// Limits of this system.
inline constexpr std::size_t kMostFileSize = 1024 * 1024;
inline constexpr std::size_t kMostPictures = 64;
inline constexpr std::uint32_t kMostSide = 256;

}  // namespace IconFileFormat

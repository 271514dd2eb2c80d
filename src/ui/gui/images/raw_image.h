#pragma once

#include <cstddef>
#include <cstdint>

#include "ui/gui/images/image.h"

// The system's own form of a picture; raw_image.md describes it.
namespace RawImage {

inline constexpr std::size_t kWidthOffset = 0;
inline constexpr std::size_t kHeightOffset = 4;
inline constexpr std::size_t kPixelsOffset = 8;
inline constexpr std::size_t kPixelSize = 4;
static_assert(kHeightOffset == kWidthOffset + sizeof(std::uint32_t));
static_assert(kPixelsOffset == kHeightOffset + sizeof(std::uint32_t));

// Empty if a side isn't one that a picture can have, or if the block is shorter than its sides say. Such a
// picture always has an alpha channel.
Image decode(const std::uint8_t* data, std::size_t size);

}  // namespace RawImage

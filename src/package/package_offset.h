#pragma once

#include <cstdint>
#include <string>

// The packaging tool stamps the offset of the payload into a program's image. This is the program's side.

// The number that is stamped into this program: in a package the file offset of the lead block, in an
// unstamped image kUnstampedPackageOffset.
std::uint32_t readStampedPackageOffset();

inline constexpr std::uint32_t kUnstampedPackageOffset = 0x4E49425F;  // "_BIN"

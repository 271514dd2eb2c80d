#pragma once

#include <cstdint>
#include <string>

// The place in a program's image into which the packaging tool stamps the offset of the payload.

// The 32-bit number that stands in this program's own place: in a package the file offset of the lead block.
// The unstamped image holds kUnstampedPackageOffset there.
std::uint32_t readStampedPackageOffset();

inline constexpr std::uint32_t kUnstampedPackageOffset = 0x4E49425F;  // "_BIN"

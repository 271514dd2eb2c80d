#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// The packaging side of package/package_offset.h: finding the place in an image and stamping it.

// The marker text with its terminator. Put together at run time, so that a program that stamps other images
// holds no second place of its own.
std::string packageOffsetMarkerText();

enum class StampResult { kStamped, kNoMarker, kSeveralMarkers };

// Overwrites the first 4 bytes of the marker in `image`. The image stays as it is unless the marker occurs in
// it exactly once.
StampResult stampPackageOffset(std::string& image, std::uint32_t offset);

// Finds the offset that was stamped into `image`. False when no place, or more than one, looks stamped.
bool findStampedOffset(std::string_view image, std::uint32_t& outOffset);

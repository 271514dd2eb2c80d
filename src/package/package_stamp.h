#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// The packaging tool's side of package/package_offset.h: finds the marker in an image and stamps it.

// The marker text with its terminator. Assembled at run time, so that a program that stamps other images
// doesn't contain the marker a second time.
std::string packageOffsetMarkerText();

enum class StampResult { kStamped, kNoMarker, kSeveralMarkers };

// Overwrites the first 4 bytes of the marker in `image`. Leaves the image as it is unless the marker occurs
// in it exactly once.
StampResult stampPackageOffset(std::string& image, std::uint32_t offset);

// The offset that was stamped into `image`; nothing when no marker, or more than one, looks stamped.
std::optional<std::uint32_t> findStampedOffset(std::string_view image);

#pragma once

#include <cstddef>
#include <cstdint>

#include "support/debug_log.h"
#include "ui/gui/images/image_receiver.h"

// Decodes a PNG file in memory. Palettes are expanded, gray of less than 8 bits becomes gray of 8, of 16 bits
// the high byte counts; gray with transparency is no picture. Only what makes up the pixels is read: time and
// memory are bounded by the largest picture, not by other chunks. Why a file is broken goes to the log. `out`
// is set as far as the header was understood.
ImageResult decodePng(DecodedImage& out, const std::uint8_t* data, std::size_t size, ImageReceiver& receiver,
                      const DebugLog& debugLog);

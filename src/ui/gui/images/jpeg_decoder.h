#pragma once

#include <cstddef>
#include <cstdint>

#include "support/debug_log.h"
#include "ui/gui/images/image_receiver.h"

// Decodes a JPEG file in memory. CMYK becomes the colours that its author saw. A file that is cut off after
// its header shows what is there, the rest is gray. Time and memory are bounded by the largest picture and a
// number of passes that no usual file has. Why a file is broken goes to the log. `out` is set as far as the
// header was understood.
ImageResult decodeJpeg(DecodedImage& out, const std::uint8_t* data, std::size_t size, ImageReceiver& receiver,
                       const DebugLog& debugLog);

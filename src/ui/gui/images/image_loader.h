#pragma once

#include <cstddef>

#include "support/debug_log.h"
#include "ui/gui/images/image.h"
#include "ui/gui/images/image_receiver.h"

// Makes pictures of the blocks of bytes that a package holds: PNG, JPEG or the system's own raw form. No
// block, however damaged or hostile, does more than give no picture, in bounded time and memory.
class ImageLoader {
public:
    explicit ImageLoader(DebugLog debugLog);

    // The kind is recognised by the first bytes; what is neither PNG nor JPEG is taken as raw (raw_image.md).
    // Empty if the block gives no picture; the log says why a PNG or JPEG doesn't.
    Image loadImage(const void* data, std::size_t size) const;

    // The two decoders alone. Null data or a size of 0 is logged as an error. After a failure the receiver
    // holds an unfinished picture, or none.
    ImageResult LoadPNGArray(DecodedImage& out, const void* data, std::size_t size,
                             ImageReceiver& receiver) const;
    ImageResult LoadJPGArray(DecodedImage& out, const void* data, std::size_t size,
                             ImageReceiver& receiver) const;

private:
    bool isMissing(const char* place, const char* message, const void* data, std::size_t size) const;

    DebugLog debugLog_;
};

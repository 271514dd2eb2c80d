#pragma once

#include <cstdint>

// What a decoder found in a file.
struct DecodedImage {
    int width = 0;
    int height = 0;
    int channels = 0;  // as they are in the file: 1 gray, 3 colours, 4 colours with alpha or CMYK
};

// How the decoding of a file ended.
enum class ImageResult {
    kLoaded = 0,
    kNoData = 1,
    kNotThisKind = 2,
    kUnusableChannels = 3,  // a number or meaning of channels that gives no picture
    kBroken = 4,            // damaged, cut off, too large, or made to cost too much
};

// Takes a picture row by row. Called in this order: setSize, begin, then putRow for each row from the top. A
// decoder that fails stops at any point.
class ImageReceiver {
public:
    virtual ~ImageReceiver() = default;
    // Both sides are in 1 ... kMaxImageSide.
    virtual void setSize(int width, int height) = 0;
    virtual void begin(bool hasAlpha) = 0;
    // `pixels` holds red, green, blue and, if there is one, alpha for each pixel, until the call returns.
    virtual void putRow(int y, const std::uint8_t* pixels) = 0;
};

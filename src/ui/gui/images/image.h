#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

// No picture that comes in or is made is larger than this each way, whatever a file says.
inline constexpr int kMaxImageSide = 6399;

// A decoded picture: 8 bits for each of red, green and blue, with an alpha channel or without. A value;
// copies are deep. An empty one stands for a picture that couldn't be had.
class Image {
public:
    Image() = default;
    // All black, and all transparent if there is an alpha channel. Empty if a side is below 1 or above
    // kMaxImageSide.
    Image(int width, int height, bool hasAlpha);

    bool isEmpty() const { return width_ == 0; }
    int width() const { return width_; }
    int height() const { return height_; }
    bool hasAlpha() const { return !alpha_.empty(); }

    // A row from the top, `width` times the bytes red, green, blue. `y` is in 0 ... height - 1. The pointers
    // are good until the image is assigned to or gone.
    std::uint8_t* rgbRow(int y) { return rgb_.data() + offsetOf(y) * 3; }
    const std::uint8_t* rgbRow(int y) const { return rgb_.data() + offsetOf(y) * 3; }
    // The same row of the alpha channel, 0 is transparent. Only if there is one.
    std::uint8_t* alphaRow(int y) { return alpha_.data() + offsetOf(y); }
    const std::uint8_t* alphaRow(int y) const { return alpha_.data() + offsetOf(y); }

    bool operator==(const Image&) const = default;

private:
    std::size_t offsetOf(int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width_);
    }

    int width_ = 0;
    int height_ = 0;
    std::vector<std::uint8_t> rgb_;
    std::vector<std::uint8_t> alpha_;
};

// Whether both are sides that an Image can have.
bool isImageSize(std::uint64_t width, std::uint64_t height);

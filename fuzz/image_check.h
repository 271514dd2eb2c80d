#pragma once

#include <cstdint>
#include <string_view>

#include "fuzz_target.h"
#include "support/debug_log.h"
#include "ui/gui/images/image_blending.h"
#include "ui/gui/images/image_loader.h"
#include "ui/gui/images/image_scaling.h"

// What holds for the picture of any block of bytes.

// Notes an order of calls or a size that a decoder must not give.
class CheckingReceiver : public ImageReceiver {
public:
    void setSize(int width, int height) override {
        require(height_ == 0 &&
                isImageSize(static_cast<std::uint64_t>(width), static_cast<std::uint64_t>(height)));
        width_ = width;
        height_ = height;
    }
    void begin(bool hasAlpha) override {
        require(height_ > 0 && channels_ == 0);
        channels_ = hasAlpha ? 4 : 3;
    }
    void putRow(int y, const std::uint8_t* pixels) override {
        require(channels_ > 0 && y == nextRow_ && y < height_);
        // The sanitizer looks whether the row is as long as it must be.
        ends_ += pixels[0] + pixels[width_ * channels_ - 1];
        ++nextRow_;
    }

    // Whether all rows came; only those of a loaded picture must.
    bool isComplete() const { return height_ > 0 && nextRow_ == height_; }

private:
    int width_ = 0;
    int height_ = 0;
    int channels_ = 0;
    int nextRow_ = 0;
    std::uint64_t ends_ = 0;
};

// Loads the picture and does with it what a page does. True if there is one.
inline bool isPicture(std::string_view block) {
    const Image image = ImageLoader(DebugLog()).loadImage(block.data(), block.size());
    if (image.isEmpty()) {
        return false;
    }
    require(
        isImageSize(static_cast<std::uint64_t>(image.width()), static_cast<std::uint64_t>(image.height())));
    // With the sanitizers a large one takes longer than a target may.
    constexpr int kMaxScaledPixels = 250'000;
    if (image.width() * image.height() > kMaxScaledPixels) {
        return true;
    }
    const Image scaled =
        ImageScaling().fit(image, scaledSize({image.width(), image.height()}, 4, {200, 100}));
    const Image blended = blendOver(scaled, 0x102030);
    require(!blended.hasAlpha() && blended.width() == scaled.width() && blended.height() == scaled.height());
    return true;
}

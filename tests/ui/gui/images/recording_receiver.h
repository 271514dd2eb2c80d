#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ui/gui/images/image_receiver.h"

// Keeps the calls of a decoder in their order and the bytes of the rows.
class RecordingReceiver : public ImageReceiver {
public:
    void setSize(int width, int height) override {
        calls.push_back("setSize " + std::to_string(width) + " " + std::to_string(height));
        width_ = width;
    }
    void begin(bool hasAlpha) override {
        calls.push_back(hasAlpha ? "begin with alpha" : "begin");
        channels_ = hasAlpha ? 4 : 3;
    }
    void putRow(int y, const std::uint8_t* pixels) override {
        calls.push_back("putRow " + std::to_string(y));
        rows.emplace_back(pixels, pixels + width_ * channels_);
    }

    std::vector<std::string> calls;
    std::vector<std::vector<std::uint8_t>> rows;

private:
    int width_ = 0;
    int channels_ = 0;
};

#include "ui/gui/images/image_scaling.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace {

// Red, green, blue and alpha from 0 to 1, the colours multiplied by alpha.
constexpr std::size_t kFloats = 4;
using FloatRow = std::vector<float>;

std::size_t floatsOf(int pixels) {
    return static_cast<std::size_t>(pixels) * kFloats;
}

void unpackRow(const Image& image, int y, FloatRow& outRow) {
    constexpr float kUnit = 1.0F / 255.0F;
    const std::uint8_t* rgb = image.rgbRow(y);
    const std::uint8_t* alpha = image.hasAlpha() ? image.alphaRow(y) : nullptr;
    float* pixel = outRow.data();
    for (int x = 0; x < image.width(); ++x, rgb += 3, pixel += kFloats) {
        const float opacity = alpha != nullptr ? static_cast<float>(alpha[x]) * kUnit : 1.0F;
        pixel[0] = static_cast<float>(rgb[0]) * kUnit * opacity;
        pixel[1] = static_cast<float>(rgb[1]) * kUnit * opacity;
        pixel[2] = static_cast<float>(rgb[2]) * kUnit * opacity;
        pixel[3] = opacity;
    }
}

// Rounded; the filter for making larger can overshoot at an edge.
std::uint8_t packByte(float value) {
    return static_cast<std::uint8_t>((static_cast<int>(std::clamp(value, 0.0F, 1.0F) * 510.0F) + 1) / 2);
}

void packRow(const FloatRow& row, int y, Image& outImage) {
    std::uint8_t* rgb = outImage.rgbRow(y);
    std::uint8_t* alpha = outImage.hasAlpha() ? outImage.alphaRow(y) : nullptr;
    const float* pixel = row.data();
    for (int x = 0; x < outImage.width(); ++x, rgb += 3, pixel += kFloats) {
        float scale = 1.0F;
        if (alpha != nullptr) {
            alpha[x] = packByte(pixel[3]);
            scale = alpha[x] != 0 ? 1.0F / std::min(pixel[3], 1.0F) : 0.0F;
        }
        rgb[0] = packByte(pixel[0] * scale);
        rgb[1] = packByte(pixel[1] * scale);
        rgb[2] = packByte(pixel[2] * scale);
    }
}

// The rows of the source in the target's width, made when they are asked for. Only a few are kept, so that a
// large picture needs little memory beside itself; neighbouring target rows share theirs.
class StretchedRows {
public:
    StretchedRows(const Image& source, const WeightTable& weights, int targetWidth)
        : source_(source),
          weights_(weights),
          targetWidth_(targetWidth),
          unpacked_(floatsOf(source.width())) {}

    const FloatRow& at(int y) {
        KeptRow& kept = kept_[static_cast<std::size_t>(y) % kept_.size()];
        if (kept.y != y) {
            kept.y = y;
            kept.floats.resize(floatsOf(targetWidth_));
            unpackRow(source_, y, unpacked_);
            stretch(kept.floats);
        }
        return kept.floats;
    }

private:
    struct KeptRow {
        int y = -1;
        FloatRow floats;
    };

    void stretch(FloatRow& outRow) const {
        float* pixel = outRow.data();
        for (int x = 0; x < targetWidth_; ++x, pixel += kFloats) {
            const WeightTable::Span span = weights_.at(x);
            const float* from = unpacked_.data() + floatsOf(span.first);
            std::array<float, kFloats> sum{};
            for (int i = 0; i < span.count; ++i, from += kFloats) {
                for (std::size_t channel = 0; channel < kFloats; ++channel) {
                    sum[channel] += span.weights[i] * from[channel];
                }
            }
            std::copy(sum.begin(), sum.end(), pixel);
        }
    }

    const Image& source_;
    const WeightTable& weights_;
    int targetWidth_;
    FloatRow unpacked_;
    std::array<KeptRow, 16> kept_;
};

void addWeighted(const FloatRow& row, float weight, FloatRow& sum) {
    for (std::size_t i = 0; i < sum.size(); ++i) {
        sum[i] += weight * row[i];
    }
}

int scaledSide(int side, double fontScale, int bound) {
    const double scale = fontScale > 0 ? fontScale : 1.0;
    const int most = bound >= 1 ? std::min(bound, kMaxImageSide) : kMaxImageSide;
    return std::max(1, static_cast<int>(std::min<double>(side * scale, most)));
}

}  // namespace

ImageSize scaledSize(ImageSize source, double fontScale, ImageSize bounds) {
    return {scaledSide(source.width, fontScale, bounds.width),
            scaledSide(source.height, fontScale, bounds.height)};
}

Image ImageScaling::fit(const Image& source, ImageSize target) {
    constexpr int kVisibleDifference = 3;
    if (std::abs(source.width() - target.width) < kVisibleDifference &&
        std::abs(source.height() - target.height) < kVisibleDifference) {
        return source;
    }
    return resample(source, target);
}

Image ImageScaling::resample(const Image& source, ImageSize target) {
    if (source.isEmpty()) {
        return {};
    }
    StretchedRows rows(source, tableFor(source.width(), target.width), target.width);
    const WeightTable& columns = tableFor(source.height(), target.height);
    Image result(target.width, target.height, source.hasAlpha());
    FloatRow sum(floatsOf(target.width));
    for (int y = 0; y < target.height; ++y) {
        const WeightTable::Span span = columns.at(y);
        std::fill(sum.begin(), sum.end(), 0.0F);
        for (int i = 0; i < span.count; ++i) {
            addWeighted(rows.at(span.first + i), span.weights[i], sum);
        }
        packRow(sum, y, result);
    }
    return result;
}

const WeightTable& ImageScaling::tableFor(int sourceLength, int targetLength) {
    return tables_.try_emplace({sourceLength, targetLength}, sourceLength, targetLength).first->second;
}

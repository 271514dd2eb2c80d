#include "ui/gui/font_scale.h"

namespace {

constexpr int kReferenceWidth = 237;
constexpr std::string_view kSampleText = "The quick brown fox jumps over the lazy dog";

}  // namespace

double fontScaleOf(int sampleWidth) {
    return sampleWidth > kReferenceWidth ? sampleWidth / static_cast<double>(kReferenceWidth) : 1.0;
}

Extent measureSampleText(Toolkit& toolkit) {
    return toolkit.measureText(kSampleText);
}

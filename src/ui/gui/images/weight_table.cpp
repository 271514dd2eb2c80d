#include "ui/gui/images/weight_table.h"

#include <algorithm>
#include <cmath>

namespace {

// Linear interpolation; stretched over the source pixels of a target pixel it is an average that favours the
// middle.
double tent(double distance) {
    return std::max(0.0, 1.0 - distance);
}

// Cubic interpolation through the source pixels (Catmull-Rom).
double cubic(double distance) {
    if (distance < 1) {
        return (1.5 * distance - 2.5) * distance * distance + 1;
    }
    return distance < 2 ? ((-0.5 * distance + 2.5) * distance - 4) * distance + 2 : 0;
}

}  // namespace

WeightTable::WeightTable(int sourceLength, int targetLength)
    : sourceLength_(sourceLength), shrinks_(targetLength <= sourceLength) {
    const double ratio = static_cast<double>(sourceLength) / targetLength;
    entries_.reserve(static_cast<std::size_t>(targetLength));
    for (int target = 0; target < targetLength; ++target) {
        addEntry((target + 0.5) * ratio - 0.5, std::max(ratio, 1.0));
    }
}

WeightTable::Span WeightTable::at(int target) const {
    const Entry& entry = entries_[static_cast<std::size_t>(target)];
    return {entry.first, entry.count, weights_.data() + entry.offset};
}

void WeightTable::addEntry(double centre, double stretch) {
    const double radius = shrinks_ ? stretch : 2;
    const int from = static_cast<int>(std::ceil(centre - radius));
    const int to = static_cast<int>(std::floor(centre + radius));
    const auto inSource = [this](int pixel) { return std::clamp(pixel, 0, sourceLength_ - 1); };
    const int first = inSource(from);
    const int count = inSource(to) - first + 1;
    const std::size_t offset = weights_.size();
    weights_.resize(offset + static_cast<std::size_t>(count));
    double sum = 0;
    for (int pixel = from; pixel <= to; ++pixel) {
        sum += weightAt(pixel - centre, stretch);
    }
    for (int pixel = from; pixel <= to; ++pixel) {
        // Beyond its edges the source goes on as at the edge.
        const auto index = static_cast<std::size_t>(inSource(pixel) - first);
        weights_[offset + index] += static_cast<float>(weightAt(pixel - centre, stretch) / sum);
    }
    entries_.push_back({first, count, offset});
}

double WeightTable::weightAt(double offset, double stretch) const {
    const double distance = std::abs(offset) / stretch;
    return shrinks_ ? tent(distance) : cubic(distance);
}

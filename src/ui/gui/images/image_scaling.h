#pragma once

#include <map>
#include <utility>

#include "ui/gui/images/image.h"
#include "ui/gui/images/weight_table.h"

struct ImageSize {
    int width = 0;
    int height = 0;

    bool operator==(const ImageSize&) const = default;
};

// The size of a picture on the screen: its own by `fontScale`, but no more than the pixels of `bounds`, where
// a side below 1 is no bound, nor than a picture can have, and at least 1. A scale that isn't above 0 counts
// as 1.
ImageSize scaledSize(ImageSize source, double fontScale, ImageSize bounds);

// Resamples pictures. The weights for a pair of lengths are computed once and kept with the object, because
// the pictures of a run have few sizes.
class ImageScaling {
public:
    // The picture in the size of the target, or as it is when both sides differ by less than 3 pixels or when
    // it is empty. Transparent pixels lend no colour to their neighbours. The sides of the target are in 1
    // ... kMaxImageSide.
    Image fit(const Image& source, ImageSize target);
    // The same, however little the sides differ: icons in one list must have one size.
    Image resample(const Image& source, ImageSize target);

private:
    const WeightTable& tableFor(int sourceLength, int targetLength);

    std::map<std::pair<int, int>, WeightTable> tables_;
};

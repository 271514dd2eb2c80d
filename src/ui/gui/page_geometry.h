#pragma once

#include <cstdint>

#include "ui/gui/toolkit/control.h"

// Where something lies on a page, in the numbers of the description.
struct DescribedPlace {
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t horizontalAlign = 0;  // a DialogAlign, or 0
    std::int32_t verticalAlign = 0;
};

// Computes places on a page of a given size. A description is written for the text size of its author's
// screen; `fontScale` is how much larger text is here, and everything grows with it. Results are bounded by
// kMaxLength each way, whatever a description says.
class PageGeometry {
public:
    static constexpr int kMaxLength = 1'000'000;

    PageGeometry(double fontScale, Extent page) : fontScale_(fontScale), page_(page) {}

    // Fractions are cut off towards 0.
    int scaled(int length) const;
    Extent page() const { return page_; }

    // From the left edge, or, aligned right, from the right one.
    int left(int x, std::int32_t horizontalAlign) const;
    // From the upper edge, or, aligned to the bottom, from the lower one.
    int top(int y, std::int32_t verticalAlign) const;
    // Of an element or a button. A negative width or height is the distance to the far edge.
    Place placeOf(const DescribedPlace& described) const;

private:
    int length(int described, int start, int pageLength) const;

    double fontScale_;
    Extent page_;
};

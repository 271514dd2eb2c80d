#include "previewer/layout_check.h"

#include <algorithm>

namespace {

// Rounding of sizes that were scaled, and the empty edge of letters.
constexpr int kTolerance = 2;

bool isBackground(ControlKind kind) {
    return kind == ControlKind::kPicture || kind == ControlKind::kFrame || kind == ControlKind::kLine;
}

bool hasWordsAlone(ControlKind kind) {
    return kind == ControlKind::kText || kind == ControlKind::kLabel;
}

// Where there is something to be seen of the control.
Place coveredPlace(const PlacedControl& control) {
    Place covered = control.place;
    if (hasWordsAlone(control.kind)) {
        covered.width = std::min(covered.width, control.words.width);
        covered.height = std::min(covered.height, control.words.height);
    }
    return covered;
}

bool isCut(const PlacedControl& control) {
    return control.words.width > control.place.width + kTolerance ||
           control.words.height > control.place.height + kTolerance;
}

bool isOutside(Extent page, const Place& place) {
    return place.x < -kTolerance || place.y < -kTolerance ||
           place.x + place.width > page.width + kTolerance ||
           place.y + place.height > page.height + kTolerance;
}

bool doOverlap(const Place& one, const Place& other) {
    const int width = std::min(one.x + one.width, other.x + other.width) - std::max(one.x, other.x);
    const int height = std::min(one.y + one.height, other.y + other.height) - std::max(one.y, other.y);
    return width > kTolerance && height > kTolerance;
}

Place together(const Place& one, const Place& other) {
    const int left = std::min(one.x, other.x);
    const int top = std::min(one.y, other.y);
    return {left, top, std::max(one.x + one.width, other.x + other.width) - left,
            std::max(one.y + one.height, other.y + other.height) - top};
}

}  // namespace

std::vector<LayoutFault> findLayoutFaults(Extent page, const std::vector<PlacedControl>& controls) {
    std::vector<PlacedControl> shown;
    std::ranges::copy_if(controls, std::back_inserter(shown),
                         [](const PlacedControl& control) { return !isBackground(control.kind); });
    std::vector<LayoutFault> faults;
    for (std::size_t i = 0; i < shown.size(); ++i) {
        const Place place = coveredPlace(shown[i]);
        if (isCut(shown[i])) {
            faults.push_back({LayoutFault::Kind::kCut, shown[i].place, shown[i].text});
        } else if (isOutside(page, place)) {
            faults.push_back({LayoutFault::Kind::kOutside, place, shown[i].text});
        }
        for (std::size_t other = i + 1; other < shown.size(); ++other) {
            const Place otherPlace = coveredPlace(shown[other]);
            if (doOverlap(place, otherPlace)) {
                faults.push_back({LayoutFault::Kind::kOverlap, together(place, otherPlace),
                                  shown[i].text + " / " + shown[other].text});
            }
        }
    }
    return faults;
}

std::string nameOf(LayoutFault::Kind kind) {
    switch (kind) {
        case LayoutFault::Kind::kCut:
            return "cut";
        case LayoutFault::Kind::kOutside:
            return "outside";
        case LayoutFault::Kind::kOverlap:
            return "overlap";
    }
    return {};
}

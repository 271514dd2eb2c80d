#pragma once

#include <string>
#include <vector>

#include "ui/gui/toolkit/control.h"

// A control of a page, as it is shown.
struct PlacedControl {
    ControlKind kind = ControlKind::kText;
    Place place;
    Extent words;  // what its words need; 0 by 0 where none can be cut
    std::string text;
};

// Something on a page that its users can't read, or not well.
struct LayoutFault {
    enum class Kind {
        kCut,      // the words need more than the control has
        kOutside,  // a part of it lies beyond the edge of the page
        kOverlap,  // it and the control after it lie on one another
    };

    Kind kind = Kind::kCut;
    Place place;
    std::string text;

    bool operator==(const LayoutFault&) const = default;
};

// Looks for cut words, and for controls that lie on one another or beyond the page. Pictures, lines and
// frames may lie under anything. Of a text only what its words cover counts, and a pixel or two are none of
// anybody's business.
std::vector<LayoutFault> findLayoutFaults(Extent page, const std::vector<PlacedControl>& controls);

// A word for the kind, as a preview names it.
std::string nameOf(LayoutFault::Kind kind);

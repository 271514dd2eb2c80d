#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "previewer/layout_check.h"

// A page of a walk, as it was shown.
struct PageRecord {
    std::string file;  // the name of its file, without the ending
    Extent size;       // in the units of the faults' places
    std::vector<LayoutFault> faults;
    std::vector<std::string> notes;  // what else happened on it, such as a box with a question

    bool operator==(const PageRecord&) const = default;
};

// A walk through the pages.
struct WalkRecord {
    std::vector<PageRecord> pages;
    std::vector<std::string> ends;  // why it ended before the last page; one for each phase that did

    bool operator==(const WalkRecord&) const = default;
};

// The record as lines, and back. Line ends and TABs in its texts become blanks. What isn't understood in the
// lines is left out.
std::string textOf(const WalkRecord& record);
WalkRecord readWalkRecord(std::string_view text);

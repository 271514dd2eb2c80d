#pragma once

#include <string>
#include <vector>

#include "previewer/comparison.h"
#include "previewer/console_walk.h"
#include "previewer/walk_record.h"

// The walk in a window, in letters of one size.
struct SizeWalk {
    int size = 100;         // of the letters, in percent
    std::string directory;  // of its pictures
    WalkRecord record;
};

// All walks with one set of answers.
struct AnswerSet {
    std::string name;
    std::vector<ConsolePage> console;
    std::vector<std::string> consoleEnds;  // why a walk on the console ended early
    std::vector<SizeWalk> windows;
};

// A preview as a whole.
struct Preview {
    std::string title;
    std::vector<AnswerSet> sets;
    std::string windowNote;  // why there are no windows; empty when there are
    std::string comparedTo;  // the directory of the earlier preview; empty without one
    std::vector<ChangedFile> changes;
};

// The faults of all pages.
int countFaults(const Preview& preview);

// A page in HTML with everything of the preview: no scripts, nothing from elsewhere, and only paths that are
// relative to the preview's directory. Faults are framed in red. Of a changed picture, the earlier one is at
// "compared/earlier-N.png" and the difference at "compared/difference-N.png", where N is its index in
// `changes`.
std::string indexPageOf(const Preview& preview);

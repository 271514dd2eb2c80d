#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "rehearsal/outcome.h"
#include "rehearsal/sectioned_text.h"

// What is expected of an outcome: the sections of it that somebody cares for (machine_format.md).
class Expectation {
public:
    // Throws InstallerError with the number of the line that is wrong.
    explicit Expectation(std::string_view text);

    // The differences as lines of a unified diff, "@@ [section] @@" before those of a section. Empty: all
    // that is expected is so.
    std::vector<std::string> differences(const Outcome& outcome) const;

    // The text of an expectation of the same sections that the outcome meets. Comments stay, those of a
    // section at its top; and so do the lines that accept any value, where there is such a line.
    std::string updated(const Outcome& outcome) const;

private:
    SectionedText text_;
};

// The text of an expectation of everything but the debug log.
std::string newExpectation(const Outcome& outcome);

// The lines of an outcome as they are shown: "[section]" before those of each.
std::vector<std::string> outcomeLines(const Outcome& outcome);

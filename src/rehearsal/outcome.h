#pragma once

#include <string>
#include <vector>

// What became of a machine, as text (machine_format.md).
struct OutcomeSection {
    std::string name;  // "install files"
    std::vector<std::string> lines;
};

struct Outcome {
    std::vector<OutcomeSection> sections;
    // Why the first step that failed did, for the user; empty when all succeeded.
    std::string failure;
};

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "checking/finding_codes.h"
#include "checking/source_place.h"

// One thing that is wrong, or odd, in a description.
struct Finding {
    FindingCode code;
    SourcePlace place;
    std::string message;  // one sentence without a line end: what is wrong here
    std::string hint;     // one sentence: what to do about it
};

// Collects what the checks find.
class Findings {
public:
    // The text of the description, borrowed.
    explicit Findings(std::string_view text) : lines_(text) {}

    // `offset` is that of a byte of the text. Without a hint that of the code counts.
    void add(FindingCode code, std::size_t offset, std::string message, std::string hint = {});
    bool empty() const { return found_.empty(); }

    // In the order of their places, each once.
    std::vector<Finding> sorted() const;

private:
    SourceLines lines_;
    std::vector<Finding> found_;
};

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "packager/tree_walk.h"

class PXML;

// A Tree element, as its author wrote it.
struct TreeRequest {
    std::string from;  // the path below the root; empty for the root itself
    std::string dest;  // without a separator at its end
    TreeWalk::Filter filter{PathPatterns(""), PathPatterns("")};
    bool keepsModes = false;
    bool mayBeMissing = false;
    // The attributes that each FN gets, with their values.
    std::vector<std::pair<std::string, std::string>> handedOn;
    bool isExecutable = false;  // one of them is Executable
    std::optional<std::string> condition;
    std::optional<std::string> setCondition;  // of the FileSet
};

// Reads the element at `node`. Throws InstallerError when it lacks something or has what means nothing there.
TreeRequest readTree(const PXML& document, std::int32_t node);

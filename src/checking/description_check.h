#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "checking/check_context.h"
#include "checking/finding.h"

// What is to be checked.
struct CheckOptions {
    CheckTargets targets;
    std::optional<std::string> root;  // the directory of the product's files; empty: nothing is said of them
};

// All that can be known of a description before it ships, in the order of the places. What isn't well-formed
// is only checked for its form.
std::vector<Finding> checkDescription(std::string_view text, const CheckOptions& options,
                                      platform::FileSystem& files);

#pragma once

#include <functional>
#include <string>
#include <vector>

// The difference of two lists as the lines of a unified diff without its head: " ", "-" or "+" before each
// line, three lines around each change, and "..." where others are left out. Empty when `fits` holds for all
// pairs. Lists that differ in more than a few thousand lines are shown one after the other.
using LinesFit = std::function<bool(const std::string& expected, const std::string& found)>;
std::vector<std::string> lineDifference(const std::vector<std::string>& expected,
                                        const std::vector<std::string>& found, const LinesFit& fits);

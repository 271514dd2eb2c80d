#pragma once

#include <string>

// The visible windows of all other programs, top-level ones first in front, with all that is in them, as a
// JSON list.
std::string windowTree();

#pragma once

#include <string>
#include <string_view>

namespace platform {

// A path as the system and its programs write it, for all that leaves the program: on Linux with `/` between
// its parts and without a drive, on Windows as it is. What the program keeps for itself (the action log, its
// records, variables) stays in the form with `\`. Only for texts that are one whole path.
std::string writtenPath(std::string_view path);

}  // namespace platform

#pragma once

#include <string>
#include <vector>

namespace platform {
class FileSystem;
}

// The directories of these files, and those above them, in which nothing is left but one another; the deepest
// first. What can't be listed, and a link, isn't among them. Absolute paths.
std::vector<std::string> emptiedDirectories(platform::FileSystem& files,
                                            const std::vector<std::string>& paths);

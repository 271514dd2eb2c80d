#pragma once

#include <string>
#include <vector>

namespace platform {
class FileSystem;
}

// The name of the file that is made in a directory for a moment, to see under which other paths it appears.
inline constexpr char kProbeName[] = "test$$$$.$$$file";

// Removes the file that a killed run has left in this directory. Anything else of its name stays.
void removeAbandonedProbe(platform::FileSystem& files, const std::string& directory);

// True if the two paths name one directory: a file that is made in `second` is found in `first`. A directory
// that can't be written to matches nothing, and neither does one that holds something of the probe's name,
// which is left alone. The file is removed again.
bool samePath(platform::FileSystem& files, const std::string& first, const std::string& second);

// True if any of the paths names the same directory as `directory`; one file is made for all.
bool namesSameDirectory(platform::FileSystem& files, const std::vector<std::string>& paths,
                        const std::string& directory);

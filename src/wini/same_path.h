#pragma once

#include <string>
#include <vector>

namespace platform {
class FileSystem;
}

// The name that is put into a directory for a moment to see under which other paths it appears.
inline constexpr char kProbeName[] = "test$$$$.$$$file";

// True if the two paths name one directory: a file that is made in `second` is found in `first`. A directory
// that can't be written to matches nothing, and neither does one that holds something of the probe's name,
// which is left alone. Nothing stays behind.
bool samePath(platform::FileSystem& files, const std::string& first, const std::string& second);

// True if one of the paths and `directory` name one directory, by one probe for all.
bool namesSameDirectory(platform::FileSystem& files, const std::vector<std::string>& paths,
                        const std::string& directory);

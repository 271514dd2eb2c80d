#pragma once

#include <string_view>

namespace platform {
class FileSystem;
}

// Takes empty directories away.
class DirectoryRemover {
public:
    explicit DirectoryRemover(platform::FileSystem& files) : files_(files) {}

    // Removes a directory that is empty, and then each one above it that becomes empty by that. A directory
    // that the system marks as its own, or a link, ends the climb. How many were removed; 0 when the first
    // one isn't empty, isn't there, or one of them resists. At most 1,559 bytes of `path` count.
    int removeEmptyDirectories(std::string_view path);

private:
    bool holdsNothingBut(const char* directory, std::string_view child);

    platform::FileSystem& files_;
};

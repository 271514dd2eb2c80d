#pragma once

#include <string>
#include <string_view>
#include <unordered_set>

namespace platform {
class FileSystem;
}

// Creates directories with all their missing levels. It remembers the directories that it has seen, so that
// asking for one again costs nothing, until it is told that somebody may have removed some.
class DirectoryCreator {
public:
    // The longest path; what is longer is cut.
    static constexpr std::size_t kPathLimit = 1559;
    // A path with fewer bytes is left alone.
    static constexpr std::size_t kShortestPath = 4;

    explicit DirectoryCreator(platform::FileSystem& files) : files_(files) {}

    // Directories may have been removed.
    void forget() { known_.clear(); }

    // Creates each level of `path` that ends with a separator, behind the root (a drive letter with its
    // separator, or a leading separator): what follows the last separator counts as a file's name.
    // `outCreated` is the number of levels that didn't exist, also after a failure. 0, or -1 when a level
    // can't be created.
    int createDirectories(std::string_view path, int& outCreated);

private:
    bool isKnown(const std::string& directory);

    platform::FileSystem& files_;
    std::unordered_set<std::string> known_;
};

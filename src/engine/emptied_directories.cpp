#include "engine/emptied_directories.h"

#include <algorithm>
#include <functional>
#include <unordered_set>

#include "platform/file_system.h"
#include "platform/path_identity.h"

namespace {

using platform::pathIdentity;

// Empty for a path directly below the root.
std::string parentOf(const std::string& path) {
    const std::size_t separator = path.find_last_of("/\\");
    return path.substr(0, separator == std::string::npos ? 0 : separator);
}

// Each once.
std::vector<std::string> directoriesOf(const std::vector<std::string>& paths) {
    std::vector<std::string> directories;
    std::unordered_set<std::string> seen;
    for (const std::string& path : paths) {
        for (std::string level = parentOf(path); !level.empty(); level = parentOf(level)) {
            if (!seen.insert(pathIdentity(level)).second) {
                break;
            }
            directories.push_back(level);
        }
    }
    return directories;
}

bool holdsNothingBut(platform::FileSystem& files, const std::string& directory,
                     const std::unordered_set<std::string>& emptied) {
    std::vector<platform::DirectoryEntry> entries;
    return files.kindOf(directory) == platform::PathKind::kDirectory && files.list(directory, entries) == 0 &&
           std::ranges::all_of(entries, [&](const platform::DirectoryEntry& entry) {
               return entry.isDirectory && emptied.contains(pathIdentity(directory + "/" + entry.name));
           });
}

}  // namespace

std::vector<std::string> emptiedDirectories(platform::FileSystem& files,
                                            const std::vector<std::string>& paths) {
    std::vector<std::string> candidates = directoriesOf(paths);
    std::ranges::stable_sort(candidates, std::ranges::greater(), &std::string::size);
    std::unordered_set<std::string> emptied;
    std::vector<std::string> found;
    for (std::string& directory : candidates) {
        if (holdsNothingBut(files, directory, emptied)) {
            emptied.insert(pathIdentity(directory));
            found.push_back(std::move(directory));
        }
    }
    return found;
}

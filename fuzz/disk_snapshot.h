#pragma once

#include <map>
#include <string>
#include <vector>

#include "disk_paths.h"
#include "platform/memory/memory_file_system.h"

// What is on a disk in memory at one moment.
class DiskSnapshot {
public:
    explicit DiskSnapshot(MemoryFileSystem& files) {
        for (const std::string& path : files.allFiles()) {
            entries_[resolvedPath(path)] = stateOf(files, path);
        }
    }

    // The resolved paths of all files and links of which only one of the snapshots knows, or which aren't the
    // same in both.
    std::vector<std::string> differencesTo(const DiskSnapshot& other) const {
        std::vector<std::string> paths;
        for (const auto& [path, state] : entries_) {
            const auto found = other.entries_.find(path);
            if (found == other.entries_.end() || found->second != state) {
                paths.push_back(path);
            }
        }
        for (const auto& [path, state] : other.entries_) {
            if (!entries_.contains(path)) {
                paths.push_back(path);
            }
        }
        return paths;
    }

private:
    // A link is what it is, whatever becomes of the file that it leads to.
    static std::string stateOf(MemoryFileSystem& files, const std::string& path) {
        return files.kindOf(path) == platform::PathKind::kLink ? "link" : "file " + files.content(path);
    }

    std::map<std::string, std::string> entries_;
};

#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

#include "support/debug_log.h"

class Expressions;
class FileSets;
struct FileEntry;

// Decides which files are installed and where, for one installation: what it has found out about a condition
// or a directory holds for all files that share it.
class FilePlanner {
public:
    FilePlanner(const FileSets& fileSets, Expressions& expressions, DebugLog debugLog)
        : fileSets_(fileSets), expressions_(expressions), debugLog_(debugLog) {}

    // False for a file without a destination, and where its condition or its file set's doesn't hold.
    bool isSelected(const FileEntry& file);
    // The file's directory with a separator at its end, at most 1,559 bytes. False when it can't be
    // expanded, which is logged; `outDirectory` is what there is of it.
    bool findDirectory(const FileEntry& file, std::string& outDirectory);
    // The full path of the file in that directory.
    static std::string pathIn(const std::string& directory, const FileEntry& file);

private:
    struct Directory {
        std::string path;
        bool expanded = false;
    };

    bool holds(std::string_view condition);
    Directory expand(const std::string& destination);

    const FileSets& fileSets_;
    Expressions& expressions_;
    DebugLog debugLog_;
    std::unordered_map<std::string, bool> conditions_;
    std::unordered_map<std::string, Directory> directories_;  // by the unexpanded destination
};

#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "engine/changes/change.h"

class KeptFiles;
namespace platform {
class FileSystem;
}

// DIR: the directories that other changes need. No element of the description asks for one by itself.
// A record is the number of levels that were made and the path of the deepest one.
class DirectoryChange : public Change {
public:
    // The longest path in bytes; what is longer is cut.
    static constexpr std::size_t kPathLimit = 1559;
    // A path with fewer bytes is left alone.
    static constexpr std::size_t kShortestPath = 4;

    // With `kept`, which outlives this object, directories that hold only what is postponed wait as well.
    explicit DirectoryChange(const ChangeContext& context, KeptFiles* kept = nullptr)
        : context_(context), kept_(kept) {}

    // Creates each level of `path` that ends with a separator, after the root (a drive letter with its
    // separator, or a leading separator): what follows the last separator counts as a file's name. Records
    // the levels that don't exist before it makes them. False when a level can't be created, and for a path
    // that its record can't hold or whose record can't be written, of which nothing is made.
    //
    // Directories that were seen once are taken for granted, so asking for one again costs nothing.
    bool create(std::string_view path);

    // Nothing: the changes that need directories create them.
    bool apply() override { return true; }
    // Notes the directory as one more step: directories can only go when everything in them is gone.
    bool undo(const LogRecord& record) override;
    // Removes the noted directories, the last one first. One that isn't there is no failure; one that holds
    // anything stays and is reported. False when one stays. Those that were postponed go with the next call.
    bool finishUndo() override;

private:
    struct Record {
        std::string path;
        std::int32_t levels = 0;
    };

    std::vector<std::string> missingLevels(std::string_view path);
    std::size_t createLevels(const std::vector<std::string>& levels);
    bool createRecorded(const std::vector<std::string>& levels, std::string_view path);
    void reportLevel(const std::string& level, int status);
    bool isKnown(const std::string& directory);
    bool remove(const Record& record);
    bool removeLevel(const std::string& directory);

    ChangeContext context_;
    KeptFiles* kept_;
    std::unordered_set<std::string> known_;
    std::unordered_set<std::string> failed_;  // levels that couldn't be made, each reported once
    std::vector<Record> toRemove_;
    std::vector<std::string> postponed_;
};

// Removes a directory that is empty, and then each one above it that becomes empty by that. A directory that
// the system marks as its own, or a link, ends the climb. How many were removed; 0 when the first one isn't
// empty, isn't there, or one of them resists. At most DirectoryChange::kPathLimit bytes of `path` count.
int removeEmptyDirectories(platform::FileSystem& files, std::string_view path);

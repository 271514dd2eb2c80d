#pragma once

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace platform {
class FileSystem;
}

// The files without which an uninstallation can't be repeated: action log, archive, description, uninstaller
// and what the records refer to. Spellings of one path are the same (platform/path_identity.h). While they
// are held nothing deletes them, and the directories that hold nothing else wait as well. They are released
// when everything else has gone.
class KeptFiles {
public:
    // `files` is borrowed.
    explicit KeptFiles(platform::FileSystem& files) : files_(files) {}

    // One more file to hold; an empty path names none.
    void hold(std::string_view path);
    // Every file of this name, wherever it is.
    void holdByName(std::string_view name);
    // Nothing more is held from now on, whoever asks for it.
    void close() { isClosed_ = true; }
    // Whether the file is held and not released yet.
    bool holds(std::string_view path) const;
    // The same, for somebody who would delete it now: it counts as a file that goes in the end.
    bool postponesFile(std::string_view path);
    // Whether the directory is there and holds nothing but files and directories that were postponed before.
    // It is postponed then. False after the release, and when it is there but can't be listed: `outStatus` is
    // the system's error number for that then, otherwise 0.
    bool postponesDirectory(const std::string& directory, int& outStatus);

    void release() { isReleased_ = true; }
    // The postponed files that are still there, in their order.
    std::vector<std::string> leftFiles() const;

    // Whether two paths are spellings of one file's path.
    static bool isSameFile(std::string_view path, std::string_view other);

private:
    platform::FileSystem& files_;
    std::unordered_set<std::string> held_;
    std::unordered_set<std::string> heldNames_;
    std::unordered_set<std::string> postponed_;
    std::vector<std::string> postponedFiles_;
    bool isClosed_ = false;
    bool isReleased_ = false;
};

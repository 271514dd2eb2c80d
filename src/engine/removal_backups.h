#pragma once

#include <string>
#include <vector>

// The saved files of an installation that was removed for another one.
struct UninstallBackup {
    std::string productName;
    std::string archivePath;
    std::string directoriesPath;  // of a text: the directories that the installation had made
};

// A file that can't be in an archive, because it is one itself, or because the new installation may put its
// own in its place: the copy of it.
struct NestedBackup {
    std::string originalPath;
    std::string copyPath;
};

// What brings the installations back that a session removed. All paths are those of private temporary files,
// which the session deletes at its end, unless they are all that is left of an installation.
struct RemovalBackups {
    std::vector<UninstallBackup> uninstallBackups;
    std::vector<NestedBackup> nestedBackups;
    // An installation was removed, and neither a new one nor its own return is complete.
    bool isOnlyCopy = false;
};

#pragma once

#include <string>

namespace platform {
class FileSystem;
}

// The files that a killed run was writing: each lies beside the place that it was for, under the name of a
// ReplacingFile.

enum class UnfinishedChange {
    kLast,    // of an installation: what the last record of its log is about
    kAnyUndo  // of an undo: any file that it gives back or edits, and the last record's as well
};

// Removes them from the directories that the log at this path names. A file that can't be removed stays.
void removeUnfinishedFiles(platform::FileSystem& files, const std::string& log, UnfinishedChange change);

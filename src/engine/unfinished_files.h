#pragma once

#include <string>

class RemovalJournal;
namespace platform {
class FileSystem;
}

// The files that a killed run was writing: each lies beside the place that it was for, under the name of a
// ReplacingFile. One that can't be removed stays.

enum class UnfinishedChange {
    kLast,    // of an installation: what the last record of its log is about
    kAnyUndo  // of an undo: any file that it gives back or edits, and the last record's as well
};

// Removes them from the directories that the log at this path names, and from those that the run had made the
// file that tells whether two paths are the same.
void removeUnfinishedFiles(platform::FileSystem& files, const std::string& log, UnfinishedChange change);

// Removes them from all directories in which a removal changed or archived files: where its files come back.
void removeUnfinishedFiles(platform::FileSystem& files, RemovalJournal& journal);

#pragma once

#include <string>

class RemovalJournal;
namespace platform {
class FileSystem;
}

// The files that a killed run was writing: each lies beside the place that it was for, under the name of a
// ReplacingFile. One that can't be removed stays.

// Removes them from the directories of all records of the log at this path, because actions, which aren't
// recorded, write there as well; and from those that the installation had made, the file that tells whether
// two paths are the same.
void removeUnfinishedFiles(platform::FileSystem& files, const std::string& log);

// Removes them from all directories in which a removal changed or archived files: where its files come back.
void removeUnfinishedFiles(platform::FileSystem& files, RemovalJournal& journal);

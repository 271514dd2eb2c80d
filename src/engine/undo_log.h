#pragma once

#include <string>
#include <string_view>

namespace platform {
class FileSystem;
}

// Copies of action logs by which a killed installation can be taken back.

// Where the description and the archive are now; empty for the paths that the log gives.
struct UndoLogPlaces {
    std::string description;
    std::string archive;
};

// Copies the log at `from` to `to`, with these places in its first lines and without a last line that was
// written in part: half a path could be that of something else. The copy is for this user alone and on the
// disk when it returns; it takes the place of what is at `to`, which may be `from`, in one step. 0, the
// system's error number, or -1 for a log without whole first lines.
int writeUndoLog(platform::FileSystem& files, const std::string& from, const UndoLogPlaces& places,
                 const std::string& to);

// Whether the logs have the same lines after the places; not for files that can't be read.
bool haveSameRecords(platform::FileSystem& files, const std::string& one, const std::string& other);

#pragma once

#include <functional>
#include <string_view>

class Report;
namespace platform {
class FileSystem;
}

enum class RestoreResult {
    kNoArchive,  // nothing is there
    kDone,       // what the archive holds is restored or, where the user has changed it, left
    kFailed,     // a file couldn't be written, the archive can't be read to its end, or the walk was to end
};

// Restores the files of a backup archive and reports each file and the progress. Everything restored stays,
// also after a failure. `isToEnd` is asked before each file.
RestoreResult restoreBackupFile(std::string_view archivePath, platform::FileSystem& files, Report& report,
                                const std::function<bool()>& isToEnd = {});

#pragma once

#include <functional>
#include <string>
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

// What a restore asks. Each may be empty.
struct RestoreQuestions {
    std::function<bool()> isToEnd;  // asked before each file
    // Whether the installation replaced this file. Of a damaged archive that shows entries that never were.
    std::function<bool(std::string_view path)> wasReplaced;
    // The plain file whose rights the restored one gets; empty for those of the file in its place, or of a
    // new one.
    std::function<std::string(std::string_view path)> rightsOf;
    // Told of a file that stays as it is, because somebody has changed it.
    std::function<void(std::string_view path)> onLeft;
    // The end of the note that says how many files could not be restored.
    std::string_view remedy = "The uninstallation can be repeated.";
};

// Restores the files of a backup archive and reports each file and the progress. Everything restored stays,
// also after a failure.
RestoreResult restoreBackupFile(std::string_view archivePath, platform::FileSystem& files, Report& report,
                                const RestoreQuestions& questions = {});

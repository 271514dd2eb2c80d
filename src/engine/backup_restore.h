#pragma once

#include <string_view>

class Report;
namespace platform {
class FileSystem;
}

// Restores the files of a backup archive and reports each file and the progress. True when the whole archive
// was read; false when it is missing, unreadable or damaged, in which case everything restored so far stays.
// A file that can't be written is only reported.
bool restoreBackupFile(std::string_view archivePath, platform::FileSystem& files, Report& report);

#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "engine/removal_backups.h"
#include "support/debug_log.h"

class BackupFile;
class PStream;
class Report;
namespace platform {
class FileSystem;
}

// Saves the files of an installation, as its action log names them, before the installation is removed: files
// and shortcuts go into an archive, the directories that were made into a text with one path in each line. A
// file that is such an archive itself is copied, with its rights.
class InstalledFilesBackup {
public:
    // Gives the path of a new file; none when there is no name for it.
    using NameMaker = std::function<std::optional<std::string>()>;

    // All of them outlive this object.
    InstalledFilesBackup(platform::FileSystem& files, NameMaker newName, Report& report, DebugLog debugLog);

    // Makes `paths.archivePath` and `paths.directoriesPath`, neither of which may exist, as private files;
    // with the result they are on the disk. A file that isn't there any more is reported and doesn't stop the
    // backup, and a link isn't followed. False when the log can't be read, or when anything can't be written:
    // that is reported, and what was made is removed. Once for an object.
    bool make(const std::string& logPath, const UninstallBackup& paths);

    // The copies that were made; after a failure there are none.
    const std::vector<NestedBackup>& archives() const { return archives_; }
    // The files that the archive holds; likewise.
    const std::vector<std::string>& archivedFiles() const { return archivedPaths_; }

private:
    bool writeDirectories(PStream& log, const std::string& path);
    bool archiveFiles(PStream& log, BackupFile& archive);
    bool archiveFile(const std::string& path, BackupFile& archive);
    bool copyArchive(const std::string& path);
    void addFailure(const std::string& path, const std::string& reason, int status);
    bool fail(const std::string& path, const std::string& reason, int status = 0);
    void addLine(const std::string& line);
    void discard();

    platform::FileSystem& files_;
    NameMaker newName_;
    Report& report_;
    DebugLog debugLog_;
    std::int64_t fileCount_ = 0;  // records of files
    std::int64_t done_ = 0;       // lines that were shown
    std::vector<std::string> made_;
    std::vector<NestedBackup> archives_;
    std::unordered_set<std::string> archived_;  // the identities of their paths
    std::vector<std::string> archivedPaths_;
};

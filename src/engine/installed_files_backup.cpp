#include "engine/installed_files_backup.h"

#include <algorithm>
#include <utility>

#include "engine/action_log_format.h"
#include "engine/line_reader.h"
#include "engine/report.h"
#include "package/backup_file.h"
#include "platform/file_system.h"
#include "platform/path_identity.h"
#include "platform/written_path.h"
#include "support/file_copy.h"
#include "support/p_file_stream.h"

namespace {

namespace Format = ActionLogFormat;

// What follows the second field of a record.
std::string_view pathOf(std::string_view line) {
    return nextLogField(nextLogField(line));
}

int openToRead(PFileStream& stream, const std::string& path) {
    return stream.openFile(path, PFileStream::kGenericRead, PFileStream::kShareRead,
                           PFileStream::kOpenExisting | PFileStream::kSequential);
}

// Calls `take` for each whole line of the log, without the white space at its end, until it returns false.
// False when it did, and when the log can't be read.
template <typename Take>
bool forEachLine(PStream& log, Take take) {
    LineReader lines(log);
    bool isPiece = false;  // of a line that is too long
    if (!lines.rewind()) {
        return false;
    }
    for (std::string line; lines.readLine(line, Format::kBackupLineBuffer);) {
        const bool isLine = !isPiece;
        isPiece = !line.ends_with('\n');
        if (isLine && !take(withoutTrailingSpace(line))) {
            return false;
        }
    }
    return !lines.hasFailed();
}

}  // namespace

InstalledFilesBackup::InstalledFilesBackup(platform::FileSystem& files, NameMaker newName, Report& report,
                                           DebugLog debugLog)
    : files_(files), newName_(std::move(newName)), report_(report), debugLog_(debugLog) {}

bool InstalledFilesBackup::make(const std::string& logPath, const UninstallBackup& paths) {
    PFileStream log(files_);
    BackupFile archive(files_);
    report_.setStatusWord(WordKey("StatusBackup"));
    bool isMade = openToRead(log, logPath) == 0 && archive.openForWriting(paths.archivePath);
    if (isMade) {
        made_.push_back(paths.archivePath);
    }
    isMade = isMade && writeDirectories(log, paths.directoriesPath);
    report_.begin();
    isMade = isMade && archiveFiles(log, archive);
    report_.flushLines();
    // What comes after it isn't needed to read it.
    isMade = isMade && archive.flush() == 0;
    const bool isClosed = archive.close() == 0;
    if (!isMade || !isClosed) {
        discard();
        return false;
    }
    return true;
}

bool InstalledFilesBackup::writeDirectories(PStream& log, const std::string& path) {
    PFileStream text(files_);
    if (text.createPrivate(path) != 0) {
        return false;
    }
    made_.push_back(path);
    const bool isWritten = forEachLine(log, [&](std::string_view line) {
        fileCount_ += isLogRecord(line, Format::kFile) ? 1 : 0;
        const std::string directory(isLogRecord(line, Format::kDirectory) ? pathOf(line)
                                                                          : std::string_view());
        if (directory.empty()) {
            return true;
        }
        const std::string written = directory + std::string(Format::kLineEnd);
        std::uint32_t done = 0;
        return text.write(written.data(), static_cast<std::uint32_t>(written.size()), done) == 0;
    });
    const bool isOnDisk = text.flush() == 0;
    return text.close() == 0 && isOnDisk && isWritten;
}

bool InstalledFilesBackup::archiveFiles(PStream& log, BackupFile& archive) {
    std::int64_t saved = 0;
    return forEachLine(log, [&](std::string_view line) {
        if (!isLogRecord(line, Format::kFile) && !isLogRecord(line, Format::kShortcut)) {
            return true;
        }
        const std::string path(pathOf(line));
        if (!path.empty() && !archiveFile(path, archive)) {
            return false;
        }
        if (fileCount_ > 0) {
            report_.setProgress(static_cast<int>(std::min<std::int64_t>(++saved * 100 / fileCount_, 100)));
        }
        report_.pumpEvents();
        return true;
    });
}

// A path that several records name is saved once.
bool InstalledFilesBackup::archiveFile(const std::string& path, BackupFile& archive) {
    const std::string identity = platform::pathIdentity(path);
    if (archived_.contains(identity)) {
        return true;
    }
    PFileStream probe(files_);
    const bool isFile = files_.kindOf(path) == platform::PathKind::kFile;
    if (const int status = isFile ? openToRead(probe, path) : 0; !isFile || status != 0) {
        addFailure(path, "File does not exist", status);
        return true;
    }
    probe.close();
    if (archive.isBackupFile(path)) {
        return copyArchive(path);
    }
    if (const auto failure = archive.addFile(path, std::nullopt)) {
        return fail(path, *failure, archive.addFileFault());
    }
    archived_.insert(identity);
    archivedPaths_.push_back(path);
    addLine("Back up " + platform::writtenPath(path));
    return true;
}

bool InstalledFilesBackup::copyArchive(const std::string& path) {
    const std::string copy = newName_().value_or("");
    if (copy.empty()) {
        debugLog_.line("ERROR: Obtaining temp filename for copying a backup file! (" + path + ")");
        return fail(path, "there is no name for a temporary file");
    }
    if (const int status = copyWithRights(files_, path, path, copy); status != 0) {
        return fail(path, "it can't be copied to " + platform::writtenPath(copy), status);
    }
    made_.push_back(copy);
    archives_.push_back({path, copy});
    addLine("Back up " + platform::writtenPath(path));
    return true;
}

void InstalledFilesBackup::addFailure(const std::string& path, const std::string& reason, int status) {
    const std::string line = "FAILED to back up " + platform::writtenPath(path) + ": " + reason;
    report_.addError(line);
    addLine(line);
    report_.addFileReason(path, status);
}

bool InstalledFilesBackup::fail(const std::string& path, const std::string& reason, int status) {
    constexpr std::string_view kEnd = "Error in backup: stopping process";
    addFailure(path, reason, status);
    report_.addError(kEnd);
    report_.addLine(kEnd, true);
    return false;
}

void InstalledFilesBackup::addLine(const std::string& line) {
    report_.addLine(line, done_++ % Report::kStepsPerFlush == 0);
}

void InstalledFilesBackup::discard() {
    for (const std::string& path : made_) {
        files_.removeFile(path);
    }
    archives_.clear();
    archived_.clear();
    archivedPaths_.clear();
}

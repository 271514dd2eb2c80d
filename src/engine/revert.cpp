#include "engine/revert.h"

#include <optional>

#include "contracts/system_operations.h"
#include "engine/action_log_format.h"
#include "engine/action_log_reader.h"
#include "engine/backup_restore.h"
#include "engine/changes/change_table.h"
#include "engine/changes/directory_change.h"
#include "engine/line_reader.h"
#include "engine/product_state.h"
#include "engine/removal_journal_format.h"
#include "engine/removal_playback.h"
#include "engine/report.h"
#include "engine/uninstallation.h"
#include "engine/work_notes.h"
#include "package/backup_file.h"
#include "platform/file_system.h"
#include "platform/written_path.h"
#include "support/file_copy.h"
#include "support/p_file_stream.h"
#include "support/utilities.h"

namespace {

int openToRead(PFileStream& stream, const std::string& path) {
    return stream.openFile(path, PFileStream::kGenericRead, PFileStream::kShareRead,
                           PFileStream::kOpenExisting);
}

}  // namespace

Revert::Revert(const EngineParts& parts, RemovalBackups& backups)
    : parts_(parts), backups_(backups), logFile_(parts.machine.files), log_(logFile_) {}

bool Revert::revertInstallation(const std::string& publishedLog, Uninstallation& undo, Report& report) {
    parts_.debugLog.line("Reverting installation!");
    const bool isUndone = undoInstallation(publishedLog, undo, report);
    return revertUninstallation(report) && isUndone;
}

// The walk deletes the log as a file of the product, so it reads a copy.
bool Revert::undoInstallation(const std::string& publishedLog, Uninstallation& undo, Report& report) {
    platform::FileSystem& files = parts_.machine.files;
    if (publishedLog.empty() || !files.exists(publishedLog)) {
        return false;
    }
    const std::string copy = placeOfCopy();
    if (copy.empty() || !OUtils::copyFile(publishedLog, copy, files, platform::FileRights::kPrivate)) {
        parts_.debugLog.line("ERROR: Unable to copy the installation log file for temporary use (" + copy +
                             ")!");
        report.note("What was installed can't be taken back: " + platform::writtenPath(publishedLog) +
                    " can't be copied to the temporary directory");
        return false;
    }
    noteUndo(copy, publishedLog);
    backups_.takeLevelsOf(publishedLog);
    const bool isUndone = walk(copy, undo, report);
    if (isUndone || hasBackups()) {
        clearRecords(publishedLog, undo.backupPath(), isUndone ? nullptr : &report);
    }
    if (backups_.journal().isOpen()) {
        WorkNotes(backups_.journal()).stage(WorkStage::kUndone);
        backups_.holdsRecords = !isUndone;
    }
    if (isUndone || !hasBackups()) {
        files.removeFile(copy);
    } else {
        report.note("What could not be taken back of the new version is recorded in " +
                    platform::writtenPath(copy));
    }
    return isUndone;
}

std::string Revert::ownFile(std::string_view name) {
    return backups_.journal().directory() + '/' + std::string(name);
}

// A later run that repeats the undo needs it once more.
void Revert::takeOut(const std::string& archive) {
    platform::FileSystem& files = parts_.machine.files;
    const bool isKept = backups_.journal().isOpen() &&
                        files.moveFile(archive, ownFile(RemovalJournalFormat::kRevertedArchiveFile)) == 0;
    if (!isKept) {
        files.removeFile(archive);
    }
}

// If this run is killed now, a later one finds a log to repeat the undo by.
void Revert::noteUndo(const std::string& copy, const std::string& publishedLog) {
    PFileStream log(parts_.machine.files);
    if (!backups_.journal().isOpen() || openToRead(log, copy) != 0) {
        return;
    }
    const std::string archive = ActionLogReader(&log, parts_.debugLog).readArchivePath().value_or("");
    WorkNotes(backups_.journal())
        .installing(
            {copy, ownFile(RemovalJournalFormat::kRevertedArchiveFile), publishedLog, archive, false});
}

// Where a later run looks for it, if there can be one.
std::string Revert::placeOfCopy() {
    return backups_.journal().isOpen() ? ownFile(RemovalJournalFormat::kRevertedLogFile)
                                       : parts_.system.temporaryFileName().value_or("");
}

bool Revert::walk(const std::string& log, Uninstallation& undo, Report& report) {
    PFileStream file(parts_.machine.files);
    if (openToRead(file, log) != 0) {
        return false;
    }
    parts_.debugLog.line("Uninstalling current installation (Revert)");
    // What a repetition needs would lie in the places of files that come back.
    using Repetition = Uninstallation::Repetition;
    const Repetition repetition = hasBackups() ? Repetition::kNone : Repetition::kPossible;
    return undo.run(&file, std::nullopt, report, {}, repetition);
}

// They are where those of the earlier version belong. `rest` is null when nothing is left of the new version;
// otherwise the files that it had replaced are worth keeping.
void Revert::clearRecords(const std::string& log, const std::string& archive, Report* rest) {
    platform::FileSystem& files = parts_.machine.files;
    files.removeFile(log);
    ProductState(files, parts_.machine.environment).remove(log);
    if (!BackupFile(files).isBackupFile(archive)) {
        return;
    }
    const std::string aside = rest == nullptr ? "" : parts_.system.temporaryFileName().value_or("");
    if (rest == nullptr) {
        takeOut(archive);
    } else if (!aside.empty() && OUtils::copyFile(archive, aside, files, platform::FileRights::kPrivate)) {
        rest->note("What the new version had replaced is in " + platform::writtenPath(aside));
        files.removeFile(archive);
    }
}

bool Revert::revertUninstallation(Report& report) {
    parts_.debugLog.line("Reverting uninstallation");
    if (!hasBackups()) {
        return true;
    }
    parts_.debugLog.line("Unpacking backup of previous installation and legacy applications");
    isAnyBack_ = false;
    areAllBack_ = true;
    // Whatever the new version has left must not be undone any more: it may have the places of what comes
    // back.
    if (backups_.journal().isOpen()) {
        WorkNotes(backups_.journal()).stage(WorkStage::kUndone);
    }
    // First of all, because it clears the places of the archived files and makes their directories again.
    if (backups_.isOpen()) {
        areAllBack_ = RemovalPlayback(parts_.machine, backups_.journal(), report).run();
        isAnyBack_ = true;
    }
    for (const UninstallBackup& backup : backups_.uninstallBackups) {
        const bool isBack = unpack(backup, report);
        isAnyBack_ = isAnyBack_ || isBack;
        areAllBack_ = areAllBack_ && isBack;
    }
    copyBack(report);
    backups_.isOnlyCopy = !areAllBack_;
    return !isAnyBack_;
}

void Revert::copyBack(Report& report) {
    for (const NestedBackup& archive : backups_.nestedBackups) {
        const int status =
            copyWithRights(parts_.machine.files, archive.copyPath, archive.copyPath, archive.originalPath);
        if (status != 0) {
            report.note("FAILED to restore " + platform::writtenPath(archive.originalPath));
            report.addFileReason(archive.originalPath, status);
            areAllBack_ = false;
        }
    }
}

bool Revert::unpack(const UninstallBackup& backup, Report& report) {
    if (backup.productName.empty() || backup.archivePath.empty() || backup.directoriesPath.empty()) {
        return false;
    }
    parts_.debugLog.line("Unpacking backup for application: \"" + backup.productName + "\"");
    if (!makeDirectories(backup.directoriesPath, report)) {
        parts_.debugLog.line("ERROR: Could not open backup dirs file (" + backup.directoriesPath + ")!");
        return false;
    }
    RestoreQuestions questions;
    questions.rightsOf = [this](std::string_view path) { return backups_.journal().rightsOf(path); };
    questions.onLeft = [this](std::string_view) { areAllBack_ = false; };
    questions.remedy = "They are still in the backup.";
    const RestoreResult result =
        restoreBackupFile(backup.archivePath, parts_.machine.files, report, questions);
    if (result != RestoreResult::kDone) {
        parts_.debugLog.line("ERROR: Unpacking backup file (" + backup.archivePath + ")!");
    }
    return result == RestoreResult::kDone;
}

// False when the list can't be opened; a directory that can't be made is reported.
bool Revert::makeDirectories(const std::string& listPath, Report& report) {
    PFileStream list(parts_.machine.files);
    if (openToRead(list, listPath) != 0) {
        return false;
    }
    ChangeJob job(parts_, log_, report);
    DirectoryChange directories(job.context);
    LineReader lines(list);
    for (std::string line; lines.readLine(line, ActionLogFormat::kBackupLineBuffer);) {
        directories.create(withoutTrailingSpace(line));
    }
    return true;
}

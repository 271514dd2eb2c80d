#include "engine/revert.h"

#include <algorithm>
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
#include "support/p_mem_stream.h"
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
    tookAllBack_ = false;
    if (!isLogReadable(publishedLog, report) || !canBringBack(report)) {
        return putOff(report);
    }
    const bool isUndone = undoInstallation(publishedLog, undo, report);
    const bool isNothingLeft = isUndone || (undoneLog_.empty() && !backups_.holdsRecords);
    const bool wasNothingRemoved = revertUninstallation(report);
    tookAllBack_ = tookAllBack_ && isNothingLeft;
    return wasNothingRemoved && isUndone;
}

// The log is kept; of the archive that it names only whether it can be read counts.
bool Revert::isLogReadable(const std::string& publishedLog, Report& report) {
    platform::FileSystem& files = parts_.machine.files;
    undoneLog_.clear();
    if (publishedLog.empty() || files.kindOf(publishedLog) != platform::PathKind::kFile) {
        return true;
    }
    const int status = OUtils::readWholeFile(publishedLog, undoneLog_, files);
    if (status != 0) {
        report.addReason(publishedLog, OUtils::readingErrorText(status));
        return false;
    }
    PMemStream log(undoneLog_);
    return isReadable(ActionLogReader(&log, parts_.debugLog).readArchivePath().value_or(""), report);
}

// What is missing was missing before; what is there and can't be opened may be readable in a moment.
bool Revert::isReadable(const std::string& path, Report& report) {
    if (path.empty() || parts_.machine.files.kindOf(path) != platform::PathKind::kFile) {
        return true;
    }
    PFileStream file(parts_.machine.files);
    int status = openToRead(file, path);
    if (status == 0) {
        char byte = 0;
        std::uint32_t done = 0;
        status = file.read(&byte, 1, done);
    }
    report.addReason(path, status);
    return status == 0;
}

bool Revert::canBringBack(Report& report) {
    if (backups_.isOpen() && !RemovalPlayback(parts_.machine, backups_.journal(), report).isPossible()) {
        return false;
    }
    return std::ranges::all_of(backups_.uninstallBackups, [&](const UninstallBackup& backup) {
        return isReadable(backup.archivePath, report) && isReadable(backup.directoriesPath, report);
    });
}

bool Revert::putOff(Report& report) {
    backups_.isOnlyCopy = hasBackups();
    backups_.isToBeContinued = backups_.journal().isOpen();
    report.note(backups_.isToBeContinued
                    ? "Nothing is taken back now. The same setup, run again, tries once more."
                    : "Nothing is taken back.");
    return false;
}

// The copy is for a later run, if this one is killed, and for what is left in the end.
bool Revert::undoInstallation(const std::string& publishedLog, Uninstallation& undo, Report& report) {
    if (undoneLog_.empty()) {
        return false;
    }
    const std::string copy = placeOfCopy();
    const bool isCopied = copyLog(copy);
    if (isCopied) {
        noteUndo(copy, publishedLog);
    } else {
        parts_.debugLog.line("ERROR: Unable to copy the installation log file for temporary use (" + copy +
                             ")!");
    }
    backups_.takeLevelsOf(publishedLog);
    const bool isUndone = walk(undo, report);
    if (isUndone || hasBackups()) {
        clearRecords(publishedLog, undo.backupPath(), isUndone ? nullptr : &report);
    }
    // Nobody else has records that couldn't be published.
    backups_.isToBeContinued = backups_.isToBeContinued && !isUndone && !hasBackups();
    if (backups_.isToBeContinued) {
        return false;
    }
    if (backups_.journal().isOpen()) {
        WorkNotes notes(backups_.journal());
        notes.stage(WorkStage::kUndone);
        if (!isUndone) {
            notes.partlyUndone();
        }
        backups_.holdsRecords = !isUndone;
    }
    if (isUndone || !hasBackups()) {
        parts_.machine.files.removeFile(copy);
    } else {
        sayWhatIsLeft(publishedLog, copy, isCopied, report);
    }
    return isUndone;
}

bool Revert::copyLog(const std::string& copy) {
    return !copy.empty() && OUtils::writeWholeFile(copy, undoneLog_, parts_.machine.files,
                                                   platform::FileRights::kPrivate) == 0;
}

// The published log has made room for that of the earlier version.
void Revert::sayWhatIsLeft(const std::string& publishedLog, const std::string& copy, bool isCopied,
                           Report& report) {
    const bool isRecorded = isCopied || copyLog(copy);
    report.note(isRecorded ? "What could not be taken back of the new version is recorded in " +
                                 platform::writtenPath(copy)
                           : "There is no record of what could not be taken back of the new version: " +
                                 platform::writtenPath(publishedLog) + " could not be copied");
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
    if (!backups_.journal().isOpen()) {
        return;
    }
    PMemStream log(undoneLog_);
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

bool Revert::walk(Uninstallation& undo, Report& report) {
    PMemStream log(undoneLog_);
    parts_.debugLog.line("Uninstalling current installation (Revert)");
    // What a repetition needs would lie in the places of files that come back.
    using Repetition = Uninstallation::Repetition;
    const Repetition repetition = hasBackups() ? Repetition::kNone : Repetition::kPossible;
    return undo.run(&log, std::nullopt, report, {}, repetition);
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
    tookAllBack_ = !hasBackups();
    if (!hasBackups()) {
        return true;
    }
    if (!canBringBack(report)) {
        return putOff(report);
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
    tookAllBack_ = areAllBack_;
    if (!areAllBack_ && backups_.journal().isOpen()) {
        backups_.isToBeContinued = true;
        WorkNotes(backups_.journal()).attempt(1);
    }
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
    if (const int status = makeDirectories(backup.directoriesPath, report); status != 0) {
        parts_.debugLog.line("ERROR: Could not open backup dirs file (" + backup.directoriesPath + ")!");
        report.note("None of the files of " + backup.productName + " came back.");
        report.addReason(backup.directoriesPath, OUtils::readingErrorText(status));
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

// The status of reading the list; a directory that can't be made is reported.
int Revert::makeDirectories(const std::string& listPath, Report& report) {
    std::string content;
    if (const int status = OUtils::readWholeFile(listPath, content, parts_.machine.files); status != 0) {
        return status;
    }
    PMemStream list(content);
    ChangeJob job(parts_, log_, report);
    DirectoryChange directories(job.context);
    LineReader lines(list);
    for (std::string line; lines.readLine(line, ActionLogFormat::kBackupLineBuffer);) {
        directories.create(withoutTrailingSpace(line));
    }
    return 0;
}

#include "engine/record_takeover.h"

#include "engine/action_log_format.h"
#include "engine/action_log_writer.h"
#include "engine/changes/file_edit.h"
#include "engine/file_history.h"
#include "engine/line_reader.h"
#include "engine/report.h"
#include "package/backup_file.h"
#include "package/backup_reader.h"
#include "platform/file_system.h"

namespace {

namespace Format = ActionLogFormat;
using State = EarlierLog::State;

constexpr std::string_view kNoFile = "something else than a file is in its place, or it is too large";

}  // namespace

bool RecordTakeover::read(const std::string& logPath, const std::string& describedArchive) {
    logPath_ = logPath;
    log_ = EarlierLog::read(context_.machine.files, logPath);
    if (log_.state == State::kUnreadable) {
        warn("The records of the earlier installation in " + logPath + " can't be read");
        log_.status > 0 ? context_.report.addReason(logPath, log_.status)
                        : context_.report.addReason(logPath, kNoFile);
        return false;
    }
    if (log_.state == State::kDamaged) {
        warn("The records of the earlier installation in " + logPath +
             " are damaged; what can be read of them is kept");
    }
    std::erase_if(log_.records, [this](const std::string& line) { return takeFile(line); });
    findArchive(describedArchive);
    return true;
}

// The user's files in an archive whose log is lost or damaged would be lost with it.
void RecordTakeover::findArchive(const std::string& describedArchive) {
    platform::FileSystem& files = context_.machine.files;
    const bool isNamed = !log_.archivePath.empty() && files.exists(log_.archivePath);
    if (!isNamed && BackupFile(files).isBackupFile(describedArchive)) {
        log_.archivePath = describedArchive;
    }
}

// Whether the record is one of a file.
bool RecordTakeover::takeFile(std::string_view line) {
    if (!isLogRecord(line, Format::kFile)) {
        return false;
    }
    const std::string_view fields = nextLogField(line);
    const std::string_view kind = firstLogField(fields);
    const std::string_view path = nextLogField(fields);
    if (path.empty() || (kind != Format::kCreate && kind != Format::kOver)) {
        return false;
    }
    history_.addEarlier(line, path,
                        kind == Format::kCreate ? FileHistory::Kind::kCreated : FileHistory::Kind::kReplaced);
    return true;
}

bool RecordTakeover::copyArchive(BackupFile& archive) {
    const std::string& path = log_.archivePath;
    if (path.empty() || !context_.machine.files.exists(path)) {
        return true;
    }
    BackupFile earlier(context_.machine.files);
    if (!earlier.openForReading(path)) {
        warn("The backup archive " + path + " of the earlier installation can't be read");
        return true;
    }
    const auto digest = digestOfFile(context_.machine.files, path);
    if (digest && history_.isForeign(path, *digest)) {
        warn("The backup archive " + path +
             " has been changed since the earlier installation; what can be read of it is kept");
    }
    return copyEntries(earlier, archive);
}

bool RecordTakeover::copyEntries(BackupFile& from, BackupFile& to) {
    BackupReader reader(from);
    BackupEntry entry;
    using Found = BackupReader::Found;
    Found found = reader.start() ? reader.next(entry) : Found::kDamage;
    while (found == Found::kEntry) {
        if (to.holdsEntry(entry.name) || isOutdated(from, entry)) {
            found = reader.skip(entry.size) ? Found::kEntry : Found::kDamage;
        } else if (to.addEntry(entry, reader)) {
            return false;
        }
        found = found == Found::kEntry ? reader.next(entry) : found;
    }
    if (found != Found::kEnd) {
        warn("The backup archive " + log_.archivePath +
             " of the earlier installation can't be read to its end; what can be read of it is kept");
    }
    return true;
}

// An archive without a log may be one that an uninstallation has left. What it holds of a file that was
// changed since would never be restored, and must not keep what is there now from being backed up.
bool RecordTakeover::isOutdated(BackupFile& archive, const BackupEntry& entry) {
    std::uint32_t checkSum = 0;
    return log_.state == State::kNone && archive.readCheckSum(entry.name, checkSum) == 0 &&
           checkSum != entry.checkSum;
}

void RecordTakeover::writeRecords(ActionLogWriter& log) {
    for (const std::string& line : log_.records) {
        if (!isLogRecord(line, Format::kModifyFile)) {
            log.copyRecord(line);
        }
    }
}

void RecordTakeover::revertEdits(ActionLogWriter& log) {
    for (const std::string& line : log_.records) {
        if (isLogRecord(line, Format::kModifyFile) && !revertEdit(line)) {
            log.copyRecord(line);
        }
    }
}

// Nothing of this is shown: the lines come back in the phase that edits files, which has its own lines.
bool RecordTakeover::revertEdit(std::string_view line) {
    Report silent(nullptr, nullptr);
    return FileEdit::remove(context_.machine.files, silent, nextLogField(line));
}

void RecordTakeover::writeRemainingFiles(ActionLogWriter& log) {
    for (const std::string_view line : history_.remainingRecords()) {
        log.copyRecord(line);
    }
}

void RecordTakeover::warn(const std::string& text) {
    context_.debugLog.line("WARNING: " + text);
    context_.report.note(text);
}

#include "engine/free_space_check.h"

#include <algorithm>
#include <set>

#include "description/file_sets.h"
#include "description/product_description.h"
#include "engine/action_log_format.h"
#include "engine/action_log_writer.h"
#include "engine/changes/record_text.h"
#include "engine/earlier_log.h"
#include "engine/file_planner.h"
#include "engine/installation_records.h"
#include "engine/line_reader.h"
#include "engine/report.h"
#include "platform/environment.h"
#include "platform/file_system.h"
#include "platform/path_identity.h"
#include "platform/written_path.h"
#include "support/run_outcome.h"

namespace {

namespace Format = ActionLogFormat;
using platform::pathIdentity;

// What a line has beside its texts: a tag, separators, its end; the digest among the sums.
constexpr std::int64_t kRecordBytes = 14;
constexpr std::int64_t kSumBytes = 34;

std::int64_t bytesOf(std::string_view text) {
    return static_cast<std::int64_t>(text.size());
}

std::string directoryOf(const std::string& path) {
    const std::size_t separator = path.find_last_of("/\\");
    return separator == std::string::npos ? "" : path.substr(0, separator + 1);
}

bool isOfFile(std::string_view record) {
    return isLogRecord(record, Format::kFile) || isLogRecord(record, Format::kShortcut);
}

// What follows the second field of a record.
std::string pathOf(std::string_view record) {
    return std::string(nextLogField(nextLogField(record)));
}

}  // namespace

FreeSpaceCheck::FreeSpaceCheck(const EngineParts& parts, Report& report)
    : parts_(parts), report_(report), needs_(parts.machine.files) {
    parts.machine.environment.stateDirectory(stateDirectory_);
}

bool FreeSpaceCheck::run(const std::vector<ExpectedRemoval>& removals) {
    for (ExpectedRemoval removal : removals) {
        // Without a place for what is kept the removal will refuse.
        removal.isReversible = removal.isReversible && !stateDirectory_.empty();
        countRemoval(removal);
    }
    readOwnLog();
    countFiles();
    countRecords();
    return judge();
}

// 0 for what isn't a file of its own: a link takes next to nothing.
std::int64_t FreeSpaceCheck::sizeOf(std::string_view path) {
    platform::FileSystem& files = parts_.machine.files;
    const bool isFile = !path.empty() && files.kindOf(path) == platform::PathKind::kFile;
    return isFile ? std::max<std::int64_t>(files.fileSize(path), 0) : 0;
}

// A log that can't be read is the removal's business.
void FreeSpaceCheck::countRemoval(const ExpectedRemoval& removal) {
    const EarlierLog log = EarlierLog::read(parts_.machine.files, removal.logPath);
    for (const std::string& record : log.records) {
        if (isOfFile(record) && going_.insert(pathIdentity(pathOf(record))).second) {
            countRemoved(removal, pathOf(record));
        }
    }
    noteRecorded(log);
    if (removal.isReversible) {
        countEditedFiles(log);
    }
    countKept(removal, removal.logPath);
    countKept(removal, log.archivePath);
    std::string temporary;
    if (parts_.machine.files.temporaryDirectory(temporary)) {
        needs_.at(temporary).before += sizeOf(removal.logPath);
    }
    // What the archive gives back is in the way of the new files as well, and goes into their archive.
    if (pathIdentity(removal.logPath) == pathIdentity(parts_.model.product.installLogFile().value_or(""))) {
        isOwnLogGoing_ = true;
        archiveBytes_ += sizeOf(log.archivePath);
    }
}

// A copy in the archive is there before the file goes. Otherwise the file itself is kept.
void FreeSpaceCheck::countRemoved(const ExpectedRemoval& removal, const std::string& path) {
    if (removal.isBackedUp && removal.isReversible) {
        const std::int64_t size = sizeOf(path);
        needs_.at(stateDirectory_).before += size + bytesOf(path);
        needs_.at(directoryOf(path)).freed += size;
    } else {
        countKept(removal, path);
    }
}

// Moved, or copied where the state directory is on another volume.
void FreeSpaceCheck::countKept(const ExpectedRemoval& removal, const std::string& path) {
    const std::string directory = directoryOf(path);
    if (removal.isReversible && needs_.isOneVolume(directory, stateDirectory_)) {
        return;
    }
    const std::int64_t size = sizeOf(path);
    needs_.at(directory).freed += size;
    if (removal.isReversible) {
        needs_.at(stateDirectory_).before += size;
    }
}

// They are copied, because they stay.
void FreeSpaceCheck::countEditedFiles(const EarlierLog& log) {
    std::set<std::string> counted;
    for (const std::string& record : log.records) {
        if (!isLogRecord(record, Format::kIni) && !isLogRecord(record, Format::kModifyFile)) {
            continue;
        }
        const std::vector<std::string_view> fields = RecordText::split(record, 4);
        if (fields.size() > 2 && counted.insert(pathIdentity(fields[2])).second) {
            needs_.at(stateDirectory_).before += sizeOf(fields[2]);
        }
    }
}

void FreeSpaceCheck::noteRecorded(const EarlierLog& log) {
    for (const std::string& record : log.records) {
        if (isLogRecord(record, Format::kFile)) {
            recorded_.insert(pathIdentity(pathOf(record)));
        }
    }
}

// The records of an installation that stays are continued, and its archive is.
void FreeSpaceCheck::readOwnLog() {
    if (isOwnLogGoing_) {
        return;
    }
    const EarlierLog log =
        EarlierLog::read(parts_.machine.files, parts_.model.product.installLogFile().value_or(""));
    noteRecorded(log);
    archiveBytes_ += sizeOf(log.archivePath);
    for (const std::string& record : log.records) {
        logBytes_ += isLogRecord(record, Format::kFile) ? 0 : bytesOf(record) + bytesOf(Format::kLineEnd);
    }
}

void FreeSpaceCheck::countFiles() {
    FilePlanner planner(parts_.model.fileSets, parts_.model.expressions, DebugLog());
    std::unordered_set<std::string> counted;
    for (const FileEntry& file : parts_.model.fileSets.getFiles()) {
        report_.pumpEvents();
        std::string directory;
        if (!planner.isSelected(file) || !planner.findDirectory(file, directory)) {
            continue;
        }
        const std::string path = FilePlanner::pathIn(directory, file);
        if (counted.insert(pathIdentity(path)).second) {
            countFile(directory, path, file.size, file.backupExisting);
        }
    }
}

// A file that is replaced stays until the new one is complete. One of the same size may be the same.
void FreeSpaceCheck::countFile(const std::string& directory, const std::string& path, std::int64_t size,
                               bool isBackedUp) {
    const std::string identity = pathIdentity(path);
    const std::int64_t present = going_.contains(identity) ? 0 : sizeOf(path);
    VolumeNeeds::Need& need = needs_.at(directory);
    need.after += std::max<std::int64_t>(size - present, 0);
    need.passing = std::max(need.passing, size == present ? 0 : std::min(size, present));
    archiveBytes_ += isBackedUp && size != present && !recorded_.contains(identity) ? present : 0;
    logBytes_ += bytesOf(path) + kRecordBytes;
    sumsBytes_ += bytesOf(path) + kSumBytes;
}

void FreeSpaceCheck::countRecords() {
    for (const LoggedVariable& variable : loggedVariables(parts_.model)) {
        logBytes_ += bytesOf(variable.name) + bytesOf(variable.value);
    }
    countRecord(parts_.model.product.installLogFile().value_or(""), logBytes_);
    countRecord(parts_.model.product.installBackupFile().value_or(""), archiveBytes_);
    if (!stateDirectory_.empty()) {
        needs_.at(stateDirectory_).after += sumsBytes_;
    }
}

// Written in the temporary directory, and moved, or copied to another volume.
void FreeSpaceCheck::countRecord(const std::string& path, std::int64_t size) {
    std::string temporary;
    if (!parts_.machine.files.temporaryDirectory(temporary)) {
        return;
    }
    needs_.at(temporary).after += size;
    if (!path.empty() && !needs_.isOneVolume(temporary, directoryOf(path))) {
        needs_.at(directoryOf(path)).after += size;
    }
}

bool FreeSpaceCheck::judge() {
    if (const auto& unknown = needs_.unknown()) {
        parts_.debugLog.line("WARNING: The free space of " + unknown->directory + " isn't known");
        report_.note("It can't be found out whether there is enough free space.");
        report_.addReason(unknown->directory, unknown->status);
    }
    bool isEnough = true;
    for (const VolumeNeeds::Need& need : needs_.all()) {
        if (need.bytes() > need.volume.free) {
            const std::string text = "There is too little space for " +
                                     platform::writtenPath(need.directory) + " on the volume " +
                                     need.volume.name + ": " + std::to_string(need.bytes()) +
                                     " bytes are needed, " + std::to_string(need.volume.free) + " are free.";
            parts_.debugLog.line("ERROR: " + text);
            report_.note(text);
            isEnough = false;
        }
    }
    if (!isEnough && parts_.outcome != nullptr) {
        parts_.outcome->note(RunEnd::kNoSpace);
    }
    if (!isEnough) {
        report_.note("Nothing was installed.");
    }
    return isEnough;
}

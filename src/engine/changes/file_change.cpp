#include "engine/changes/file_change.h"

#include <cmath>
#include <optional>

#include "description/file_sets.h"
#include "engine/action_log_format.h"
#include "engine/action_log_writer.h"
#include "engine/changes/change_record.h"
#include "engine/changes/former_state.h"
#include "engine/changes/record_text.h"
#include "engine/engine_parts.h"
#include "engine/line_reader.h"
#include "engine/overall_progress.h"
#include "engine/report.h"
#include "platform/file_system.h"
#include "platform/written_path.h"

namespace {

constexpr std::size_t kFilesPerFlush = 32;

int percentOf(std::size_t index, std::size_t count) {
    return static_cast<int>(std::ceil(static_cast<float>(index) / static_cast<float>(count) * 100.0F));
}

std::string_view pathOf(const LogRecord& record, std::string_view kind) {
    return firstLogField(record.fields) == kind ? nextLogField(record.fields) : std::string_view();
}

}  // namespace

FileChange::FileChange(const ChangeContext& context, const EngineParts& parts, ReplacedFiles& replaced)
    : context_(context),
      fileSets_(parts.model.fileSets),
      replaced_(replaced),
      planner_(fileSets_, parts.model.expressions, context.debugLog),
      contents_(parts.cabinet, parts.model.expressions, context.debugLog),
      former_(context, parts, replaced),
      disk_(context.machine.files, context.system, context.report, context.debugLog),
      directories_(context) {}

std::int64_t FileChange::weightOf(const FileEntry& file) {
    return OverallProgress::kStepWeight + file.size;
}

bool FileChange::apply() {
    failed_ = false;
    context_.report.beginStage(JobStage::kCopy);
    const auto& files = fileSets_.getFiles();
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (i % FormerContents::kBatch == 0) {
            former_.archiveBatch(i);
        }
        if (planner_.isSelected(files[i])) {
            install(i);
            context_.report.advance(weightOf(files[i]));
        }
    }
    context_.log.flush();  // a failure counts when the log is published
    context_.report.flushLines();
    return !failed_;
}

void FileChange::install(std::size_t index) {
    const auto& files = fileSets_.getFiles();
    Work work{files[index], index, {}, {}, index % kFilesPerFlush == 0};
    work.path = FilePlanner::pathIn(prepareDirectory(work.file), work.file);
    context_.report.setStatus(platform::writtenPath(work.path));
    FileContent content;
    if (!readContent(work, content)) {
        return;
    }
    const bool inPlace = replace(work, content);
    if (inPlace) {
        markProgram(work);
    }
    context_.report.setProgress(percentOf(index, files.size()));
    reportInstalled(work, inPlace);
}

// What its record couldn't name would never be taken back, and what couldn't be backed up never restored: it
// isn't touched.
bool FileChange::replace(Work& work, const FileContent& content) {
    const bool isReady = RecordText::fitsFile(work.path) && backUp(work) && record(work, content);
    context_.report.pumpEventsWhileCopying();
    const bool inPlace = isReady && place(work, content);
    former_.noteWritten(work.path);
    if (inPlace) {
        noteInstalled(work, content);
    }
    failed_ = failed_ || !inPlace;
    return inPlace;
}

std::string FileChange::prepareDirectory(const FileEntry& file) {
    std::string directory;
    const bool isKnown = planner_.findDirectory(file, directory);
    const bool isCreated = directories_.create(directory);
    failed_ = failed_ || !isKnown || !isCreated;
    return directory;
}

// The comparison is with the digest of the unexpanded content, so a file with references counts as different
// in each run.
bool FileChange::readContent(Work& work, FileContent& content) {
    if (!contents_.read(work.file.alias, content)) {
        if (!work.file.okIfMissing) {
            const std::string line =
                "ERROR: File missing from the compressed cabinet! (alias: " + work.file.alias + ")";
            context_.debugLog.line(line);
            context_.report.addError(line);
            context_.report.addLine(line, work.flushNow);
            failed_ = true;
        }
        return false;
    }
    work.onDisk = lookAt(work, content);
    if (work.file.expandVars) {
        contents_.expandVariables(content, FileContents::kInstalledFileLimit, work.path);
    }
    return true;
}

FileOnDisk FileChange::lookAt(const Work& work, const FileContent& content) {
    const FormerContents::Outcome* former = former_.of(work.index);
    return former != nullptr && !former_.isWritten(work.path)
               ? former->onDisk
               : disk_.compare(work.path, static_cast<std::int64_t>(content.bytes.size()), content.digest);
}

// False when the file must stay as it is, because what should come back later couldn't be kept.
bool FileChange::backUp(Work& work) {
    const FormerContents::Outcome* former = former_.of(work.index);
    const bool isNeeded = former != nullptr && former->isNeeded;
    const FileHistory::Kind earlier = replaced_.history.kindOf(work.path);
    work.isRestorable = isNeeded || replaced_.archive.holdsEntry(work.path) ||
                        earlier == FileHistory::Kind::kReplaced ||
                        (earlier == FileHistory::Kind::kUnknown && work.file.backupExisting);
    if (!isNeeded) {
        return true;
    }
    std::string line = "Back up " + platform::writtenPath(work.path);
    if (former->failure) {
        line = "FAILED to back up " + platform::writtenPath(work.path) + ": " + *former->failure;
        context_.report.addError(line);
    }
    context_.report.addLine(line, work.flushNow);
    context_.report.addReason(work.path, former->status);
    return !former->failure;
}

bool FileChange::record(Work& work, const FileContent& content) {
    if (!context_.log.writeFile(work.isRestorable, work.path, formerState(work, content))) {
        work.reason = kUnrecordedReason;
        return false;
    }
    replaced_.history.noteRecord(work.path);
    return true;
}

// Of somebody else's file that is replaced for good.
std::string FileChange::formerState(const Work& work, const FileContent& content) {
    const bool isOthers = !work.isRestorable && work.onDisk.exists && work.onDisk.differs &&
                          replaced_.history.kindOf(work.path) == FileHistory::Kind::kUnknown;
    std::string former = isOthers ? FormerState::ofFile(context_.machine.files, work.path) : std::string();
    // The comparison knows nothing of expanded content.
    const bool isSame = work.file.expandVars && former == FormerState::ofBytes(content.bytes);
    return isSame ? std::string() : former;
}

// The user's file of an earlier installation comes back in the place of what is there now.
void FileChange::noteInstalled(const Work& work, const FileContent& content) {
    const bool isAsPacked = !work.file.expandVars;
    replaced_.history.noteContent(
        work.path, isAsPacked ? content.digest : md5Of(content.bytes.data(), content.bytes.size()));
    if (replaced_.archive.holdsEntry(work.path) &&
        !replaced_.archive.setCheckSum(work.path, BackupFile::checkSumOf(content.bytes))) {
        context_.report.addError("FAILED to back up " + work.path + ": Error writing check sum");
        failed_ = true;
    }
}

// A file that is there already but can't be marked as a program, because it is somebody else's under another
// name, is written anew as well.
bool FileChange::place(const Work& work, const FileContent& content) {
    if (work.onDisk.exists && !work.onDisk.differs &&
        (!work.file.executable || context_.machine.files.makeExecutable(work.path) == 0)) {
        return true;
    }
    return disk_.write(work.path, work.onDisk.exists, content.bytes,
                       work.file.executable ? platform::FileRights::kProgram : platform::FileRights::kPlain);
}

// A file that was there already counts as well: an earlier run may have been ended before this step.
void FileChange::markProgram(const Work& work) {
    const int status = work.file.executable ? context_.machine.files.makeExecutable(work.path) : 0;
    if (status != 0) {
        const std::string failure = work.path + " could not be marked as a program";
        context_.debugLog.line("WARNING: " + failure);
        context_.report.addReason(failure, status);
        failed_ = true;
    }
}

void FileChange::reportInstalled(const Work& work, bool inPlace) {
    std::string line = inPlace ? "" : "FAILED to ";
    line += work.onDisk.exists && work.onDisk.differs ? "Overwrite " : "Create ";
    line += platform::writtenPath(work.path);
    if (!inPlace) {
        context_.report.addError(line);
    }
    context_.report.addLine(line, work.flushNow);
    if (!work.reason.empty()) {
        context_.report.addReason(work.path, work.reason);
    } else if (!inPlace) {
        context_.report.addFileReason(work.path, disk_.takeFailure());
    }
}

std::string_view FileChange::createdFile(const LogRecord& record) {
    return pathOf(record, ActionLogFormat::kCreate);
}

std::string_view FileChange::replacedFile(const LogRecord& record) {
    return pathOf(record, ActionLogFormat::kOver);
}

bool FileChange::undo(const LogRecord& record) {
    const std::string path(nextLogField(record.fields));
    if (path.empty()) {
        return true;
    }
    if (wasNotMade(record, path)) {
        leave(path);
        return true;
    }
    const bool isOrphan = replaced_.isArchiveMissing && !replacedFile(record).empty();
    const bool isToGo = !createdFile(record).empty() || (isOrphan && isStillInstalled(path));
    if (isOrphan && !isToGo) {
        leave(path);
    }
    return !isToGo || remove(path);
}

// No installed file is a link: one in the place of a link is somebody else's, whatever it leads to.
bool FileChange::wasNotMade(const LogRecord& record, const std::string& path) {
    platform::FileSystem& files = context_.machine.files;
    if (FormerState::isOfLink(record.former)) {
        return files.kindOf(path) == platform::PathKind::kLink;
    }
    return !record.former.empty() && FormerState::ofFile(files, path) == record.former;
}

bool FileChange::isStillInstalled(const std::string& path) {
    platform::FileSystem& files = context_.machine.files;
    if (!replaced_.written.knows(path) || files.kindOf(path) != platform::PathKind::kFile) {
        return false;
    }
    const std::optional<Md5Digest> digest = digestOfFile(files, path);
    return digest && replaced_.written.holds(path, *digest);
}

bool FileChange::remove(const std::string& path) {
    platform::FileSystem& files = context_.machine.files;
    context_.report.pumpEventsWhileCopying();
    bool isGone = true;
    const std::string shown = platform::writtenPath(path);
    std::string line = "Delete " + shown;
    const int status = files.removeFile(path);
    if (status != 0) {
        if (!files.exists(path)) {
            line = "Missing " + shown;
        } else if (!FileInUse(files, context_.system, context_.report).deleteFileInUse(path)) {
            line = "FAILED to delete " + shown;
            isGone = false;
            context_.report.addError(line);
        }
    }
    if (isGone) {
        replaced_.removed.add(path);
    }
    context_.report.addLine(line, context_.report.isFlushDue());
    if (!isGone) {
        context_.report.addReason(path, status);
    }
    return isGone;
}

void FileChange::leave(const std::string& path) {
    if (context_.machine.files.exists(path)) {
        context_.report.addLine("Left " + path, context_.report.isFlushDue());
    }
}

#include "engine/changes/file_change.h"

#include <cmath>
#include <optional>

#include "description/file_sets.h"
#include "engine/action_log_format.h"
#include "engine/action_log_writer.h"
#include "engine/engine_parts.h"
#include "engine/line_reader.h"
#include "engine/report.h"
#include "platform/file_system.h"
#include "platform/written_path.h"

namespace {

constexpr std::size_t kFilesPerFlush = 32;

int percentOf(std::size_t index, std::size_t count) {
    return static_cast<int>(std::ceil(static_cast<float>(index) / static_cast<float>(count) * 100.0F));
}

std::uint32_t checkSumOf(std::string_view content) {
    return BackupFile::foldCheckSum(static_cast<std::uint32_t>(content.size()), content);
}

}  // namespace

FileChange::FileChange(const ChangeContext& context, const EngineParts& parts, ReplacedFiles& replaced)
    : context_(context),
      fileSets_(parts.model.fileSets),
      replaced_(replaced),
      planner_(fileSets_, parts.model.expressions, context.debugLog),
      contents_(parts.cabinet, parts.model.expressions, context.debugLog),
      disk_(context.machine.files, context.system, context.report, context.debugLog),
      directories_(context) {}

bool FileChange::apply() {
    failed_ = false;
    const auto& files = fileSets_.getFiles();
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (planner_.isSelected(files[i])) {
            install(i);
        }
    }
    context_.report.flushLines();
    return !failed_;
}

void FileChange::install(std::size_t index) {
    const auto& files = fileSets_.getFiles();
    Work work{files[index], {}, {}, index % kFilesPerFlush == 0};
    work.path = FilePlanner::pathIn(prepareDirectory(work.file), work.file);
    context_.report.setStatus(platform::writtenPath(work.path));
    FileContent content;
    if (!readContent(work, content)) {
        return;
    }
    if (work.onDisk.exists && work.onDisk.differs && work.file.backupExisting) {
        backUp(work, content);
    }
    context_.log.writeFile(work.file.backupExisting, work.path);
    context_.report.pumpEventsWhileCopying();
    if (work.file.expandVars) {
        contents_.expandVariables(content, FileContents::kInstalledFileLimit, work.path);
    }
    const bool inPlace = place(work, content);
    if (inPlace) {
        markProgram(work);
    }
    context_.report.setProgress(percentOf(index, files.size()));
    reportInstalled(work, inPlace);
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
            context_.debugLog.line(
                "ERROR: File missing from the compressed cabinet! (alias: " + work.file.alias + ")");
            failed_ = true;
        }
        return false;
    }
    const auto size = static_cast<std::int64_t>(content.bytes.size());
    work.onDisk = disk_.compare(work.path, size, content.digest);
    return true;
}

// The check sum is that of the new content as it is in the cabinet: a restore compares it with the file on
// the disk, and leaves alone what isn't the installation's own. A file whose variables were expanded counts
// as changed there and stays.
void FileChange::backUp(const Work& work, const FileContent& content) {
    const std::uint32_t checkSum = checkSumOf(content.bytes);
    context_.report.pumpEventsWhileCopying();
    const std::optional<std::string> failure = replaced_.archive.addFile(work.path, checkSum);
    std::string line = "Back up " + platform::writtenPath(work.path);
    if (failure) {
        line = "FAILED to back up " + platform::writtenPath(work.path) + ": " + *failure;
        context_.report.addError(line);
        failed_ = true;
    }
    context_.report.addLine(line, work.flushNow);
}

bool FileChange::place(const Work& work, const FileContent& content) {
    if (work.onDisk.exists && !work.onDisk.differs) {
        return true;
    }
    const bool written = disk_.write(work.path, work.onDisk.exists, content.bytes);
    failed_ = failed_ || !written;
    return written;
}

// A file that was there already counts as well: an earlier run may have been ended before this step.
void FileChange::markProgram(const Work& work) {
    if (work.file.executable && context_.machine.files.makeExecutable(work.path) != 0) {
        context_.debugLog.line("WARNING: " + work.path + " could not be marked as a program");
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
}

bool FileChange::undo(const LogRecord& record) {
    const std::string_view kind = firstLogField(record.fields);
    const std::string path(nextLogField(record.fields));
    const bool isToGo =
        kind == ActionLogFormat::kCreate || (kind == ActionLogFormat::kOver && !replaced_.restored);
    if (!isToGo || path.empty()) {
        return true;
    }
    platform::FileSystem& files = context_.machine.files;
    context_.report.pumpEventsWhileCopying();
    bool isGone = true;
    const std::string shown = platform::writtenPath(path);
    std::string line = "Delete " + shown;
    if (files.removeFile(path) != 0) {
        if (!files.exists(path)) {
            line = "Missing " + shown;
        } else if (!FileInUse(files, context_.system, context_.report).deleteFileInUse(path)) {
            line = "FAILED to delete " + shown;
            isGone = false;
            context_.report.addError(line);
        }
    }
    context_.report.addLine(line, context_.report.isFlushDue());
    return isGone;
}

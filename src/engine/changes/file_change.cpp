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
#include "support/p_file_stream.h"

namespace {

constexpr std::size_t kFilesPerFlush = 32;
constexpr std::uint32_t kBlockSize = 262144;

int percentOf(std::size_t index, std::size_t count) {
    return static_cast<int>(std::ceil(static_cast<float>(index) / static_cast<float>(count) * 100.0F));
}

// Of a whole file; nothing when it can't be read.
std::optional<Md5Digest> digestOf(platform::FileSystem& files, const std::string& path) {
    PFileStream file(files);
    if (file.openFile(path, PFileStream::kGenericRead, PFileStream::kShareRead,
                      PFileStream::kOpenExisting | PFileStream::kSequential) != 0) {
        return std::nullopt;
    }
    Md5 digest;
    std::vector<char> block(kBlockSize);
    for (std::uint32_t done = 1; done > 0;) {
        if (file.read(block.data(), kBlockSize, done) != 0) {
            return std::nullopt;
        }
        digest.update(block.data(), done);
    }
    return digest.finish();
}

std::string_view pathOf(const LogRecord& record, std::string_view kind) {
    return firstLogField(record.fields) == kind ? nextLogField(record.fields) : std::string_view();
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
    context_.report.setStatus(work.path);
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
    std::string line = "Back up " + work.path;
    if (failure) {
        line = "FAILED to back up " + work.path + ": " + *failure;
        context_.report.addError(line);
        failed_ = true;
    }
    context_.report.addLine(line, work.flushNow);
}

// A file that is there already but can't be marked as a program, because it is somebody else's under another
// name, is written anew as well.
bool FileChange::place(const Work& work, const FileContent& content) {
    if (work.onDisk.exists && !work.onDisk.differs &&
        (!work.file.executable || context_.machine.files.makeExecutable(work.path) == 0)) {
        return true;
    }
    const bool written =
        disk_.write(work.path, work.onDisk.exists, content.bytes,
                    work.file.executable ? platform::FileRights::kProgram : platform::FileRights::kPlain);
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
    line += work.path;
    if (!inPlace) {
        context_.report.addError(line);
    }
    context_.report.addLine(line, work.flushNow);
    if (!inPlace) {
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
    const bool isOrphan = replaced_.isArchiveMissing && !replacedFile(record).empty();
    const bool isToGo = !createdFile(record).empty() || (isOrphan && isStillInstalled(path));
    if (isOrphan && !isToGo) {
        leave(path);
    }
    return !isToGo || remove(path);
}

bool FileChange::isStillInstalled(const std::string& path) {
    platform::FileSystem& files = context_.machine.files;
    if (!replaced_.written.knows(path) || files.kindOf(path) != platform::PathKind::kFile) {
        return false;
    }
    const std::optional<Md5Digest> digest = digestOf(files, path);
    return digest && replaced_.written.holds(path, *digest);
}

bool FileChange::remove(const std::string& path) {
    platform::FileSystem& files = context_.machine.files;
    context_.report.pumpEventsWhileCopying();
    bool isGone = true;
    std::string line = "Delete " + path;
    const int status = files.removeFile(path);
    if (status != 0) {
        if (!files.exists(path)) {
            line = "Missing " + path;
        } else if (!FileInUse(files, context_.system, context_.report).deleteFileInUse(path)) {
            line = "FAILED to delete " + path;
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

#include "engine/changes/former_contents.h"

#include <algorithm>

#include "description/file_sets.h"
#include "engine/changes/record_text.h"
#include "engine/changes/replaced_files.h"
#include "engine/engine_parts.h"
#include "engine/report.h"
#include "platform/file_system.h"
#include "platform/path_identity.h"

FormerContents::FormerContents(const ChangeContext& context, const EngineParts& parts,
                               ReplacedFiles& replaced)
    : context_(context),
      fileSets_(parts.model.fileSets),
      replaced_(replaced),
      planner_(fileSets_, parts.model.expressions, DebugLog()),
      contents_(parts.cabinet, parts.model.expressions, DebugLog()),
      disk_(context.machine.files, context.system, context.report, DebugLog()) {}

void FormerContents::archiveBatch(std::size_t first) {
    batch_.clear();
    written_.clear();
    const auto& files = fileSets_.getFiles();
    const std::size_t end = std::min(first + kBatch, files.size());
    bool isAnyKept = false;
    for (std::size_t i = first; i < end; ++i) {
        std::string directory;
        if (!planner_.isSelected(files[i]) || !planner_.findDirectory(files[i], directory)) {
            continue;
        }
        const std::string path = FilePlanner::pathIn(directory, files[i]);
        if (mayBeKept(files[i], path)) {
            Outcome& outcome = batch_[i];
            archive(files[i], path, outcome);
            isAnyKept = isAnyKept || (outcome.isNeeded && !outcome.failure);
        }
    }
    if (const int status = isAnyKept ? replaced_.archive.flush() : 0; status != 0) {
        failAll("Error writing to the disk", status);
    }
}

const FormerContents::Outcome* FormerContents::of(std::size_t index) const {
    const auto found = batch_.find(index);
    return found == batch_.end() ? nullptr : &found->second;
}

void FormerContents::noteWritten(std::string_view path) {
    if (!batch_.empty()) {
        written_.insert(platform::pathIdentity(path));
    }
}

bool FormerContents::isWritten(std::string_view path) const {
    return !written_.empty() && written_.contains(platform::pathIdentity(path));
}

bool FormerContents::mayBeKept(const FileEntry& file, const std::string& path) {
    return RecordText::fitsFile(path) &&
           (file.backupExisting || replaced_.history.kindOf(path) == FileHistory::Kind::kReplaced);
}

// An earlier installation decides with: what it created is the product's own, unless the user has changed it
// since; what it has in its archive is the user's file, and what came later isn't; where it found the file
// as it was to be, that may have been the user's.
bool FormerContents::isToBeKept(const FileEntry& file, const std::string& path, const FileOnDisk& onDisk) {
    platform::FileSystem& files = context_.machine.files;
    // What can't be read can't be compared either.
    const bool exists = onDisk.exists || files.exists(path);
    if (!exists || !onDisk.differs || replaced_.archive.holdsEntry(path)) {
        return false;
    }
    switch (replaced_.history.kindOf(path)) {
        case FileHistory::Kind::kUnknown:
            return file.backupExisting;
        case FileHistory::Kind::kReplaced:
            return true;
        case FileHistory::Kind::kCreated:
            break;
    }
    const auto digest = file.backupExisting ? digestOfFile(files, path) : std::nullopt;
    return digest && replaced_.history.isForeign(path, *digest);
}

// The check sum is that of what is going to be written: a restore compares it with the file on the disk, and
// leaves alone what isn't the installation's own.
void FormerContents::archive(const FileEntry& file, const std::string& path, Outcome& outOutcome) {
    FileContent content;
    if (!contents_.read(file.alias, content)) {
        return;
    }
    outOutcome.onDisk = disk_.compare(path, static_cast<std::int64_t>(content.bytes.size()), content.digest);
    outOutcome.isNeeded = isToBeKept(file, path, outOutcome.onDisk);
    if (!outOutcome.isNeeded) {
        return;
    }
    if (file.expandVars) {
        contents_.expandVariables(content, FileContents::kInstalledFileLimit, path);
    }
    context_.report.pumpEventsWhileCopying();
    // A file that can't be read must not spoil the archive for those after it.
    if (!outOutcome.onDisk.exists) {
        outOutcome.failure = "Error opening file";
        outOutcome.status = outOutcome.onDisk.status;
        return;
    }
    outOutcome.failure = replaced_.archive.addFile(path, BackupFile::checkSumOf(content.bytes));
    outOutcome.status = outOutcome.failure ? replaced_.archive.addFileFault() : 0;
}

void FormerContents::failAll(const std::string& failure, int status) {
    for (auto& [index, outcome] : batch_) {
        if (outcome.isNeeded && !outcome.failure) {
            outcome.failure = failure;
            outcome.status = status;
        }
    }
}

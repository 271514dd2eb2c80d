#include "engine/file_installer.h"

#include <cmath>

#include "description/file_sets.h"
#include "engine/action_log_writer.h"
#include "engine/file_contents.h"
#include "engine/file_planner.h"
#include "engine/file_replacer.h"
#include "engine/report.h"
#include "package/backup_file.h"
#include "support/debug_log.h"

namespace {

constexpr std::size_t kFilesPerFlush = 32;
constexpr std::int64_t kPathBufferSize = 1560;

int percentOf(std::size_t index, std::size_t count) {
    return static_cast<int>(std::ceil(static_cast<float>(index) / static_cast<float>(count) * 100.0F));
}

std::uint32_t checkSumOf(std::string_view content) {
    return BackupFile::foldCheckSum(static_cast<std::uint32_t>(content.size()), content.data(),
                                    content.size());
}

}  // namespace

FileInstaller::FileInstaller(Parts parts, DebugLog debugLog)
    : parts_(parts), debugLog_(debugLog), comparer_(parts.files), directories_(parts.files) {}

bool FileInstaller::installFiles(BackupFile& backup, Report& report, const Hook& afterFileInstalled) {
    failed_ = false;
    parts_.planner.forget();
    directories_.forget();
    const auto& files = parts_.fileSets.getFiles();
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (parts_.planner.isSelected(files[i])) {
            installFile(i, backup, report, afterFileInstalled);
        }
    }
    report.flushLines();
    return !failed_;
}

void FileInstaller::installFile(std::size_t index, BackupFile& backup, Report& report,
                                const Hook& afterFileInstalled) {
    const auto& files = parts_.fileSets.getFiles();
    Work work{files[index], {}, {}, index % kFilesPerFlush == 0};
    work.path = FilePlanner::pathIn(prepareDirectory(work.file), work.file);
    report.setStatus(work.path.c_str());
    FileContent content;
    if (!readContent(work, content)) {
        return;
    }
    if (work.onDisk.exists && work.onDisk.differs && work.file.backupExisting) {
        backUp(work, content, backup, report);
    }
    parts_.log.writeFile(work.file.backupExisting, work.path);
    report.pumpEventsWhileCopying();
    if (work.file.expandVars) {
        parts_.contents.expandVariables(content, FileContents::kInstalledFileLimit, work.path.c_str());
    }
    const bool stands = place(work, content, report);
    if (stands && afterFileInstalled) {
        afterFileInstalled(work.path, work.file);
    }
    report.setProgress(percentOf(index, files.size()));
    reportFile(work, stands, report);
}

std::string FileInstaller::prepareDirectory(const FileEntry& file) {
    std::string directory;
    if (!parts_.planner.findDirectory(file, directory)) {
        failed_ = true;
    }
    int created = 0;
    if (directories_.createDirectories(directory, created) != 0) {
        failed_ = true;
    }
    if (created > 0) {
        parts_.log.writeDirectory(created, directory);
    }
    return directory;
}

// The comparison is with the digest of the unexpanded content, so a file with references counts as different
// at each run.
bool FileInstaller::readContent(Work& work, FileContent& content) {
    if (!parts_.contents.read(work.file.alias, content)) {
        if (!work.file.okIfMissing) {
            debugLog_.print("ERROR: File missing from the compressed cabinet! (alias: %s)",
                            work.file.alias.c_str());
            failed_ = true;
        }
        return false;
    }
    const auto size = static_cast<std::int64_t>(content.bytes.size());
    work.onDisk = comparer_.compare(work.path.c_str(), size, content.digest);
    return true;
}

// The check sum is that of the new content as it lies in the cabinet: a restore compares it with the file on
// the disk, and leaves alone what isn't the installation's own. A file whose variables were expanded counts
// as changed there and stays.
void FileInstaller::backUp(const Work& work, const FileContent& content, BackupFile& backup,
                           Report& report) {
    const std::uint32_t checkSum = checkSumOf(content.bytes);
    report.pumpEventsWhileCopying();
    const BackupResult result = backup.addFile(work.path.c_str(), kPathBufferSize, checkSum, true);
    std::string line = "Back up " + work.path;
    if (!result.isEmpty()) {
        line = "FAILED to back up " + work.path + ": " + result.what();
        report.addError(line);
        failed_ = true;
    }
    report.addLine(line, work.flushNow);
}

bool FileInstaller::place(const Work& work, const FileContent& content, Report& report) {
    if (work.onDisk.exists && !work.onDisk.differs) {
        return true;
    }
    const bool written =
        parts_.replacer.write(report.ui(), work.path.c_str(), work.onDisk.exists, content.bytes);
    failed_ = failed_ || !written;
    return written;
}

void FileInstaller::reportFile(const Work& work, bool stands, Report& report) {
    std::string line = stands ? "" : "FAILED to ";
    line += work.onDisk.exists && work.onDisk.differs ? "Overwrite " : "Create ";
    line += work.path;
    if (!stands) {
        report.addError(line);
    }
    report.addLine(line, work.flushNow);
}

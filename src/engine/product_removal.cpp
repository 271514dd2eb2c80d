#include "engine/product_removal.h"

#include <algorithm>
#include <iterator>
#include <memory>

#include "base/errors.h"
#include "contracts/nested_session.h"
#include "contracts/system_operations.h"
#include "description/uninstall_overrides.h"
#include "engine/action_log_format.h"
#include "engine/earlier_log.h"
#include "engine/installed_files_backup.h"
#include "engine/line_reader.h"
#include "engine/overall_progress.h"
#include "package/backup_file.h"
#include "platform/error_text.h"
#include "platform/file_system.h"
#include "platform/written_path.h"
#include "support/file_copy.h"
#include "support/utilities.h"

namespace {

// A file that goes with this object.
class TemporaryFile {
public:
    TemporaryFile(platform::FileSystem& files, std::string path) : files_(files), path_(std::move(path)) {}
    ~TemporaryFile() { files_.removeFile(path_); }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    const std::string& path() const { return path_; }

private:
    platform::FileSystem& files_;
    std::string path_;
};

// Empty where nobody looks at it: counting the steps costs time.
std::function<void(int)> progressOf(Report& report) {
    if (report.overall() == nullptr) {
        return {};
    }
    return [&report](int percent) { report.overall()->share(percent); };
}

[[noreturn]] void fail(const std::string& text, const std::string& reason = "") {
    throw InstallerError("%s", text.c_str()).because(reason.c_str());
}

}  // namespace

ProductRemoval::ProductRemoval(const EngineParts& parts, NestedSessionFactory& sessions,
                               RemovalBackups& backups, ErrorList& errors)
    : parts_(parts), sessions_(sessions), backups_(backups), errors_(errors) {}

bool ProductRemoval::remove(const Request& request, Report& report) {
    const std::string& name = request.applicationName;
    parts_.debugLog.line("Uninstalling \"" + name + "\"");
    const std::string logPath = findLog(request);
    // The log itself may go with the product.
    const TemporaryFile log(parts_.machine.files, copyLog(request, logPath));
    const platform::Platform machine = request.isReversible ? backups_.openMachine() : parts_.machine;
    const std::unique_ptr<NestedSession> session = sessions_.make(machine, report.ui(), errors_);
    session->load(log.path());
    applyOverrides(*session, name);
    ProductRecords records = session->records();
    records.log = logPath;
    if (request.isBackedUp) {
        backUp(*session, log.path(), report);
    } else {
        parts_.debugLog.line("Skipping creation of uninstall backup file for \"" + name + "\"");
    }
    if (request.isReversible) {
        noteForLaterRuns(request, logPath);
    } else if (backups_.journal().isOpen()) {
        backups_.noteForGood(name, logPath);
        backups_.takeLevelsOf(logPath);
    }
    backups_.isOnlyCopy = !backups_.isEmpty();
    report.beginStage(JobStage::kUndo);
    const bool isRemoved = session->uninstall(progressOf(report));
    if (isRemoved) {
        removeRecords(records, machine);
    } else if (request.isReversible) {
        keepRecords(records, report);
        continueDirectories(log.path(), logPath);
    }
    return isRemoved;
}

std::string ProductRemoval::findLog(const Request& request) {
    if (!request.logPath.empty()) {
        parts_.debugLog.line("WARNING: Running integrated uninstallation with custom install log file: \"" +
                             request.logPath + "\"");
        return request.logPath;
    }
    const auto path = parts_.system.applicationLogFile(request.applicationName);
    if (!path) {
        fail("ERROR: Obtaining actionlog filename for \"" + request.applicationName + "\"");
    }
    return *path;
}

std::string ProductRemoval::copyLog(const Request& request, const std::string& log) {
    const auto name = parts_.system.temporaryFileName();
    if (!name) {
        fail("ERROR: Unable to obtain temporary file for uninstall log of " + request.applicationName);
    }
    std::string copy = backups_.placeOf(*name);
    std::string content;
    int status = OUtils::readWholeFile(log, content, parts_.machine.files);
    status = status != 0 ? status
                         : OUtils::writeWholeFile(copy, content, parts_.machine.files,
                                                  platform::FileRights::kPrivate);
    if (status != 0) {
        fail("ERROR: Unable to copy temporary log file for uninstallation of " + request.applicationName,
             OUtils::readingErrorText(status));
    }
    return copy;
}

void ProductRemoval::applyOverrides(NestedSession& session, const std::string& applicationName) {
    UninstallOverrides(parts_.model.description, parts_.model.variables, parts_.model.expressions,
                       parts_.debugLog)
        .apply([&](std::string_view name, std::string_view value) { session.setVariable(name, value); },
               applicationName);
}

// A backup that fails doesn't keep the product: what it would have saved is kept by the journal.
void ProductRemoval::backUp(NestedSession& session, const std::string& log, Report& report) {
    const UninstallBackup paths = {session.productName(), newName("files"), newName("dirs")};
    const auto nameOfCopy = [this]() -> std::optional<std::string> {
        const auto name = parts_.system.temporaryFileName();
        return name ? std::optional(backups_.placeOf(*name)) : std::nullopt;
    };
    report.beginStage(JobStage::kBackUp);
    InstalledFilesBackup backup(parts_.machine.files, nameOfCopy, report, parts_.debugLog);
    if (!backup.make(log, paths)) {
        parts_.debugLog.line("ERROR: Failed to create uninstall backup of files");
        return;
    }
    backups_.uninstallBackups.push_back(paths);
    for (const NestedBackup& archive : backup.archives()) {
        backups_.nestedBackups.push_back(archive);
    }
    if (backups_.isOpen()) {
        backups_.journal().noteArchived(backup.archivedFiles());
    }
}

std::string ProductRemoval::newName(const char* purpose) {
    const auto name = parts_.system.temporaryFileName();
    if (!name) {
        fail("ERROR: Unable to obtain temporary file for " + std::string(purpose) + " backup");
    }
    return backups_.placeOf(*name);
}

void ProductRemoval::noteForLaterRuns(const Request& request, const std::string& log) {
    if (!backups_.note(request.applicationName, log)) {
        const int status = backups_.journal().failure();
        fail("ERROR: The removal of " + request.applicationName +
                 " couldn't be taken back: its journal can't be written",
             status > 0 ? platform::errorText(status) : "");
    }
}

// What stays for a repetition is in the way of the new installation, which puts its own in the same places.
void ProductRemoval::keepRecords(const ProductRecords& records, Report& report) {
    platform::FileSystem& files = parts_.machine.files;
    for (const std::string* path :
         {&records.log, &records.archive, &records.description, &records.uninstaller}) {
        if (files.kindOf(*path) != platform::PathKind::kFile) {
            continue;
        }
        const auto name = parts_.system.temporaryFileName();
        const std::string copy = name ? backups_.placeOf(*name) : "";
        if (name && copyWithRights(files, *path, *path, copy) == 0) {
            backups_.nestedBackups.push_back({*path, copy});
        } else {
            report.note("There is no copy of " + platform::writtenPath(*path) +
                        ", which the new version may replace");
        }
    }
    backups_.noteBackups();
}

// The log goes before the last files do. One of those that resists keeps its directory, and nobody would
// know any more who made that.
void ProductRemoval::continueDirectories(const std::string& copy, const std::string& log) {
    platform::FileSystem& files = parts_.machine.files;
    if (files.kindOf(log) == platform::PathKind::kNothing) {
        std::ranges::copy_if(EarlierLog::read(files, copy).records,
                             std::back_inserter(backups_.leftDirectories),
                             [](const auto& line) { return isLogRecord(line, ActionLogFormat::kDirectory); });
    }
}

// Of a product that has gone nothing is on record: who found the log would remove it once more.
void ProductRemoval::removeRecords(const ProductRecords& records, const platform::Platform& machine) {
    if (BackupFile(machine.files).isBackupFile(records.archive)) {
        machine.files.removeFile(records.archive);
    }
    if (machine.files.kindOf(records.log) == platform::PathKind::kFile) {
        machine.files.removeFile(records.log);
    }
}

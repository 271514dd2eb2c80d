#include "engine/installation_records.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <set>

#include "contracts/system_operations.h"
#include "description/product_description.h"
#include "description/variable_exclusions.h"
#include "description/variable_store.h"
#include "engine/action_log_format.h"
#include "engine/action_log_writer.h"
#include "engine/changes/change_table.h"
#include "engine/changes/record_text.h"
#include "engine/installation_mark.h"
#include "engine/line_reader.h"
#include "engine/product_state.h"
#include "engine/report.h"
#include "platform/file_system.h"
#include "platform/path_identity.h"
#include "support/file_copy.h"
#include "support/p_file_stream.h"
#include "support/replacing_file.h"

namespace {

constexpr int kMostNames = 1000;

// The files that records of INI and MODIFYFILE name, each once: the second of their fields.
std::set<std::string> editedFilesIn(platform::FileSystem& files, const std::string& logPath) {
    std::set<std::string> found;
    PFileStream file(files);
    if (file.openFile(logPath, PFileStream::kGenericRead, PFileStream::kShareRead,
                      PFileStream::kOpenExisting | PFileStream::kSequential) != 0) {
        return found;
    }
    LineReader lines(file);
    for (std::string line; lines.readLine(line, ActionLogFormat::kRecordLineBuffer);) {
        const std::vector<std::string_view> fields = RecordText::split(withoutTrailingSpace(line), 4);
        const bool isEdit = fields.size() > 2 &&
                            (fields[0] == ActionLogFormat::kIni || fields[0] == ActionLogFormat::kModifyFile);
        if (isEdit) {
            found.emplace(fields[2]);
        }
    }
    return found;
}

}  // namespace

std::vector<LoggedVariable> loggedVariables(const ProductModel& model) {
    std::vector<LoggedVariable> kept;
    for (std::int32_t i = 0; i < model.variables.getCount(); ++i) {
        const InstallVariable& variable = model.variables.at(i);
        if (model.exclusions.isVariableExported(variable.name, kExcludeFromLog)) {
            kept.push_back({variable.name, variable.value});
        }
    }
    return kept;
}

InstallationRecords::InstallationRecords(const EngineParts& parts, ChangeJob& job, InstallationMark* mark)
    : parts_(parts), job_(job), mark_(mark), takeover_(job.context, job.replaced.history) {}

bool InstallationRecords::open() {
    if (mark_ != nullptr && !mark_->open(job_.context.report)) {
        return false;
    }
    if (!openLog()) {
        parts_.debugLog.line("ERROR: Obtaining temp filename for install temp log!");
        return false;
    }
    if (!openArchive()) {
        parts_.debugLog.line("ERROR: Obtaining temp filename for install temp backup!");
        job_.context.log.close();
        parts_.machine.files.removeFile(temporaryLog_);
        return false;
    }
    return true;
}

std::string InstallationRecords::newName() {
    const std::string name = parts_.system.temporaryFileName().value_or("");
    return mark_ == nullptr || name.empty() ? name : mark_->placeOf(name);
}

bool InstallationRecords::openLog() {
    temporaryLog_ = newName();
    if (!temporaryLog_.empty() && job_.context.log.openNew(temporaryLog_)) {
        return true;
    }
    reportUnopened("install log", temporaryLog_, job_.context.log.failure());
    return false;
}

bool InstallationRecords::openArchive() {
    temporaryArchive_ = newName();
    if (!temporaryArchive_.empty() && job_.replaced.archive.openForWriting(temporaryArchive_)) {
        return true;
    }
    reportUnopened("backup file", temporaryArchive_, job_.replaced.archive.fault());
    return false;
}

void InstallationRecords::reportUnopened(const char* what, const std::string& path, int status) {
    Report& report = job_.context.report;
    const std::string text = std::string("Nothing was installed: the ") + what + " can't be opened";
    if (path.empty()) {
        report.note(text + ", there is no name for it in the temporary directory");
        return;
    }
    report.note(text);
    report.addFileReason(path, status);
}

bool InstallationRecords::begin() {
    const ProductDescription& product = parts_.model.product;
    const std::string logPath = product.installLogFile().value_or("");
    if (!takeover_.read(logPath, product.installBackupFile().value_or(""))) {
        discard();
        return false;
    }
    job_.replaced.history.setEarlierSums(
        ProductState(parts_.machine.files, parts_.machine.environment).load(logPath));
    if (!takeover_.copyArchive(job_.replaced.archive)) {
        report("The backup archive of the earlier installation can't be copied to " + temporaryArchive_);
        reportFault(temporaryArchive_, job_.replaced.archive.fault());
        discard();
        return false;
    }
    if (!writeHead()) {
        report("Nothing was installed: the install log can't be written to " + temporaryLog_);
        reportFault(temporaryLog_, job_.context.log.failure());
        reportFault(temporaryArchive_, job_.replaced.archive.fault());
        discard();
        return false;
    }
    if (!noteInstalling()) {
        return false;
    }
    takeover_.revertEdits(job_.context.log);
    return true;
}

// What is going to be changed can be taken back only by what is on the disk by then.
bool InstallationRecords::writeHead() {
    ActionLogWriter& log = job_.context.log;
    log.writeHeader(parts_.model.product.uninstallXmlFile().value_or(""), archivePath());
    log.writeVariables(loggedVariables(parts_.model));
    takeover_.writeRecords(log);
    if (mark_ != nullptr) {
        std::ranges::for_each(mark_->leftDirectories(), [&log](const auto& line) { log.copyRecord(line); });
    }
    const bool isArchiveOnDisk = takeover_.archivePath().empty() || job_.replaced.archive.flush() == 0;
    return !log.hasFailed() && log.flush() && isArchiveOnDisk;
}

// From now on the new records say what is on the disk.
bool InstallationRecords::noteInstalling() {
    const std::string log = parts_.model.product.installLogFile().value_or("");
    places_ = {temporaryLog_, temporaryArchive_, log, archivePath(), parts_.machine.files.exists(log)};
    const bool isNoted = mark_ == nullptr || mark_->noteInstalling(places_, job_.context.report);
    if (!isNoted) {
        discard();
    }
    return isNoted;
}

// The paths may have changed with the variables.
void InstallationRecords::noteFinalPlaces() {
    const std::string log = parts_.model.product.installLogFile().value_or("");
    const std::string archive = archivePath();
    if (mark_ != nullptr && (log != places_.log || archive != places_.archive)) {
        places_.log = log;
        places_.archive = archive;
        mark_->noteInstalling(places_, job_.context.report);
    }
}

// Without a place of its own the archive stays in that of the earlier installation, whose files it holds.
std::string InstallationRecords::archivePath() {
    const std::string path = parts_.model.product.installBackupFile().value_or("");
    return path.empty() ? takeover_.archivePath() : path;
}

void InstallationRecords::discard() {
    job_.context.log.close();
    job_.replaced.archive.close();
    parts_.machine.files.removeFile(temporaryLog_);
    parts_.machine.files.removeFile(temporaryArchive_);
}

bool InstallationRecords::closeLog() {
    ActionLogWriter& log = job_.context.log;
    takeover_.writeRemainingFiles(log);
    const bool isOnDisk = job_.context.report.pumpEventsDuring([&log] { return log.flush() ? 0 : -1; }) == 0;
    const bool isWritten = log.close() && isOnDisk;
    reportFault(temporaryLog_, log.failure());
    if (!isWritten) {
        parts_.debugLog.line("ERROR: The install log could not be written completely");
    }
    return isWritten;
}

bool InstallationRecords::closeArchive() {
    auto& archive = job_.replaced.archive;
    const bool isOnDisk = job_.context.report.pumpEventsDuring([&archive] { return archive.flush(); }) == 0;
    const bool isWritten = job_.replaced.archive.close() == 0 && isOnDisk;
    reportFault(temporaryArchive_, job_.replaced.archive.fault());
    if (!isWritten) {
        parts_.debugLog.line("ERROR: The backup file could not be written completely");
    }
    return isWritten;
}

// The archive goes first: a log without the archive that it needs would be worth less than the earlier ones.
bool InstallationRecords::publish() {
    Report& report = job_.context.report;
    report.pumpEvents();  // each step takes its time when there are many records
    const bool isLogWritten = closeLog();
    report.pumpEvents();
    const bool written = closeArchive() && isLogWritten;
    noteFinalPlaces();
    addSumsOfEditedFiles();
    report.pumpEvents();
    keepSums();
    const std::string logPath = parts_.model.product.installLogFile().value_or("");
    const bool archivePublished = publishFile("backup file", temporaryArchive_, archivePath());
    const bool logPublished = publishFile("install log", temporaryLog_, logPath);
    publishedLog_ = logPublished ? logPath : temporaryLog_;
    if (written && logPublished && archivePublished) {
        removeEarlierArchive();
    } else if (mark_ != nullptr) {
        mark_->keepRecords();
    }
    return written && logPublished && archivePublished;
}

bool InstallationRecords::publishFile(const char* what, const std::string& from, const std::string& to) {
    platform::FileSystem& files = parts_.machine.files;
    if (!to.empty()) {
        if (files.replaceFile(from, to) == 0) {
            handOver(what, to);
            return true;
        }
        if (const int status = copyPrivately(from, to); status != 0) {
            report(std::string("The ") + what + " could not be written to " + to + "; it stays at " + from);
            job_.context.report.addReason(to, status);
            return false;
        }
        handOver(what, to);
    }
    files.removeFile(from);
    return true;
}

// Whoever may uninstall the product has to read its records, not only who installed it. A record that keeps
// the rights of a private file is whole all the same.
void InstallationRecords::handOver(const char* what, const std::string& path) {
    const int status = parts_.machine.files.takeDirectoryRights(path);
    if (status != 0) {
        parts_.debugLog.line("WARNING: The " + std::string(what) + " " + path +
                             " keeps the rights of a private file (" + std::to_string(status) + ")");
    }
}

// Where a file can't be moved. What is there stays until the copy is complete; its rights, which may be
// anybody's, are not taken over.
int InstallationRecords::copyPrivately(const std::string& from, const std::string& to) {
    platform::FileSystem& files = parts_.machine.files;
    PFileStream source(files);
    PFileStream copy(files);
    int status = source.openFile(from, PFileStream::kGenericRead, PFileStream::kShareRead,
                                 PFileStream::kOpenExisting | PFileStream::kSequential);
    const auto nameBeside = [&](int number) { return to + "." + std::to_string(number + 1) + ".tmp"; };
    status = status != 0 ? status : createUnderFreeName(copy, files, nameBeside, kMostNames, true);
    if (status != 0) {
        return status;
    }
    const std::string beside = copy.getName();
    status = copyContent(source, copy);
    const int closed = copy.close();
    status = status != 0 ? status : closed;
    status = status != 0 ? status : files.replaceFile(beside, to);
    if (status != 0) {
        files.removeFile(beside);
    }
    return status;
}

// All that it held is in the new one.
void InstallationRecords::removeEarlierArchive() {
    const std::string& earlier = takeover_.archivePath();
    if (!earlier.empty() && platform::pathIdentity(earlier) != platform::pathIdentity(archivePath()) &&
        job_.replaced.archive.isBackupFile(earlier)) {
        parts_.machine.files.removeFile(earlier);
    }
}

// Keys and lines that were changed in the product's own files made other contents of them, which are the
// installation's as well.
void InstallationRecords::addSumsOfEditedFiles() {
    FileHistory& history = job_.replaced.history;
    for (const std::string& path : editedFilesIn(parts_.machine.files, temporaryLog_)) {
        const auto digest =
            history.hasContent(path) ? digestOfFile(parts_.machine.files, path) : std::nullopt;
        if (digest) {
            history.noteContent(path, *digest);
        }
    }
}

// The one in its place stays there if the new one can't take it.
void InstallationRecords::addSumsOfArchives() {
    const std::string place = archivePath();
    for (const std::string& path : {place, temporaryArchive_}) {
        if (const auto digest = digestOfFile(parts_.machine.files, path)) {
            job_.replaced.history.noteContent(place, *digest);
        }
    }
}

// Without them an uninstallation is more careful, and can do all the same. Those of the earlier installation
// would make it take the new archive for a damaged one.
void InstallationRecords::keepSums() {
    const std::string logPath = parts_.model.product.installLogFile().value_or("");
    if (logPath.empty() || !job_.replaced.history.knowsContents()) {
        return;
    }
    const int status = job_.context.report.pumpEventsDuring([&] {
        addSumsOfArchives();
        ProductState state(parts_.machine.files, parts_.machine.environment);
        const bool isSaved = state.save(logPath, job_.replaced.history.sums());
        if (!isSaved) {
            state.remove(logPath);
        }
        return isSaved ? 0 : -1;
    });
    if (status != 0) {
        parts_.debugLog.line("WARNING: The sums of the installed files could not be kept");
    }
}

// Once for each of the two, whatever it kept from being done.
void InstallationRecords::reportFault(const std::string& path, int status) {
    if (status > 0) {
        job_.context.report.addReason(path, status);
    }
}

void InstallationRecords::report(const std::string& text) {
    parts_.debugLog.line("ERROR: " + text);
    job_.context.report.note(text);
}

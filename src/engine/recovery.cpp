#include "engine/recovery.h"

#include <algorithm>
#include <memory>

#include "base/errors.h"
#include "contracts/installer_ui.h"
#include "contracts/nested_session.h"
#include "contracts/system_operations.h"
#include "engine/action_log_rewriter.h"
#include "engine/product_state.h"
#include "engine/removal_journal_format.h"
#include "engine/revert.h"
#include "engine/run_locks.h"
#include "engine/undo_log.h"
#include "engine/unfinished_files.h"
#include "package/backup_file.h"
#include "platform/environment.h"
#include "platform/file_system.h"
#include "platform/path_identity.h"
#include "platform/written_path.h"
#include "support/replacing_file.h"
#include "support/utilities.h"

namespace {

namespace Format = RemovalJournalFormat;
using platform::PathKind;
using platform::writtenPath;

// The first one that fails may find a full disk, or a file in use. Whatever is in the way of the second one
// stays there, and must not keep the product from being installed for ever.
constexpr int kMostAttempts = 2;

bool holdsChanges(RemovalJournal& journal) {
    const ReadRecords read = journal.read();
    return std::ranges::any_of(
        read.records, [](const RemovalRecord& record) { return record.step >= RemovalStep::kRemoveFile; });
}

std::string undoLogIn(const RemovalJournal& journal) {
    return journal.directory() + '/' + std::string(Format::kUndoLogFile);
}

bool isFile(platform::FileSystem& files, const std::string& path) {
    return !path.empty() && files.kindOf(path) == PathKind::kFile;
}

// From one volume to another it is copied.
bool moveOver(platform::FileSystem& files, const std::string& from, const std::string& to) {
    if (files.replaceFile(from, to) != 0 &&
        !OUtils::copyFile(from, to, files, platform::FileRights::kPrivate)) {
        return false;
    }
    files.takeDirectoryRights(to);
    return true;
}

// A place that is taken, or lies on another volume, doesn't keep the file where it is.
void takeOut(platform::FileSystem& files, const std::string& from, const std::string& to) {
    if (to.empty() || files.moveFile(from, to) != 0) {
        files.removeFile(from);
    }
}

// The log, by its path, that a run at work had not published when it was killed; its notes are in `journal`.
std::string unpublishedLog(platform::FileSystem& files, RemovalJournal& journal, std::string_view log) {
    const UnfinishedWork work = WorkNotes(journal).read();
    const bool isMeant = work.stage == WorkStage::kInstalling && work.concernsLog(log) &&
                         isFile(files, work.places.temporaryLog) && isFile(files, work.description);
    const std::string copy = undoLogIn(journal);
    return isMeant && writeUndoLog(files, work.places.temporaryLog, {work.description, ""}, copy) == 0
               ? copy
               : std::string();
}

}  // namespace

std::string unfinishedLog(const platform::Platform& machine, std::string_view log) {
    RemovalJournal journals(machine.files, machine.environment);
    for (const std::string& directory : journals.directoriesOnDisk()) {
        RemovalJournal journal(machine.files, machine.environment);
        const std::string file = directory + '/' + std::string(Format::kFileName);
        const bool isUsable = machine.files.isProtected(file, platform::Protection::kUserAndAdministrators) &&
                              journal.look(directory);
        if (std::string found = isUsable ? unpublishedLog(machine.files, journal, log) : ""; !found.empty()) {
            return found;
        }
    }
    return {};
}

Recovery::Outcome Recovery::run(const Concern& concern, bool asks, Report& report) {
    RemovalJournal journals(parts_.machine.files, parts_.machine.environment);
    if (const auto guard = lockJournals(parts_.machine.events, 0)) {
        journals.removeUnfinishedDirectories();
    }
    Outcome outcome = Outcome::kNothing;
    for (const std::string& directory : journals.directoriesOnDisk()) {
        outcome = std::max(outcome, look(directory, concern, asks, report));
        if (outcome > Outcome::kRecovered) {
            break;
        }
    }
    return outcome;
}

Recovery::Outcome Recovery::look(const std::string& directory, const Concern& concern, bool asks,
                                 Report& report) {
    const std::string file = directory + '/' + std::string(Format::kFileName);
    if (!parts_.machine.files.isProtected(file, platform::Protection::kUserAndAdministrators)) {
        parts_.debugLog.line("WARNING: Others can change " + file + ", so it isn't used");
        return Outcome::kNothing;
    }
    // A journal of a run that is alive must not be opened for writing, and its end not be cut off.
    RemovalJournal journal(parts_.machine.files, parts_.machine.environment);
    const bool isReadable = journal.look(directory);
    const UnfinishedWork work = WorkNotes(journal).read();
    if (work.product.empty() && work.removed.empty()) {
        sweep(directory);
        return Outcome::kNothing;
    }
    const auto isMeant = [&](const auto& items, auto concerns) {
        return std::ranges::any_of(items, concerns);
    };
    const bool isConcerned =
        isMeant(concern.products, [&](const std::string& name) { return work.concerns(name); }) ||
        isMeant(concern.logs, [&](const std::string& log) { return work.concernsLog(log); });
    if (!isReadable || !isConcerned || work.stage == WorkStage::kEnded) {
        return Outcome::kNothing;
    }
    ProductLock owner(parts_.machine, parts_.debugLog);
    const bool isOwn = !concern.products.empty() && work.product == concern.products.front();
    if (!isOwn && owner.take(work.product) != ProductLock::Result::kTaken) {
        report.note("A setup of " + work.product + " is at work.");
        return Outcome::kBusy;
    }
    return recover(directory, asks, report);
}

// Its maker was killed before it could say anything, and so before the first change. Or it hasn't come to
// that yet.
void Recovery::sweep(const std::string& directory) {
    const auto guard = lockJournals(parts_.machine.events, 0);
    RemovalBackups rest(parts_.machine);
    if (guard == nullptr || !rest.resume(directory)) {
        return;
    }
    const UnfinishedWork work = WorkNotes(rest.journal()).read();
    if (work.product.empty() && work.removed.empty() && !holdsChanges(rest.journal())) {
        parts_.debugLog.line("Removing what an interrupted run left in " + directory);
        rest.release();
    }
}

Recovery::Outcome Recovery::recover(const std::string& directory, bool asks, Report& report) {
    RemovalBackups backups(parts_.machine);
    if (!backups.resume(directory)) {
        return Outcome::kNothing;
    }
    const UnfinishedWork work = WorkNotes(backups.journal()).read();
    if (!isUnfinished(work, backups)) {
        parts_.debugLog.line("Removing what an interrupted run left in " + directory);
        clearEnd(work, report);
        dropStaleEntries(work, report);
        backups.release();
        return Outcome::kNothing;
    }
    report.note("An earlier run of the setup of " + work.product + " was interrupted.");
    if (asks && !goesOn(work) && !confirm(work, report)) {
        return Outcome::kDeclined;
    }
    clearStateDirectory();
    if (!takeBack(work, backups, report)) {
        return giveUp(work, backups, report);
    }
    dropStaleEntries(work, report);
    backups.release();
    return Outcome::kRecovered;
}

// The sums of the product's files may have been on their way there. If another product's are just now, they
// aren't kept, which makes its uninstallation no worse than more careful.
void Recovery::clearStateDirectory() {
    std::string directory;
    if (parts_.machine.environment.stateDirectory(directory)) {
        removeAbandonedFiles(parts_.machine.files, directory, false);
    }
}

// The product was installed, and killed while the rest of it was written: the variables into its log, or its
// entry in the list of applications. That one names the log last, and can't be used without.
void Recovery::clearEnd(const UnfinishedWork& work, Report& report) {
    clearStateDirectory();
    if (!isFile(parts_.machine.files, work.places.log)) {
        return;
    }
    ActionLogRewriter(parts_.machine.files).removeAbandoned(work.places.log);
    if (parts_.system.findUninstallEntry(work.product, 0) &&
        !parts_.system.applicationLogFile(work.product) && parts_.system.removeUninstallEntry(work.product)) {
        report.note("An interrupted run has left an unfinished entry of " + work.product +
                    " in the list of installed applications; it is removed.");
    }
}

bool Recovery::isUnfinished(const UnfinishedWork& work, RemovalBackups& backups) {
    switch (work.stage) {
        case WorkStage::kInstalling:
            return true;
        case WorkStage::kBegun:
        case WorkStage::kUndone:
            return holdsChanges(backups.journal());
        default:
            return false;
    }
}

bool Recovery::confirm(const UnfinishedWork& work, Report& report) {
    const std::string question = "An earlier run of the setup of " + work.product +
                                 " was interrupted. Should what it changed be taken back? Without that, "
                                 "nothing can be done now.";
    if (report.ui() == nullptr || report.ui()->messageBox(question.c_str(), MessageKind::kYesNo) == 1) {
        return true;
    }
    report.note("Nothing was changed. What the interrupted run left is taken back by the next one.");
    return false;
}

// What an earlier installation had put there can't be brought back without its removal.
bool Recovery::goesOn(const UnfinishedWork& work) {
    return work.stage == WorkStage::kInstalling && work.places.continuesEarlier && work.removed.empty();
}

bool Recovery::takeBack(const UnfinishedWork& work, RemovalBackups& backups, Report& report) {
    const Undo undone =
        work.stage == WorkStage::kInstalling ? takeInstallationBack(work, backups, report) : Undo::kDone;
    if (undone == Undo::kImpossible) {
        return false;
    }
    backups.holdsRecords = undone == Undo::kPartly || work.isPartlyUndone;
    if (undone == Undo::kPartly) {
        WorkNotes(backups.journal()).partlyUndone();
        report.note("What can't be taken back of the new version is recorded in " +
                    writtenPath(undoLogIn(backups.journal())));
    }
    removeUnfinishedFiles(parts_.machine.files, backups.journal());
    Revert(parts_, backups).revertUninstallation(report);
    if (undone == Undo::kDone && !work.isPartlyUndone && !backups.isOnlyCopy) {
        report.note("What it had changed has been taken back.");
    }
    return !backups.isOnlyCopy;
}

// The new version and the earlier one may have files in the same places. So from the moment when anything of
// the earlier one comes back, the new one must not be undone once more.
Recovery::Undo Recovery::takeInstallationBack(const UnfinishedWork& work, RemovalBackups& backups,
                                              Report& report) {
    platform::FileSystem& files = parts_.machine.files;
    const InstallationPlaces& places = work.places;
    const std::string log = isFile(files, places.temporaryLog) ? places.temporaryLog : places.log;
    if (!isFile(files, log)) {
        return Undo::kDone;
    }
    backups.takeLevelsOf(places.log);
    if (goesOn(work)) {
        removeUnfinishedFiles(files, log);
        return keepOnRecord(work, log, report) ? Undo::kRecorded : Undo::kImpossible;
    }
    const std::string copy = undoLogIn(backups.journal());
    const int status = copyLog(work, log, copy);
    if (status < 0) {
        return Undo::kDone;  // killed before the first record
    }
    if (status > 0) {
        report.note("What was installed can't be taken back.");
        report.addReason(log, status);
        return Undo::kImpossible;
    }
    removeUnfinishedFiles(files, copy);
    const bool isUndone = undo(copy, !work.removed.empty(), report);
    if (!isUndone && work.removed.empty() && keepOnRecord(work, log, report)) {
        return Undo::kRecorded;
    }
    clearRecords(work, copy);
    return isUndone ? Undo::kDone : Undo::kPartly;
}

int Recovery::copyLog(const UnfinishedWork& work, const std::string& log, const std::string& copy) {
    platform::FileSystem& files = parts_.machine.files;
    const InstallationPlaces& places = work.places;
    const bool isTemporary = isFile(files, places.temporaryArchive);
    const std::string archive = isTemporary ? places.temporaryArchive : places.archive;
    if (isTemporary && BackupFile(files).cutUnfinishedEntry(archive) != 0) {
        parts_.debugLog.line("WARNING: " + archive + " is damaged");
    }
    return writeUndoLog(files, log, {work.description, archive}, copy);
}

// `makesRoom`: what stays for a repetition is where records of the earlier version belong.
bool Recovery::undo(const std::string& log, bool makesRoom, Report& report) {
    try {
        const std::unique_ptr<NestedSession> session = sessions_.make(parts_.machine, report.ui(), errors_);
        session->load(log);
        const ProductRecords records = session->records();
        const bool isUndone = session->uninstall({});
        if (!isUndone && makesRoom) {
            parts_.machine.files.removeFile(records.description);
            parts_.machine.files.removeFile(records.uninstaller);
        }
        return isUndone;
    } catch (const GenericError& error) {
        parts_.debugLog.line(error.what());
        report.note(std::string("What was installed can't be taken back: ") + error.what());
        return false;
    }
}

// They may have been published already. If this is interrupted, both are still there for a repetition.
void Recovery::clearRecords(const UnfinishedWork& work, const std::string& log) {
    platform::FileSystem& files = parts_.machine.files;
    const InstallationPlaces& places = work.places;
    if (!isFile(files, places.temporaryArchive) && isFile(files, places.archive) &&
        BackupFile(files).isBackupFile(places.archive)) {
        takeOut(files, places.archive, places.temporaryArchive);
    }
    if (isFile(files, places.log) && haveSameRecords(files, log, places.log)) {
        ProductState(files, parts_.machine.environment).remove(places.log);
        takeOut(files, places.log, places.temporaryLog);
    }
}

// As the installation would have done at its end. What is remembered of the files isn't true any more.
bool Recovery::keepOnRecord(const UnfinishedWork& work, const std::string& log, Report& report) {
    platform::FileSystem& files = parts_.machine.files;
    const InstallationPlaces& places = work.places;
    if (places.log.empty()) {
        return false;
    }
    const std::string done = "What it has installed and left is recorded in " + writtenPath(places.log);
    if (platform::pathIdentity(log) == platform::pathIdentity(places.log)) {
        report.note(done);
        return true;
    }
    ProductState(files, parts_.machine.environment).remove(places.log);
    const bool hasArchive = isFile(files, places.temporaryArchive) && !places.archive.empty();
    if (hasArchive && !moveOver(files, places.temporaryArchive, places.archive)) {
        report.note(writtenPath(places.archive) + " can't be written");
        return false;
    }
    // Whole lines, with the paths that count from now on.
    const std::string whole = log + ".whole";
    if (writeUndoLog(files, log, {}, whole) != 0 || !moveOver(files, whole, places.log)) {
        report.note(writtenPath(places.log) + " can't be written");
        return false;
    }
    files.removeFile(log);
    report.note(done);
    return true;
}

Recovery::Outcome Recovery::giveUp(const UnfinishedWork& work, RemovalBackups& backups, Report& report) {
    for (const std::string& place : backups.places()) {
        report.note(place);
    }
    WorkNotes notes(backups.journal());
    if (work.attempts + 1 < kMostAttempts) {
        notes.attempt(work.attempts + 1);
        report.note("Not everything could be taken back. The next run tries it once more.");
        return Outcome::kIncomplete;
    }
    notes.stage(WorkStage::kEnded);
    report.note("Not everything could be taken back. What was kept stays there.");
    return Outcome::kRecovered;
}

// An entry whose log went with the product would stop each setup that wants to remove the product first.
void Recovery::dropStaleEntries(const UnfinishedWork& work, Report& report) {
    for (const UnfinishedWork::Removed& removed : work.removed) {
        const auto log = parts_.system.applicationLogFile(removed.application);
        const bool isStale = log && !removed.log.empty() &&
                             platform::pathIdentity(*log) == platform::pathIdentity(removed.log) &&
                             parts_.machine.files.kindOf(*log) == PathKind::kNothing;
        if (isStale && parts_.system.removeUninstallEntry(removed.application)) {
            report.note("An interrupted run has removed " + removed.application +
                        "; its entry in the list of installed applications is removed as well.");
        }
    }
}

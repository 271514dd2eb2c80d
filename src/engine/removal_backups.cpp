#include "engine/removal_backups.h"

#include "base/errors.h"
#include "base/path_functions.h"
#include "engine/directory_check.h"
#include "engine/journaled_machine.h"
#include "engine/product_state.h"
#include "engine/removal_journal_format.h"
#include "engine/work_notes.h"
#include "platform/error_text.h"
#include "platform/file_system.h"
#include "platform/written_path.h"

namespace Format = RemovalJournalFormat;

RemovalBackups::RemovalBackups(const platform::Platform& machine)
    : real_(machine), journal_(machine.files, machine.environment) {}

RemovalBackups::~RemovalBackups() = default;

platform::Platform RemovalBackups::openMachine() {
    if (machine_ == nullptr) {
        if (const int status = journal_.isOpen() ? 0 : journal_.open(); status != 0) {
            const std::string reason =
                status < 0 ? "there is no directory for its records" : platform::errorText(status);
            throw InstallerError("ERROR: The removal of earlier versions couldn't be taken back: %s",
                                 reason.c_str());
        }
        machine_ = std::make_unique<JournaledMachine>(real_, journal_);
    }
    return machine_->bundle();
}

std::string RemovalBackups::placeOf(const std::string& path) const {
    return journal_.directory().empty()
               ? path
               : journal_.directory() + '/' + std::string(OUtils::lastPathComponent(path));
}

RemovalJournal::Notes RemovalBackups::removalNotes(const std::string& application, const std::string& log) {
    ++applications_;
    return {{numberedNote(Format::kApplicationNote, applications_), application},
            {numberedNote(Format::kRemovedLogNote, applications_), log}};
}

RemovalJournal::Notes RemovalBackups::backupNotes() const {
    RemovalJournal::Notes notes;
    std::size_t number = 0;
    for (const UninstallBackup& backup : uninstallBackups) {
        ++number;
        notes.emplace_back(numberedNote(Format::kBackedUpNote, number), backup.productName);
        notes.emplace_back(numberedNote(Format::kBackupNote, number), backup.archivePath);
        notes.emplace_back(numberedNote(Format::kDirectoriesNote, number), backup.directoriesPath);
    }
    number = 0;
    for (const NestedBackup& backup : nestedBackups) {
        ++number;
        notes.emplace_back(numberedNote(Format::kCopiedNote, number), backup.originalPath);
        notes.emplace_back(numberedNote(Format::kCopyNote, number), backup.copyPath);
    }
    return notes;
}

bool RemovalBackups::note(const std::string& application, const std::string& log) {
    return noteBackups() && journal_.note(removalNotes(application, log)) == 0;
}

bool RemovalBackups::noteBackups() {
    return journal_.note(backupNotes()) == 0;
}

bool RemovalBackups::noteForGood(const std::string& application, const std::string& log) {
    RemovalJournal::Notes notes = removalNotes(application, log);
    notes.emplace_back(numberedNote(Format::kForGoodNote, applications_), Format::kYes);
    return journal_.note(notes) == 0;
}

bool RemovalBackups::resume(std::string_view directory) {
    if (journal_.resume(directory) != 0) {
        return false;
    }
    adoptBackups();
    machine_ = std::make_unique<JournaledMachine>(real_, journal_);
    return true;
}

// Empty for a path that leads elsewhere.
std::string RemovalBackups::ownFile(std::string_view note, std::size_t number) const {
    const std::string path = journal_.noteOf(numberedNote(note, number)).value_or("");
    return isFileIn(journal_.directory(), path) ? placeOf(path) : std::string();
}

void RemovalBackups::adoptBackups() {
    for (std::size_t i = 1; i <= Format::kMostNumberedNotes; ++i) {
        const auto name = journal_.noteOf(numberedNote(Format::kBackedUpNote, i));
        if (!name) {
            break;
        }
        const UninstallBackup backup{*name, ownFile(Format::kBackupNote, i),
                                     ownFile(Format::kDirectoriesNote, i)};
        if (!backup.archivePath.empty() && !backup.directoriesPath.empty()) {
            uninstallBackups.push_back(backup);
        }
    }
    for (std::size_t i = 1; i <= Format::kMostNumberedNotes; ++i) {
        const auto original = journal_.noteOf(numberedNote(Format::kCopiedNote, i));
        if (!original) {
            break;
        }
        const NestedBackup backup{*original, ownFile(Format::kCopyNote, i)};
        if (!backup.copyPath.empty() && isAbsolutePath(backup.originalPath)) {
            nestedBackups.push_back(backup);
        }
    }
}

std::vector<std::string> RemovalBackups::places() const {
    std::vector<std::string> places;
    if (isOpen()) {
        places.push_back("What was kept of the removed version is in " +
                         platform::writtenPath(journal_.directory()));
    }
    for (const UninstallBackup& backup : uninstallBackups) {
        places.push_back("The files of " + backup.productName + " are in " +
                         platform::writtenPath(backup.archivePath) + ", its directories are listed in " +
                         platform::writtenPath(backup.directoriesPath));
    }
    for (const NestedBackup& backup : nestedBackups) {
        places.push_back(platform::writtenPath(backup.originalPath) + " is in " +
                         platform::writtenPath(backup.copyPath));
    }
    return places;
}

void RemovalBackups::takeLevelsOf(const std::string& log) {
    if (journal_.isOpen()) {
        journal_.takeLevels(ProductState(real_.files, real_.environment).levels(log));
    }
}

void RemovalBackups::release() {
    if (isOnlyCopy || holdsRecords || isToBeContinued) {
        if (journal_.isOpen() && !isToBeContinued) {
            WorkNotes(journal_).stage(WorkStage::kEnded);
        }
        return;
    }
    // It goes bit by bit: a run that finds the rest of it must not take back anything.
    if (journal_.isOpen()) {
        WorkNotes(journal_).stage(WorkStage::kInstalled);
    }
    for (const UninstallBackup& backup : uninstallBackups) {
        for (const std::string& path : {backup.archivePath, backup.directoriesPath}) {
            if (!path.empty()) {
                real_.files.removeFile(path);
            }
        }
    }
    uninstallBackups.clear();
    // Unlike the list above, this one keeps its entries.
    for (const NestedBackup& backup : nestedBackups) {
        if (!backup.copyPath.empty()) {
            real_.files.removeFile(backup.copyPath);
        }
    }
    machine_.reset();
    if (journal_.isOpen()) {
        // First, so that a run that is killed in between leaves a journal to be found by.
        ProductState(real_.files, real_.environment).leaveLevels(journal_.levels());
        journal_.discard();
    }
}

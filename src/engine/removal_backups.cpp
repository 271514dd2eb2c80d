#include "engine/removal_backups.h"

#include "base/errors.h"
#include "base/path_functions.h"
#include "engine/journaled_machine.h"
#include "engine/product_state.h"
#include "platform/error_text.h"
#include "platform/file_system.h"
#include "platform/written_path.h"

RemovalBackups::RemovalBackups(const platform::Platform& machine)
    : real_(machine), journal_(machine.files, machine.environment) {}

RemovalBackups::~RemovalBackups() = default;

platform::Platform RemovalBackups::openMachine() {
    if (machine_ == nullptr) {
        if (const int status = journal_.open(); status != 0) {
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

bool RemovalBackups::note(const std::string& application, const std::string& log) {
    const std::string number = std::to_string(++applications_);
    bool isNoted =
        journal_.note("application " + number, application) == 0 && journal_.note("log " + number, log) == 0;
    for (std::size_t i = 0; i < uninstallBackups.size(); ++i) {
        const std::string index = std::to_string(i + 1);
        isNoted = isNoted && journal_.note("archive " + index, uninstallBackups[i].archivePath) == 0 &&
                  journal_.note("directories " + index, uninstallBackups[i].directoriesPath) == 0;
    }
    for (std::size_t i = 0; i < nestedBackups.size(); ++i) {
        const std::string index = std::to_string(i + 1);
        isNoted = isNoted && journal_.note("copied " + index, nestedBackups[i].originalPath) == 0 &&
                  journal_.note("copy " + index, nestedBackups[i].copyPath) == 0;
    }
    return isNoted;
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

void RemovalBackups::release() {
    if (isOnlyCopy) {
        return;
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
        journal_.discard();
        ProductState(real_.files, real_.environment).leaveLevels(journal_.levelsLeft());
    }
}

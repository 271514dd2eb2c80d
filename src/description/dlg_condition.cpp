#include "description/dlg_condition.h"

#include "contracts/installer_ui.h"
#include "contracts/system_operations.h"

void DlgCondition::report(SystemOperations* system, InstallerUI* ui, const char* text) {
    if (system != nullptr && ui != nullptr) {
        ui->addFileLine(text, true);
    }
}

void RunningAppsCondition::add(const char* process, const char* directory) {
    Entry entry;
    entry.process = process == nullptr ? "" : process;
    entry.directory = directory == nullptr ? "" : directory;
    entries_.push_back(std::move(entry));
}

int RunningAppsCondition::evaluate(SystemOperations* system, InstallerUI* ui) {
    if (system == nullptr || ui == nullptr) {
        return 1;
    }
    bool isFree = true;
    bool isShownRight = true;
    for (Entry& entry : entries_) {
        entry.running = system->isApplicationRunning(entry.process, entry.directory);
        isFree = isFree && !entry.running;
        isShownRight = isShownRight && entry.running == entry.shown;
    }
    if (!isShownRight) {
        showRunning(*ui);
    }
    return isFree ? 1 : 0;
}

void RunningAppsCondition::showRunning(InstallerUI& ui) {
    ui.clearFileLines();
    for (Entry& entry : entries_) {
        if (entry.running) {
            ui.addFileLine(entry.process.c_str(), false);
        }
        entry.shown = entry.running;
    }
    ui.addFileLine(nullptr, true);
}

void ExternalInstallationCondition::add(const char* applicationName) {
    names_.emplace_back(applicationName == nullptr ? "" : applicationName);
}

int ExternalInstallationCondition::evaluate(SystemOperations* system, InstallerUI* ui) {
    if (system == nullptr || ui == nullptr) {
        return 1;
    }
    const std::uint32_t flags = in32BitView_ ? kEntryIn32BitView : 0U;
    for (const std::string& name : names_) {
        if (system->findUninstallEntry(name, flags)) {
            return 0;
        }
    }
    return 1;
}

#include "session/page_work.h"

#include "base/path_functions.h"
#include "contracts/system_modifications.h"
#include "contracts/system_operations.h"
#include "description/product_description.h"
#include "description/variable_store.h"
#include "engine/additional_actions.h"
#include "engine/previous_installations.h"
#include "engine/product_installer.h"
#include "engine/system_changes.h"
#include "engine/uninstaller.h"
#include "session/installation_finish.h"
#include "session/session_state.h"

namespace {

constexpr int kNameCapacity = 1024;

}  // namespace

PageWork::PageWork(SessionState& state, Parts parts, FileInstaller::Hook afterFileInstalled)
    : state_(state),
      parts_(parts),
      afterFileInstalled_(std::move(afterFileInstalled)),
      debugLog_(state.debugLog) {}

bool PageWork::isActionLogSession() {
    return state_.isActionLogSession();
}

void PageWork::normalizeDirectoryFields() {
    for (DialogDesc& dialog : state_.dialogs.getDialogs()) {
        normalizeFields(dialog);
        for (DialogDesc& sub : dialog.subDialogs) {
            normalizeFields(sub);
        }
    }
}

void PageWork::normalizeFields(DialogDesc& page) {
    for (const DialogFieldDesc& field : page.fields) {
        PathText path;
        if (field.type != kFieldDirectory ||
            parts_.variables.getVariable(field.variable.c_str(), path.data(),
                                         static_cast<int>(PathText::capacity())) == -1) {
            continue;
        }
        if (OUtils::normalizePath(path.data()) != 0) {
            parts_.variables.setVariable(field.variable.c_str(), path.c_str());
        }
    }
}

int PageWork::installProduct(InstallerUI* ui) {
    if (state_.earlier.previousUninstallDone == 0) {
        uninstallPrevious(ui);  // an old version that stays doesn't stop the new one
    }
    SystemChanges& changes = parts_.changes;
    const std::vector<InstallationPhase> phases = {
        {"Updating environment variables", [&](InstallerUI* u) { return changes.applyEnvironmentTags(u); }},
        {"Updating .ini files", [&](InstallerUI* u) { return changes.applyIniTags(u); }},
        {"Modifying files", [&](InstallerUI* u) { return changes.applyModifyFileTags(u); }},
        {"Creating shortcuts", [&](InstallerUI* u) { return changes.applyShortcutTags(u); }},
        {"Updating Firewall", [&](InstallerUI* u) { return changes.applyFirewallTags(u); }},
        {"Running additional installations",
         [&](InstallerUI* u) { return parts_.actions.runAdditionalActions(u, "AdditionalInstall"); }},
    };
    Report report(ui, &state_.errorList);
    return parts_.installer.installProduct(report, phases, afterFileInstalled_);
}

int PageWork::refuse(const char* work) {
    debugLog_.print("ERROR: %s is not carried out: this version can not do that", work);
    return 1;
}

int PageWork::prepareUninstall(InstallerUI* ui) {
    return parts_.uninstaller.PrepareUninstall(ui, nullptr);
}

int PageWork::uninstallCurrentProduct(InstallerUI* ui) {
    return parts_.uninstaller.uninstallFromLog(*ui, nullptr);
}

int PageWork::uninstallPrevious(InstallerUI*) {
    return parts_.previous.uninstallPrevious();
}

int PageWork::revertInstallation(InstallerUI*) {
    return refuse("The revert of the installation");
}

int PageWork::revertUninstallation(InstallerUI*) {
    return refuse("The revert of the uninstallation");
}

bool PageWork::registerApplication() {
    return parts_.modifications.registerApplication();
}

bool PageWork::unregisterApplication() {
    char name[kNameCapacity];
    return parts_.product.getFullName(name, kNameCapacity) == 0 &&
           parts_.modifications.removeUninstallEntry(name);
}

int PageWork::runActions(InstallerUI* ui, const char* section) {
    return parts_.actions.runAdditionalActions(ui, section);
}

int PageWork::finishInstallation(InstallerUI* ui) {
    return parts_.finish.finishInstallation(ui);
}

bool PageWork::closeApplication(const char* name, bool isService, const char* directory) {
    return parts_.system.closeApplication(name, isService, directory == nullptr ? "" : directory);
}

bool PageWork::uninstallApplication(const char* name, const char* arguments, bool in32BitView, bool wait,
                                    InstallerUI* ui) {
    const std::uint32_t flags = (in32BitView ? kEntryIn32BitView : 0U) | (wait ? kEntryWait : 0U);
    return parts_.modifications.uninstallApplication(name, arguments, flags, ui);
}

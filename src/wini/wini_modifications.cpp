#include "wini/wini_modifications.h"

#include <stdexcept>

#include "contracts/install_exchange_info.h"
#include "wini/application_registration.h"
#include "wini/environment_changes.h"
#include "wini/external_uninstaller.h"
#include "wini/file_modifications.h"
#include "wini/firewall_changes.h"
#include "wini/ini_files.h"
#include "wini/program_runner.h"
#include "wini/registry_changes.h"
#include "wini/shortcuts.h"

struct WiniModifications::Families {
    const platform::Platform& platform;
    InstallExchangeInfo& product;
    ErrorList& errors;
    DebugLog debugLog;
    RegistryChanges registry{platform.registry};
    ApplicationRegistration registration{platform.registry, product, debugLog};
    ProgramRunner programs{platform.processes, platform.shell, debugLog};
    ExternalUninstaller uninstallers{{platform.registry, platform.processes, platform.events, programs},
                                     debugLog};
    Shortcuts shortcuts{platform.shell, platform.files, registration, errors};
    FirewallChanges firewall{platform.firewall, debugLog};
    EnvironmentChanges environment{platform.registry, platform.files, platform.shell, errors};
    IniFiles iniFiles{platform.files, errors};
    FileModifications modifications{platform.files, errors};
};

WiniModifications::WiniModifications(const platform::Platform& platform) : platform_(platform) {}

WiniModifications::~WiniModifications() = default;

void WiniModifications::attach(InstallExchangeInfo& product, ErrorList& errors, DebugLog debugLog) {
    // In place, as its members refer to each other.
    families_.reset(new Families{platform_, product, errors, debugLog});  // NOLINT(modernize-make-unique)
}

WiniModifications::Families& WiniModifications::families() {
    if (families_ == nullptr) {
        throw std::logic_error("a change to the system ahead of the session");
    }
    return *families_;
}

bool WiniModifications::addEnvironmentEntry(const char* name, const char* value, EnvironmentMode mode,
                                            std::string& outUndo, InstallerUI* ui, bool isPath) {
    return families().environment.addEnvironmentEntry(name, value, mode, outUndo, ui, isPath);
}

bool WiniModifications::removeEnvironmentEntry(const char* undoText, InstallerUI* ui) {
    return families().environment.removeEnvironmentEntry(undoText, ui);
}

bool WiniModifications::broadcastEnvironmentChange() {
    return families().environment.broadcastEnvironmentChange();
}

bool WiniModifications::addIniEntry(const char* file, const char* section, const char* key, const char* value,
                                    std::string& outUndo, InstallerUI* ui, bool isPath,
                                    const char* beforeKey) {
    return families().iniFiles.addIniEntry(file, section, key, value, outUndo, ui, isPath, beforeKey);
}

bool WiniModifications::removeIniEntry(const char* undoText, InstallerUI* ui) {
    return families().iniFiles.removeIniEntry(undoText, ui);
}

bool WiniModifications::modifyFile(const char* path, const char* description, std::string& outUndo,
                                   InstallerUI* ui) {
    return families().modifications.modifyFile(path, description, outUndo, ui);
}

bool WiniModifications::undoFileModification(const char* undoText, InstallerUI* ui) {
    return families().modifications.undoFileModification(undoText, ui);
}

bool WiniModifications::addShortcut(const ShortcutRequest& shortcut, std::string& outUndo, InstallerUI* ui) {
    return families().shortcuts.addShortcut(shortcut, outUndo, ui);
}

bool WiniModifications::removeShortcut(const char* undoText, InstallerUI* ui) {
    return families().shortcuts.removeShortcut(undoText, ui);
}

FirewallResult WiniModifications::firewallAddApplication(const char* path, const char* name) {
    return families().firewall.addApplication(path, name);
}

FirewallResult WiniModifications::firewallRemoveApplication(const char* path) {
    return families().firewall.removeApplication(path);
}

FirewallResult WiniModifications::firewallAddPort(const FirewallPortRule& rule) {
    return families().firewall.addPort(rule);
}

FirewallResult WiniModifications::firewallRemovePort(const char* logText) {
    return families().firewall.removePort(logText);
}

int WiniModifications::writeRegistryValue(const char* place, const char* path, const char* type,
                                          const char* valueName, const char* data, int& outCreated) {
    return families().registry.writeRegistryValue(place, path, type, valueName, data, outCreated);
}

int WiniModifications::createRegistryKey(const char* place, const char* path) {
    return families().registry.createRegistryKey(place, path);
}

int WiniModifications::deleteRegistryValue(const char* place, const char* path, const char* valueName) {
    return families().registry.deleteRegistryValue(place, path, valueName);
}

int WiniModifications::deleteRegistryKeys(const char* place, const char* path, int levels) {
    return families().registry.deleteRegistryKeys(place, path, levels);
}

bool WiniModifications::registerApplication() {
    return families().registration.registerApplication();
}

bool WiniModifications::removeUninstallEntry(const char* applicationName) {
    return families().registration.removeUninstallEntry(applicationName);
}

bool WiniModifications::uninstallApplication(const char* applicationName, const char* arguments,
                                             std::uint32_t flags, InstallerUI* ui) {
    return families().uninstallers.uninstallApplication(applicationName, arguments, flags, ui);
}

bool WiniModifications::runAssociatedProgram(const char* path, const char* arguments, std::uint32_t flags,
                                             const char* workDir, InstallerUI* ui, std::uint32_t delay) {
    return families().programs.runAssociatedProgram(path, arguments, flags, workDir, ui, delay);
}

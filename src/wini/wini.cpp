#include "wini/wini.h"

#include "base/errors.h"
#include "base/text_functions.h"
#include "engine/changes/file_edit.h"
#include "engine/changes/registry_change.h"
#include "engine/report.h"
#include "engine/uninstall_command.h"

namespace {

std::string_view textOf(const char* text) {
    return text == nullptr ? std::string_view() : text;
}

std::optional<std::string_view> optionalText(const char* text) {
    return text == nullptr ? std::nullopt : std::optional<std::string_view>(text);
}

bool take(RecordedResult result, std::string& outUndo) {
    outUndo = std::move(result.undo);
    return result.done;
}

}  // namespace

Wini::Wini(const platform::Platform& machine, SystemServices& services, AnswersFile& answers,
           NestedSessionFactory& nestedSessions, DebugLog log, const WiniArguments& arguments)
    : Installer(machine, services, answers, nestedSessions, log),
      machine_(machine),
      services_(services),
      programs_(machine.processes, machine.shell, log),
      arguments_(arguments) {}

bool Wini::findUninstallEntry(const char* applicationName, std::uint32_t flags) {
    try {
        return services_.findUninstallEntry(textOf(applicationName), flags);
    } catch (const GenericError&) {
        return false;
    }
}

void Wini::findEntriesByPublisher(std::vector<std::string>& outNames, const char* nameFilter,
                                  const char* publisher, std::uint32_t flags) {
    for (std::string& name : services_.findEntriesByPublisher(textOf(nameFilter), textOf(publisher), flags)) {
        outNames.push_back(std::move(name));
    }
}

std::optional<std::string> Wini::getApplicationLogFile(const char* applicationName) {
    try {
        return services_.applicationLogFile(textOf(applicationName));
    } catch (const GenericError&) {
        return std::nullopt;
    }
}

bool Wini::registerApplication() {
    Report nobody(nullptr, nullptr);
    return pages().registerWith(nobody);
}

bool Wini::removeUninstallEntry(const char* applicationName) {
    return services_.removeUninstallEntry(textOf(applicationName));
}

bool Wini::uninstallApplication(const char* applicationName, const char* arguments, std::uint32_t flags,
                                InstallerUI* ui) {
    return services_.uninstallApplication(textOf(applicationName), textOf(arguments), flags, ui,
                                          [] { return false; });
}

bool Wini::isApplicationRunning(const char* name, const char* directory) {
    return services_.isApplicationRunning(textOf(name), textOf(directory));
}

bool Wini::closeApplication(const char* name, bool isService, const char* directory) {
    return services_.closeApplication(textOf(name), isService, textOf(directory));
}

bool Wini::copyFile(const char* from, const char* to) {
    return services_.copyFile(textOf(from), textOf(to));
}

bool Wini::runAssociatedProgram(const char* path, const char* arguments, std::uint32_t flags,
                                const char* workDir, InstallerUI* ui, std::uint32_t delay) {
    Report report(ui, &errorList);
    return path != nullptr &&
           programs_.run({path, std::string(textOf(arguments)), std::string(textOf(workDir)), flags}, report,
                         delay);
}

bool Wini::addEnvironmentEntry(const char* name, const char* value, EnvironmentChange::Mode mode,
                               std::string& outUndo, InstallerUI* ui, bool isPath) {
    Report report(ui, &errorList);
    return take(EnvironmentChange::add(machine_, report, {textOf(name), optionalText(value), mode, isPath}),
                outUndo);
}

bool Wini::removeEnvironmentEntry(const char* undoText, InstallerUI* ui) {
    Report report(ui, &errorList);
    return EnvironmentChange::remove(machine_, report, textOf(undoText));
}

bool Wini::broadcastEnvironmentChange() {
    Report report(nullptr, &errorList);
    EnvironmentChange::broadcast(machine_.shell, report);
    return true;
}

bool Wini::writeIniValue(const char* file, const char* section, const char* key, const char* value,
                         IniChange::Mode mode, const char* beforeKey) {
    return file != nullptr &&
           IniChange::write(
               machine_.files, file,
               {textOf(section), optionalText(key), optionalText(value), optionalText(beforeKey)}, mode);
}

bool Wini::addIniEntry(const char* file, const char* section, const char* key, const char* value,
                       std::string& outUndo, InstallerUI* ui, bool isPath, const char* beforeKey) {
    Report report(ui, &errorList);
    return take(IniChange::add(machine_.files, report,
                               {textOf(file), textOf(section), textOf(key), optionalText(value), isPath,
                                textOf(beforeKey)}),
                outUndo);
}

bool Wini::removeIniEntry(const char* undoText, InstallerUI* ui) {
    Report report(ui, &errorList);
    return IniChange::remove(machine_.files, report, textOf(undoText));
}

bool Wini::modifyFile(const char* path, const char* description, std::string& outUndo, InstallerUI* ui) {
    Report report(ui, &errorList);
    return take(FileEdit::add(machine_.files, report, textOf(path), textOf(description)), outUndo);
}

bool Wini::undoFileModification(const char* undoText, InstallerUI* ui) {
    Report report(ui, &errorList);
    return FileEdit::remove(machine_.files, report, textOf(undoText));
}

bool Wini::addShortcut(const ShortcutRequest& shortcut, std::string& outUndo, InstallerUI* ui) {
    Report report(ui, &errorList);
    const auto undo = ShortcutChange::add(machine_, model().product, report, debugLog, shortcut);
    outUndo = undo.value_or("");
    return undo.has_value();
}

bool Wini::removeShortcut(const char* undoText, InstallerUI* ui) {
    Report report(ui, &errorList);
    return ShortcutChange::remove(machine_.files, report, textOf(undoText));
}

FirewallResult Wini::firewallAddApplication(const char* path, const char* name) {
    return path == nullptr || name == nullptr
               ? FirewallResult::kFailed
               : FirewallChange::addApplication(machine_.firewall, debugLog, path, name).result;
}

FirewallResult Wini::firewallRemoveApplication(const char* path) {
    return path == nullptr ? FirewallResult::kFailed
                           : FirewallChange::removeApplication(machine_.firewall, debugLog, path).result;
}

FirewallResult Wini::firewallAddPort(const FirewallPortRule& rule) {
    return FirewallChange::addPort(machine_.firewall, debugLog, rule).result;
}

FirewallResult Wini::firewallRemovePort(const char* logText) {
    return logText == nullptr ? FirewallResult::kFailed
                              : FirewallChange::removePort(machine_.firewall, debugLog, logText).result;
}

int Wini::writeRegistryValue(const char* place, const char* path, const char* type, const char* valueName,
                             const char* data, int& outCreated) {
    outCreated = 0;
    if (place == nullptr || path == nullptr || valueName == nullptr || data == nullptr) {
        return -1;
    }
    const RegistryChange::WriteResult result =
        RegistryChange::writeValue(machine_.registry, {{place, path}, valueName, textOf(type), data});
    outCreated = result.createdLevels;
    return result.status.value_or(-1);
}

int Wini::createRegistryKey(const char* place, const char* path) {
    return RegistryChange::createKey(machine_.registry, {textOf(place), textOf(path)});
}

int Wini::deleteRegistryValue(const char* place, const char* path, const char* valueName) {
    if (place == nullptr || path == nullptr || valueName == nullptr) {
        return -1;
    }
    return RegistryChange::deleteValue(machine_.registry, {place, path}, valueName).value_or(-1);
}

int Wini::deleteRegistryKeys(const char* place, const char* path, int levels) {
    return RegistryChange::deleteKeys(machine_.registry, {textOf(place), textOf(path)}, levels);
}

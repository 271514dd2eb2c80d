#include "wini/system_services.h"

#include <atomic>
#include <utility>

#include "engine/changes/registry_change.h"
#include "platform/file_system.h"
#include "platform/registry.h"
#include "support/utilities.h"
#include "wini/default_browser.h"

namespace {

constexpr std::string_view kTemporaryPrefix = "orinstall";
// The numbers begin anew in each process, and each may have left files.
constexpr int kMostTakenNames = 10000;

// Two sessions of one process must not get the same name.
std::atomic<std::uint32_t> lastTemporaryNumber{0};

}  // namespace

SystemServices::SystemServices(const platform::Platform& machine, DebugLog debugLog, ServiceClock clock)
    : machine_(machine),
      debugLog_(debugLog),
      clock_(std::move(clock)),
      programs_(machine.processes, machine.shell, debugLog),
      uninstallList_(machine.registry),
      registration_(machine.registry, debugLog),
      uninstallers_({machine.registry, machine.processes, machine.events}, debugLog, {}, clock_.now),
      runningApplications_(machine.files, machine.processes, programs_, debugLog) {}

std::optional<std::string> SystemServices::temporaryFileName() {
    std::string path;
    for (int tries = 0; tries < kMostTakenNames; ++tries) {
        if (!machine_.files.temporaryName(kTemporaryPrefix, ++lastTemporaryNumber, path) ||
            path.size() > kTemporaryPathLimit) {
            return std::nullopt;
        }
        if (!machine_.files.exists(path)) {
            return path;
        }
    }
    return std::nullopt;
}

bool SystemServices::findUninstallEntry(std::string_view applicationName, std::uint32_t flags) {
    return uninstallList_.findUninstallEntry(applicationName, flags);
}

std::vector<std::string> SystemServices::findEntriesByPublisher(std::string_view nameFilter,
                                                                std::string_view publisher,
                                                                std::uint32_t flags) {
    return uninstallList_.findEntriesByPublisher(nameFilter, publisher, flags);
}

std::optional<std::string> SystemServices::applicationLogFile(std::string_view applicationName) {
    return uninstallList_.applicationLogFile(applicationName);
}

bool SystemServices::registerApplication(const ApplicationEntry& entry) {
    return registration_.registerApplication(entry);
}

bool SystemServices::removeUninstallEntry(std::string_view applicationName) {
    return registration_.removeUninstallEntry(applicationName);
}

bool SystemServices::leaveKeysToList(std::string_view path, int levels) {
    return registration_.leaveKeysToList(path, levels);
}

bool SystemServices::uninstallApplication(std::string_view applicationName, std::string_view arguments,
                                          std::uint32_t flags, InstallerUI* ui,
                                          const std::function<bool()>& isToEnd) {
    return uninstallers_.uninstallApplication(applicationName, arguments, flags, ui, isToEnd);
}

bool SystemServices::isApplicationRunning(std::string_view name, std::string_view directory) {
    return runningApplications_.isApplicationRunning(name, directory);
}

bool SystemServices::closeApplication(std::string_view name, bool isService, std::string_view directory) {
    return runningApplications_.closeApplication(name, isService, directory);
}

bool SystemServices::isProgramRunning(std::string_view path) {
    return runningApplications_.isProgramRunning(path);
}

bool SystemServices::closeProgram(std::string_view path) {
    return runningApplications_.closeProgram(path);
}

bool SystemServices::copyFile(std::string_view from, std::string_view to) {
    return OUtils::copyFile(from, to, machine_.files);
}

std::optional<SystemRegistryValue> SystemServices::readRegistryValue(std::string_view place,
                                                                     std::string_view path,
                                                                     std::string_view valueName) {
    const auto root = registryRootOf(place);
    platform::RegistryValue value;
    if (!root || machine_.registry.readValue(*root, path, platform::RegistryView::kNative, valueName,
                                             value) != platform::kRegOk) {
        return std::nullopt;
    }
    return SystemRegistryValue{value.type, std::move(value.data)};
}

std::optional<std::vector<std::string>> SystemServices::listRegistryKeys(std::string_view place,
                                                                         std::string_view path) {
    const auto root = registryRootOf(place);
    std::vector<std::string> names;
    if (!root ||
        machine_.registry.listKeys(*root, path, platform::RegistryView::kNative, names) != platform::kRegOk) {
        return std::nullopt;
    }
    return names;
}

bool SystemServices::openInDefaultBrowser(std::string_view url) {
    const int status = ::openInDefaultBrowser(machine_, url);
    if (status != 0) {
        debugLog_.line("WARNING: \"" + std::string(url) + "\" could not be opened (" +
                       std::to_string(status) + ")");
    }
    return status == 0;
}

void SystemServices::sleepMilliseconds(std::uint32_t milliseconds) {
    clock_.sleep(milliseconds);
}

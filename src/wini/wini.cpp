#include "wini/wini.h"

#include "base/text_functions.h"
#include "description/file_sets.h"
#include "platform/clock.h"
#include "platform/file_system.h"
#include "support/utilities.h"
#include "wini/default_browser.h"
#include "wini/registry_access.h"
#include "wini/temporary_names.h"

Wini::Wini(const platform::Platform& platform, int level, int gui, int ignoreErrors)
    : WiniEnvironment(platform),
      Installer(platform.files, processEnvironment, modifications),
      platform_(platform),
      debugLevelArgument_(level),
      guiArgument_(gui),
      ignoreErrorsArgument_(ignoreErrors),
      uninstallList_(platform.registry),
      runningApplications_(platform.processes, modifications, debugLog) {
    modifications.attach(*this, errorList, debugLog);
}

int Wini::getTemporaryFileName(char* buffer, int size) {
    return makeTemporaryName(platform_.files, buffer, size);
}

bool Wini::findUninstallEntry(const char* applicationName, std::uint32_t flags) {
    return uninstallList_.findUninstallEntry(applicationName, flags);
}

void Wini::findEntriesByPublisher(std::vector<std::string>& outNames, const char* nameFilter,
                                  const char* publisher, std::uint32_t flags) {
    uninstallList_.findEntriesByPublisher(outNames, nameFilter, publisher, flags);
}

bool Wini::getApplicationLogFile(const char* applicationName, char* buffer, int size) {
    return uninstallList_.getApplicationLogFile(applicationName, buffer, size);
}

bool Wini::isApplicationRunning(const char* name, const char* directory) {
    return runningApplications_.isApplicationRunning(name, directory);
}

bool Wini::closeApplication(const char* name, bool isService, const char* directory) {
    return runningApplications_.closeApplication(name, isService, directory);
}

bool Wini::copyFile(const char* from, const char* to) {
    return OUtils::copyFile(from, to, platform_.files);
}

bool Wini::readRegistryValue(const char* place, const char* path, const char* valueName,
                             SystemRegistryValue& outValue) {
    return ::readRegistryValue(platform_.registry, place, path, valueName, outValue);
}

bool Wini::listRegistryKeys(const char* place, const char* path, std::vector<std::string>& outNames) {
    return ::listRegistryKeys(platform_.registry, place, path, outNames);
}

bool Wini::openInDefaultBrowser(const char* url) {
    const int status = ::openInDefaultBrowser(platform_, url);
    if (status != 0) {
        debugLog.print("WARNING: \"%s\" could not be opened (%d)", url != nullptr ? url : "", status);
    }
    return status == 0;
}

void Wini::sleepMilliseconds(std::uint32_t milliseconds) {
    platform::sleepMilliseconds(milliseconds);
}

int Wini::getConfigFile(char* buffer, int size) {
    OUtils::copyText(buffer, configFile_.c_str(), size);
    return 0;
}

void Wini::afterFileInstalled(const std::string& path, const FileEntry& file) {
    if (file.executable && platform_.files.makeExecutable(path.c_str()) != 0) {
        debugLog.print("WARNING: %s could not be marked as a program", path.c_str());
    }
}

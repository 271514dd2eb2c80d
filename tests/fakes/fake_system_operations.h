#pragma once

#include <functional>
#include <initializer_list>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "base/errors.h"
#include "contracts/system_operations.h"

// The operating system as tables that a test fills; operations that change something are written down.
class FakeSystemOperations : public SystemOperations {
public:
    struct InstalledApplication {
        std::string name;
        std::string publisher;
        bool in32BitView = false;
        std::string logFile;
    };

    std::vector<std::string> calls;
    std::vector<InstalledApplication> installed;
    std::set<std::string> running;                                 // a process, or "process@directory"
    std::set<std::string> runningFrom;                             // the files of programs
    std::map<std::string, SystemRegistryValue> registryValues;     // by "place\path\name"
    std::map<std::string, std::vector<std::string>> registryKeys;  // names by "place\path"
    std::string temporaryFile = "/tmp/orinstall1";
    bool copyWorks = true;
    bool registrationWorks = true;
    bool removalWorks = true;                    // of an entry
    bool takesKeys = false;                      // leaveKeysToList
    std::set<std::string> unreadable;            // applications whose entries can't be read
    std::string fault = "the registry is full";  // of a registration or removal that fails
    std::function<void()> onRemoval = [] {};
    std::function<void(std::uint32_t flags)> onFind = [](std::uint32_t) {};  // at findUninstallEntry
    std::set<std::string> staying;  // applications whose uninstallers don't remove them

    std::optional<std::string> temporaryFileName() override {
        return temporaryFile.empty() ? std::nullopt : std::optional(temporaryFile);
    }

    bool findUninstallEntry(std::string_view applicationName, std::uint32_t flags) override {
        calls.push_back("findUninstallEntry(" + std::string(applicationName) + viewOf(flags) + ")");
        onFind(flags);
        requireReadable(applicationName);
        for (const InstalledApplication& application : installed) {
            if (application.name == applicationName && isInView(application, flags)) {
                return true;
            }
        }
        return false;
    }
    std::vector<std::string> findEntriesByPublisher(std::string_view nameFilter, std::string_view publisher,
                                                    std::uint32_t flags) override {
        calls.push_back("findEntriesByPublisher(" + std::string(nameFilter) + ", " + std::string(publisher) +
                        viewOf(flags) + ")");
        std::vector<std::string> names;
        for (const InstalledApplication& application : installed) {
            if (application.name.find(nameFilter) != std::string::npos &&
                application.publisher.find(publisher) != std::string::npos && isInView(application, flags)) {
                names.push_back(application.name);
            }
        }
        return names;
    }
    std::optional<std::string> applicationLogFile(std::string_view applicationName) override {
        requireReadable(applicationName);
        for (const InstalledApplication& application : installed) {
            if (application.name == applicationName && !application.logFile.empty()) {
                return application.logFile;
            }
        }
        return std::nullopt;
    }
    std::string entryFault() override { return registrationWorks && removalWorks ? "" : fault; }
    bool registerApplication(const ApplicationEntry& entry) override {
        calls.push_back("registerApplication(" + entry.name + ", " + entry.version + ", " + entry.website +
                        ", " + entry.command + " " + entry.arguments + ")");
        if (registrationWorks) {
            installed.push_back({entry.name, "", false, ""});
        }
        return registrationWorks;
    }
    bool leaveKeysToList(std::string_view path, int levels) override {
        calls.push_back("leaveKeysToList(" + std::string(path) + ", " + std::to_string(levels) + ")");
        return takesKeys;
    }
    bool removeUninstallEntry(std::string_view applicationName) override {
        calls.push_back("removeUninstallEntry(" + std::string(applicationName) + ")");
        onRemoval();
        return removalWorks && std::erase_if(installed, [&](const InstalledApplication& application) {
                                   return application.name == applicationName && !application.in32BitView;
                               }) != 0;
    }

    bool uninstallApplication(std::string_view applicationName, std::string_view arguments,
                              std::uint32_t flags, InstallerUI*, const std::function<bool()>&) override {
        calls.push_back("uninstallApplication(" + std::string(applicationName) +
                        (arguments.empty() ? "" : ", " + std::string(arguments)) + viewOf(flags) +
                        ((flags & kEntryWait) != 0 ? ", wait" : "") + ")");
        return std::erase_if(installed, [&](const InstalledApplication& application) {
                   return application.name == applicationName && isInView(application, flags) &&
                          !staying.contains(application.name);
               }) != 0;
    }

    bool isApplicationRunning(std::string_view name, std::string_view directory) override {
        calls.push_back("isApplicationRunning(" + std::string(name) + ")");
        return running.contains(std::string(name) + (directory.empty() ? "" : "@" + std::string(directory)));
    }
    bool closeApplication(std::string_view name, bool isService, std::string_view directory) override {
        calls.push_back("closeApplication(" + std::string(name) + (isService ? ", service" : "") +
                        (directory.empty() ? "" : ", " + std::string(directory)) + ")");
        return running.erase(std::string(name)) != 0;
    }

    bool isProgramRunning(std::string_view path) override {
        calls.push_back("isProgramRunning(" + std::string(path) + ")");
        return runningFrom.contains(std::string(path));
    }
    bool closeProgram(std::string_view path) override {
        calls.push_back("closeProgram(" + std::string(path) + ")");
        return runningFrom.erase(std::string(path)) != 0;
    }

    bool copyFile(std::string_view from, std::string_view to) override {
        calls.push_back("copyFile(" + std::string(from) + ", " + std::string(to) + ")");
        return copyWorks;
    }

    std::optional<SystemRegistryValue> readRegistryValue(std::string_view place, std::string_view path,
                                                         std::string_view valueName) override {
        const auto found = registryValues.find(join({place, path, valueName}));
        return found == registryValues.end() ? std::nullopt : std::optional(found->second);
    }
    std::optional<std::vector<std::string>> listRegistryKeys(std::string_view place,
                                                             std::string_view path) override {
        const auto found = registryKeys.find(join({place, path}));
        return found == registryKeys.end() ? std::nullopt : std::optional(found->second);
    }

    bool openInDefaultBrowser(std::string_view url) override {
        calls.push_back("openInDefaultBrowser(" + std::string(url) + ")");
        return true;
    }
    void sleepMilliseconds(std::uint32_t milliseconds) override {
        calls.push_back("sleepMilliseconds(" + std::to_string(milliseconds) + ")");
    }

private:
    void requireReadable(std::string_view applicationName) const {
        if (unreadable.contains(std::string(applicationName))) {
            throw InstallerError("The entry of %s can't be read", std::string(applicationName).c_str());
        }
    }
    static std::string join(std::initializer_list<std::string_view> parts) {
        std::string text;
        for (const std::string_view part : parts) {
            text += (text.empty() ? "" : "\\") + std::string(part);
        }
        return text;
    }
    static std::string viewOf(std::uint32_t flags) { return (flags & kEntryIn32BitView) != 0 ? ", x86" : ""; }
    static bool isInView(const InstalledApplication& application, std::uint32_t flags) {
        return application.in32BitView == ((flags & kEntryIn32BitView) != 0);
    }
};

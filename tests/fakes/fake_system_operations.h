#pragma once

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "base/text_functions.h"
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
    std::map<std::string, SystemRegistryValue> registryValues;     // by "place\path\name"
    std::map<std::string, std::vector<std::string>> registryKeys;  // names by "place\path"
    std::string temporaryFile = "/tmp/orinstall1";
    bool copyWorks = true;
    std::set<std::string> staying;  // applications whose uninstallers don't remove them

    int getTemporaryFileName(char* buffer, int size) override {
        OUtils::copyText(buffer, temporaryFile.c_str(), size);
        return temporaryFile.empty() ? -1 : 0;
    }

    bool findUninstallEntry(const char* applicationName, std::uint32_t flags) override {
        calls.push_back("findUninstallEntry(" + std::string(applicationName) + viewOf(flags) + ")");
        for (const InstalledApplication& application : installed) {
            if (application.name == applicationName && isInView(application, flags)) {
                return true;
            }
        }
        return false;
    }
    void findEntriesByPublisher(std::vector<std::string>& outNames, const char* nameFilter,
                                const char* publisher, std::uint32_t flags) override {
        calls.push_back("findEntriesByPublisher(" + std::string(nameFilter) + ", " + publisher +
                        viewOf(flags) + ")");
        for (const InstalledApplication& application : installed) {
            if (application.name.find(nameFilter) != std::string::npos &&
                application.publisher.find(publisher) != std::string::npos && isInView(application, flags)) {
                outNames.push_back(application.name);
            }
        }
    }
    bool getApplicationLogFile(const char* applicationName, char* buffer, int size) override {
        for (const InstalledApplication& application : installed) {
            if (application.name == applicationName && !application.logFile.empty()) {
                OUtils::copyText(buffer, application.logFile.c_str(), size);
                return true;
            }
        }
        return false;
    }

    bool uninstallApplication(const char* applicationName, const char* arguments, std::uint32_t flags,
                              InstallerUI*) override {
        calls.push_back("uninstallApplication(" + std::string(applicationName) +
                        (arguments == nullptr ? "" : ", " + std::string(arguments)) + viewOf(flags) +
                        ((flags & kEntryWait) != 0 ? ", wait" : "") + ")");
        return std::erase_if(installed, [&](const InstalledApplication& application) {
                   return application.name == applicationName && isInView(application, flags) &&
                          !staying.contains(application.name);
               }) != 0;
    }

    bool isApplicationRunning(const char* name, const char* directory) override {
        calls.push_back("isApplicationRunning(" + std::string(name) + ")");
        const bool anywhere = directory == nullptr || *directory == '\0';
        return running.contains(anywhere ? std::string(name) : std::string(name) + "@" + directory);
    }
    bool closeApplication(const char* name, bool isService, const char* directory) override {
        calls.push_back("closeApplication(" + std::string(name) + (isService ? ", service" : "") +
                        (directory == nullptr ? "" : ", " + std::string(directory)) + ")");
        return running.erase(name) != 0;
    }

    bool copyFile(const char* from, const char* to) override {
        calls.push_back("copyFile(" + std::string(from) + ", " + to + ")");
        return copyWorks;
    }

    bool readRegistryValue(const char* place, const char* path, const char* valueName,
                           SystemRegistryValue& outValue) override {
        const auto found = registryValues.find(std::string(place) + "\\" + path + "\\" + valueName);
        if (found == registryValues.end()) {
            return false;
        }
        outValue = found->second;
        return true;
    }
    bool listRegistryKeys(const char* place, const char* path, std::vector<std::string>& outNames) override {
        const auto found = registryKeys.find(std::string(place) + "\\" + path);
        if (found == registryKeys.end()) {
            return false;
        }
        outNames.insert(outNames.end(), found->second.begin(), found->second.end());
        return true;
    }

    bool openInDefaultBrowser(const char* url) override {
        calls.push_back("openInDefaultBrowser(" + std::string(url) + ")");
        return true;
    }
    void sleepMilliseconds(std::uint32_t milliseconds) override {
        calls.push_back("sleepMilliseconds(" + std::to_string(milliseconds) + ")");
    }

private:
    static std::string viewOf(std::uint32_t flags) { return (flags & kEntryIn32BitView) != 0 ? ", x86" : ""; }
    static bool isInView(const InstalledApplication& application, std::uint32_t flags) {
        return application.in32BitView == ((flags & kEntryIn32BitView) != 0);
    }
};

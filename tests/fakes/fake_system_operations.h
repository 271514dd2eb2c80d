#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "base/text_functions.h"
#include "contracts/system_operations.h"
#include "support/utilities.h"

// The system's answers as a test wants them, on a file system of the test's choice. What changes something is
// written down in `calls`, such as "closeApplication(tool.exe, program)".
class FakeSystemOperations : public SystemOperations {
public:
    explicit FakeSystemOperations(platform::FileSystem& files) : files_(files) {}

    std::vector<std::string> calls;
    std::string temporaryPrefix = "/tmp/orinstall";
    int temporaryNamesLeft = 1000;                      // afterwards the system refuses
    std::map<std::string, std::string> installed;       // application and its action log
    std::map<std::string, std::string> installed32;     // the same in the 32-bit view
    std::map<std::string, std::string> publishers;      // of applications
    std::vector<std::string> running;                   // process names
    std::map<std::string, SystemRegistryValue> values;  // by "PLACE\path:name"
    bool closingWorks = true;
    bool closingNeedsService = false;
    int pollsBeforeEnd = 0;  // so many looks still find a closed process
    std::uint32_t slept = 0;
    std::vector<std::string> browsed;

    int getTemporaryFileName(char* buffer, int size) override {
        if (temporaryNamesLeft <= 0) {
            return -1;
        }
        --temporaryNamesLeft;
        OUtils::copyText(buffer, (temporaryPrefix + std::to_string(++temporaryCount_)).c_str(), size);
        return 0;
    }

    bool findUninstallEntry(const char* applicationName, std::uint32_t flags) override {
        return listOf(flags).count(applicationName) != 0;
    }
    void findEntriesByPublisher(std::vector<std::string>& outNames, const char* nameFilter,
                                const char* publisher, std::uint32_t flags) override {
        for (const auto& [name, log] : listOf(flags)) {
            const bool publisherFits = publisher == nullptr || publisher[0] == '\0' ||
                                       publishers[name].find(publisher) != std::string::npos;
            if (name.find(nameFilter) != std::string::npos && publisherFits) {
                outNames.push_back(name);
            }
        }
    }
    bool getApplicationLogFile(const char* applicationName, char* buffer, int size) override {
        const auto found = installed.find(applicationName);
        OUtils::copyText(buffer, found == installed.end() ? "" : found->second.c_str(), size);
        return found != installed.end();
    }

    bool isApplicationRunning(const char* name, const char*) override {
        if (isIn(ending_, name)) {
            if (pollsBeforeEnd-- > 0) {
                return true;
            }
            ending_.clear();
        }
        return isIn(running, name);
    }
    bool closeApplication(const char* name, bool isService, const char*) override {
        calls.push_back("closeApplication(" + std::string(name) + (isService ? ", service)" : ", program)"));
        if (!closingWorks || closingNeedsService != isService || !isIn(running, name)) {
            return false;
        }
        running.erase(std::remove(running.begin(), running.end(), name), running.end());
        ending_.push_back(name);
        if (onClose) {
            onClose();
        }
        return true;
    }
    std::function<void()> onClose;

    bool copyFile(const char* from, const char* to) override { return OUtils::copyFile(from, to, files_); }

    bool readRegistryValue(const char* place, const char* path, const char* valueName,
                           SystemRegistryValue& outValue) override {
        const auto found = values.find(std::string(place) + "\\" + path + ":" + valueName);
        if (found == values.end()) {
            return false;
        }
        outValue = found->second;
        return true;
    }
    bool listRegistryKeys(const char*, const char*, std::vector<std::string>& outNames) override {
        outNames.clear();
        return false;
    }
    bool openInDefaultBrowser(const char* url) override {
        browsed.push_back(url);
        return true;
    }
    void sleepMilliseconds(std::uint32_t milliseconds) override { slept += milliseconds; }

private:
    static bool isIn(const std::vector<std::string>& names, const char* name) {
        return std::find(names.begin(), names.end(), name) != names.end();
    }
    const std::map<std::string, std::string>& listOf(std::uint32_t flags) const {
        return (flags & kEntryIn32BitView) != 0 ? installed32 : installed;
    }

    platform::FileSystem& files_;
    std::vector<std::string> ending_;
    int temporaryCount_ = 0;
};

#pragma once

#include <cstdint>
#include <string>

#include "base/fixed_text.h"
#include "platform/platform.h"
#include "session/installer.h"
#include "wini/process_environment.h"
#include "wini/running_applications.h"
#include "wini/uninstall_list.h"
#include "wini/wini_modifications.h"

// What has to exist ahead of the session.
struct WiniEnvironment {
    explicit WiniEnvironment(const platform::Platform& platform)
        : processEnvironment(platform.environment, platform.files), modifications(platform) {}

    ProcessEnvironment processEnvironment;
    WiniModifications modifications;
};

// A session on the real operating system. Its operations are short: each family has a class of its own.
class Wini : private WiniEnvironment, public Installer {
public:
    // The platform is borrowed and outlives the session. The three values are those of the command line.
    Wini(const platform::Platform& platform, int level, int gui, int ignoreErrors);

    // At most 1,559 bytes; null or empty: none.
    void setConfigFile(const char* path) { configFile_.assign(path); }
    int getDebugLevelArgument() const { return debugLevelArgument_; }
    int getGuiArgument() const { return guiArgument_; }
    int getIgnoreErrorsArgument() const { return ignoreErrorsArgument_; }

    int getTemporaryFileName(char* buffer, int size) override;
    bool findUninstallEntry(const char* applicationName, std::uint32_t flags) override;
    void findEntriesByPublisher(std::vector<std::string>& outNames, const char* nameFilter,
                                const char* publisher, std::uint32_t flags) override;
    bool getApplicationLogFile(const char* applicationName, char* buffer, int size) override;
    bool isApplicationRunning(const char* name, const char* directory) override;
    bool closeApplication(const char* name, bool isService, const char* directory) override;
    bool copyFile(const char* from, const char* to) override;
    bool readRegistryValue(const char* place, const char* path, const char* valueName,
                           SystemRegistryValue& outValue) override;
    bool listRegistryKeys(const char* place, const char* path, std::vector<std::string>& outNames) override;
    // The log tells a failure.
    bool openInDefaultBrowser(const char* url) override;
    void sleepMilliseconds(std::uint32_t milliseconds) override;

    int getConfigFile(char* buffer, int size) override;

protected:
    // Marks programs as such, where the file system knows that.
    void afterFileInstalled(const std::string& path, const FileEntry& file) override;

private:
    platform::Platform platform_;
    PathText configFile_;
    int debugLevelArgument_;
    int guiArgument_;
    int ignoreErrorsArgument_;
    UninstallList uninstallList_;
    RunningApplications runningApplications_;
};

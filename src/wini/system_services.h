#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "contracts/system_operations.h"
#include "engine/changes/program_run.h"
#include "platform/clock.h"
#include "platform/platform.h"
#include "support/debug_log.h"
#include "wini/application_registration.h"
#include "wini/external_uninstaller.h"
#include "wini/running_applications.h"
#include "wini/uninstall_list.h"
#include "wini/uninstaller_watch.h"

// How time passes for the services.
struct ServiceClock {
    UninstallerWatch::Clock now = platform::monotonicMilliseconds;
    std::function<void(std::uint32_t milliseconds)> sleep = platform::sleepMilliseconds;
};

// The services of the operating system that no change owns: the list of installed applications, running
// programs, other products' uninstallers, raw reading of the registry. Needs a machine and a log, and is made
// before the session that asks it. Session thread only, but for temporaryFileName, which any thread may call.
class SystemServices : public SystemOperations {
public:
    // The longest path of a temporary file, in bytes.
    static constexpr std::size_t kTemporaryPathLimit = 1559;

    // What the platform refers to is borrowed and outlives this object.
    SystemServices(const platform::Platform& machine, DebugLog debugLog, ServiceClock clock = {});

    // Handles its events during waits that no report is handed to. Borrowed; null for none, as at first.
    void setFrontEnd(InstallerUI* ui) { runningApplications_.setFrontEnd(ui); }

    std::optional<std::string> temporaryFileName() override;

    bool findUninstallEntry(std::string_view applicationName, std::uint32_t flags) override;
    std::vector<std::string> findEntriesByPublisher(std::string_view nameFilter, std::string_view publisher,
                                                    std::uint32_t flags) override;
    std::optional<std::string> applicationLogFile(std::string_view applicationName) override;
    bool registerApplication(const ApplicationEntry& entry) override;
    bool removeUninstallEntry(std::string_view applicationName) override;
    std::string entryFault() override { return registration_.entryFault(); }
    bool leaveKeysToList(std::string_view path, int levels) override;
    bool uninstallApplication(std::string_view applicationName, std::string_view arguments,
                              std::uint32_t flags, InstallerUI* ui,
                              const std::function<bool()>& isToEnd) override;

    bool isApplicationRunning(std::string_view name, std::string_view directory) override;
    bool closeApplication(std::string_view name, bool isService, std::string_view directory) override;
    bool isProgramRunning(std::string_view path) override;
    bool closeProgram(std::string_view path) override;

    bool copyFile(std::string_view from, std::string_view to) override;
    std::optional<SystemRegistryValue> readRegistryValue(std::string_view place, std::string_view path,
                                                         std::string_view valueName) override;
    std::optional<std::vector<std::string>> listRegistryKeys(std::string_view place,
                                                             std::string_view path) override;
    bool openInDefaultBrowser(std::string_view url) override;
    void sleepMilliseconds(std::uint32_t milliseconds) override;

private:
    platform::Platform machine_;
    DebugLog debugLog_;
    ServiceClock clock_;
    ProgramRun programs_;
    UninstallList uninstallList_;
    ApplicationRegistration registration_;
    ExternalUninstaller uninstallers_;
    RunningApplications runningApplications_;
};

#pragma once

#include <cstdint>
#include <string>

#include "support/debug_log.h"
#include "wini/uninstall_list.h"

class InstallerUI;
class ProgramRunner;

namespace platform {
class NamedEvents;
class Processes;
class Registry;
}  // namespace platform

// Runs the registered uninstallers of other applications.
class ExternalUninstaller {
public:
    // How long an uninstaller that isn't waited for to its end gets to tell that it runs, and then that it is
    // through.
    static constexpr std::uint32_t kStartMilliseconds = 60000;
    static constexpr std::uint32_t kEndMilliseconds = 300000;

    struct Parts {
        platform::Registry& registry;
        platform::Processes& processes;
        platform::NamedEvents& events;
        ProgramRunner& runner;
    };

    // All are borrowed and outlive this object.
    ExternalUninstaller(Parts parts, DebugLog debugLog)
        : parts_(parts), list_(parts.registry), debugLog_(debugLog) {}

    // `arguments` may be null; `flags` is a set of UninstallEntryFlag. With kEntryWait the uninstaller is
    // waited for while the front end breathes, and true means that it ended with 0. Without, it is told to
    // ask nobody unless `ui` is graphical, its two events are waited for, and true means that it started.
    bool uninstallApplication(const char* applicationName, const char* arguments, std::uint32_t flags,
                              InstallerUI* ui);

private:
    bool runWithEvents(const std::string& command);

    Parts parts_;
    UninstallList list_;
    DebugLog debugLog_;
};

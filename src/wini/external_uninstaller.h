#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "support/debug_log.h"
#include "wini/uninstall_list.h"

class InstallerUI;
class ProgramRun;

namespace platform {
class NamedEvents;
class Processes;
class Registry;
}  // namespace platform

// Runs the registered uninstallers of other applications.
class ExternalUninstaller {
public:
    // How long an uninstaller that isn't waited for to its end gets to signal its start, and then its end.
    static constexpr std::uint32_t kStartMilliseconds = 60000;
    static constexpr std::uint32_t kEndMilliseconds = 300000;

    struct Parts {
        platform::Registry& registry;
        platform::Processes& processes;
        platform::NamedEvents& events;
        ProgramRun& programs;
    };

    // All are borrowed and outlive this object.
    ExternalUninstaller(Parts parts, DebugLog debugLog)
        : parts_(parts), list_(parts.registry), debugLog_(debugLog) {}

    // `flags` is a set of UninstallEntryFlag; `ui` may be null. With kEntryWait this waits for the
    // uninstaller to end while the front end keeps responding; true means that it ended with 0. Without
    // kEntryWait the uninstaller runs unattended unless `ui` is graphical, and this waits for its two events;
    // true means that it started.
    bool uninstallApplication(std::string_view applicationName, std::string_view arguments,
                              std::uint32_t flags, InstallerUI* ui);

private:
    bool runWithEvents(const std::string& command);

    Parts parts_;
    UninstallList list_;
    DebugLog debugLog_;
};

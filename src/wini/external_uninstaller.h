#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/clock.h"
#include "support/debug_log.h"
#include "wini/uninstall_list.h"
#include "wini/uninstaller_watch.h"

class InstallerUI;
class Report;

namespace platform {
class NamedEvents;
class Processes;
class Registry;
}  // namespace platform

// Runs the registered uninstallers of other applications.
class ExternalUninstaller {
public:
    struct Parts {
        platform::Registry& registry;
        platform::Processes& processes;
        platform::NamedEvents& events;
    };

    // All are borrowed and outlive this object.
    ExternalUninstaller(Parts parts, DebugLog debugLog, UninstallerWatch::Limits limits = {},
                        UninstallerWatch::Clock clock = platform::monotonicMilliseconds)
        : parts_(parts),
          list_(parts.registry),
          debugLog_(debugLog),
          limits_(limits),
          clock_(std::move(clock)) {}

    // `flags` is a set of UninstallEntryFlag; `ui` may be null.
    //
    // With kEntryWait this waits, while the front end keeps responding, for the end of the uninstaller and of
    // what that leaves at work: until it has signalled its end, failed, or is off the list. At each limit the
    // user may end the waiting, which an unattended run does; so does `isToEnd`, which is asked all the time.
    // The uninstaller is never ended. Why it doesn't start and the code that it fails with are shown. True
    // means that it ended with 0.
    //
    // Without kEntryWait the uninstaller runs unattended unless `ui` is graphical, and this waits for its two
    // events, up to the limits; true means that it started.
    bool uninstallApplication(std::string_view applicationName, std::string_view arguments,
                              std::uint32_t flags, InstallerUI* ui, const std::function<bool()>& isToEnd);

private:
    struct Entry {
        std::string name;
        std::uint32_t flags;
        std::string command;
    };

    std::optional<Entry> findEntry(std::string_view applicationName, std::uint32_t flags, Report& report);
    bool runToEnd(const Entry& entry, Report& report, const std::function<bool()>& isToEnd);
    bool follow(const Entry& entry, UninstallerWatch& watch, Report& report,
                const std::function<bool()>& isToEnd);
    bool isOver(const Entry& entry, const UninstallerWatch& watch);
    bool isToLeave(const Entry& entry, UninstallerWatch& watch, Report& report);
    bool hasSucceeded(const Entry& entry, const UninstallerWatch& watch, Report& report);
    bool runWithEvents(const std::string& command, Report& report);

    Parts parts_;
    UninstallList list_;
    DebugLog debugLog_;
    UninstallerWatch::Limits limits_;
    UninstallerWatch::Clock clock_;
};

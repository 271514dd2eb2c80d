#include "wini/external_uninstaller.h"

#include <algorithm>

#include "contracts/installer_ui.h"
#include "contracts/system_operations.h"
#include "engine/report.h"
#include "platform/error_text.h"
#include "platform/named_events.h"
#include "platform/processes.h"
#include "platform/registry.h"
#include "wini/uninstaller_events.h"

namespace {

using Phase = UninstallerWatch::Phase;

std::string uninstallerOf(const std::string& name) {
    return "The uninstaller of \"" + name + "\"";
}

std::string inMinutes(std::uint64_t milliseconds) {
    const std::uint64_t minutes = milliseconds / 60000;
    return std::to_string(minutes) + (minutes == 1 ? " minute" : " minutes");
}

// What the limit of a phase makes known.
std::string overdueText(const std::string& name, const UninstallerWatch& watch) {
    const std::string time = inMinutes(watch.waited());
    return watch.phase() == Phase::kUnclear
               ? uninstallerOf(name) + " ended " + time + " ago, but the product is still registered"
               : uninstallerOf(name) + " has not ended after " + time;
}

// In short turns, so that the front end handles its events.
bool waitFor(platform::NamedEvent& event, std::uint32_t limit, Report& report) {
    constexpr std::uint32_t kOneLook = 50;
    if (report.ui() == nullptr) {
        return event.wait(limit);
    }
    for (std::uint32_t waited = 0; waited < limit; waited += kOneLook) {
        report.pumpEvents();
        if (event.wait(std::min(kOneLook, limit - waited))) {
            return true;
        }
    }
    return false;
}

}  // namespace

bool ExternalUninstaller::uninstallApplication(std::string_view applicationName, std::string_view arguments,
                                               std::uint32_t flags, InstallerUI* ui,
                                               const std::function<bool()>& isToEnd) {
    Report report(ui, nullptr);
    std::optional<Entry> entry = findEntry(applicationName, flags, report);
    if (!entry) {
        return false;
    }
    if (!arguments.empty()) {
        entry->command.append(" ").append(arguments);
    }
    if ((flags & kEntryWait) != 0) {
        return runToEnd(*entry, report, isToEnd);
    }
    if (ui == nullptr || ui->isGraphical() == 0) {
        entry->command += " -gui=0";
    }
    return runWithEvents(entry->command, report);
}

std::optional<ExternalUninstaller::Entry> ExternalUninstaller::findEntry(std::string_view applicationName,
                                                                         std::uint32_t flags,
                                                                         Report& report) {
    const std::string name(applicationName);
    const std::optional<std::string> command = list_.readUninstallString(name, flags);
    if (!command) {
        debugLog_.line("ERROR: Could not obtain uninstall string for uninstalling application: \"" + name +
                       "\"");
        report.note(uninstallerOf(name) + " is not known: its entry names none");
        return std::nullopt;
    }
    return Entry{name, flags, *command};
}

bool ExternalUninstaller::runToEnd(const Entry& entry, Report& report, const std::function<bool()>& isToEnd) {
    // Before the uninstaller, which signals only events that are there.
    const auto start = parts_.events.create(kUninstallerStartEvent);
    const auto end = parts_.events.create(kUninstallerEndEvent);
    int error = 0;
    const auto program = parts_.processes.start(entry.command, "", error);
    if (program == nullptr) {
        debugLog_.line("ERROR: " + entry.command + " does not start (" + std::to_string(error) + ")");
        report.note(uninstallerOf(entry.name) + " does not start: " + entry.command + ": " +
                    platform::errorText(error));
        return false;
    }
    if (start == nullptr || end == nullptr) {
        debugLog_.line(
            "WARNING: Only the end of the uninstaller's own program is waited for: no named events");
    }
    UninstallerWatch watch(*program, start.get(), end.get(), limits_, clock_);
    return follow(entry, watch, report, isToEnd) && hasSucceeded(entry, watch, report);
}

// False when the waiting was given up.
bool ExternalUninstaller::follow(const Entry& entry, UninstallerWatch& watch, Report& report,
                                 const std::function<bool()>& isToEnd) {
    do {
        report.pumpEvents();
        if (isToEnd()) {
            const std::string text = uninstallerOf(entry.name) + " is not waited for any longer";
            debugLog_.line("WARNING: " + text);
            report.note(text);
            return false;
        }
        if (watch.isOverdue() && isToLeave(entry, watch, report)) {
            // A program that ended with 0 has done all that can be asked of it.
            return watch.phase() == Phase::kUnclear;
        }
        watch.look();
    } while (!isOver(entry, watch));
    return true;
}

// Without a signal, only its effect shows that an uninstaller is done.
bool ExternalUninstaller::isOver(const Entry& entry, const UninstallerWatch& watch) {
    return watch.phase() == Phase::kOver ||
           (watch.phase() == Phase::kUnclear &&
            list_.testEntry(entry.name, entry.flags) == platform::kRegNotFound);
}

// The question is one that those who can't be asked agree to, so that only a person goes on waiting.
bool ExternalUninstaller::isToLeave(const Entry& entry, UninstallerWatch& watch, Report& report) {
    const std::string text = overdueText(entry.name, watch);
    debugLog_.line("WARNING: " + text);
    InstallerUI* const ui = report.ui();
    if (ui != nullptr && ui->messageBox((text + ". Stop waiting?").c_str(), MessageKind::kYesNo) == 0) {
        watch.extend();
        return false;
    }
    report.note(watch.phase() == Phase::kUnclear ? text : text + " and is left running");
    return true;
}

bool ExternalUninstaller::hasSucceeded(const Entry& entry, const UninstallerWatch& watch, Report& report) {
    if (watch.exitCode() == 0) {
        return true;
    }
    const std::string outcome = " ended with the code " + std::to_string(watch.exitCode());
    debugLog_.line("ERROR: " + entry.command + outcome);
    report.note(uninstallerOf(entry.name) + outcome);
    return false;
}

bool ExternalUninstaller::runWithEvents(const std::string& command, Report& report) {
    const auto start = parts_.events.create(kUninstallerStartEvent);
    const auto end = parts_.events.create(kUninstallerEndEvent);
    int error = 0;
    if (parts_.processes.start(command, "", error) == nullptr) {
        debugLog_.line("ERROR: The uninstaller does not start (" + std::to_string(error) + "): " + command);
        return false;
    }
    if (start == nullptr || end == nullptr) {
        debugLog_.line("WARNING: The end of the uninstaller is not waited for: no named events");
    } else if (waitFor(*start, limits_.start, report)) {
        waitFor(*end, limits_.end, report);
    }
    return true;
}

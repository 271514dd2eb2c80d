#include "wini/external_uninstaller.h"

#include "contracts/installer_ui.h"
#include "contracts/system_operations.h"
#include "engine/changes/program_run.h"
#include "engine/report.h"
#include "platform/named_events.h"
#include "platform/processes.h"
#include "wini/uninstaller_events.h"

namespace {

constexpr std::uint32_t kLookMilliseconds = 100;

}  // namespace

bool ExternalUninstaller::uninstallApplication(std::string_view applicationName, std::string_view arguments,
                                               std::uint32_t flags, InstallerUI* ui) {
    const auto registered = list_.readUninstallString(applicationName, flags);
    if (!registered) {
        debugLog_.line("ERROR: Could not obtain uninstall string for uninstalling application: \"" +
                       std::string(applicationName) + "\"");
        return false;
    }
    std::string command = *registered;
    if (!arguments.empty()) {
        command.append(" ").append(arguments);
    }
    if ((flags & kEntryWait) != 0) {
        Report report(ui, nullptr);
        // The registered text is a command line with quotes of its own.
        return parts_.programs.run({command, "", "", kRunAsynchronous | kRunWait | kRunWholeCommandLine},
                                   report, kLookMilliseconds);
    }
    if (ui == nullptr || ui->isGraphical() == 0) {
        command += " -gui=0";
    }
    return runWithEvents(command);
}

bool ExternalUninstaller::runWithEvents(const std::string& command) {
    const auto start = parts_.events.create(kUninstallerStartEvent);
    const auto end = parts_.events.create(kUninstallerEndEvent);
    int error = 0;
    if (parts_.processes.start(command, "", error) == nullptr) {
        debugLog_.print("ERROR: The uninstaller does not start (%d): %s", error, command.c_str());
        return false;
    }
    if (start == nullptr || end == nullptr) {
        debugLog_.print("WARNING: The end of the uninstaller is not waited for: no named events");
    } else if (start->wait(kStartMilliseconds)) {
        end->wait(kEndMilliseconds);
    }
    return true;
}

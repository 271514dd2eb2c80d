#include "wini/external_uninstaller.h"

#include "contracts/installer_ui.h"
#include "contracts/system_modifications.h"
#include "contracts/system_operations.h"
#include "platform/named_events.h"
#include "platform/processes.h"
#include "wini/program_runner.h"
#include "wini/uninstaller_events.h"

namespace {

constexpr std::uint32_t kLookMilliseconds = 100;

}  // namespace

bool ExternalUninstaller::uninstallApplication(const char* applicationName, const char* arguments,
                                               std::uint32_t flags, InstallerUI* ui) {
    std::string command;
    if (!list_.readUninstallString(applicationName, command, flags)) {
        debugLog_.print("ERROR: Could not obtain uninstall string for uninstalling application: \"%s\"",
                        applicationName == nullptr ? "" : applicationName);
        return false;
    }
    if (arguments != nullptr && arguments[0] != '\0') {
        command += std::string(" ") + arguments;
    }
    if ((flags & kEntryWait) != 0) {
        // The registered text is a command line with quotes of its own.
        return parts_.runner.runAssociatedProgram(command.c_str(), nullptr,
                                                  kRunAsynchronous | kRunWait | kRunWholeCommandLine, nullptr,
                                                  ui, kLookMilliseconds);
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
    if (parts_.processes.start(command.c_str(), "", error) == nullptr) {
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

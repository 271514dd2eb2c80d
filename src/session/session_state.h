#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "base/fixed_text.h"
#include "description/colour_theme.h"
#include "description/control_variables.h"
#include "description/dialog_model.h"
#include "description/pxml.h"
#include "description/variable_exclusions.h"
#include "engine/earlier_installations.h"
#include "engine/report.h"
#include "engine/uninstall_state.h"
#include "package/cabinet.h"
#include "session/session_flags.h"
#include "support/debug_log.h"
#include "support/p_file_console.h"
#include "ui/navigation_state.h"

class CommandLineArguments;

// The saved state of an installation that was taken away for this one.
struct UninstallBackup {
    std::string productName;
    std::string archivePath;
    std::string directoriesPath;
};

// A backup archive of an installation that was taken away, and its copy.
struct NestedBackup {
    std::string originalPath;
    std::string copyPath;
};

// What a session knows. The thread of the console control handler reads and writes the atomic fields of
// `navigation` alone.
struct SessionState {
    explicit SessionState(platform::FileSystem& files) : cabinet(files, debugLog), installLog(files) {}

    DebugLog debugLog;  // the first member, since others take a copy
    Cabinet cabinet;
    PXML description;
    ControlVariables controlVariables;
    std::int32_t uiIsGraphical = 0;
    bool isUnattended = false;  // nobody is asked anything
    std::uint32_t sessionFlags = kSessionBackup;
    const CommandLineArguments* parameters = nullptr;  // borrowed; null without a command line
    PathText applicationPath;                          // overrides the directory of the own image when set
    DialogModel dialogs;
    PFileConsole installLog;                     // the log of an installation
    std::unique_ptr<PFileStream> actionLogFile;  // open in a session that starts from an action log
    NavigationState navigation;
    ColourTheme colourTheme;
    EarlierInstallations earlier;
    std::vector<NestedBackup> nestedBackups;        // the copies are deleted at the session's end
    std::vector<UninstallBackup> uninstallBackups;  // deleted at the session's end
    VariableExclusions exclusions;
    UninstallState uninstall;
    ErrorList errorList;
    std::int32_t postInstallDone = 0;  // the last work of the installation was begun

    bool isActionLogSession() const { return actionLogFile != nullptr; }
};

#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "engine/removal_backups.h"
#include "engine/report.h"
#include "package/cabinet.h"
#include "session/session_flags.h"
#include "support/debug_log.h"
#include "support/p_stream.h"
#include "support/run_outcome.h"

class CommandLineArguments;

// What a session knows besides its description. For the session's thread only.
struct SessionState {
    SessionState(const platform::Platform& machine, DebugLog log)
        : debugLog(log), cabinet(machine.files, log), removed(machine) {}

    DebugLog debugLog;
    Cabinet cabinet;
    // In a session that starts from an action log: all of it, because one that can't be read halfway through
    // would be undone by half.
    std::unique_ptr<PStream> actionLogFile;
    std::uint32_t sessionFlags = kSessionBackup;
    bool isUnattended = false;                         // the user isn't asked
    const CommandLineArguments* parameters = nullptr;  // borrowed; null without a command line
    std::string applicationPath;                       // overrides the program's directory when set
    std::string configFile;                            // of answers; empty without one
    ErrorList errorList;
    RunOutcome runOutcome;
    RemovalBackups removed;  // of earlier installations

    bool isActionLogSession() const { return actionLogFile != nullptr; }
};

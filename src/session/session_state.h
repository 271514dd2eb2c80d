#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "engine/removal_backups.h"
#include "engine/report.h"
#include "package/cabinet.h"
#include "session/session_flags.h"
#include "support/debug_log.h"
#include "support/p_file_stream.h"

class CommandLineArguments;

// What a session knows besides its description. For the session's thread only.
struct SessionState {
    SessionState(platform::FileSystem& files, DebugLog log) : debugLog(log), cabinet(files, log) {}

    DebugLog debugLog;
    Cabinet cabinet;
    std::unique_ptr<PFileStream> actionLogFile;  // open in a session that starts from an action log
    std::uint32_t sessionFlags = kSessionBackup;
    bool isUnattended = false;                         // the user isn't asked
    const CommandLineArguments* parameters = nullptr;  // borrowed; null without a command line
    std::string applicationPath;                       // overrides the program's directory when set
    std::string configFile;                            // of answers; empty without one
    ErrorList errorList;
    RemovalBackups removed;  // deleted at the session's end, unless it is all that is left

    bool isActionLogSession() const { return actionLogFile != nullptr; }
};

#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "engine/report.h"
#include "package/cabinet.h"
#include "session/session_flags.h"
#include "support/debug_log.h"
#include "support/p_file_stream.h"

class CommandLineArguments;

// The saved state of an installation that was removed for this one.
struct UninstallBackup {
    std::string productName;
    std::string archivePath;
    std::string directoriesPath;
};

// A backup archive of an installation that was removed, and its copy.
struct NestedBackup {
    std::string originalPath;
    std::string copyPath;
};

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
    std::vector<NestedBackup> nestedBackups;        // the copies are deleted at the session's end
    std::vector<UninstallBackup> uninstallBackups;  // deleted at the session's end

    bool isActionLogSession() const { return actionLogFile != nullptr; }
};

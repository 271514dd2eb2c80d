#pragma once

#include <string>

#include "support/debug_log.h"

struct RunOptions;

namespace platform {
struct Platform;
}

// The first stage of uninstalling. A program can't delete the directory that it runs from, so the stage
// copies the action log and its own image to the temporary directory and starts the copy, without waiting.
class UninstallRelaunch {
public:
    // The platform is borrowed and outlives the object.
    UninstallRelaunch(platform::Platform& platform, DebugLog debugLog)
        : platform_(platform), debugLog_(std::move(debugLog)) {}

    // True when the copy was started. Otherwise the end event is signalled, for those who wait for the
    // uninstallation. `logPath` is the installation's action log.
    bool run(const std::string& logPath, const RunOptions& options);

    // The command line of the second stage.
    static std::string commandLine(const std::string& image, const std::string& logCopy,
                                   const RunOptions& options, int debugLevel);

    // Whether the image at `path` is such a copy, which may be deleted when its work is done.
    static bool isCopy(const std::string& path);

private:
    bool fail();
    bool copyToPrivateFile(const std::string& from, const std::string& to);

    platform::Platform& platform_;
    DebugLog debugLog_;
};

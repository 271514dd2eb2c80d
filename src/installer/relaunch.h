#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "support/debug_log.h"

class StartMessages;
struct RunOptions;

namespace platform {
class ChildProcess;
struct Platform;
}  // namespace platform

// The first stage of uninstalling. A program can't delete the directory that it runs from, so the stage
// copies the action log and its own image to a private directory below the temporary one and starts the copy,
// without waiting. Where that can't be, as when no program may run from there or others can change what lies
// there, it tries other places.
class UninstallRelaunch {
public:
    // The platform and the messages are borrowed and outlive the object.
    UninstallRelaunch(platform::Platform& platform, StartMessages& messages, DebugLog debugLog);
    ~UninstallRelaunch();

    // True when the copy was started. Otherwise a message says why, nothing stays of what was copied, and the
    // end event is signalled, for those who wait for the uninstallation. `registeredLog` is the path of the
    // installation's action log.
    bool run(const std::string& registeredLog, const RunOptions& options);

    // The file of a running program can't be removed here, so that of a first stage that waits for the second
    // one has to get out of the way.
    void moveImageAside() { movesImage_ = true; }

    // The second stage, after a run that was true; null before.
    std::unique_ptr<platform::ChildProcess> takeSecondStage() { return std::move(secondStage_); }

    // Whether there is nothing to be uninstalled by this action log.
    static bool isNothingThere(platform::Platform& platform, const std::string& registeredLog);

    // The command line of the second stage.
    static std::string commandLine(const std::string& image, const std::string& logCopy,
                                   const RunOptions& options, int debugLevel);

private:
    struct Failure {
        std::string log;   // for the debug log
        std::string text;  // for the screen
    };

    std::string readableLog(const std::string& registeredLog);
    bool fail(const std::string& log, const std::string& text);
    std::optional<Failure> runFrom(const std::string& place, const std::string& ownImage,
                                   const std::string& logPath, const RunOptions& options);

    platform::Platform& platform_;
    StartMessages& messages_;
    DebugLog debugLog_;
    bool movesImage_ = false;
    std::unique_ptr<platform::ChildProcess> secondStage_;
};

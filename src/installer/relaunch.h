#pragma once

#include <string>

class PConsole;
struct RunOptions;

namespace platform {
struct Platform;
}

// The first stage of uninstalling. A program can't delete the directory that it runs from, so the stage
// copies the action log and the own image to the temporary directory and starts the copy, without waiting.
class UninstallRelaunch {
public:
    // Both are borrowed and outlive the object.
    UninstallRelaunch(platform::Platform& platform, PConsole& log) : platform_(platform), log_(log) {}

    // The process's exit code: 0 when the copy was started, else -1, with the end event signalled for
    // whoever waits for the uninstallation.
    int run(const RunOptions& options, int debugLevel);

    // The command line of the second stage.
    static std::string commandLine(const std::string& image, const std::string& logCopy,
                                   const RunOptions& options, int debugLevel);

    // Whether the image at `path` is such a copy, so that it may go when its work is done.
    static bool isCopy(const std::string& path);

private:
    int fail();
    bool copyToPrivateFile(const char* from, const char* to);

    platform::Platform& platform_;
    PConsole& log_;
};

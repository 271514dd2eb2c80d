#pragma once

#include <string>

#include "support/debug_log.h"

class PXML;
class VariableExclusions;
class VariableStore;
namespace platform {
class FileSystem;
}

// Writes the configuration file that repeats an installation unattended: the element DefValues with one
// element Value for each variable that isn't excluded from it, in the order of the store. It has the form of
// a description's own section and is read as one.
class ConfigurationExport {
public:
    // All of them outlive this object.
    ConfigurationExport(const VariableStore& variables, const VariableExclusions& exclusions,
                        platform::FileSystem& files, DebugLog debugLog)
        : variables_(variables), exclusions_(exclusions), files_(files), debugLog_(debugLog) {}

    // False when the file can't be made or written, or when something else than an older configuration file
    // is in its place. What was there is untouched after a failure, and no other file stays. The file is
    // complete as soon as it has its name; this user alone can read it, since the values are in it as they
    // are, passwords included. A link in its place is replaced, not followed.
    //
    // A value can't be repeated from such a file when it holds a `$`, has 1,024 bytes or more, or white space
    // at its ends: it is written all the same, and the log says so.
    bool write(const std::string& path);

private:
    void fill(PXML& document);
    bool mayReplace(const std::string& path);
    bool save(const PXML& document, const std::string& path);

    const VariableStore& variables_;
    const VariableExclusions& exclusions_;
    platform::FileSystem& files_;
    DebugLog debugLog_;
};

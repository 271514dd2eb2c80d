#pragma once

#include <cstdint>
#include <string>

#include "support/debug_log.h"

class PXML;
class VariableExclusions;
struct InstallVariable;
class VariableStore;
namespace platform {
class FileSystem;
}

// Writes the configuration file that repeats an installation unattended: the element DefValues with one
// element Value for each variable that isn't excluded from it, in the order of the store. It has the form of
// a description's own section and is read as one. A variable that still has the value that its expression or
// the machine gives (VariableStore::isFromItsOrigin) is left out: elsewhere it finds its own.
class ConfigurationExport {
public:
    // All of them outlive this object.
    ConfigurationExport(VariableStore& variables, const VariableExclusions& exclusions,
                        platform::FileSystem& files, DebugLog debugLog)
        : variables_(variables), exclusions_(exclusions), files_(files), debugLog_(debugLog) {}

    // False when the file can't be made or written, or when something else than an older configuration file
    // is in its place. What was there is untouched after a failure, and no other file stays. The file is
    // complete as soon as it has its name; this user alone can read it, since the values are in it as they
    // are, passwords included. A link in its place is neither replaced nor followed.
    //
    // A text is trimmed and expanded when it is read, so a value with a `$`, with 1,024 bytes or more, or
    // with white space at its ends is written as the default of an environment variable without a name, which
    // is taken as it stands.
    bool write(const std::string& path);
    // Why the last write gave false, for the user.
    const std::string& reason() const { return reason_; }

private:
    void fill(PXML& document);
    static void add(PXML& document, std::int32_t root, const InstallVariable& variable);
    bool mayReplace(const std::string& path);
    bool save(const PXML& document, const std::string& path);

    VariableStore& variables_;
    const VariableExclusions& exclusions_;
    platform::FileSystem& files_;
    DebugLog debugLog_;
    std::string reason_;
};

#pragma once

#include <string>
#include <string_view>

#include "support/debug_log.h"

struct ApplicationEntry;

namespace platform {
class Registry;
}

// The entries that products make in the system's list of installed applications, in the native view. An
// application is known there by its full name; a name that is empty or holds a `\` can't be an entry of its
// own.
//
// A machine may have no such list. Then a value of the list's key holds the number of levels that were made
// for it, and the last entry that goes takes them along.
class ApplicationRegistration {
public:
    // The registry is borrowed and outlives this object.
    ApplicationRegistration(platform::Registry& registry, DebugLog debugLog)
        : registry_(registry), debugLog_(debugLog) {}

    // Makes or renews the entry. A value that can't be written doesn't stop the others. True when all of it
    // was written; failures are logged.
    bool registerApplication(const ApplicationEntry& entry);
    // Takes the entry of that name away, with all its values. False when there is none, it has subkeys or the
    // system refuses.
    bool removeUninstallEntry(std::string_view applicationName);
    // Why the last of these failed, as SystemOperations.
    std::string entryFault() const;
    // As SystemOperations.
    bool leaveKeysToList(std::string_view path, int levels);

private:
    void noteLevels(int count);
    void removeOwnList();
    int ownLevels();

    platform::Registry& registry_;
    DebugLog debugLog_;
    int fault_ = 0;  // the registry's first status that wasn't kRegOk
};

#pragma once

#include <string>

#include "support/debug_log.h"

class InstallExchangeInfo;

namespace platform {
class Registry;
}

// The product's entry in the system's list of installed applications, in the native view. An application is
// known there by its full name; a name that is empty or holds a `\` can't be an entry of its own.
//
// A machine may have no such list. Then the list's key says in a value how many levels were made for it, and
// the last entry that goes takes them along.
class ApplicationRegistration {
public:
    // Command and arguments have fewer bytes than this each.
    static constexpr int kCommandSize = 4096;

    // All are borrowed and outlive this object.
    ApplicationRegistration(platform::Registry& registry, InstallExchangeInfo& product, DebugLog debugLog)
        : registry_(registry), product_(product), debugLog_(debugLog) {}

    // The command that uninstalls the product, in double quotes if `quote` asks for it, and its arguments,
    // which name the action log in double quotes. False, with both empty and a line in the log, when a text
    // of the product is missing, one of the two gets too long, or a path holds a double quote.
    bool buildUninstallCommand(std::string& outCommand, std::string& outArguments, bool quote);
    // Makes or renews the entry. A value that can't be written doesn't stop the others. True when all of it
    // was written.
    bool registerApplication();
    // Takes the entry of that name away, with all its values. False when there is none, it has subkeys or the
    // system refuses.
    bool removeUninstallEntry(const char* applicationName);

private:
    struct Entry;

    bool collect(Entry& outEntry);
    bool write(const Entry& entry);
    void noteLevels(int count);
    void removeOwnList();
    bool fail(const char* message);

    platform::Registry& registry_;
    InstallExchangeInfo& product_;
    DebugLog debugLog_;
};

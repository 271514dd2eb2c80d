#pragma once

#include "contracts/system_modifications.h"
#include "support/debug_log.h"

class FirewallOperations;

namespace platform {
class Firewall;
}

// The changes of firewall exceptions that a description asks for and that a log undoes. Failures are results
// and lines of the log; nothing is thrown but std::bad_alloc.
class FirewallChanges {
public:
    // Both are borrowed and outlive this object.
    FirewallChanges(platform::Firewall& firewall, DebugLog debugLog)
        : firewall_(firewall), debugLog_(debugLog) {}

    // A null argument fails, and so does a path that the action log can't hold as it is, since the exception
    // could not be taken back. What is open already counts as done.
    FirewallResult addApplication(const char* path, const char* name);
    FirewallResult removeApplication(const char* path);
    // All protocols of the rule, or none that wasn't open before.
    FirewallResult addPort(const FirewallPortRule& rule);
    // `logText`: port, protocols separated by ";", name; separated by TABs. Null or damaged: fails.
    FirewallResult removePort(const char* logText);

private:
    template <typename Action>
    FirewallResult carryOut(const char* family, Action action);
    void addPorts(FirewallOperations& firewall, const FirewallPortRule& rule);
    FirewallPortRule readRecord(const char* logText);
    FirewallResult removePorts(FirewallOperations& firewall, const FirewallPortRule& rule);
    std::uint8_t protocolsOf(const char* words, const char* logText);

    platform::Firewall& firewall_;
    DebugLog debugLog_;
};

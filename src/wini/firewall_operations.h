#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>

#include "platform/firewall.h"

// The machine's firewall for one call: decides what has to be asked for and tells failures by exceptions,
// NonFatalError for a firewall that can't be reached and GenericError for the rest. Null texts count as
// empty. A protocol is one bit of FirewallProtocol.
class FirewallOperations {
public:
    // Raises when there is no firewall. The platform's object is borrowed and outlives this one.
    explicit FirewallOperations(platform::Firewall& firewall);

    bool isOn();
    // Switches it on if it is off.
    void switchOn();

    bool appIsEnabled(const char* path);
    // An exception that is already there stays as it is.
    void addApplication(const char* path, const char* name);
    void removeApplication(const char* path);

    bool portIsEnabled(std::int32_t port, std::uint8_t protocol);
    // False when the port was open already.
    bool addPort(std::int32_t port, std::uint8_t protocol, const char* name);
    void removePort(std::int32_t port, std::uint8_t protocol);

private:
    struct Failure;

    platform::FirewallProfile& profile();
    static void check(const platform::FirewallOutcome& outcome, std::initializer_list<Failure> failures);

    std::unique_ptr<platform::FirewallProfile> profile_;
};

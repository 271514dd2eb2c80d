#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>

#include "base/errors.h"
#include "platform/firewall.h"

enum FirewallProtocol : std::uint8_t { kFirewallTcp = 1, kFirewallUdp = 2 };

// A call of the system that failed.
class FirewallError : public GenericError {
public:
    FirewallError(const char* text, int error) : GenericError("%s", text), error_(error) {}

    int error() const { return error_; }  // the system's number

private:
    int error_;
};

// The machine's firewall for one change: asks for what isn't so yet, and reports failures by exceptions,
// NonFatalError for a firewall that can't be reached, FirewallError for another failure of the system, and
// GenericError for the rest. A protocol is one bit of
// FirewallProtocol.
class FirewallOperations {
public:
    // Raises when there is no firewall. The platform's object is borrowed and outlives this one.
    explicit FirewallOperations(platform::Firewall& firewall);

    bool isOn();
    // Switches it on if it is off.
    void switchOn();

    bool appIsEnabled(std::string_view path);
    // An exception that is already there stays as it is.
    void addApplication(std::string_view path, std::string_view name);
    void removeApplication(std::string_view path);

    bool portIsEnabled(std::int32_t port, std::uint8_t protocol);
    // False when the port was open already.
    bool addPort(std::int32_t port, std::uint8_t protocol, std::string_view name);
    void removePort(std::int32_t port, std::uint8_t protocol);

private:
    struct Failure;

    platform::FirewallProfile& profile();
    static void check(const platform::FirewallOutcome& outcome, std::initializer_list<Failure> failures);

    std::unique_ptr<platform::FirewallProfile> profile_;
};

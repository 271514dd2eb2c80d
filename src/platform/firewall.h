#pragma once

#include <string_view>

#include <cstdint>
#include <memory>

// The machine's firewall: programs and ports that may be reached from outside. Only the calls of the system;
// what to ask for when, and the texts of failures, are the caller's.
namespace platform {

enum class FirewallProtocol { kTcp, kUdp };

// The single calls of the system, so that a failure can be reported exactly.
enum class FirewallCall {
    kNone,
    kNoService,  // the system has no firewall service that can be asked
    kInitialize,
    kCreateManager,
    kLocalPolicy,
    kCurrentProfile,
    kGetEnabled,
    kSetEnabled,
    kListApplications,
    kApplicationEnabled,
    kCreateApplication,
    kSetApplicationPath,
    kSetApplicationName,
    kAddApplication,
    kRemoveApplication,
    kListPorts,
    kPortEnabled,
    kCreatePort,
    kSetPortNumber,
    kSetPortProtocol,
    kSetPortName,
    kAddPort,
    kRemovePort,
};

// The call that failed, with the system's number; kNone when all went well.
struct FirewallOutcome {
    FirewallCall failed = FirewallCall::kNone;
    int error = 0;
    bool unreachable = false;  // it failed because the service doesn't run

    bool done() const { return failed == FirewallCall::kNone; }
};

// A connection to the firewall's present profile. Used and destroyed by the thread that made it. Texts are
// UTF-8 and not null. An output keeps its value after a failure.
class FirewallProfile {
public:
    virtual ~FirewallProfile() = default;

    virtual FirewallOutcome isOn(bool& outOn) = 0;
    virtual FirewallOutcome switchOn() = 0;

    // An exception that isn't there counts as not enabled.
    virtual FirewallOutcome isApplicationEnabled(std::string_view path, bool& outEnabled) = 0;
    virtual FirewallOutcome addApplication(std::string_view path, std::string_view name) = 0;
    // Done as well when there is none.
    virtual FirewallOutcome removeApplication(std::string_view path) = 0;

    // As above. Whether the number is that of a port is for the system to judge.
    virtual FirewallOutcome isPortEnabled(std::int32_t port, FirewallProtocol protocol, bool& outEnabled) = 0;
    virtual FirewallOutcome addPort(std::int32_t port, FirewallProtocol protocol, std::string_view name) = 0;
    // Done as well when it isn't open.
    virtual FirewallOutcome removePort(std::int32_t port, FirewallProtocol protocol) = 0;
};

class Firewall {
public:
    virtual ~Firewall() = default;

    // `outProfile` is null after a failure.
    virtual FirewallOutcome connect(std::unique_ptr<FirewallProfile>& outProfile) = 0;
};

// On Linux each connection ends with kNoService.
Firewall& systemFirewall();

}  // namespace platform

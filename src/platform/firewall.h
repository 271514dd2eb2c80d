#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

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
    kReadApplication,
    kCreateApplication,
    kSetApplicationPath,
    kSetApplicationName,
    kSetApplicationReach,
    kAddApplication,
    kRemoveApplication,
    kListPorts,
    kPortEnabled,
    kReadPort,
    kCreatePort,
    kSetPortNumber,
    kSetPortProtocol,
    kSetPortName,
    kSetPortReach,
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

// Everything about an exception but what it is for, so that it can be made again as it was.
struct FirewallException {
    std::string name;
    bool enabled = true;
    std::int32_t scope = 0;       // the system's number: who may come in; 0 is everybody
    std::string remoteAddresses;  // which ones, where the scope leaves that to a list

    bool operator==(const FirewallException&) const = default;
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
    // Nothing is found where no exception is listed; one that isn't enabled is found.
    virtual FirewallOutcome readApplication(std::string_view path,
                                            std::optional<FirewallException>& outException) = 0;
    // Adds exactly this exception, enabled or not.
    virtual FirewallOutcome restoreApplication(std::string_view path, const FirewallException& exception) = 0;

    // As above. Whether the number is that of a port is for the system to judge.
    virtual FirewallOutcome isPortEnabled(std::int32_t port, FirewallProtocol protocol, bool& outEnabled) = 0;
    virtual FirewallOutcome addPort(std::int32_t port, FirewallProtocol protocol, std::string_view name) = 0;
    // Done as well when it isn't open.
    virtual FirewallOutcome removePort(std::int32_t port, FirewallProtocol protocol) = 0;
    virtual FirewallOutcome readPort(std::int32_t port, FirewallProtocol protocol,
                                     std::optional<FirewallException>& outException) = 0;
    virtual FirewallOutcome restorePort(std::int32_t port, FirewallProtocol protocol,
                                        const FirewallException& exception) = 0;
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

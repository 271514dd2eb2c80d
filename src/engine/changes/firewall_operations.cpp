#include "engine/changes/firewall_operations.h"

using platform::FirewallCall;
using platform::FirewallOutcome;

namespace {

// Whether a failure's text ends with the system's number.
enum class Number { kShown, kHidden };

void requireArguments(bool given, const char* operation) {
    if (!given) {
        throw GenericError("Invalid input arguments - FirewallOperations::%s()", operation);
    }
}

platform::FirewallProtocol protocolOf(std::uint8_t bit) {
    if ((bit & kFirewallTcp) != 0) {
        return platform::FirewallProtocol::kTcp;
    }
    if ((bit & kFirewallUdp) != 0) {
        return platform::FirewallProtocol::kUdp;
    }
    throw GenericError("Invalid firewall protocol or none specified!");
}

// Without these calls there is nothing to talk to, whatever their number says.
bool isReaching(FirewallCall call) {
    return call == FirewallCall::kNoService || call == FirewallCall::kInitialize ||
           call == FirewallCall::kCreateManager;
}

}  // namespace

struct FirewallOperations::Failure {
    FirewallCall call;
    std::string text;
    Number number = Number::kShown;
};

void FirewallOperations::check(const FirewallOutcome& outcome, std::initializer_list<Failure> failures) {
    for (const Failure& failure : failures) {
        if (outcome.done() || failure.call != outcome.failed) {
            continue;
        }
        const std::string number = " Error(" + std::to_string(outcome.error) + ")";
        const std::string line = failure.text + (failure.number == Number::kShown ? number : "");
        const char* const text = line.c_str();
        if (outcome.unreachable || isReaching(outcome.failed)) {
            throw NonFatalError("%s", text);
        }
        throw FirewallError(text, outcome.error);
    }
}

FirewallOperations::FirewallOperations(platform::Firewall& firewall) {
    check(firewall.connect(profile_),
          {{FirewallCall::kNoService, "This system has no firewall service that can be asked!"},
           {FirewallCall::kInitialize,
            "COM Interface initialization failed (Firewall service stopped/unaccessible)!"},
           {FirewallCall::kCreateManager, "CoCreateInstance failed (Firewall service stopped/unaccessible)!"},
           {FirewallCall::kLocalPolicy, "Getting Local policy failed!"},
           {FirewallCall::kCurrentProfile, "Getting Current profile failed!"}});
}

platform::FirewallProfile& FirewallOperations::profile() {
    if (profile_ == nullptr) {
        throw GenericError("Firewall Operations is not properly initialized!");
    }
    return *profile_;
}

bool FirewallOperations::isOn() {
    bool on = false;
    check(profile().isOn(on), {{FirewallCall::kGetEnabled, "Firewall Enabled query failed!"}});
    return on;
}

void FirewallOperations::switchOn() {
    if (!isOn()) {
        check(profile().switchOn(), {{FirewallCall::kSetEnabled, "Firewall Enable call failed!"}});
    }
}

bool FirewallOperations::appIsEnabled(std::string_view path) {
    platform::FirewallProfile& present = profile();
    requireArguments(!path.empty(), "appIsEnabled");
    bool enabled = false;
    check(present.isApplicationEnabled(path, enabled),
          {{FirewallCall::kListApplications, "Getting Authorized Applications failed!"},
           {FirewallCall::kApplicationEnabled, "Getting Application Enabled call failed!"}});
    return enabled;
}

void FirewallOperations::addApplication(std::string_view path, std::string_view name) {
    platform::FirewallProfile& present = profile();
    requireArguments(!path.empty() && !name.empty(), "addApplication");
    if (appIsEnabled(path)) {
        return;
    }
    check(present.addApplication(path, name),
          {{FirewallCall::kListApplications, "Getting Authorized Applications failed!"},
           {FirewallCall::kCreateApplication, "CoCreateInstance failed for adding new application!"},
           {FirewallCall::kSetApplicationPath, "Putting process image file name failed!"},
           {FirewallCall::kSetApplicationName, "Putting application name failed!"},
           {FirewallCall::kAddApplication, "Adding the application " + std::string(path) + " failed!",
            Number::kHidden}});
}

void FirewallOperations::removeApplication(std::string_view path) {
    platform::FirewallProfile& present = profile();
    requireArguments(!path.empty(), "removeApplication");
    check(present.removeApplication(path),
          {{FirewallCall::kListApplications, "Getting Authorized Applications failed!", Number::kHidden},
           {FirewallCall::kRemoveApplication, "Removing application " + std::string(path), Number::kHidden}});
}

bool FirewallOperations::portIsEnabled(std::int32_t port, std::uint8_t protocol) {
    bool enabled = false;
    check(profile().isPortEnabled(port, protocolOf(protocol), enabled),
          {{FirewallCall::kListPorts, "Getting Globally opened ports failed!"},
           {FirewallCall::kPortEnabled, "Retrieving enabled status for port failed!"}});
    return enabled;
}

bool FirewallOperations::addPort(std::int32_t port, std::uint8_t protocol, std::string_view name) {
    platform::FirewallProfile& present = profile();
    const platform::FirewallProtocol kind = protocolOf(protocol);
    requireArguments(!name.empty() && port != 0, "addPort");
    if (portIsEnabled(port, protocol)) {
        return false;
    }
    const std::string number = std::to_string(port);
    check(present.addPort(port, kind, name),
          {{FirewallCall::kListPorts, "Getting globally open ports failed!"},
           {FirewallCall::kCreatePort, "CoCreateInstance failed for creating new port!"},
           {FirewallCall::kSetPortNumber, "Putting port failed for port " + number + "!"},
           {FirewallCall::kSetPortProtocol, "Putting protocol failed for port " + number + "!"},
           {FirewallCall::kSetPortName, "Putting name to port rule failed!"},
           {FirewallCall::kAddPort, "Adding the port " + number + " failed!"}});
    return true;
}

void FirewallOperations::removePort(std::int32_t port, std::uint8_t protocol) {
    const FirewallOutcome outcome = profile().removePort(port, protocolOf(protocol));
    check(outcome,
          {{FirewallCall::kListPorts, "Getting globally open ports failed!"},
           {FirewallCall::kRemovePort,
            "Removing port " + std::to_string(port) + "! Error (" + std::to_string(outcome.error) + ")",
            Number::kHidden}});
}

#pragma once

#include <cstdint>
#include <string>

// The machine's firewall: programs and ports that may be reached from outside.
namespace platform {

enum class FirewallProtocol { kTcp, kUdp };

enum class FirewallStatus {
    kDone,
    kNotAvailable,  // no firewall service can be reached
    kFailed,
};

// Each operation reaches the service anew. After anything but kDone `outError` is a text for the log.
class Firewall {
public:
    virtual ~Firewall() = default;

    virtual FirewallStatus isOn(bool& outOn, std::string& outError) = 0;
    // Switches it on if it is off.
    virtual FirewallStatus switchOn(std::string& outError) = 0;
    // An exception that is already there counts as done.
    virtual FirewallStatus addApplication(const char* path, const char* name, std::string& outError) = 0;
    virtual FirewallStatus removeApplication(const char* path, std::string& outError) = 0;
    // `port` is at least 1.
    virtual FirewallStatus addPort(std::int32_t port, FirewallProtocol protocol, const char* name,
                                   std::string& outError) = 0;
    virtual FirewallStatus removePort(std::int32_t port, FirewallProtocol protocol,
                                      std::string& outError) = 0;
};

// On Linux none is available.
Firewall& systemFirewall();

}  // namespace platform

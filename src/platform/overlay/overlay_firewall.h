#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/firewall.h"

// What became of an exception of a firewall.
struct FirewallChange {
    std::string application;  // its path; empty: a port
    std::int32_t port = 0;
    platform::FirewallProtocol protocol = platform::FirewallProtocol::kTcp;
    std::optional<platform::FirewallException> exception;  // that is there now
};

// A firewall over another one, the base, whose profile is only read. What the base can't list can't be
// changed either. For one thread; outlives its connections.
class OverlayFirewall : public platform::Firewall {
public:
    // Borrowed.
    explicit OverlayFirewall(platform::Firewall& base) : base_(base) {}

    std::vector<FirewallChange> changes() const;
    bool wasSwitchedOn() const { return isSwitchedOn_; }

    platform::FirewallOutcome connect(std::unique_ptr<platform::FirewallProfile>& outProfile) override;

private:
    class Profile;
    using Port = std::pair<std::int32_t, platform::FirewallProtocol>;
    struct Application {
        std::string path;
        std::optional<platform::FirewallException> exception;
    };

    platform::Firewall& base_;
    std::map<std::string, Application> applications_;  // by the identity of the path
    std::map<Port, std::optional<platform::FirewallException>> ports_;
    bool isSwitchedOn_ = false;
};

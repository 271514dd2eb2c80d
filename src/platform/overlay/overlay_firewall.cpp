#include "platform/overlay/overlay_firewall.h"

#include "platform/path_identity.h"

using platform::FirewallException;
using platform::FirewallOutcome;
using platform::FirewallProtocol;

class OverlayFirewall::Profile : public platform::FirewallProfile {
public:
    Profile(OverlayFirewall& owner, std::unique_ptr<platform::FirewallProfile> base)
        : owner_(owner), base_(std::move(base)) {}

    FirewallOutcome isOn(bool& outOn) override {
        const FirewallOutcome outcome = base_->isOn(outOn);
        outOn = outOn || (outcome.done() && owner_.isSwitchedOn_);
        return outcome;
    }
    FirewallOutcome switchOn() override {
        owner_.isSwitchedOn_ = true;
        return {};
    }

    FirewallOutcome isApplicationEnabled(std::string_view path, bool& outEnabled) override {
        const auto found = owner_.applications_.find(platform::pathIdentity(path));
        if (found == owner_.applications_.end()) {
            return base_->isApplicationEnabled(path, outEnabled);
        }
        outEnabled = found->second.exception && found->second.exception->enabled;
        return {};
    }
    FirewallOutcome addApplication(std::string_view path, std::string_view name) override {
        return setApplication(path, named(name));
    }
    FirewallOutcome removeApplication(std::string_view path) override {
        return setApplication(path, std::nullopt);
    }
    FirewallOutcome readApplication(std::string_view path,
                                    std::optional<FirewallException>& outException) override {
        const auto found = owner_.applications_.find(platform::pathIdentity(path));
        if (found == owner_.applications_.end()) {
            return base_->readApplication(path, outException);
        }
        outException = found->second.exception;
        return {};
    }
    FirewallOutcome restoreApplication(std::string_view path, const FirewallException& exception) override {
        return setApplication(path, exception);
    }

    FirewallOutcome isPortEnabled(std::int32_t port, FirewallProtocol protocol, bool& outEnabled) override {
        const auto found = owner_.ports_.find({port, protocol});
        if (found == owner_.ports_.end()) {
            return base_->isPortEnabled(port, protocol, outEnabled);
        }
        outEnabled = found->second && found->second->enabled;
        return {};
    }
    FirewallOutcome addPort(std::int32_t port, FirewallProtocol protocol, std::string_view name) override {
        return setPort({port, protocol}, named(name));
    }
    FirewallOutcome removePort(std::int32_t port, FirewallProtocol protocol) override {
        return setPort({port, protocol}, std::nullopt);
    }
    FirewallOutcome readPort(std::int32_t port, FirewallProtocol protocol,
                             std::optional<FirewallException>& outException) override {
        const auto found = owner_.ports_.find({port, protocol});
        if (found == owner_.ports_.end()) {
            return base_->readPort(port, protocol, outException);
        }
        outException = found->second;
        return {};
    }
    FirewallOutcome restorePort(std::int32_t port, FirewallProtocol protocol,
                                const FirewallException& exception) override {
        return setPort({port, protocol}, exception);
    }

private:
    static FirewallException named(std::string_view name) {
        FirewallException exception;
        exception.name = name;
        return exception;
    }

    // The base is asked for the exception first, so that it fails where the base's would.
    FirewallOutcome setApplication(std::string_view path, const std::optional<FirewallException>& exception) {
        std::optional<FirewallException> present;
        const FirewallOutcome outcome = base_->readApplication(path, present);
        if (outcome.done()) {
            owner_.applications_[platform::pathIdentity(path)] = {std::string(path), exception};
            forgetUnchanged(owner_.applications_, platform::pathIdentity(path), !present && !exception);
        }
        return outcome;
    }
    FirewallOutcome setPort(Port port, const std::optional<FirewallException>& exception) {
        std::optional<FirewallException> present;
        const FirewallOutcome outcome = base_->readPort(port.first, port.second, present);
        if (outcome.done()) {
            owner_.ports_[port] = exception;
            forgetUnchanged(owner_.ports_, port, !present && !exception);
        }
        return outcome;
    }
    template <typename Map, typename Key>
    static void forgetUnchanged(Map& map, const Key& key, bool isUnchanged) {
        if (isUnchanged) {
            map.erase(key);
        }
    }

    OverlayFirewall& owner_;
    std::unique_ptr<platform::FirewallProfile> base_;
};

FirewallOutcome OverlayFirewall::connect(std::unique_ptr<platform::FirewallProfile>& outProfile) {
    outProfile.reset();
    std::unique_ptr<platform::FirewallProfile> base;
    const FirewallOutcome outcome = base_.connect(base);
    if (outcome.done() && base != nullptr) {
        outProfile = std::make_unique<Profile>(*this, std::move(base));
    }
    return outcome;
}

std::vector<FirewallChange> OverlayFirewall::changes() const {
    std::vector<FirewallChange> all;
    for (const auto& [identity, application] : applications_) {
        all.push_back({application.path, 0, FirewallProtocol::kTcp, application.exception});
    }
    for (const auto& [port, exception] : ports_) {
        all.push_back({"", port.first, port.second, exception});
    }
    return all;
}

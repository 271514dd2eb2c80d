#include "engine/journaled_firewall.h"

#include <optional>
#include <utility>

using platform::FirewallCall;
using platform::FirewallException;
using platform::FirewallOutcome;
using platform::FirewallProfile;
using platform::FirewallProtocol;

namespace {

constexpr std::uint32_t kEnabledBit = 1;

RemovalRecord recordOf(std::string_view path) {
    RemovalRecord record;
    record.step = RemovalStep::kFirewallApplication;
    record.path = path;
    return record;
}

RemovalRecord recordOf(std::int32_t port, FirewallProtocol protocol) {
    RemovalRecord record;
    record.step = RemovalStep::kFirewallPort;
    record.subject = static_cast<std::uint32_t>(port);
    record.root = static_cast<std::uint8_t>(protocol);
    return record;
}

FirewallException exceptionNamed(std::string_view name) {
    FirewallException exception;
    exception.name = name;
    return exception;
}

void keep(const FirewallOutcome& outcome, const std::optional<FirewallException>& found,
          RemovalRecord& record) {
    if (!outcome.done()) {
        record.flags |= RemovalRecord::kWasUnreadable;
    } else if (found) {
        record.before.push_back(keptException(*found));
    }
}

}  // namespace

KeptValue keptException(const FirewallException& exception) {
    const auto scope = static_cast<std::uint32_t>(exception.scope) << 1;
    return {exception.name, scope | (exception.enabled ? kEnabledBit : 0), exception.remoteAddresses};
}

FirewallException exceptionOf(const KeptValue& kept) {
    return {kept.name, (kept.type & kEnabledBit) != 0, static_cast<std::int32_t>(kept.type >> 1), kept.data};
}

class JournaledFirewall::Profile : public FirewallProfile {
public:
    Profile(std::unique_ptr<FirewallProfile> profile, RemovalJournal& journal)
        : profile_(std::move(profile)), journal_(journal) {}

    FirewallOutcome isOn(bool& outOn) override { return profile_->isOn(outOn); }
    FirewallOutcome switchOn() override {
        RemovalRecord record;
        record.step = RemovalStep::kFirewallSwitchOn;
        bool isOn = false;
        return profile_->isOn(isOn).done() && isOn
                   ? profile_->switchOn()
                   : change(record, FirewallCall::kSetEnabled, [&] { return profile_->switchOn(); });
    }

    FirewallOutcome isApplicationEnabled(std::string_view path, bool& outEnabled) override {
        return profile_->isApplicationEnabled(path, outEnabled);
    }
    FirewallOutcome addApplication(std::string_view path, std::string_view name) override {
        return changeApplication(path, FirewallCall::kAddApplication, exceptionNamed(name),
                                 [&] { return profile_->addApplication(path, name); });
    }
    FirewallOutcome removeApplication(std::string_view path) override {
        return changeApplication(path, FirewallCall::kRemoveApplication, std::nullopt,
                                 [&] { return profile_->removeApplication(path); });
    }
    FirewallOutcome readApplication(std::string_view path,
                                    std::optional<FirewallException>& outException) override {
        return profile_->readApplication(path, outException);
    }
    FirewallOutcome restoreApplication(std::string_view path, const FirewallException& exception) override {
        return changeApplication(path, FirewallCall::kAddApplication, exception,
                                 [&] { return profile_->restoreApplication(path, exception); });
    }

    FirewallOutcome isPortEnabled(std::int32_t port, FirewallProtocol protocol, bool& outEnabled) override {
        return profile_->isPortEnabled(port, protocol, outEnabled);
    }
    FirewallOutcome addPort(std::int32_t port, FirewallProtocol protocol, std::string_view name) override {
        return changePort(port, protocol, FirewallCall::kAddPort, exceptionNamed(name),
                          [&] { return profile_->addPort(port, protocol, name); });
    }
    FirewallOutcome removePort(std::int32_t port, FirewallProtocol protocol) override {
        return changePort(port, protocol, FirewallCall::kRemovePort, std::nullopt,
                          [&] { return profile_->removePort(port, protocol); });
    }
    FirewallOutcome readPort(std::int32_t port, FirewallProtocol protocol,
                             std::optional<FirewallException>& outException) override {
        return profile_->readPort(port, protocol, outException);
    }
    FirewallOutcome restorePort(std::int32_t port, FirewallProtocol protocol,
                                const FirewallException& exception) override {
        return changePort(port, protocol, FirewallCall::kAddPort, exception,
                          [&] { return profile_->restorePort(port, protocol, exception); });
    }

private:
    template <typename Change>
    FirewallOutcome changeApplication(std::string_view path, FirewallCall call,
                                      const std::optional<FirewallException>& after, Change change) {
        RemovalRecord record = recordOf(path);
        std::optional<FirewallException> found;
        keep(profile_->readApplication(path, found), found, record);
        return changeException(record, call, after, change);
    }
    template <typename Change>
    FirewallOutcome changePort(std::int32_t port, FirewallProtocol protocol, FirewallCall call,
                               const std::optional<FirewallException>& after, Change change) {
        RemovalRecord record = recordOf(port, protocol);
        std::optional<FirewallException> found;
        keep(profile_->readPort(port, protocol, found), found, record);
        return changeException(record, call, after, change);
    }
    template <typename Change>
    FirewallOutcome changeException(RemovalRecord& record, FirewallCall call,
                                    const std::optional<FirewallException>& after, Change change) {
        if (after) {
            record.after.push_back(keptException(*after));
        }
        return this->change(record, call, change);
    }
    template <typename Change>
    FirewallOutcome change(RemovalRecord& record, FirewallCall call, Change change) {
        const int status = journal_.append(record, RemovalJournal::Durability::kFlushed);
        return status != 0 ? FirewallOutcome{call, status, false} : change();
    }

    std::unique_ptr<FirewallProfile> profile_;
    RemovalJournal& journal_;
};

FirewallOutcome JournaledFirewall::connect(std::unique_ptr<FirewallProfile>& outProfile) {
    std::unique_ptr<FirewallProfile> profile;
    const FirewallOutcome outcome = firewall_.connect(profile);
    outProfile = profile == nullptr ? nullptr : std::make_unique<Profile>(std::move(profile), journal_);
    return outcome;
}

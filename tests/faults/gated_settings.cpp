#include "gated_settings.h"

using platform::FirewallCall;
using platform::FirewallException;
using platform::FirewallOutcome;
using platform::FirewallProtocol;
using platform::RegistryRoot;
using platform::RegistryView;

bool GatedRegistry::refuses(CallClass callClass, const char* operation, std::string_view path,
                            std::string_view name) {
    const std::string call = std::string(operation) + " " + std::string(path);
    return gate_.refuses(callClass, name.empty() ? call : call + ":" + std::string(name));
}

int GatedRegistry::createKey(RegistryRoot root, std::string_view path, RegistryView view, int& outCreated) {
    outCreated = 0;
    return refuses(CallClass::kChanging, "createKey", path)
               ? gate_.registryStatus()
               : registry_.createKey(root, path, view, outCreated);
}

int GatedRegistry::testKey(RegistryRoot root, std::string_view path, RegistryView view) {
    return refuses(CallClass::kReading, "testKey", path) ? gate_.registryStatus()
                                                         : registry_.testKey(root, path, view);
}

int GatedRegistry::deleteKey(RegistryRoot root, std::string_view path, RegistryView view) {
    return refuses(CallClass::kChanging, "deleteKey", path) ? gate_.registryStatus()
                                                            : registry_.deleteKey(root, path, view);
}

int GatedRegistry::listKeys(RegistryRoot root, std::string_view path, RegistryView view,
                            std::vector<std::string>& outNames) {
    outNames.clear();
    return refuses(CallClass::kReading, "listKeys", path) ? gate_.registryStatus()
                                                          : registry_.listKeys(root, path, view, outNames);
}

int GatedRegistry::readValue(RegistryRoot root, std::string_view path, RegistryView view,
                             std::string_view name, platform::RegistryValue& outValue) {
    return refuses(CallClass::kReading, "readValue", path, name)
               ? gate_.registryStatus()
               : registry_.readValue(root, path, view, name, outValue);
}

int GatedRegistry::writeValue(RegistryRoot root, std::string_view path, RegistryView view,
                              std::string_view name, const platform::RegistryValue& value) {
    return refuses(CallClass::kChanging, "writeValue", path, name)
               ? gate_.registryStatus()
               : registry_.writeValue(root, path, view, name, value);
}

int GatedRegistry::deleteValue(RegistryRoot root, std::string_view path, RegistryView view,
                               std::string_view name) {
    return refuses(CallClass::kChanging, "deleteValue", path, name)
               ? gate_.registryStatus()
               : registry_.deleteValue(root, path, view, name);
}

int GatedRegistry::listValues(RegistryRoot root, std::string_view path, RegistryView view,
                              std::vector<std::string>& outNames) {
    outNames.clear();
    return refuses(CallClass::kReading, "listValues", path)
               ? gate_.registryStatus()
               : registry_.listValues(root, path, view, outNames);
}

std::unique_ptr<platform::ChildProcess> GatedProcesses::start(std::string_view commandLine,
                                                              std::string_view workDirectory, int& outError) {
    if (gate_.refuses(CallClass::kChanging, "start " + std::string(commandLine))) {
        outError = gate_.fileStatus();
        return nullptr;
    }
    return processes_.start(commandLine, workDirectory, outError);
}

class GatedFirewall::Profile : public platform::FirewallProfile {
public:
    Profile(std::unique_ptr<platform::FirewallProfile> profile, CallGate& gate)
        : profile_(std::move(profile)), gate_(gate) {}

    FirewallOutcome isOn(bool& outOn) override { return profile_->isOn(outOn); }
    FirewallOutcome switchOn() override {
        return refuses("switchOn", "") ? failure(FirewallCall::kSetEnabled) : profile_->switchOn();
    }
    FirewallOutcome isApplicationEnabled(std::string_view path, bool& outEnabled) override {
        return profile_->isApplicationEnabled(path, outEnabled);
    }
    FirewallOutcome addApplication(std::string_view path, std::string_view name) override {
        return refuses("addApplication", path) ? failure(FirewallCall::kAddApplication)
                                               : profile_->addApplication(path, name);
    }
    FirewallOutcome removeApplication(std::string_view path) override {
        return refuses("removeApplication", path) ? failure(FirewallCall::kRemoveApplication)
                                                  : profile_->removeApplication(path);
    }
    FirewallOutcome readApplication(std::string_view path,
                                    std::optional<FirewallException>& outException) override {
        return profile_->readApplication(path, outException);
    }
    FirewallOutcome restoreApplication(std::string_view path, const FirewallException& exception) override {
        return refuses("restoreApplication", path) ? failure(FirewallCall::kAddApplication)
                                                   : profile_->restoreApplication(path, exception);
    }
    FirewallOutcome isPortEnabled(std::int32_t port, FirewallProtocol protocol, bool& outEnabled) override {
        return profile_->isPortEnabled(port, protocol, outEnabled);
    }
    FirewallOutcome addPort(std::int32_t port, FirewallProtocol protocol, std::string_view name) override {
        return refuses("addPort", std::to_string(port)) ? failure(FirewallCall::kAddPort)
                                                        : profile_->addPort(port, protocol, name);
    }
    FirewallOutcome removePort(std::int32_t port, FirewallProtocol protocol) override {
        return refuses("removePort", std::to_string(port)) ? failure(FirewallCall::kRemovePort)
                                                           : profile_->removePort(port, protocol);
    }
    FirewallOutcome readPort(std::int32_t port, FirewallProtocol protocol,
                             std::optional<FirewallException>& outException) override {
        return profile_->readPort(port, protocol, outException);
    }
    FirewallOutcome restorePort(std::int32_t port, FirewallProtocol protocol,
                                const FirewallException& exception) override {
        return refuses("restorePort", std::to_string(port))
                   ? failure(FirewallCall::kAddPort)
                   : profile_->restorePort(port, protocol, exception);
    }

private:
    bool refuses(const char* operation, std::string_view subject) {
        return gate_.refuses(CallClass::kChanging, std::string(operation) + " " + std::string(subject));
    }
    FirewallOutcome failure(FirewallCall call) const { return {call, gate_.fileStatus(), false}; }

    std::unique_ptr<platform::FirewallProfile> profile_;
    CallGate& gate_;
};

FirewallOutcome GatedFirewall::connect(std::unique_ptr<platform::FirewallProfile>& outProfile) {
    gate_.pass();
    std::unique_ptr<platform::FirewallProfile> inner;
    const FirewallOutcome outcome = firewall_.connect(inner);
    outProfile = inner == nullptr ? nullptr : std::make_unique<Profile>(std::move(inner), gate_);
    return outcome;
}

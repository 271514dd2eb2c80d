#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/firewall.h"

// A firewall in memory that keeps its exceptions, records the requests and fails where it is asked to.
class MemoryFirewall : public platform::Firewall {
public:
    using Port = std::pair<std::int32_t, platform::FirewallProtocol>;

    bool on = true;
    std::map<std::string, std::string> applications;  // path -> name
    std::map<Port, std::string> ports;                // -> name
    // What is special about an exception, by the path or the port; otherwise it is enabled, for everybody.
    std::map<std::string, platform::FirewallException> specialApplications;
    std::map<Port, platform::FirewallException> specialPorts;
    std::map<platform::FirewallCall, int> failing;  // the call -> its number
    std::map<platform::FirewallCall, int> passing;  // so many times a failing call is done before
    bool unreachable = false;                       // the service is what is missing
    bool givesProfile = true;                       // false: a connection leads nowhere

    // "connect", "close" and, in order, the operations with their arguments: "addPort 80 TCP Web".
    std::vector<std::string> operations;
    std::function<void()> watcher;  // called before each of them

    platform::FirewallOutcome connect(std::unique_ptr<platform::FirewallProfile>& outProfile) override {
        using platform::FirewallCall;
        operations.push_back("connect");
        outProfile.reset();
        for (const FirewallCall call :
             {FirewallCall::kNoService, FirewallCall::kInitialize, FirewallCall::kCreateManager,
              FirewallCall::kLocalPolicy, FirewallCall::kCurrentProfile}) {
            if (fails(call)) {
                return {call, failing[call], unreachable};
            }
        }
        if (givesProfile) {
            outProfile = std::make_unique<Profile>(*this);
        }
        return {};
    }

private:
    bool fails(platform::FirewallCall call) { return failing.contains(call) && passing[call]-- <= 0; }

    class Profile : public platform::FirewallProfile {
    public:
        using Call = platform::FirewallCall;
        using Outcome = platform::FirewallOutcome;
        using Protocol = platform::FirewallProtocol;
        using Exception = platform::FirewallException;

        explicit Profile(MemoryFirewall& firewall) : firewall_(firewall) {}
        ~Profile() override { note("close"); }

        Outcome isOn(bool& outOn) override {
            note("isOn");
            const Outcome outcome = firstFailure({Call::kGetEnabled});
            outOn = outcome.done() ? firewall_.on : outOn;
            return outcome;
        }
        Outcome switchOn() override {
            note("switchOn");
            const Outcome outcome = firstFailure({Call::kSetEnabled});
            firewall_.on = firewall_.on || outcome.done();
            return outcome;
        }
        Outcome isApplicationEnabled(std::string_view path, bool& outEnabled) override {
            note("isApplicationEnabled " + std::string(path));
            const Outcome outcome = firstFailure({Call::kListApplications, Call::kApplicationEnabled});
            outEnabled = outcome.done() ? firewall_.applications.contains(std::string(path)) : outEnabled;
            return outcome;
        }
        Outcome addApplication(std::string_view path, std::string_view name) override {
            note("addApplication " + std::string(path) + " " + std::string(name));
            const Outcome outcome =
                firstFailure({Call::kListApplications, Call::kCreateApplication, Call::kSetApplicationPath,
                              Call::kSetApplicationName, Call::kAddApplication});
            if (outcome.done()) {
                firewall_.applications[std::string(path)] = name;
            }
            return outcome;
        }
        Outcome removeApplication(std::string_view path) override {
            note("removeApplication " + std::string(path));
            const Outcome outcome = firstFailure({Call::kListApplications, Call::kRemoveApplication});
            if (outcome.done()) {
                firewall_.applications.erase(std::string(path));
                firewall_.specialApplications.erase(std::string(path));
            }
            return outcome;
        }
        Outcome readApplication(std::string_view path, std::optional<Exception>& outException) override {
            return read(Call::kListApplications, Call::kReadApplication, std::string(path),
                        firewall_.applications, firewall_.specialApplications, outException);
        }
        Outcome restoreApplication(std::string_view path, const Exception& exception) override {
            const Outcome outcome = addApplication(path, exception.name);
            if (outcome.done()) {
                firewall_.specialApplications[std::string(path)] = exception;
            }
            return outcome;
        }
        Outcome readPort(std::int32_t port, Protocol protocol,
                         std::optional<Exception>& outException) override {
            return read(Call::kListPorts, Call::kReadPort, Port{port, protocol}, firewall_.ports,
                        firewall_.specialPorts, outException);
        }
        Outcome restorePort(std::int32_t port, Protocol protocol, const Exception& exception) override {
            const Outcome outcome = addPort(port, protocol, exception.name);
            if (outcome.done()) {
                firewall_.specialPorts[{port, protocol}] = exception;
            }
            return outcome;
        }
        Outcome isPortEnabled(std::int32_t port, Protocol protocol, bool& outEnabled) override {
            note("isPortEnabled " + textOf(port, protocol));
            const Outcome outcome = firstFailure({Call::kListPorts, Call::kPortEnabled});
            outEnabled = outcome.done() ? firewall_.ports.contains({port, protocol}) : outEnabled;
            return outcome;
        }
        Outcome addPort(std::int32_t port, Protocol protocol, std::string_view name) override {
            note("addPort " + textOf(port, protocol) + " " + std::string(name));
            const Outcome outcome =
                firstFailure({Call::kListPorts, Call::kCreatePort, Call::kSetPortNumber,
                              Call::kSetPortProtocol, Call::kSetPortName, Call::kAddPort});
            if (outcome.done()) {
                firewall_.ports[{port, protocol}] = name;
            }
            return outcome;
        }
        Outcome removePort(std::int32_t port, Protocol protocol) override {
            note("removePort " + textOf(port, protocol));
            const Outcome outcome = firstFailure({Call::kListPorts, Call::kRemovePort});
            if (outcome.done()) {
                firewall_.ports.erase({port, protocol});
                firewall_.specialPorts.erase({port, protocol});
            }
            return outcome;
        }

    private:
        static std::string textOf(std::int32_t port, Protocol protocol) {
            return std::to_string(port) + (protocol == Protocol::kTcp ? " TCP" : " UDP");
        }
        // Reading isn't recorded.
        template <typename Key>
        Outcome read(Call list, Call call, const Key& key, const std::map<Key, std::string>& names,
                     const std::map<Key, Exception>& special, std::optional<Exception>& outException) const {
            const Outcome outcome = firstFailure({list, call});
            const auto name = names.find(key);
            if (!outcome.done()) {
                return outcome;
            }
            outException.reset();
            if (name != names.end()) {
                const auto found = special.find(key);
                outException = found != special.end() ? found->second : Exception();
                outException->name = name->second;
            }
            return outcome;
        }
        void note(const std::string& text) {
            if (firewall_.watcher) {
                firewall_.watcher();
            }
            firewall_.operations.push_back(text);
        }
        Outcome firstFailure(std::initializer_list<Call> calls) const {
            for (const Call call : calls) {
                if (firewall_.fails(call)) {
                    return {call, firewall_.failing[call], firewall_.unreachable};
                }
            }
            return {};
        }

        MemoryFirewall& firewall_;
    };
};

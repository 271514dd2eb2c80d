#include "platform/firewall.h"

#include <windows.h>

#include <netfw.h>

#include "platform/windows/com_objects.h"

namespace platform {

namespace {

// The objects can be made while the service is stopped; only their calls tell.
bool meansStoppedService(HRESULT result) {
    for (const DWORD number : {ERROR_SERVICE_DISABLED, ERROR_SERVICE_NOT_ACTIVE, RPC_S_SERVER_UNAVAILABLE,
                               RPC_S_UNKNOWN_IF, EPT_S_NOT_REGISTERED}) {
        if (result == HRESULT_FROM_WIN32(number)) {
            return true;
        }
    }
    return false;
}

// What is to be removed isn't there.
HRESULT doneIfMissing(HRESULT result) {
    return result == HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND) ? S_OK : result;
}

FirewallOutcome outcomeOf(FirewallCall call, HRESULT result) {
    return FAILED(result) ? FirewallOutcome{call, static_cast<int>(result), meansStoppedService(result)}
                          : FirewallOutcome{};
}

template <typename Class, typename Interface>
HRESULT create(ComPointer<Interface>& outObject) {
    return CoCreateInstance(__uuidof(Class), nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface),
                            outObject.receiveAny());
}

// Carries out `step` unless an earlier one failed.
template <typename Step>
void then(FirewallOutcome& outcome, FirewallCall call, Step step) {
    if (outcome.done()) {
        outcome = outcomeOf(call, step());
    }
}

NET_FW_IP_PROTOCOL numberOf(FirewallProtocol protocol) {
    return protocol == FirewallProtocol::kTcp ? NET_FW_IP_PROTOCOL_TCP : NET_FW_IP_PROTOCOL_UDP;
}

// The properties that exceptions for programs and for ports have in common. Both interfaces have the same
// calls for them, but no common base.
template <typename Exception>
HRESULT readProperties(Exception& from, FirewallException& outException) {
    AutomationText name;
    AutomationText addresses;
    VARIANT_BOOL enabled = VARIANT_FALSE;
    NET_FW_SCOPE scope = NET_FW_SCOPE_ALL;
    HRESULT result = from.get_Name(name.receive());
    result = FAILED(result) ? result : from.get_Enabled(&enabled);
    result = FAILED(result) ? result : from.get_Scope(&scope);
    result = FAILED(result) ? result : from.get_RemoteAddresses(addresses.receive());
    if (!FAILED(result)) {
        outException = {name.text(), enabled != VARIANT_FALSE, static_cast<std::int32_t>(scope),
                        addresses.text()};
    }
    return result;
}

// A scope of its own follows from the addresses, the system refuses it by itself.
template <typename Exception>
HRESULT writeReach(Exception& to, const FirewallException& exception) {
    const auto scope = static_cast<NET_FW_SCOPE>(exception.scope);
    const HRESULT result = scope == NET_FW_SCOPE_CUSTOM
                               ? to.put_RemoteAddresses(AutomationText(exception.remoteAddresses).get())
                               : to.put_Scope(scope);
    return FAILED(result) ? result : to.put_Enabled(exception.enabled ? VARIANT_TRUE : VARIANT_FALSE);
}

class WindowsFirewallProfile : public FirewallProfile {
public:
    // To be called before all others.
    FirewallOutcome reach() {
        FirewallOutcome outcome = outcomeOf(FirewallCall::kInitialize, apartment_.result());
        then(outcome, FirewallCall::kCreateManager, [&] { return create<NetFwMgr>(manager_); });
        ComPointer<INetFwPolicy> policy;
        then(outcome, FirewallCall::kLocalPolicy,
             [&] { return manager_->get_LocalPolicy(policy.receive()); });
        then(outcome, FirewallCall::kCurrentProfile,
             [&] { return policy->get_CurrentProfile(profile_.receive()); });
        return outcome;
    }

    FirewallOutcome isOn(bool& outOn) override {
        VARIANT_BOOL on = VARIANT_FALSE;
        const HRESULT result = profile_->get_FirewallEnabled(&on);
        outOn = FAILED(result) ? outOn : on != VARIANT_FALSE;
        return outcomeOf(FirewallCall::kGetEnabled, result);
    }

    FirewallOutcome switchOn() override {
        return outcomeOf(FirewallCall::kSetEnabled, profile_->put_FirewallEnabled(VARIANT_TRUE));
    }

    FirewallOutcome isApplicationEnabled(std::string_view path, bool& outEnabled) override {
        ComPointer<INetFwAuthorizedApplications> list;
        FirewallOutcome outcome = listApplications(list);
        ComPointer<INetFwAuthorizedApplication> application;
        if (outcome.done() && (FAILED(list->Item(AutomationText(path).get(), application.receive())) ||
                               application.get() == nullptr)) {
            outEnabled = false;
            return outcome;
        }
        VARIANT_BOOL enabled = VARIANT_FALSE;
        then(outcome, FirewallCall::kApplicationEnabled, [&] { return application->get_Enabled(&enabled); });
        outEnabled = outcome.done() ? enabled != VARIANT_FALSE : outEnabled;
        return outcome;
    }

    FirewallOutcome addApplication(std::string_view path, std::string_view name) override {
        ComPointer<INetFwAuthorizedApplications> list;
        ComPointer<INetFwAuthorizedApplication> application;
        FirewallOutcome outcome = makeApplication(path, name, list, application);
        then(outcome, FirewallCall::kAddApplication, [&] { return list->Add(application.get()); });
        return outcome;
    }

    FirewallOutcome readApplication(std::string_view path,
                                    std::optional<FirewallException>& outException) override {
        ComPointer<INetFwAuthorizedApplications> list;
        FirewallOutcome outcome = listApplications(list);
        ComPointer<INetFwAuthorizedApplication> application;
        if (outcome.done() && (FAILED(list->Item(AutomationText(path).get(), application.receive())) ||
                               application.get() == nullptr)) {
            outException.reset();
            return outcome;
        }
        FirewallException exception;
        then(outcome, FirewallCall::kReadApplication,
             [&] { return readProperties(*application.get(), exception); });
        outException = outcome.done() ? exception : outException;
        return outcome;
    }

    FirewallOutcome restoreApplication(std::string_view path, const FirewallException& exception) override {
        ComPointer<INetFwAuthorizedApplications> list;
        ComPointer<INetFwAuthorizedApplication> application;
        FirewallOutcome outcome = makeApplication(path, exception.name, list, application);
        then(outcome, FirewallCall::kSetApplicationReach,
             [&] { return writeReach(*application.get(), exception); });
        then(outcome, FirewallCall::kAddApplication, [&] { return list->Add(application.get()); });
        return outcome;
    }

    FirewallOutcome removeApplication(std::string_view path) override {
        ComPointer<INetFwAuthorizedApplications> list;
        FirewallOutcome outcome = listApplications(list);
        then(outcome, FirewallCall::kRemoveApplication,
             [&] { return doneIfMissing(list->Remove(AutomationText(path).get())); });
        return outcome;
    }

    FirewallOutcome isPortEnabled(std::int32_t port, FirewallProtocol protocol, bool& outEnabled) override {
        ComPointer<INetFwOpenPorts> list;
        FirewallOutcome outcome = listPorts(list);
        ComPointer<INetFwOpenPort> entry;
        if (outcome.done() &&
            (FAILED(list->Item(port, numberOf(protocol), entry.receive())) || entry.get() == nullptr)) {
            outEnabled = false;
            return outcome;
        }
        VARIANT_BOOL enabled = VARIANT_FALSE;
        then(outcome, FirewallCall::kPortEnabled, [&] { return entry->get_Enabled(&enabled); });
        outEnabled = outcome.done() ? enabled != VARIANT_FALSE : outEnabled;
        return outcome;
    }

    FirewallOutcome addPort(std::int32_t port, FirewallProtocol protocol, std::string_view name) override {
        ComPointer<INetFwOpenPorts> list;
        ComPointer<INetFwOpenPort> entry;
        FirewallOutcome outcome = makePort(port, protocol, name, list, entry);
        then(outcome, FirewallCall::kAddPort, [&] { return list->Add(entry.get()); });
        return outcome;
    }

    FirewallOutcome readPort(std::int32_t port, FirewallProtocol protocol,
                             std::optional<FirewallException>& outException) override {
        ComPointer<INetFwOpenPorts> list;
        FirewallOutcome outcome = listPorts(list);
        ComPointer<INetFwOpenPort> entry;
        if (outcome.done() &&
            (FAILED(list->Item(port, numberOf(protocol), entry.receive())) || entry.get() == nullptr)) {
            outException.reset();
            return outcome;
        }
        FirewallException exception;
        then(outcome, FirewallCall::kReadPort, [&] { return readProperties(*entry.get(), exception); });
        outException = outcome.done() ? exception : outException;
        return outcome;
    }

    FirewallOutcome restorePort(std::int32_t port, FirewallProtocol protocol,
                                const FirewallException& exception) override {
        ComPointer<INetFwOpenPorts> list;
        ComPointer<INetFwOpenPort> entry;
        FirewallOutcome outcome = makePort(port, protocol, exception.name, list, entry);
        then(outcome, FirewallCall::kSetPortReach, [&] { return writeReach(*entry.get(), exception); });
        then(outcome, FirewallCall::kAddPort, [&] { return list->Add(entry.get()); });
        return outcome;
    }

    FirewallOutcome removePort(std::int32_t port, FirewallProtocol protocol) override {
        ComPointer<INetFwOpenPorts> list;
        FirewallOutcome outcome = listPorts(list);
        then(outcome, FirewallCall::kRemovePort,
             [&] { return doneIfMissing(list->Remove(port, numberOf(protocol))); });
        return outcome;
    }

private:
    FirewallOutcome makeApplication(std::string_view path, std::string_view name,
                                    ComPointer<INetFwAuthorizedApplications>& outList,
                                    ComPointer<INetFwAuthorizedApplication>& outApplication) {
        FirewallOutcome outcome = listApplications(outList);
        then(outcome, FirewallCall::kCreateApplication,
             [&] { return create<NetFwAuthorizedApplication>(outApplication); });
        then(outcome, FirewallCall::kSetApplicationPath,
             [&] { return outApplication->put_ProcessImageFileName(AutomationText(path).get()); });
        then(outcome, FirewallCall::kSetApplicationName,
             [&] { return outApplication->put_Name(AutomationText(name).get()); });
        return outcome;
    }

    FirewallOutcome makePort(std::int32_t port, FirewallProtocol protocol, std::string_view name,
                             ComPointer<INetFwOpenPorts>& outList, ComPointer<INetFwOpenPort>& outEntry) {
        FirewallOutcome outcome = listPorts(outList);
        then(outcome, FirewallCall::kCreatePort, [&] { return create<NetFwOpenPort>(outEntry); });
        then(outcome, FirewallCall::kSetPortNumber, [&] { return outEntry->put_Port(port); });
        then(outcome, FirewallCall::kSetPortProtocol,
             [&] { return outEntry->put_Protocol(numberOf(protocol)); });
        then(outcome, FirewallCall::kSetPortName,
             [&] { return outEntry->put_Name(AutomationText(name).get()); });
        return outcome;
    }

    FirewallOutcome listApplications(ComPointer<INetFwAuthorizedApplications>& outList) {
        return outcomeOf(FirewallCall::kListApplications,
                         profile_->get_AuthorizedApplications(outList.receive()));
    }

    FirewallOutcome listPorts(ComPointer<INetFwOpenPorts>& outList) {
        return outcomeOf(FirewallCall::kListPorts, profile_->get_GloballyOpenPorts(outList.receive()));
    }

    ComApartment apartment_;
    ComPointer<INetFwMgr> manager_;
    ComPointer<INetFwProfile> profile_;
};

class WindowsFirewall : public Firewall {
public:
    FirewallOutcome connect(std::unique_ptr<FirewallProfile>& outProfile) override {
        outProfile.reset();
        auto profile = std::make_unique<WindowsFirewallProfile>();
        const FirewallOutcome outcome = profile->reach();
        if (outcome.done()) {
            outProfile = std::move(profile);
        }
        return outcome;
    }
};

}  // namespace

Firewall& systemFirewall() {
    static WindowsFirewall firewall;
    return firewall;
}

}  // namespace platform

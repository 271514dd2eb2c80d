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
        FirewallOutcome outcome = listApplications(list);
        then(outcome, FirewallCall::kCreateApplication,
             [&] { return create<NetFwAuthorizedApplication>(application); });
        then(outcome, FirewallCall::kSetApplicationPath,
             [&] { return application->put_ProcessImageFileName(AutomationText(path).get()); });
        then(outcome, FirewallCall::kSetApplicationName,
             [&] { return application->put_Name(AutomationText(name).get()); });
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
        FirewallOutcome outcome = listPorts(list);
        then(outcome, FirewallCall::kCreatePort, [&] { return create<NetFwOpenPort>(entry); });
        then(outcome, FirewallCall::kSetPortNumber, [&] { return entry->put_Port(port); });
        then(outcome, FirewallCall::kSetPortProtocol,
             [&] { return entry->put_Protocol(numberOf(protocol)); });
        then(outcome, FirewallCall::kSetPortName,
             [&] { return entry->put_Name(AutomationText(name).get()); });
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

#include "wini/nested_sessions.h"

#include "session/nested_uninstallation.h"

namespace {

// A session and the services that it asks, which it must not outlive.
class OwnServices {
protected:
    OwnServices(const platform::Platform& machine, DebugLog debugLog, const ServiceClock& clock)
        : services_(machine, debugLog, clock) {}

    SystemServices services_;
};

class SessionWithServices : private OwnServices, public NestedUninstallation {
public:
    SessionWithServices(const platform::Platform& machine, InstallerUI* ui, ErrorList& errors,
                        DebugLog debugLog, const ServiceClock& clock)
        : OwnServices(machine, debugLog, clock),
          NestedUninstallation(machine, services_, ui, errors, debugLog) {}
};

}  // namespace

std::unique_ptr<NestedSession> NestedSessions::make(const platform::Platform& machine, InstallerUI* ui,
                                                    std::vector<std::string>& errors) {
    return std::make_unique<SessionWithServices>(machine, ui, errors, debugLog_, clock_);
}

std::unique_ptr<SystemOperations> NestedSessions::makeServices(const platform::Platform& machine) {
    return std::make_unique<SystemServices>(machine, debugLog_, clock_);
}

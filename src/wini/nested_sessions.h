#pragma once

#include <utility>

#include "contracts/nested_session.h"
#include "support/debug_log.h"
#include "wini/system_services.h"

// Makes second sessions with services of their own.
class NestedSessions : public NestedSessionFactory {
public:
    // They write to this log, and their services go by this clock.
    explicit NestedSessions(DebugLog debugLog, ServiceClock clock = {})
        : debugLog_(debugLog), clock_(std::move(clock)) {}

    std::unique_ptr<NestedSession> make(const platform::Platform& machine, InstallerUI* ui,
                                        std::vector<std::string>& errors) override;
    std::unique_ptr<SystemOperations> makeServices(const platform::Platform& machine) override;

private:
    DebugLog debugLog_;
    ServiceClock clock_;
};

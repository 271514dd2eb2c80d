#pragma once

#include "contracts/nested_session.h"
#include "support/debug_log.h"

// Makes second sessions with services of their own.
class NestedSessions : public NestedSessionFactory {
public:
    // They write to this log.
    explicit NestedSessions(DebugLog debugLog) : debugLog_(debugLog) {}

    std::unique_ptr<NestedSession> make(const platform::Platform& machine, InstallerUI* ui,
                                        std::vector<std::string>& errors) override;
    std::unique_ptr<SystemOperations> makeServices(const platform::Platform& machine) override;

private:
    DebugLog debugLog_;
};

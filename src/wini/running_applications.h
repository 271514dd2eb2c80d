#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "support/debug_log.h"

class SystemModifications;

namespace platform {
class Processes;
struct ProcessInfo;
}  // namespace platform

// Finds and stops processes by the base name of their executable, without regard to case, and, where a
// directory is given (not null, not empty), by that directory: it must stand somewhere in the executable's
// path, case and all; `/` and `\` are the same. This process and the first process of the system are never
// among them, and the processes that started this one are never stopped.
class RunningApplications {
public:
    // How long a process gets to end by itself where the system knows such a request.
    static constexpr std::uint32_t kPoliteMilliseconds = 2000;

    // A service is asked to stop through `programs`. All are borrowed and outlive this object.
    RunningApplications(platform::Processes& processes, SystemModifications& programs, DebugLog debugLog);

    bool isApplicationRunning(const char* name, const char* directory);
    // Stops all that match. True when at least one was stopped. A service is asked first, by running its
    // program with "-stop" to its end.
    bool closeApplication(const char* name, bool isService, const char* directory);

private:
    std::vector<platform::ProcessInfo> findAll(const char* name, const char* directory, bool firstOnly);
    bool isFrom(const platform::ProcessInfo& process, const char* name, const char* directory);
    void stopService(const std::string& program);

    platform::Processes& processes_;
    SystemModifications& programs_;
    DebugLog debugLog_;
};

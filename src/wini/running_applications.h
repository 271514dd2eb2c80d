#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "support/debug_log.h"

class ProgramRun;

namespace platform {
class Processes;
struct ProcessInfo;
}  // namespace platform

// Finds and stops processes by the base name of their executable, without regard to case, and, where a
// directory is given (not empty), by that directory: the executable's path must contain it, case included;
// `/` and `\` are the same. This process and the first process of the system are never
// among them, and the processes that started this one are never stopped.
class RunningApplications {
public:
    // How long a process gets to end by itself where the system knows such a request.
    static constexpr std::uint32_t kPoliteMilliseconds = 2000;

    // A service is asked to stop through `programs`. All are borrowed and outlive this object.
    RunningApplications(platform::Processes& processes, ProgramRun& programs, DebugLog debugLog);

    bool isApplicationRunning(std::string_view name, std::string_view directory);
    // Stops all that match. True when at least one was stopped. A service is asked first, by running its
    // program with "-stop" to its end.
    bool closeApplication(std::string_view name, bool isService, std::string_view directory);

private:
    std::vector<platform::ProcessInfo> findAll(std::string_view name, std::string_view directory,
                                               bool firstOnly);
    bool isFrom(const platform::ProcessInfo& process, std::string_view name, std::string_view directory);
    void stopService(const std::string& program);

    platform::Processes& processes_;
    ProgramRun& programs_;
    DebugLog debugLog_;
};

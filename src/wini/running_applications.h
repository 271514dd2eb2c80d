#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "support/debug_log.h"

class ProgramRun;

namespace platform {
class FileSystem;
class Processes;
struct ProcessInfo;
}  // namespace platform
class InstallerUI;

// Finds and stops processes by the base name of their executable, without regard to case, and, where a
// directory is given (not empty), by that directory: the executable's path must contain it, case included;
// `/` and `\` are the same. Or by the executable itself. This process and the first process of the system are
// never among them, and the processes that started this one are never stopped.
class RunningApplications {
public:
    // How long a process gets to end by itself where the system knows such a request.
    static constexpr std::uint32_t kPoliteMilliseconds = 2000;

    // A service is asked to stop through `programs`. All are borrowed and outlive this object.
    RunningApplications(platform::FileSystem& files, platform::Processes& processes, ProgramRun& programs,
                        DebugLog debugLog);

    // Handles its events while a service is waited for. Borrowed; null for none, as at first.
    void setFrontEnd(InstallerUI* ui) { ui_ = ui; }

    bool isApplicationRunning(std::string_view name, std::string_view directory);
    // Stops all that match. True when at least one was stopped. A service is asked first, by running its
    // program with "-stop" to its end, but only a program that this process may trust: it lies inside the
    // directory by its real path, runs with the rights of an administrator, and only administrators can
    // change it. Whoever else finds a place in the path of a process would be started with those rights.
    bool closeApplication(std::string_view name, bool isService, std::string_view directory);

    // The processes that run from the file at `path`, by its real path. A process whose path can't be read is
    // none of them.
    bool isProgramRunning(std::string_view path);
    bool closeProgram(std::string_view path);

private:
    using Found = std::vector<platform::ProcessInfo>;

    Found findAll(std::string_view name, std::string_view directory, bool firstOnly);
    Found findRunningFrom(std::string_view path);
    bool isFrom(const platform::ProcessInfo& process, std::string_view name, std::string_view directory);
    // `directory` as in closeApplication; empty: none of them is asked as a service.
    bool stopAll(const Found& processes, std::string_view directory);
    void stopService(const platform::ProcessInfo& process, std::string_view directory);

    platform::FileSystem& files_;
    platform::Processes& processes_;
    ProgramRun& programs_;
    DebugLog debugLog_;
    InstallerUI* ui_ = nullptr;
};

#include "wini/running_applications.h"

#include <algorithm>

#include "base/path_functions.h"
#include "base/text_functions.h"
#include "contracts/system_modifications.h"
#include "platform/processes.h"

namespace {

// Between two looks at a service that is stopping itself.
constexpr std::uint32_t kServiceLookMilliseconds = 100;

bool isFirstProcess(const platform::ProcessInfo& process) {
    return process.id <= 1;
}

std::string unified(std::string path) {
    OUtils::setSeparators(path.data());
    return path;
}

}  // namespace

RunningApplications::RunningApplications(platform::Processes& processes, SystemModifications& programs,
                                         DebugLog debugLog)
    : processes_(processes), programs_(programs), debugLog_(debugLog) {}

bool RunningApplications::isFrom(const platform::ProcessInfo& process, const char* name,
                                 const char* directory) {
    if (process.path.empty()) {
        debugLog_.print(
            "ERROR: Wini::isAppRunning(..) could not obtain the full file name of the running module: \"%s\"",
            name);
        return true;
    }
    if (unified(process.path).find(unified(directory)) != std::string::npos) {
        return true;
    }
    debugLog_.print("App \"%s\" running in separate dir: \"%s\" - searched: \"%s\"", name,
                    process.path.c_str(), directory);
    return false;
}

std::vector<platform::ProcessInfo> RunningApplications::findAll(const char* name, const char* directory,
                                                                bool firstOnly) {
    std::vector<platform::ProcessInfo> all;
    std::vector<platform::ProcessInfo> found;
    if (name == nullptr || name[0] == '\0' || !processes_.list(all)) {
        return found;
    }
    const bool anywhere = directory == nullptr || directory[0] == '\0';
    for (platform::ProcessInfo& process : all) {
        if (isFirstProcess(process) || process.id == processes_.currentId() ||
            !OUtils::equalsIgnoreCase(process.name.c_str(), name)) {
            continue;
        }
        if (anywhere || isFrom(process, name, directory)) {
            found.push_back(std::move(process));
            if (firstOnly) {
                break;
            }
        }
    }
    return found;
}

bool RunningApplications::isApplicationRunning(const char* name, const char* directory) {
    return !findAll(name, directory, true).empty();
}

bool RunningApplications::closeApplication(const char* name, bool isService, const char* directory) {
    // Whoever waits for this session must not be stopped by it, nor a service be asked on his behalf.
    const std::vector<std::uint32_t> spared = processes_.ownLine();
    bool stopped = false;
    for (const platform::ProcessInfo& process : findAll(name, directory, false)) {
        if (std::find(spared.begin(), spared.end(), process.id) != spared.end()) {
            debugLog_.print("WARNING: \"%s\" (%u) is not stopped: it started this program", name,
                            static_cast<unsigned>(process.id));
            continue;
        }
        if (isService && !process.path.empty()) {
            stopService(process.path);
        }
        // A service that has stopped itself leaves no process, and this fails harmlessly.
        stopped = processes_.terminate(process.id, kPoliteMilliseconds) || stopped;
    }
    return stopped;
}

void RunningApplications::stopService(const std::string& program) {
    if (!programs_.runAssociatedProgram(program.c_str(), "-stop", kRunAsynchronous, nullptr, nullptr,
                                        kServiceLookMilliseconds)) {
        debugLog_.print("WARNING: The service \"%s\" did not stop itself", program.c_str());
    }
}

#include "wini/running_applications.h"

#include "base/path_functions.h"
#include "base/text_functions.h"
#include "platform/processes.h"

namespace {

// How long a service's own stopping is waited for.
constexpr std::uint32_t kServiceStopMilliseconds = 10000;

bool isFirstProcess(const platform::ProcessInfo& process) {
    return process.id <= 1;
}

std::string unified(std::string path) {
    OUtils::setSeparators(path.data());
    return path;
}

}  // namespace

RunningApplications::RunningApplications(platform::Processes& processes, SessionLog console)
    : processes_(processes), console_(console) {}

bool RunningApplications::isFrom(const platform::ProcessInfo& process, const char* name,
                                 const char* directory) {
    if (process.path.empty()) {
        console_->print(
            "ERROR: Wini::isAppRunning(..) could not obtain the full file name of the running module: \"%s\"",
            name);
        return true;
    }
    if (unified(process.path).find(unified(directory)) != std::string::npos) {
        return true;
    }
    console_->print("App \"%s\" running in separate dir: \"%s\" - searched: \"%s\"", name,
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
    bool stopped = false;
    for (const platform::ProcessInfo& process : findAll(name, directory, false)) {
        if (isService && !process.path.empty()) {
            stopService(process.path);
        }
        // A service that has stopped itself leaves no process, and this fails harmlessly.
        stopped = processes_.terminate(process.id, kPoliteMilliseconds) || stopped;
    }
    return stopped;
}

void RunningApplications::stopService(const std::string& program) {
    int error = 0;
    const auto stopper = processes_.start(("\"" + program + "\" -stop").c_str(), "", error);
    if (stopper == nullptr) {
        console_->print("WARNING: The service \"%s\" could not be asked to stop (%d)", program.c_str(),
                        error);
        return;
    }
    stopper->wait(kServiceStopMilliseconds);
}

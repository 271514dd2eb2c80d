#include "wini/running_applications.h"

#include <algorithm>

#include "base/path_functions.h"
#include "base/text_functions.h"
#include "engine/changes/program_run.h"
#include "engine/report.h"
#include "platform/file_system.h"
#include "platform/processes.h"

namespace {

// Between two looks at a service that is stopping itself.
constexpr std::uint32_t kServiceLookMilliseconds = 100;

bool isFirstProcess(const platform::ProcessInfo& process) {
    return process.id <= 1;
}

std::string unified(std::string_view text) {
    std::string path(text);
    OUtils::setSeparators(path.data());
    return path;
}

// Both are real paths. By whole components, so that "/opt/app2" is not inside "/opt/app".
bool isInside(std::string_view path, std::string_view directory) {
    directory = OUtils::stripTrailingSeparators(directory);
    if (directory.size() == 1 && OUtils::isSeparator(directory[0])) {
        return path.starts_with(directory);
    }
    return path.size() > directory.size() && path.starts_with(directory) &&
           OUtils::isSeparator(path[directory.size()]);
}

}  // namespace

RunningApplications::RunningApplications(platform::FileSystem& files, platform::Processes& processes,
                                         ProgramRun& programs, DebugLog debugLog)
    : files_(files), processes_(processes), programs_(programs), debugLog_(debugLog) {}

bool RunningApplications::isFrom(const platform::ProcessInfo& process, std::string_view name,
                                 std::string_view directory) {
    if (process.path.empty()) {
        debugLog_.line(
            "ERROR: Wini::isAppRunning(..) could not obtain the full file name of the running module: \"" +
            std::string(name) + "\"");
        return true;
    }
    if (unified(process.path).find(unified(directory)) != std::string::npos) {
        return true;
    }
    debugLog_.line("App \"" + std::string(name) + "\" running in separate dir: \"" + process.path +
                   "\" - searched: \"" + std::string(directory) + "\"");
    return false;
}

std::vector<platform::ProcessInfo> RunningApplications::findAll(std::string_view name,
                                                                std::string_view directory, bool firstOnly) {
    std::vector<platform::ProcessInfo> all;
    std::vector<platform::ProcessInfo> found;
    if (name.empty() || !processes_.list(all)) {
        return found;
    }
    for (platform::ProcessInfo& process : all) {
        if (isFirstProcess(process) || process.id == processes_.currentId() ||
            !OUtils::equalsIgnoreCase(process.name, name)) {
            continue;
        }
        if (directory.empty() || isFrom(process, name, directory)) {
            found.push_back(std::move(process));
            if (firstOnly) {
                break;
            }
        }
    }
    return found;
}

bool RunningApplications::isApplicationRunning(std::string_view name, std::string_view directory) {
    return !findAll(name, directory, true).empty();
}

bool RunningApplications::closeApplication(std::string_view name, bool isService,
                                           std::string_view directory) {
    return stopAll(findAll(name, directory, false), isService ? directory : "");
}

RunningApplications::Found RunningApplications::findRunningFrom(std::string_view path) {
    std::string wanted;
    Found all;
    Found found;
    if (files_.realPath(path, wanted) != 0 || !processes_.list(all)) {
        return found;
    }
    const std::string_view name = OUtils::lastPathComponent(wanted);
    for (platform::ProcessInfo& process : all) {
        std::string real;
        if (!isFirstProcess(process) && process.id != processes_.currentId() &&
            OUtils::equalsIgnoreCase(process.name, name) && !process.path.empty() &&
            files_.realPath(process.path, real) == 0 && real == wanted) {
            found.push_back(std::move(process));
        }
    }
    return found;
}

bool RunningApplications::isProgramRunning(std::string_view path) {
    return !findRunningFrom(path).empty();
}

bool RunningApplications::closeProgram(std::string_view path) {
    return stopAll(findRunningFrom(path), "");
}

bool RunningApplications::stopAll(const Found& processes, std::string_view directory) {
    // Whoever waits for this session must not be stopped by it, nor be asked to stop as a service.
    const std::vector<std::uint32_t> spared = processes_.ownLine();
    bool stopped = false;
    for (const platform::ProcessInfo& process : processes) {
        if (std::find(spared.begin(), spared.end(), process.id) != spared.end()) {
            debugLog_.line("WARNING: \"" + process.name + "\" (" + std::to_string(process.id) +
                           ") is not stopped: it started this program");
            continue;
        }
        if (!directory.empty()) {
            stopService(process, directory);
        }
        // A service that has stopped itself leaves no process, and this fails harmlessly.
        stopped = processes_.terminate(process.id, kPoliteMilliseconds) || stopped;
    }
    return stopped;
}

void RunningApplications::stopService(const platform::ProcessInfo& process, std::string_view directory) {
    std::string program;
    std::string place;
    const bool isTrusted = !process.path.empty() && files_.realPath(process.path, program) == 0 &&
                           files_.realPath(directory, place) == 0 && isInside(program, place) &&
                           program.find('"') == std::string::npos &&
                           processes_.isAdministrators(process.id) &&
                           files_.isProtected(program, platform::Protection::kAdministrators);
    if (!isTrusted) {
        debugLog_.line("WARNING: The service \"" + process.path + "\" is not asked to stop, only ended");
        return;
    }
    Report report(ui_, nullptr);
    if (!programs_.run({program, "-stop", "", kRunAsynchronous}, report, kServiceLookMilliseconds)) {
        debugLog_.line("WARNING: The service \"" + program + "\" did not stop itself");
    }
}

#include "engine/file_in_use.h"

#include <algorithm>

#include "base/path_functions.h"
#include "contracts/system_operations.h"
#include "engine/report.h"
#include "platform/file_system.h"

namespace {

constexpr std::uint32_t kWaitSteps = 20;
constexpr std::uint32_t kLongestStep = 50;

}  // namespace

bool FileInUse::deleteFileInUse(std::string_view path, std::uint32_t waitMilliseconds) {
    if (path.find(".exe") == std::string_view::npos) {
        return false;
    }
    stopProgram(OUtils::lastPathComponent(path).substr(0, kNameLimit), waitMilliseconds);
    return files_.removeFile(path) == 0;
}

// A name may be that of a service, which ends only when it is asked as one.
void FileInUse::stopProgram(std::string_view name, std::uint32_t waitMilliseconds) {
    if (!system_.isApplicationRunning(name, "")) {
        return;
    }
    if (!system_.closeApplication(name, false, "") && !system_.closeApplication(name, true, "")) {
        return;
    }
    const std::uint32_t step = std::clamp<std::uint32_t>(waitMilliseconds / kWaitSteps, 1, kLongestStep);
    for (std::uint32_t waited = 0; waited <= waitMilliseconds && system_.isApplicationRunning(name, "");
         waited += step) {
        system_.sleepMilliseconds(step);
        report_.pumpEvents();
    }
}

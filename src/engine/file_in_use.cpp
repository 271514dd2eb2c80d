#include "engine/file_in_use.h"

#include <algorithm>

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
    stopProgram(path, waitMilliseconds);
    return files_.removeFile(path) == 0;
}

// Another program of the same name is somebody else's.
void FileInUse::stopProgram(std::string_view path, std::uint32_t waitMilliseconds) {
    if (!system_.isProgramRunning(path) || !system_.closeProgram(path)) {
        return;
    }
    const std::uint32_t step = std::clamp<std::uint32_t>(waitMilliseconds / kWaitSteps, 1, kLongestStep);
    for (std::uint32_t waited = 0; waited <= waitMilliseconds && system_.isProgramRunning(path);
         waited += step) {
        system_.sleepMilliseconds(step);
        report_.pumpEvents();
    }
}

#include "engine/file_in_use.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "base/path_functions.h"
#include "contracts/installer_ui.h"
#include "contracts/system_operations.h"
#include "platform/file_system.h"

namespace {

constexpr std::uint32_t kWaitSteps = 20;
constexpr std::uint32_t kLongestStep = 50;

}  // namespace

bool FileInUse::deleteFileInUse(InstallerUI* ui, const char* path, std::uint32_t waitMilliseconds) {
    const std::string_view text(path);
    if (text.find(".exe") == std::string_view::npos) {
        return false;
    }
    const std::string name(OUtils::lastPathComponent(text).substr(0, kNameLimit));
    stopProgram(ui, name.c_str(), waitMilliseconds);
    return files_.removeFile(path) == 0;
}

void FileInUse::stopProgram(InstallerUI* ui, const char* name, std::uint32_t waitMilliseconds) {
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
        if (ui != nullptr) {
            ui->pumpEvents();
        }
    }
}

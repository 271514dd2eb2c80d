#include "ui/dialog_walk.h"

#include "contracts/installer_ui.h"
#include "ui/refresh_flags.h"

namespace {

constexpr int kDone = 0;
constexpr int kRefused = -1;

}  // namespace

DialogWalk::DialogWalk(const Description& description, PageActions& actions, platform::FileSystem& files,
                       DebugLog debugLog)
    : dialogs_(description.dialogs),
      controls_(description.controlNames, description.variables),
      triggers_(dialogs_, description.variables, description.expressions, actions, files, debugLog),
      tasks_(state_, dialogs_, description.expressions),
      conditions_(state_, dialogs_, description.expressions, controls_),
      entry_(controls_, triggers_, actions, debugLog),
      pages_(state_, dialogs_, triggers_, tasks_, entry_),
      navigator_(state_, dialogs_, conditions_, tasks_, pages_, debugLog),
      buttons_(state_, description.variables) {}

int DialogWalk::shift(InstallerUI* ui, int count) {
    if (count == 0) {
        return kDone;  // also without a front end
    }
    return count > 0 ? next(ui, count) : back(ui, -count);
}

int DialogWalk::next(InstallerUI* ui, int count) {
    return ui != nullptr && navigator_.goForward(*ui, count) ? kDone : kRefused;
}

int DialogWalk::back(InstallerUI* ui, int count) {
    if (ui == nullptr) {
        return kRefused;
    }
    navigator_.goBack(*ui, count);
    return kDone;
}

int DialogWalk::goToDialog(int dialog, InstallerUI* ui) {
    return ui == nullptr ? kRefused : static_cast<int>(pages_.goToDialog(dialog, *ui));
}

int DialogWalk::goToSubdialog(int dialog, int sub, InstallerUI* ui) {
    return ui == nullptr ? kRefused : static_cast<int>(pages_.goToSubdialog(dialog, sub, *ui));
}

void DialogWalk::performAction(InstallerUI* ui, std::string_view text) {
    buttons_.perform(ui, text);
}

int DialogWalk::cancel(InstallerUI* ui) {
    if (ui == nullptr) {
        return kRefused;
    }
    buttons_.cancel(*ui);
    return kDone;
}

void DialogWalk::showHelp(InstallerUI* ui) {
    if (ui != nullptr) {
        ui->showHelp();
    }
}

int DialogWalk::checkCondition(InstallerUI* ui) {
    return ui == nullptr ? kRefused : static_cast<int>(conditions_.checkCurrentPage(*ui));
}

void DialogWalk::runTriggers(InstallerUI* ui, std::uint32_t when, int dialog, int sub) {
    if (ui != nullptr) {
        triggers_.run(*ui, when, dialog, sub);
    }
}

void DialogWalk::refreshTasks(InstallerUI* ui) {
    if (ui != nullptr) {
        tasks_.refresh(*ui);
    }
}

void DialogWalk::updateTask(InstallerUI* ui, int dialog, int task, std::int32_t value) {
    if (ui != nullptr) {
        tasks_.update(*ui, dialog, task, value);
    }
}

std::uint32_t DialogWalk::refreshFlags(std::string_view variable, int dialog, int sub) {
    return getRefreshFlags(dialogs_, variable, dialog, sub);
}

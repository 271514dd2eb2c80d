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

bool DialogWalk::isAtWork() const {
    const std::int32_t state = state_.uiState;
    return steps_.isHeld() && (state == kUiInstallationRunning || state == kUiBusy);
}

int DialogWalk::shift(InstallerUI* ui, int count) {
    if (count == 0) {
        return kDone;  // also without a front end
    }
    return count > 0 ? next(ui, count) : back(ui, -count);
}

template <typename Step>
int DialogWalk::stepOnce(InstallerUI* ui, Step&& step) {
    const ReentryGuard::Entry entry(steps_);
    return ui != nullptr && entry.isFirst() ? step(*ui) : kRefused;
}

int DialogWalk::next(InstallerUI* ui, int count) {
    return stepOnce(
        ui, [&](InstallerUI& front) { return navigator_.goForward(front, count) ? kDone : kRefused; });
}

int DialogWalk::back(InstallerUI* ui, int count) {
    return stepOnce(ui, [&](InstallerUI& front) {
        navigator_.goBack(front, count);
        return kDone;
    });
}

int DialogWalk::goToDialog(int dialog, InstallerUI* ui) {
    return stepOnce(ui,
                    [&](InstallerUI& front) { return static_cast<int>(pages_.goToDialog(dialog, front)); });
}

int DialogWalk::goToSubdialog(int dialog, int sub, InstallerUI* ui) {
    return stepOnce(
        ui, [&](InstallerUI& front) { return static_cast<int>(pages_.goToSubdialog(dialog, sub, front)); });
}

void DialogWalk::performAction(InstallerUI* ui, std::string_view text) {
    if (!steps_.isHeld() || !ButtonActions::isAssignment(text)) {
        buttons_.perform(ui, text);
    }
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
    stepOnce(ui, [&](InstallerUI& front) {
        triggers_.run(front, when, dialog, sub);
        return kDone;
    });
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

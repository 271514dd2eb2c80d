#include "ui/task_states.h"

#include <algorithm>

#include "base/fixed_text.h"
#include "contracts/installer_ui.h"
#include "description/dialog_model.h"
#include "description/expressions.h"
#include "ui/navigation_state.h"

namespace {

const char* labelOf(const TaskDesc& task, std::int32_t state) {
    const char* label = task.currentLabel.c_str();
    if (state == kTaskNotReached || state == kTaskDisabled) {
        label = task.unreachedLabel.c_str();
    } else if (state == kTaskFinished || state == kTaskFinishedWithError) {
        label = task.finishLabel.c_str();
    }
    return *label == '\0' ? task.currentLabel.c_str() : label;
}

}  // namespace

TaskStates::TaskStates(NavigationState& state, DialogModel& dialogs, Expressions& expressions)
    : state_(state), dialogs_(dialogs), expressions_(expressions) {}

void TaskStates::update(InstallerUI* ui, int dialog, int task, std::int32_t state) {
    TaskDesc* desc = dialogs_.getTask(dialog, task);
    if (desc == nullptr || ui == nullptr) {
        return;
    }
    if (state != kTaskDisabled) {
        desc->state = state;
    }
    const FixedText<512> label(labelOf(*desc, state));
    ui->setTaskState(desc->name.c_str(), label.c_str(), state);
}

void TaskStates::refresh(InstallerUI* ui) {
    const int dialog = state_.currentDialog;
    const int count = dialogs_.getTaskCount(dialog);
    for (int i = std::max<int>(state_.currentSubdialog, 0); i < count; ++i) {
        const TaskDesc& task = *dialogs_.getTask(dialog, i);
        if (!task.enableCondition.isEmpty()) {
            const bool isEnabled = expressions_.evaluateCondition(task.enableCondition.c_str()) != 0;
            update(ui, dialog, i, isEnabled ? task.state : kTaskDisabled);
        }
    }
}

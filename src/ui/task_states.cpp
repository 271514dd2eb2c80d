#include "ui/task_states.h"

#include <algorithm>

#include "contracts/installer_ui.h"
#include "description/dialog_model.h"
#include "description/expressions.h"
#include "ui/navigation_state.h"

const FixedText<512>& taskLabel(const TaskDesc& task, std::int32_t state) {
    const bool isAhead = state == kTaskNotReached || state == kTaskDisabled;
    const bool isOver = state == kTaskFinished || state == kTaskFinishedWithError;
    const FixedText<512>& label = isAhead  ? task.unreachedLabel
                                  : isOver ? task.finishLabel
                                           : task.currentLabel;
    return label.isEmpty() ? task.currentLabel : label;
}

TaskStates::TaskStates(NavigationState& state, DialogModel& dialogs, Expressions& expressions)
    : state_(state), dialogs_(dialogs), expressions_(expressions) {}

void TaskStates::update(InstallerUI& ui, int dialog, int task, std::int32_t state) {
    TaskDesc* desc = dialogs_.getTask(dialog, task);
    if (desc == nullptr) {
        return;
    }
    if (state != kTaskDisabled) {
        desc->state = state;
    }
    ui.setTaskState(desc->name.c_str(), taskLabel(*desc, state).c_str(), state);
}

void TaskStates::refresh(InstallerUI& ui) {
    const int dialog = state_.currentDialog;
    const int count = dialogs_.getTaskCount(dialog);
    for (int i = std::max<int>(state_.currentSubdialog, 0); i < count; ++i) {
        const TaskDesc& task = *dialogs_.getTask(dialog, i);
        if (!task.enableCondition.isEmpty()) {
            const bool isEnabled = expressions_.holds(task.enableCondition.view());
            update(ui, dialog, i, isEnabled ? task.state : kTaskDisabled);
        }
    }
}

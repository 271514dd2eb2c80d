#pragma once

#include <cstdint>

#include "base/fixed_text.h"

class DialogModel;
class Expressions;
class InstallerUI;
struct NavigationState;
struct TaskDesc;

// What a task list says about a task in this TaskState.
const FixedText<512>& taskLabel(const TaskDesc& task, std::int32_t state);

// The states of the tasks in a task list, stored and shown.
class TaskStates {
public:
    // All arguments outlive this object.
    TaskStates(NavigationState& state, DialogModel& dialogs, Expressions& expressions);

    // Stores a TaskState and shows it with the label that belongs to it; kTaskDisabled is only shown. Nothing
    // happens for a task that isn't there.
    void update(InstallerUI& ui, int dialog, int task, std::int32_t state);
    // Shows the tasks from the current sub-dialog on as enabled or disabled by their conditions.
    void refresh(InstallerUI& ui);

private:
    NavigationState& state_;
    DialogModel& dialogs_;
    Expressions& expressions_;
};

#pragma once

#include <cstdint>

class DialogModel;
class Expressions;
class InstallerUI;
struct NavigationState;

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

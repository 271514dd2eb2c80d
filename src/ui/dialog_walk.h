#pragma once

#include <cstdint>
#include <string_view>

#include "support/debug_log.h"
#include "ui/button_actions.h"
#include "ui/control_values.h"
#include "ui/navigation_state.h"
#include "ui/navigator.h"
#include "ui/page_conditions.h"
#include "ui/page_entry.h"
#include "ui/page_turner.h"
#include "ui/reentry_guard.h"
#include "ui/task_states.h"
#include "ui/triggers.h"

// The walk of a session through its dialogs, put together from its parts: what the session's operations on
// dialogs come down to. A front end is looked for here and only here: without one an operation does nothing,
// and gives -1 where it gives a number. Numbers are those of InstallExchangeInfo. Session thread only, except
// for `cancel`.
//
// The steps and the triggers that a front end asks for don't start inside one another: a press that comes in
// while the front end handles its events during a step, a trigger or the work of a page is dropped. The
// operation does nothing then, and gives -1 where it gives a number. Of the actions only Cancel and Help are
// carried out meanwhile.
class DialogWalk {
public:
    // What the walk reads and changes of the description.
    struct Description {
        DialogModel& dialogs;
        const ControlVariables& controlNames;
        VariableStore& variables;
        Expressions& expressions;
    };

    // All of them outlive this object. `actions` does the work behind the pages, `files` answers the triggers
    // that look for a file.
    DialogWalk(const Description& description, PageActions& actions, platform::FileSystem& files,
               DebugLog debugLog);
    DialogWalk(const DialogWalk&) = delete;
    DialogWalk& operator=(const DialogWalk&) = delete;

    NavigationState& state() { return state_; }
    // A step has come to a page that works or is busy. What the user enters has no effect meanwhile.
    bool isAtWork() const;

    // Forward for a positive `count`, back for a negative one, nothing for 0. 0; -1 when the gate of the
    // current page holds the user. An exception out of the work of a page leaves the walk on that page, with
    // nothing running.
    int shift(InstallerUI* ui, int count);
    int next(InstallerUI* ui, int count);
    // 0.
    int back(InstallerUI* ui, int count);
    // Both: 1 when the walk is to go on by itself, else 0; -1 for a page that isn't there.
    int goToDialog(int dialog, InstallerUI* ui);
    int goToSubdialog(int dialog, int sub, InstallerUI* ui);

    // What a button does; see ButtonActions. Assignments need no front end.
    void performAction(InstallerUI* ui, std::string_view text);
    // Any thread. 0, whether the front end agreed or not.
    int cancel(InstallerUI* ui);
    void showHelp(InstallerUI* ui);

    // 2 when the current page has no gate; 1 when it is open; 0 when it is closed, and without a page.
    int checkCondition(InstallerUI* ui);
    // `when` is a set of TriggerMoment.
    void runTriggers(InstallerUI* ui, std::uint32_t when, int dialog, int sub);
    void refreshTasks(InstallerUI* ui);
    // `value` is a TaskState.
    void updateTask(InstallerUI* ui, int dialog, int task, std::int32_t value);
    // A set of RefreshFlag; see refresh_flags.h.
    std::uint32_t refreshFlags(std::string_view variable, int dialog, int sub);

private:
    // What `step` gives; -1 without a front end, and inside another step.
    template <typename Step>
    int stepOnce(InstallerUI* ui, Step&& step);

    DialogModel& dialogs_;
    NavigationState state_;
    ControlValues controls_;
    Triggers triggers_;
    TaskStates tasks_;
    PageConditions conditions_;
    PageEntry entry_;
    PageTurner pages_;
    Navigator navigator_;
    ButtonActions buttons_;
    ReentryGuard steps_;
};

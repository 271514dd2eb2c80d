#pragma once

#include <cstdint>

#include "support/debug_log.h"

class DialogModel;
class EnvironmentAccess;
class Expressions;
class InstallerUI;
class PageActions;
class VariableStore;
struct TriggerDesc;

// Fires the triggers of pages.
class Triggers {
public:
    // Everything is borrowed;
    Triggers(DialogModel& dialogs, VariableStore& variables, Expressions& expressions, PageActions& actions,
             EnvironmentAccess& environment, DebugLog debugLog);

    // Fires those whose moments (a set of TriggerMoment) meet `when` and whose condition holds by then, in
    // document order; a later one sees what an earlier one did. A page that isn't there has none. `ui` isn't
    // null.
    void run(InstallerUI* ui, std::uint32_t when, int dialog, int sub);

private:
    struct Firing {
        InstallerUI* ui;
        const TriggerDesc& trigger;
        int dialog;
        int sub;
    };
    using Effect = void (Triggers::*)(const Firing& firing);

    void fire(const Firing& firing);
    void changeVariable(const Firing& firing);
    void runActions(const Firing& firing);
    void resetToExpression(const Firing& firing);
    void recalculate(const Firing& firing);
    void checkFile(const Firing& firing);
    void printExpression(const Firing& firing);
    void reset(const TriggerDesc& trigger, int mode);

    DialogModel& dialogs_;
    VariableStore& variables_;
    Expressions& expressions_;
    PageActions& actions_;
    EnvironmentAccess& environment_;
    DebugLog debugLog_;
};

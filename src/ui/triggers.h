#pragma once

#include <cstdint>

#include "support/debug_log.h"

class DialogModel;
class Expressions;
class InstallerUI;
class PageActions;
class VariableStore;
enum ResetMode : int;
namespace platform {
class FileSystem;
}
struct TriggerDesc;

// Fires the triggers of pages.
class Triggers {
public:
    // All arguments outlive this object.
    Triggers(DialogModel& dialogs, VariableStore& variables, Expressions& expressions, PageActions& actions,
             platform::FileSystem& files, DebugLog debugLog);

    // Fires those whose moments (a set of TriggerMoment) have one in common with `when` and whose condition
    // is true by then, in document order; a later one sees what an earlier one did. A page that isn't there
    // has none.
    void run(InstallerUI& ui, std::uint32_t when, int dialog, int sub);

private:
    struct Firing {
        InstallerUI& ui;
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
    void reset(const TriggerDesc& trigger, ResetMode mode);

    DialogModel& dialogs_;
    VariableStore& variables_;
    Expressions& expressions_;
    PageActions& actions_;
    platform::FileSystem& files_;
    DebugLog debugLog_;
};

#include "ui/triggers.h"

#include <cstddef>
#include <iterator>

#include "base/path_functions.h"
#include "base/text_functions.h"
#include "contracts/page_actions.h"
#include "description/dialog_model.h"
#include "description/environment_access.h"
#include "description/expressions.h"
#include "description/variable_store.h"
#include "support/debug_log.h"

namespace {

constexpr int kValueCapacity = 1024;
constexpr int kDebugTextCapacity = 2048;

}  // namespace

Triggers::Triggers(DialogModel& dialogs, VariableStore& variables, Expressions& expressions,
                   PageActions& actions, EnvironmentAccess& environment, DebugLog debugLog)
    : dialogs_(dialogs),
      variables_(variables),
      expressions_(expressions),
      actions_(actions),
      environment_(environment),
      debugLog_(debugLog) {}

void Triggers::run(InstallerUI* ui, std::uint32_t when, int dialog, int sub) {
    const DialogDesc* page = dialogs_.getDialog(dialog, sub);
    if (page == nullptr) {
        return;
    }
    for (const TriggerDesc& trigger : page->triggers) {
        if ((trigger.when & when) != 0 && expressions_.evaluateCondition(trigger.condition.c_str()) != 0) {
            fire({ui, trigger, dialog, sub});
        }
    }
}

void Triggers::fire(const Firing& firing) {
    // By the number of the type.
    static constexpr Effect kEffects[] = {
        &Triggers::changeVariable, &Triggers::runActions, &Triggers::resetToExpression,
        &Triggers::recalculate,    &Triggers::checkFile,  &Triggers::printExpression,
    };
    const std::int32_t type = firing.trigger.type;
    if (type >= 0 && static_cast<std::size_t>(type) < std::size(kEffects)) {
        (this->*kEffects[type])(firing);
    } else
        debugLog_.print("WARNING: Unrecognized trigger type (%d)", static_cast<int>(type));
}

void Triggers::changeVariable(const Firing& firing) {
    char value[kValueCapacity];
    expressions_.expandVariables(firing.trigger.value.c_str(), value, sizeof value, false);
    variables_.setVariable(firing.trigger.variable.c_str(), value);
}

void Triggers::runActions(const Firing& firing) {
    actions_.runActions(firing.ui, firing.trigger.value.c_str());
}

void Triggers::resetToExpression(const Firing& firing) {
    reset(firing.trigger, kResetToExpressionAndFollow);
}

void Triggers::recalculate(const Firing& firing) {
    variables_.recalculateVariables(variables_.getVariable(firing.trigger.variable.c_str(), nullptr, 0));
}

void Triggers::checkFile(const Firing& firing) {
    char path[OUtils::kPathCapacity];
    expressions_.expandVariables(firing.trigger.value.c_str(), path, sizeof path, false);
    OUtils::normalizePath(path);
    if (environment_.fileExists(path)) {
        variables_.setVariable(firing.trigger.variable.c_str(), path);
    } else {
        reset(firing.trigger, kResetToDefault);
    }
}

void Triggers::printExpression(const Firing& firing) {
    char text[kDebugTextCapacity];
    if (expressions_.expandVariables(firing.trigger.value.c_str(), text, sizeof text, false) < 1) {
        debugLog_.print("WARNING: Empty debug trigger in dialog (%d, %d)", firing.dialog, firing.sub);
    } else {
        debugLog_.print("DEBUG: Dlg (%d, %d) trigger expanded value: %s", firing.dialog, firing.sub, text);
    }
}

void Triggers::reset(const TriggerDesc& trigger, int mode) {
    if (variables_.resetVariable(trigger.variable.c_str(), mode) != 0) {
        debugLog_.print("WARNING: Trying to reset non-existent variable: %s", trigger.variable.c_str());
    }
}

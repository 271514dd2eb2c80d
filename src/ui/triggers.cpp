#include "ui/triggers.h"

#include <cstddef>
#include <iterator>
#include <optional>
#include <string>

#include "base/fixed_text.h"
#include "base/path_functions.h"
#include "contracts/page_actions.h"
#include "description/dialog_model.h"
#include "description/expressions.h"
#include "description/variable_store.h"
#include "platform/file_system.h"

namespace {

constexpr std::size_t kValueCapacity = 1024;
constexpr std::size_t kDebugTextCapacity = 2048;

}  // namespace

Triggers::Triggers(DialogModel& dialogs, VariableStore& variables, Expressions& expressions,
                   PageActions& actions, platform::FileSystem& files, DebugLog debugLog)
    : dialogs_(dialogs),
      variables_(variables),
      expressions_(expressions),
      actions_(actions),
      files_(files),
      debugLog_(debugLog) {}

void Triggers::run(InstallerUI& ui, std::uint32_t when, int dialog, int sub) {
    const DialogDesc* page = dialogs_.getDialog(dialog, sub);
    if (page == nullptr) {
        return;
    }
    for (const TriggerDesc& trigger : page->triggers) {
        if ((trigger.when & when) != 0 && expressions_.holds(trigger.condition.view())) {
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
    } else {
        debugLog_.print("WARNING: Unrecognized trigger type (%d)", static_cast<int>(type));
    }
}

// A name with a leading `$` sets the environment; that is the store's rule.
void Triggers::changeVariable(const Firing& firing) {
    const TriggerDesc& trigger = firing.trigger;
    variables_.set(trigger.variable.view(),
                   expressions_.expand(trigger.value.view(), kValueCapacity).value_or(""));
}

void Triggers::runActions(const Firing& firing) {
    actions_.runActions(firing.trigger.value.view(), firing.ui);
}

void Triggers::resetToExpression(const Firing& firing) {
    reset(firing.trigger, kResetToExpressionAndFollow);
}

void Triggers::recalculate(const Firing& firing) {
    variables_.recalculateVariables(variables_.find(firing.trigger.variable.view()).value_or(-1));
}

void Triggers::checkFile(const Firing& firing) {
    const TriggerDesc& trigger = firing.trigger;
    PathText path(expressions_.expand(trigger.value.view(), PathText::capacity()).value_or(""));
    OUtils::normalizePath(path.data());
    if (files_.exists(path.view())) {
        variables_.set(trigger.variable.view(), path.view());
    } else {
        reset(trigger, kResetToDefault);
    }
}

void Triggers::printExpression(const Firing& firing) {
    const std::optional<std::string> text =
        expressions_.expand(firing.trigger.value.view(), kDebugTextCapacity);
    if (!text) {
        debugLog_.print("WARNING: Empty debug trigger in dialog (%d, %d)", firing.dialog, firing.sub);
    } else {
        debugLog_.print("DEBUG: Dlg (%d, %d) trigger expanded value: %s", firing.dialog, firing.sub,
                        text->c_str());
    }
}

void Triggers::reset(const TriggerDesc& trigger, ResetMode mode) {
    if (!variables_.reset(trigger.variable.view(), mode)) {
        debugLog_.line("WARNING: Trying to reset non-existent variable: " +
                       std::string(trigger.variable.view()));
    }
}

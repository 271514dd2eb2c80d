#include "ui/dialog_condition_check.h"

#include "description/dialog_model.h"
#include "ui/control_values.h"
#include "ui/navigation_state.h"
#include "ui/page_conditions.h"

namespace {

constexpr int kNoCondition = 2;

}  // namespace

DialogConditionCheck::DialogConditionCheck(NavigationState& state, DialogModel& dialogs,
                                           PageConditions& conditions, ControlValues& controls)
    : state_(state), dialogs_(dialogs), conditions_(conditions), controls_(controls) {}

int DialogConditionCheck::check(InstallerUI* ui) {
    DialogDesc* page = dialogs_.getDialog(state_.currentDialog, -1);
    if (page != nullptr && page->has(kDialogHasSubDialogs)) {
        page = dialogs_.getDialog(state_.currentDialog, state_.currentSubdialog);
    }
    if (page == nullptr) {
        return 0;
    }
    if (page->condition == nullptr) {
        return kNoCondition;
    }
    const bool isOpen = conditions_.isOpen(*page, ui);
    controls_.set(ControlVariable::kDlgCondition, isOpen ? "1" : "0");
    return isOpen ? 1 : 0;
}

#include "ui/page_conditions.h"

#include "description/dialog_model.h"
#include "description/expressions.h"
#include "ui/control_values.h"
#include "ui/navigation_state.h"

PageConditions::PageConditions(NavigationState& state, DialogModel& dialogs, Expressions& expressions,
                               ControlValues& controls)
    : state_(state), dialogs_(dialogs), expressions_(expressions), controls_(controls) {}

bool PageConditions::isVisible(int dialog, int sub) {
    const DialogDesc* page = dialogs_.getDialog(dialog, sub);
    return page == nullptr || expressions_.holds(page->conditionText.view());
}

bool PageConditions::isOpen(DialogDesc& page, InstallerUI& ui) {
    return page.gate == nullptr || page.gate->isOpen(ui);
}

GateAnswer PageConditions::checkCurrentPage(InstallerUI& ui) {
    DialogDesc* page = dialogs_.getDialog(state_.currentDialog, -1);
    if (page != nullptr && page->has(kDialogHasSubDialogs)) {
        page = dialogs_.getDialog(state_.currentDialog, state_.currentSubdialog);
    }
    if (page == nullptr) {
        return GateAnswer::kClosed;
    }
    if (page->gate == nullptr) {
        return GateAnswer::kNoGate;
    }
    const bool isOpen = page->gate->isOpen(ui);
    controls_.set(ControlVariable::kDlgCondition, isOpen ? "1" : "0");
    return isOpen ? GateAnswer::kOpen : GateAnswer::kClosed;
}

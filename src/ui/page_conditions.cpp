#include "ui/page_conditions.h"

#include "description/dialog_model.h"
#include "description/expressions.h"

PageConditions::PageConditions(DialogModel& dialogs, Expressions& expressions, SystemOperations& system)
    : dialogs_(dialogs), expressions_(expressions), system_(system) {}

bool PageConditions::isVisible(int dialog, int sub) {
    const DialogDesc* page = dialogs_.getDialog(dialog, sub);
    return page == nullptr || expressions_.evaluateCondition(page->conditionText.c_str()) != 0;
}

bool PageConditions::isOpen(DialogDesc& page, InstallerUI* ui) {
    return page.condition == nullptr || page.condition->evaluate(&system_, ui) != 0;
}

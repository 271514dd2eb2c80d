#include "ui/button_actions.h"

#include <string>
#include <vector>

#include "base/text_functions.h"
#include "contracts/installer_ui.h"
#include "description/variable_store.h"
#include "ui/navigation_state.h"

void ButtonActions::perform(InstallerUI* ui, const char* text) {
    if (text == nullptr) {
        return;
    }
    if (OUtils::startsWithIgnoreCase(text, "Cancel")) {
        cancel(ui);
    } else if (OUtils::startsWithIgnoreCase(text, "Help")) {
        showHelp(ui);
    } else {
        assignAll(text);
    }
}

void ButtonActions::assignAll(const char* text) {
    std::vector<std::string> assignments;
    OUtils::splitText(text, ';', assignments);
    for (const std::string& assignment : assignments) {
        if (!assignment.empty()) {
            variables_.applyAssignment(assignment.c_str());
        }
    }
}

int ButtonActions::cancel(InstallerUI* ui) {
    if (ui == nullptr) {
        return -1;
    }
    if (ui->confirmCancel() != 0) {
        state_.cancelled = 1;
    }
    return 0;
}

void ButtonActions::showHelp(InstallerUI* ui) {
    if (ui != nullptr) {
        ui->showHelp();
    }
}

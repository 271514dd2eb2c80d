#include "ui/button_actions.h"

#include <string>
#include <vector>

#include "base/text_functions.h"
#include "contracts/installer_ui.h"
#include "description/variable_store.h"
#include "description/vocabulary.h"
#include "ui/navigation_state.h"

// The first letters decide, so that "Cancelled" is a cancel as well.
void ButtonActions::perform(InstallerUI* ui, std::string_view text) {
    const bool isCancel = OUtils::startsWithIgnoreCase(text, vocabulary::WordName("Cancel"));
    const bool isHelp = OUtils::startsWithIgnoreCase(text, vocabulary::WordName("Help"));
    if (!isCancel && !isHelp) {
        assignAll(text);
    } else if (ui != nullptr && isCancel) {
        cancel(*ui);
    } else if (ui != nullptr) {
        ui->showHelp();
    }
}

void ButtonActions::assignAll(std::string_view text) {
    const std::vector<std::string> assignments = OUtils::splitText(text, ';');
    for (const std::string& assignment : assignments) {
        if (!assignment.empty()) {
            variables_.assign(assignment);
        }
    }
}

void ButtonActions::cancel(InstallerUI& ui) {
    if (ui.confirmCancel() != 0) {
        state_.cancelled = true;
    }
}

#include "ui/button_actions.h"

#include <string>
#include <vector>

#include "base/text_functions.h"
#include "contracts/installer_ui.h"
#include "description/variable_store.h"
#include "description/vocabulary.h"
#include "ui/navigation_state.h"

namespace {

// The first letters decide, so that "Cancelled" is a cancel as well.
bool isCancel(std::string_view text) {
    return OUtils::startsWithIgnoreCase(text, vocabulary::WordName("Cancel"));
}

bool isHelp(std::string_view text) {
    return OUtils::startsWithIgnoreCase(text, vocabulary::WordName("Help"));
}

}  // namespace

bool ButtonActions::isAssignment(std::string_view text) {
    return !isCancel(text) && !isHelp(text);
}

void ButtonActions::perform(InstallerUI* ui, std::string_view text) {
    if (isAssignment(text)) {
        assignAll(text);
    } else if (ui != nullptr && isCancel(text)) {
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

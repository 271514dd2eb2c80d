#include "ui/refresh_flags.h"

#include <cstddef>
#include <map>
#include <string_view>
#include <unordered_set>

#include "contracts/installer_ui.h"
#include "description/dialog_model.h"

namespace {

// Finds out whether any of many names is in a text, by exact case. A page may have hundreds of fields and
// elements, so the time for a text depends on how many lengths the names have and not on how many names.
class NameSearch {
public:
    // `name` must outlive the object.
    void add(std::string_view name) { namesByLength_[name.size()].insert(name); }

    bool isAnyIn(std::string_view text) const {
        for (const auto& [length, names] : namesByLength_) {
            for (std::size_t start = 0; start + length <= text.size(); ++start) {
                if (names.contains(text.substr(start, length))) {
                    return true;
                }
            }
        }
        return false;
    }

private:
    std::map<std::size_t, std::unordered_set<std::string_view>> namesByLength_;
};

bool mentions(std::string_view condition, std::string_view variable) {
    return !condition.empty() && condition.find(variable) != std::string_view::npos;
}

// An element may depend on the outcome of a field's validation as well as on the variable itself.
std::uint32_t flagsOfFields(const DialogDesc& page, std::string_view variable, NameSearch& outNames) {
    std::uint32_t flags = 0;
    for (const DialogFieldDesc& field : page.fields) {
        if (mentions(field.condition.view(), variable)) {
            flags |= kRefreshFields;
        }
        if (!field.validationVariable.isEmpty()) {
            outNames.add(field.validationVariable.view());
        }
    }
    return flags;
}

std::uint32_t flagsOfElements(const DialogDesc& page, const NameSearch& names) {
    for (const DialogElementDesc& element : page.elements) {
        const bool isAffected = (!element.condition.isEmpty() && names.isAnyIn(element.condition.view())) ||
                                // In any case, and by way of variables that follow this one.
                                (element.expandsVariables && element.text.find('[') != std::string::npos);
        if (isAffected) {
            return kRefreshElements;
        }
    }
    return 0;
}

std::uint32_t flagsOfButtons(const DialogDesc& page, std::string_view variable) {
    for (const DialogButtonDesc& button : page.buttons) {
        if (mentions(button.enableCondition.view(), variable)) {
            return kRefreshButtons;
        }
    }
    return 0;
}

std::uint32_t flagsOfTasks(const DialogDesc& dialog, std::string_view variable) {
    for (const TaskDesc& task : dialog.tasks) {
        if (mentions(task.enableCondition.view(), variable)) {
            return kRefreshTasks;
        }
    }
    return 0;
}

}  // namespace

std::uint32_t getRefreshFlags(DialogModel& dialogs, std::string_view variable, int dialog, int sub) {
    const DialogDesc* frame = dialogs.getDialog(dialog, -1);
    if (frame == nullptr) {
        return 0;
    }
    const bool isSubPage = sub >= 0 && (frame->special & kDialogHasSubDialogs) != 0 &&
                           static_cast<std::size_t>(sub) < frame->subDialogs.size();
    const DialogDesc& page = isSubPage ? frame->subDialogs[static_cast<std::size_t>(sub)] : *frame;
    NameSearch names;
    names.add(variable);
    std::uint32_t flags = flagsOfFields(page, variable, names);
    flags |= flagsOfElements(page, names);
    flags |= flagsOfButtons(page, variable);
    return flags | flagsOfTasks(*frame, variable);
}

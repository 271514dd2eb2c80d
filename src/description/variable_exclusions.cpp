#include "description/variable_exclusions.h"

#include <vector>

#include "base/text_functions.h"
#include "description/control_variables.h"
#include "description/dialog_model.h"
#include "description/pxml.h"
#include "description/variable_store.h"

namespace {

struct ControlMask {
    ControlVariable role;
    std::uint32_t mask;
};

// ShouldUninstall isn't among them: it is logged and exported.
constexpr ControlMask kControlMasks[] = {
    {ControlVariable::kPreviousInstallation, kExcludeFromConfig},
    {ControlVariable::kLegacyInstallation, kExcludeFromConfig},
    {ControlVariable::kProgressDetails, kExcludeFromAll},
    {ControlVariable::kInstallError, kExcludeFromConfig},
    {ControlVariable::kUninstallError, kExcludeFromConfig},
    {ControlVariable::kCustomizeSettings, kExcludeFromAll},
    {ControlVariable::kDlgCondition, kExcludeFromAll},
    {ControlVariable::kExternalLegacyInstallation, kExcludeFromConfig},
};

struct ExclusionWord {
    const char* word;
    std::uint32_t mask;
};

constexpr ExclusionWord kExclusionWords[] = {
    {"all", kExcludeFromAll}, {"log", kExcludeFromLog}, {"config", kExcludeFromConfig}};

// Without the attribute a variable stays out of everything.
std::uint32_t maskOf(const char* excludeFrom) {
    if (excludeFrom == nullptr) {
        return kExcludeFromAll;
    }
    std::vector<std::string> words;
    OUtils::splitText(excludeFrom, ';', words);
    std::uint32_t mask = 0;
    for (const std::string& word : words) {
        for (const ExclusionWord& known : kExclusionWords) {
            mask |= OUtils::equalsIgnoreCase(word, known.word) ? known.mask : 0U;
        }
    }
    return mask;
}

}  // namespace

std::vector<std::string_view> VariableExclusions::words() {
    std::vector<std::string_view> words;
    for (const ExclusionWord& known : kExclusionWords) {
        words.emplace_back(known.word);
    }
    return words;
}

void VariableExclusions::add(const char* name, std::uint32_t mask) {
    if (name != nullptr && *name != '\0') {
        masks_[name] |= mask;
    }
}

bool VariableExclusions::isVariableExported(const char* name, std::uint32_t bit) const {
    if (name == nullptr) {
        return false;
    }
    const auto found = masks_.find(name);
    return found == masks_.end() || (found->second & bit) == 0;
}

void VariableExclusions::build(const PXML& description, const ControlVariables& controls,
                               const DialogModel& dialogs, VariableStore& variables) {
    addControls(controls);
    addValidationVariables(dialogs, variables);
    addListed(description);
}

void VariableExclusions::addControls(const ControlVariables& controls) {
    for (const ControlMask& control : kControlMasks) {
        add(controls.nameOf(control.role), control.mask);
    }
}

void VariableExclusions::addValidationVariables(const DialogModel& dialogs, VariableStore& variables) {
    const auto addFields = [&](const DialogDesc& page) {
        for (const DialogFieldDesc& field : page.fields) {
            if (!field.validationVariable.isEmpty()) {
                add(field.validationVariable.c_str(), kExcludeFromAll);
                variables.storeVariable(field.validationVariable.c_str(), "1", "1", false, nullptr);
            }
        }
    };
    for (const DialogDesc& dialog : dialogs.getDialogs()) {
        addFields(dialog);
        if (dialog.has(kDialogHasSubDialogs)) {
            for (const DialogDesc& sub : dialog.subDialogs) {
                addFields(sub);
            }
        }
    }
}

void VariableExclusions::addListed(const PXML& description) {
    const std::int32_t section = description.findByName("InstallerExcludeVariables");
    if (section < 0) {
        return;
    }
    std::vector<std::int32_t> children;
    description.listChildren(section, children);
    for (const std::int32_t child : children) {
        add(description.getText(child), maskOf(description.getAttribute(child, "ExcludeFrom")));
    }
}

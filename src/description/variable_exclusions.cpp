#include "description/variable_exclusions.h"

#include "description/control_variables.h"
#include "description/dialog_model.h"
#include "description/pxml.h"
#include "description/variable_store.h"
#include "description/vocabulary_lookup.h"

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

constexpr vocabulary::Row<std::uint32_t> kExclusionWords[] = {
    {"all", kExcludeFromAll}, {"log", kExcludeFromLog}, {"config", kExcludeFromConfig}};
static_assert(vocabulary::coversList(kExclusionWords, vocabulary::kExclusions));

// Without the attribute a variable stays out of everything.
std::uint32_t maskOf(std::optional<std::string_view> excludeFrom) {
    if (!excludeFrom) {
        return kExcludeFromAll;
    }
    std::uint32_t mask = 0;
    vocabulary::forEachWord(*excludeFrom, [&](std::string_view word) {
        mask |= vocabulary::meaningOf(kExclusionWords, word).value_or(0);
    });
    return mask;
}

}  // namespace

void VariableExclusions::add(std::string_view name, std::uint32_t mask) {
    if (!name.empty()) {
        masks_[std::string(name)] |= mask;
    }
}

bool VariableExclusions::isVariableExported(std::string_view name, ExclusionBit bit) const {
    const auto found = masks_.find(std::string(name));
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
                add(field.validationVariable.view(), kExcludeFromAll);
                variables.store(field.validationVariable.view(), {"1", "1", std::nullopt}, false);
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
    const std::int32_t section = vocabulary::findElement(description, "InstallerExcludeVariables");
    if (section < 0) {
        return;
    }
    for (const std::int32_t child : description.childrenOf(section)) {
        add(description.getText(child).value_or(std::string_view()),
            maskOf(vocabulary::attributeOf(description, child, "ExcludeFrom")));
    }
}

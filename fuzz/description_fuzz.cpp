// Reads anything as the description of a product, as far as a session does before its first page: product,
// default values, file sets, theme, dialogs of both kinds, control variables.

#include <string>
#include <string_view>

#include "description/answers_file.h"
#include "description/uninstall_overrides.h"
#include "fuzz_target.h"
#include "package/cabinet.h"
#include "platform/memory/memory_platform.h"
#include "session/session_model.h"
#include "wini/system_services.h"

namespace {

bool isColour(std::int32_t colour) {
    return colour >= -1 && colour <= 0xFFFFFF;
}

void checkFiles(FileSets& fileSets) {
    for (const FileEntry& file : fileSets.getFiles()) {
        require(file.fileSet >= 0 && static_cast<std::size_t>(file.fileSet) < fileSets.getFileSets().size());
        require(file.dest.size() <= FileEntry::kDestLimit && file.fileName.size() <= FileEntry::kNameLimit);
        require(file.condition.size() <= FileEntry::kConditionLimit);
        require(file.fileName.find_first_of("/\\") == std::string::npos);
        fileSets.pathOfAlias(file.alias);
    }
}

void checkParts(const DialogDesc& dialog) {
    for (const DialogElementDesc& element : dialog.elements) {
        require(element.kind >= kElementText && element.kind <= kElementPlainEditText);
        require(isColour(element.backgroundColour) && isColour(element.foregroundColour));
    }
    for (const DialogFieldDesc& field : dialog.fields) {
        require(field.type >= kFieldDirectory && field.type <= kFieldPassword);
        require(isColour(field.labelColour) && isColour(field.inputBackground) && isColour(field.background));
    }
    for (const DialogButtonDesc& button : dialog.buttons) {
        require(isColour(button.backgroundColour) && isColour(button.activeForeground));
    }
    for (const TriggerDesc& trigger : dialog.triggers) {
        require(trigger.type >= kTriggerVarChange && trigger.type <= kTriggerDebugExpression);
    }
}

void checkDialogs(SessionModel& model, bool isUninstallation) {
    for (const DialogDesc& dialog : model.dialogs.getDialogs()) {
        require(dialog.node >= 0 && dialog.node < model.description.getNodeCount());
        require(dialog.has(kDialogHasSubDialogs) || (dialog.tasks.empty() && dialog.subDialogs.empty()));
        checkParts(dialog);
        for (const DialogDesc& sub : dialog.subDialogs) {
            require(sub.subDialogs.empty());
            require(!isUninstallation || sub.fields.empty());
            checkParts(sub);
        }
        require(!isUninstallation || dialog.fields.empty());
    }
}

void checkTheme(const ColourTheme& theme) {
    for (std::int32_t slot = 0; slot < kThemeSlotCount; ++slot) {
        require(isColour(theme.getThemeColour(slot)));
    }
}

// Whether everything could be read, and there is a file and a dialog.
bool readAll(std::string_view description, bool isUninstallation, bool isGraphical) {
    MemoryPlatform machine;
    const DebugLog debugLog;
    SystemServices services(machine.bundle(), debugLog);
    AnswersFile answers(machine.files);
    const Cabinet cabinet(machine.files, debugLog);
    SessionModel model(machine.bundle(), services, answers, debugLog);
    model.setGraphical(isGraphical);
    model.parse(description);
    std::string message;
    const bool hasDefaults =
        model.variables.loadDefaults(model.description, "", nullptr, message) == DefaultsOutcome::kLoaded;
    const bool isRead = model.read(cabinet, isUninstallation);
    checkFiles(model.fileSets);
    checkDialogs(model, isUninstallation);
    checkTheme(model.theme);
    for (const auto& text : {model.product.title(), model.product.version(), model.product.website(),
                             model.product.uninstallCommand(), model.product.uninstallXmlFile()}) {
        require(text.value_or("").size() <= ProductDescription::kCommandLimit || isRead);
    }
    VariableStore& store = model.variables.store();
    UninstallOverrides(model.description, store, model.variables.expressions(), debugLog)
        .apply([&store](std::string_view name, std::string_view value) { store.set(name, value); }, "Demo");
    return hasDefaults && isRead && !model.fileSets.getFiles().empty() && model.dialogs.getDialogCount() > 0;
}

}  // namespace

// Accepted when every part is read.
bool accepts(std::string_view input) {
    const bool isInstallable = readAll(input, false, false);
    const bool isThemed = readAll(input, false, true);
    const bool isUninstallable = readAll(input, true, false);
    return isInstallable && isThemed && isUninstallable;
}

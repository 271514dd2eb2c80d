#include "session/session_model.h"

#include "description/dialog_reader.h"
#include "description/theme_reader.h"
#include "package/cabinet.h"

SessionModel::SessionModel(const platform::Platform& machine, SystemOperations& system, AnswersFile& answers,
                           DebugLog debugLog)
    : logVariables_(machine.files),
      variables(isGraphical_, {system, machine.environment, machine.files, logVariables_, answers}, debugLog),
      product(description, variables.expressions()),
      fileSets(description, variables.expressions()),
      debugLog_(debugLog) {}

ProductModel SessionModel::view() {
    return {description, variables.expressions(), variables.store(),     product,
            fileSets,    variables.controls(),    variables.exclusions()};
}

void SessionModel::parse(std::string_view text) {
    debugLog_.line("Parsing installation file");
    description.parseText(text);
}

bool SessionModel::read(const Cabinet& cabinet, bool isUninstallation) {
    debugLog_.line("Getting product description");
    if (!product.exists()) {
        return false;
    }
    variables.expressions().setPathVariables(PathVariables(description));
    debugLog_.line("Getting file sets");
    fileSets.readFileSets([&](std::string_view alias) {
        const auto index = cabinet.findAlias(alias);
        return index ? static_cast<std::int32_t>(cabinet.entry(*index).fileSize()) : 0;
    });
    if (isGraphical()) {
        debugLog_.line("Getting GUI colour theme info");
        readColourTheme(description, variables.expressions(), debugLog_, theme);
    }
    if (!readDialogs(isUninstallation)) {
        return false;
    }
    readControlVariables();
    if (isGraphical()) {
        debugLog_.line("Initializing GUI colour theme");
        applyColourTheme(theme, dialogs);
    }
    return true;
}

bool SessionModel::readDialogs(bool isUninstallation) {
    debugLog_.line("Getting UI dialogs");
    if (!DialogReader(description, theme, dialogs, debugLog_).readDialogs(isUninstallation)) {
        debugLog_.line("ERROR: Getting dialogs info. Aborting!");
        return false;
    }
    return true;
}

void SessionModel::readControlVariables() {
    debugLog_.line("Getting control variables names");
    if (!variables.readControls(description)) {
        debugLog_.line("WARNING: There are no control variable names provided in the installation xml!");
    }
    variables.readExclusions(description, dialogs);
}

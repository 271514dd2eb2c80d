#include "engine/previous_installations.h"

#include "base/text_functions.h"
#include "description/control_variables.h"
#include "description/variable_store.h"
#include "engine/earlier_installations.h"
#include "support/debug_log.h"

PreviousInstallations::PreviousInstallations(EarlierInstallations& found, VariableStore& variables,
                                             const ControlVariables& controls, DebugLog debugLog)
    : found_(found), variables_(variables), controls_(controls), debugLog_(debugLog) {}

bool PreviousInstallations::isWanted() {
    char value[InstallVariable::kTextCapacity] = "";
    const char* name = controls_.nameOf(ControlVariable::kShouldUninstall);
    return variables_.getVariable(name, value, sizeof value) != -1 && OUtils::textToInteger(value) != 0;
}

int PreviousInstallations::uninstallPrevious() {
    found_.previousUninstallDone = 1;
    if (!isWanted()) {
        return 0;
    }
    const bool isAnythingFound = found_.previousInstallationKind != kNoPreviousInstallation ||
                                 found_.legacyInstallationCount > 0 || !found_.legacyLogFiles.empty();
    if (!isAnythingFound) {
        return 0;
    }
    debugLog_.print("ERROR: Earlier installations are not removed: this version can not do that");
    const char* error = controls_.nameOf(ControlVariable::kUninstallError);
    if (error[0] != '\0') {
        variables_.setVariable(error, "");
    }
    return 1;
}

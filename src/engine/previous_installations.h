#pragma once

#include "support/debug_log.h"

class ControlVariables;
class VariableStore;
struct EarlierInstallations;

// Takes earlier installations away, as far as the user wants that.
class PreviousInstallations {
public:
    PreviousInstallations(EarlierInstallations& found, VariableStore& variables,
                          const ControlVariables& controls, DebugLog debugLog);

    // Runs once in a session, and only when the variable of the role ShouldUninstall isn't 0. 0 when there
    // is nothing to do; 1 when something would have to be removed: this version has no removal, and the log
    // says so. A failure empties the variable of the role UninstallError.
    int uninstallPrevious();

private:
    bool isWanted();

    EarlierInstallations& found_;
    VariableStore& variables_;
    const ControlVariables& controls_;
    DebugLog debugLog_;
};

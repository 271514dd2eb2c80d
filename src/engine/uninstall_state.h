#pragma once

#include "base/fixed_text.h"

// What a session knows about its uninstallation.
struct UninstallState {
    bool uninstallPrepared = false;  // where the backup archive lies is known
    bool preUninstallDone = false;   // the actions ahead of an uninstallation have run
    PathText backupFileName;         // line 2 of the action log, or what a caller gave
};

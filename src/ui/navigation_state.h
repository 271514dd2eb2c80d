#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

#include "contracts/installer_ui.h"

// Where the walk through the dialogs is. The thread of the console control handler reads `uiState` and
// writes `cancelled`, so these two are atomic; the rest is for the session's thread.
struct NavigationState {
    std::int32_t currentDialog = -1;     // index in the dialog list
    std::int32_t currentSubdialog = -1;  // index in its sub-dialog list, or -1
    std::atomic<std::int32_t> uiState{kUiReady};
    std::atomic<bool> cancelled{false};
    bool finished = false;        // the walk is over
    bool lastWorkFailed = false;  // the last page with work didn't succeed; its task shows it
    bool anyFailed = false;       // some page with work didn't, or the walk itself
    bool mainWorkTried = false;   // the page that installs, or uninstalls, was reached
    // The errors of the run that didn't end it, for the last page; borrowed, null when nobody collects them.
    const std::vector<std::string>* errorSummary = nullptr;

    // The end of the work of a page. The run is as good as the worst of them: a later page that succeeds
    // doesn't make up for an earlier one.
    void endWork(bool succeeded) {
        lastWorkFailed = !succeeded;
        anyFailed = anyFailed || !succeeded;
    }
    // What the run may say of itself when it ends here. A walk that never came to its work did nothing wrong,
    // but nothing is installed either.
    bool hasSucceeded() const { return mainWorkTried && !anyFailed && !cancelled; }
};

#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

#include "contracts/installer_ui.h"

// Where the walk through the dialogs stands. The thread of the console control handler reads `uiState` and
// writes `cancelled`, so these two are atomic; the rest is for the session's thread.
struct NavigationState {
    std::int32_t currentDialog = -1;     // index in the dialog list
    std::int32_t currentSubdialog = -1;  // index in its sub-dialog list, or -1
    std::atomic<std::int32_t> uiState{kUiReady};
    std::atomic<std::int32_t> cancelled{0};
    std::int32_t finished = 0;    // the walk is over
    std::int32_t lastResult = 0;  // of the last page with work; non-zero is a failure
    // The errors of the run that didn't end it, for the last page; borrowed, null when nobody collects them.
    const std::vector<std::string>* errorSummary = nullptr;
};

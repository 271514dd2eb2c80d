#pragma once

#include "contracts/installer_ui.h"
#include "description/dialog_model.h"
#include "ui/navigation_state.h"

// Leaves the state that a page at work sets, also when an exception ends the work: nobody could cancel the
// session otherwise. The front end isn't told by this; it learns of the exception.
class WorkStateGuard {
public:
    // `state` outlives this object.
    WorkStateGuard(NavigationState& state, UiState working) : state_(state), working_(working) {}
    ~WorkStateGuard() {
        if (state_.uiState == working_) {
            state_.uiState = kUiReady;
        }
    }
    WorkStateGuard(const WorkStateGuard&) = delete;
    WorkStateGuard& operator=(const WorkStateGuard&) = delete;

private:
    NavigationState& state_;
    const UiState working_;
};

// One entry to a page, while the steps that belong to it are carried out.
struct PageVisit {
    int dialog;
    int sub;  // -1 for the dialog itself
    InstallerUI& ui;
    DialogDesc& page;
    NavigationState& state;
    bool shown = false;        // the page needs no showing any more
    bool oneMoreStep = false;  // the walk goes on by itself

    void show() {
        ui.showPage(dialog, sub, true);
        shown = true;
    }
    void showOnce() {
        if (!shown) {
            show();
        }
    }
    void setUiState(UiState value) {
        state.uiState = value;
        ui.updateNavigationState();
    }
    // The page waits for something outside this program.
    void hold() {
        ui.showPage(dialog, sub, true);
        setUiState(kUiConditionUnmet);
    }
};

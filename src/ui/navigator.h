#pragma once

#include "support/debug_log.h"

class DialogModel;
class InstallerUI;
class PageConditions;
class PageTurner;
class TaskStates;
struct DialogDesc;
struct NavigationState;

// Walks through the list of dialogs under their conditions. A page counts as one step unless it asks for
// another: a page that goes on by itself and a gate that is open on arrival each add a step, so a chain of
// them is walked through in one call. A hidden dialog is skipped with all its sub-dialogs. A cancelled walk
// enters no further page.
class Navigator {
public:
    // All arguments outlive this object.
    Navigator(NavigationState& state, DialogModel& dialogs, PageConditions& conditions, TaskStates& tasks,
              PageTurner& pages, DebugLog debugLog);

    // False when the gate of the current page stays closed, and then the position stays. A step past the last
    // dialog is logged, finishes the walk and makes it a failure.
    bool goForward(InstallerUI& ui, int count);
    // Gates don't hold a user who goes back, and the work of pages isn't undone. A step before the first
    // dialog is treated like one past the last.
    void goBack(InstallerUI& ui, int count);

private:
    struct Position {
        int dialog;
        int sub;
    };
    enum class Step {
        kEntered,  // the position is on a page for the user
        kHidden,   // the position has moved onto a page that isn't there for the user
        kStopped,  // the walk is over
    };

    DialogDesc* frameAt(int dialog);
    int subDialogCount(int dialog);
    bool isLastPage();
    bool isHeldBy(DialogDesc* page, InstallerUI& ui);
    bool passesGates(InstallerUI& ui);
    Step stepForward(Position& position, int& count, InstallerUI& ui);
    Step enterNextSubdialog(Position& position, int& count, InstallerUI& ui);
    Step enterNextDialog(Position& position, int& count, InstallerUI& ui);
    bool passesGatesOnArrival(const Position& position, int& count, InstallerUI& ui);
    Step stepBack(Position& position, InstallerUI& ui);
    Step stepBackInside(Position& position, InstallerUI& ui);
    Step stepBackOver(Position& position);
    void enterGoingBack(const Position& position, bool isOtherDialog, InstallerUI& ui);
    Step fail(const char* direction);

    NavigationState& state_;
    DialogModel& dialogs_;
    PageConditions& conditions_;
    TaskStates& tasks_;
    PageTurner& pages_;
    DebugLog debugLog_;
};

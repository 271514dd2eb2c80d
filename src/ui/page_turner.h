#pragma once

#include "ui/page_entry.h"

class DialogModel;
class InstallerUI;
class TaskStates;
class Triggers;
struct DialogDesc;
struct NavigationState;

// Leaves one page and enters another. The order of the calls to the front end is part of its contract. A
// session that is cancelled while a page is shown doesn't start the work of that page.
class PageTurner {
public:
    // All arguments outlive this object.
    PageTurner(NavigationState& state, DialogModel& dialogs, Triggers& triggers, TaskStates& tasks,
               PageEntry& entry);

    // Nothing is done for a page that isn't there.
    Onward goToDialog(int dialog, InstallerUI& ui);
    Onward goToSubdialog(int dialog, int sub, InstallerUI& ui);

private:
    void keepElements(InstallerUI& ui);
    void moveTo(int dialog, int sub, InstallerUI& ui);
    Onward enter(int dialog, int sub, DialogDesc& page, InstallerUI& ui);

    NavigationState& state_;
    DialogModel& dialogs_;
    Triggers& triggers_;
    TaskStates& tasks_;
    PageEntry& entry_;
};

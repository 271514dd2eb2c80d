#pragma once

class DialogModel;
class InstallerUI;
class PageEntry;
class TaskStates;
class Triggers;
struct DialogDesc;
struct NavigationState;

// Leaves one page and enters another. The order of the calls to the front end is part of its contract. A
// session that is cancelled while a page is shown doesn't start the work of that page.
class PageTurner {
public:
    // Everything is borrowed.
    PageTurner(NavigationState& state, DialogModel& dialogs, Triggers& triggers, TaskStates& tasks,
               PageEntry& entry);

    // Both: -1 for a page that isn't there or a null `ui`, with nothing done; otherwise 1 when the walk is to
    // go on by itself, else 0.
    int goToDialog(int dialog, InstallerUI* ui);
    int goToSubdialog(int dialog, int sub, InstallerUI* ui);

private:
    void keepElements(InstallerUI& ui);
    void moveTo(int dialog, int sub, InstallerUI& ui);
    int enter(int dialog, int sub, DialogDesc& page, InstallerUI& ui);

    NavigationState& state_;
    DialogModel& dialogs_;
    Triggers& triggers_;
    TaskStates& tasks_;
    PageEntry& entry_;
};

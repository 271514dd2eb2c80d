#pragma once

class ControlValues;
class DialogModel;
class Expressions;
class InstallerUI;
struct DialogDesc;
struct NavigationState;

// What a page's gate says. The numbers are those of InstallExchangeInfo::checkDialogCondition.
enum class GateAnswer : int {
    kClosed = 0,  // also for a position without a page
    kOpen = 1,
    kNoGate = 2,
};

// Whether pages are there for the user, and whether they let the user go on.
class PageConditions {
public:
    // All arguments outlive this object.
    PageConditions(NavigationState& state, DialogModel& dialogs, Expressions& expressions,
                   ControlValues& controls);

    // By the page's condition; one that can't be evaluated counts as true, and so does a missing page.
    bool isVisible(int dialog, int sub);
    // Asks the page's gate; a page without one is open.
    bool isOpen(DialogDesc& page, InstallerUI& ui);
    // Asks the gate of the current page and stores "1" or "0" in the variable of the role kDlgCondition, for
    // the description; nothing is stored without a gate. Front ends call it again and again while they wait.
    GateAnswer checkCurrentPage(InstallerUI& ui);

private:
    NavigationState& state_;
    DialogModel& dialogs_;
    Expressions& expressions_;
    ControlValues& controls_;
};

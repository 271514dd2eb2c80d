#pragma once

class ControlValues;
class DialogModel;
class InstallerUI;
class PageConditions;
struct NavigationState;

// Tells the description and the front ends whether the present page lets the user go on.
class DialogConditionCheck {
public:
    // Everything is borrowed.
    DialogConditionCheck(NavigationState& state, DialogModel& dialogs, PageConditions& conditions,
                         ControlValues& controls);

    // Evaluates the gate of the present page and stores "1" or "0" in the variable of that role. 2 when the
    // page has no gate, 0 when there is no page, else the outcome.
    int check(InstallerUI* ui);

private:
    NavigationState& state_;
    DialogModel& dialogs_;
    PageConditions& conditions_;
    ControlValues& controls_;
};

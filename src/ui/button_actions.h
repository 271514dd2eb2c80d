#pragma once

class InstallerUI;
class VariableStore;
struct NavigationState;

// What the buttons of a page do, beside their steps.
class ButtonActions {
public:
    // Everything is borrowed.
    ButtonActions(NavigationState& state, VariableStore& variables) : state_(state), variables_(variables) {}

    // A text that starts with "Cancel" or "Help" is that; any other is a list of assignments of the form
    // [NAME]='value', separated by `;`. Nothing happens for a null `text`.
    void perform(InstallerUI* ui, const char* text);
    // Any thread. The session is cancelled when the front end confirms it. -1 for a null `ui`, else 0.
    int cancel(InstallerUI* ui);
    // Asks the front end for the help page.
    void showHelp(InstallerUI* ui);

private:
    void assignAll(const char* text);

    NavigationState& state_;
    VariableStore& variables_;
};

#pragma once

#include <string_view>

class InstallerUI;
class VariableStore;
struct NavigationState;

// What the buttons of a page do besides their steps.
class ButtonActions {
public:
    // Both outlive this object.
    ButtonActions(NavigationState& state, VariableStore& variables) : state_(state), variables_(variables) {}

    // A text that starts with "Cancel" or "Help", in any case, is that; any other is a list of assignments of
    // the form [NAME]='value', separated by `;`. Without a front end only assignments have an effect.
    void perform(InstallerUI* ui, std::string_view text);
    // Whether the text is neither a cancel nor a help.
    static bool isAssignment(std::string_view text);
    // Any thread. The session is cancelled when the front end confirms it.
    void cancel(InstallerUI& ui);

private:
    void assignAll(std::string_view text);

    NavigationState& state_;
    VariableStore& variables_;
};

#pragma once

#include "description/control_variables.h"
#include "description/variable_store.h"

// Sets the variables through which the engine and the description talk.
class ControlValues {
public:
    // Both are borrowed.
    ControlValues(const ControlVariables& names, VariableStore& variables)
        : names_(names), variables_(variables) {}

    // Nothing happens when no variable plays the role.
    void set(ControlVariable role, const char* value) {
        const char* name = names_.nameOf(role);
        if (*name != '\0') {
            variables_.setVariable(name, value);
        }
    }

private:
    const ControlVariables& names_;
    VariableStore& variables_;
};

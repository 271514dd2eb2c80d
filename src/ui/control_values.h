#pragma once

#include <string_view>

#include "description/control_variables.h"
#include "description/variable_store.h"

// Sets the variables by which a description learns how things are.
class ControlValues {
public:
    // Both outlive this object.
    ControlValues(const ControlVariables& names, VariableStore& variables)
        : names_(names), variables_(variables) {}

    // Nothing happens when no variable plays the role.
    void set(ControlVariable role, std::string_view value) {
        const std::string_view name = names_.nameOf(role);
        if (!name.empty()) {
            variables_.set(name, value);
        }
    }

private:
    const ControlVariables& names_;
    VariableStore& variables_;
};

#pragma once

namespace platform {

// How a system takes the variables of its environments.
struct VariableRules {
    bool ignoresCase = false;   // of ASCII letters, in names
    bool emptyRemoves = false;  // an empty value takes the variable away
};

VariableRules systemVariableRules();

}  // namespace platform

#pragma once

#include <vector>

#include "engine/action_log_writer.h"

class VariableExclusions;
class VariableStore;

// The variables that an action log keeps: those of the store, in its order, that aren't excluded from logs.
class LoggedVariables {
public:
    // Both outlive this object.
    LoggedVariables(const VariableStore& variables, const VariableExclusions& exclusions)
        : variables_(variables), exclusions_(exclusions) {}

    // The texts are the store's and good until it changes.
    std::vector<LoggedVariable> collect() const;

private:
    const VariableStore& variables_;
    const VariableExclusions& exclusions_;
};

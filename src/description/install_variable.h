#pragma once

#include <cstddef>
#include <string>

#include "description/variable_lookup.h"

// Where a run of its own gets the value of a variable from when nobody gives one.
enum class VariableOrigin : unsigned char {
    kGiven,       // a fixed text of the description, a field, a trigger, the command line, an earlier log
    kDetected,    // this machine: its environment, registry, files, programs, products
    kExpression,  // an expression with references, expanded once
    kFollowing,   // an expression with references, expanded whenever another variable changes
};

// One variable. Its texts are cut to the limits, in bytes, when they are stored.
struct InstallVariable {
    static constexpr std::size_t kNameLimit = 1023;
    static constexpr std::size_t kTextLimit = VariableLookup::kTextLimit;

    std::string name;          // the spelling of the last store
    std::string value;         // the current value
    std::string expression;    // the unexpanded text from which `value` can be derived again
    std::string defaultValue;  // what a reset returns to
    bool recalculate = false;  // `value` follows `expression` whenever another variable changes
    VariableOrigin origin = VariableOrigin::kGiven;
    std::string originValue;  // what that gave, for kDetected and kExpression
};

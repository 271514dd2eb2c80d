#pragma once

#include <cstddef>
#include <string>

#include "description/variable_lookup.h"

// One variable. Its texts are cut to the limits, in bytes, when they are stored.
struct InstallVariable {
    static constexpr std::size_t kNameLimit = 1023;
    static constexpr std::size_t kTextLimit = VariableLookup::kTextLimit;

    std::string name;          // the spelling of the last store
    std::string value;         // the current value
    std::string expression;    // the unexpanded text from which `value` can be derived again
    std::string defaultValue;  // what a reset returns to
    bool recalculate = false;  // `value` follows `expression` whenever another variable changes
};

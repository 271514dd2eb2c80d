#pragma once

#include <cstddef>
#include <string>

// One variable. The texts are cut to one byte less than their capacities when they are stored.
struct InstallVariable {
    static constexpr std::size_t kNameCapacity = 1024;
    static constexpr std::size_t kTextCapacity = 1560;

    std::string name;          // the spelling of the last store
    std::string value;         // the current value
    std::string expression;    // the unexpanded text from which `value` can be derived again
    std::string defaultValue;  // what a reset returns to
    bool recalculate = false;  // `value` follows `expression` whenever another variable changes
};

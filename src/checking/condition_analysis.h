#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "checking/finding_codes.h"

// What is wrong with a condition.
struct ConditionFault {
    FindingCode code;
    std::string message;
    std::string hint;  // empty: that of the code
};

// The values that a variable may have before anybody is asked, as far as they are known.
using KnownValues = std::function<std::vector<std::string>(std::string_view variable)>;

// Looks at a condition by evaluating it as a setup does, with values in place of its references that make a
// difference to it: those that it compares with, and others. At most one fault for each thing that is wrong.
std::vector<ConditionFault> analyseCondition(std::string_view condition, const KnownValues& knownValues);

// Whether the condition holds or fails whatever the variables are. A condition without references is one or
// the other, and so is one that can't be read, which holds.
enum class Constancy { kVaries, kAlwaysTrue, kAlwaysFalse };
Constancy constancyOf(std::string_view condition);

#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

// A variable whose value follows its expression.
struct Recalculated {
    std::int32_t index;
    std::string_view name;
    std::string_view expression;
};

// The order in which the variables are derived again: one pass over the list as given, in which each place
// takes, again and again, the next variable further back that the one in it refers to. An expression refers
// to a variable when it holds `$` and the name, in this case, also as the start of a longer name. This puts
// most variables after those that they refer to, but not all of a longer chain. Returns the indices.
std::vector<std::int32_t> recalculationOrder(const std::vector<Recalculated>& variables);

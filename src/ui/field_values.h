#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class InstallExchangeInfo;

// What fields make of values, the same in each front end.

// Without what the C locale calls white space at its ends.
std::string_view trimmedAnswer(std::string_view answer);

// A directory as its variable holds it: without white space at its ends, with `\` between its parts and none
// at its end. A network path keeps the two separators that it begins with.
std::string cleanDirectory(std::string_view answer);

// The variable's value, at most `capacity` - 1 bytes of it. Nothing for a variable that doesn't exist.
std::optional<std::string> readVariable(std::string_view variable, InstallExchangeInfo& engine,
                                        std::size_t capacity);
// The same, empty for a variable that doesn't exist.
std::string valueOfVariable(std::string_view variable, InstallExchangeInfo& engine, std::size_t capacity);
void storeVariable(std::string_view variable, std::string_view value, InstallExchangeInfo& engine);

// Whether a condition of the description is true. An empty one is.
bool conditionHolds(std::string_view condition, InstallExchangeInfo& engine);

// Which of `count` items of a list can be chosen: `conditions` has one for each, separated by `|`; items
// without one can.
std::vector<bool> enabledItems(std::string_view conditions, std::size_t count, InstallExchangeInfo& engine);

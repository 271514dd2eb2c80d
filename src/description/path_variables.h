#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "description/variable_lookup.h"

class PXML;

// Whether the text of such an element, or such an attribute, is a path.
bool isPathElement(const PXML& description, std::int32_t node);
bool isPathAttribute(std::string_view name);

// The variables of a description whose values are paths. A text that leaves the program, for a file, another
// program or the screen, gets their values as the system writes paths; everything else in it stays as it is,
// because a `\` there may be anything: a line end in a text, part of a regular expression, a network path.
//
// A variable is one if
// - a field of the type Directory asks for it,
// - a text or attribute of the description that is a path begins with [NAME],
// - it has a default value of the type "value" that begins with $OTHER, alone or before a separator, and
// OTHER
//   is one; or the other way round.
class PathVariables {
public:
    // None.
    PathVariables() = default;
    explicit PathVariables(const PXML& description);

    // Names ignore ASCII case.
    bool contains(std::string_view name) const;

private:
    std::set<std::string> names_;  // in lower case
};

// Reads variables for a text that leaves the program: the values of path variables as the system writes them.
class WrittenPathLookup : public VariableLookup {
public:
    // Both outlive this object.
    WrittenPathLookup(VariableLookup& variables, const PathVariables& paths)
        : variables_(variables), paths_(paths) {}

    std::optional<VariableReading> read(std::string_view name, std::size_t limit) override;

private:
    VariableLookup& variables_;
    const PathVariables& paths_;
};

#pragma once

#include <map>
#include <string>

#include "description/variable_lookup.h"

// Variables from a table that a test fills; names compare exactly. Names with a leading `$` are the
// environment's.
class MapLookup : public VariableLookup {
public:
    std::map<std::string, std::string> values;

    std::optional<VariableReading> read(std::string_view name, std::size_t limit) override {
        const auto found = values.find(std::string(name));
        if (found == values.end()) {
            return std::nullopt;
        }
        VariableReading reading{found->second.substr(0, limit), std::nullopt};
        if (!found->first.starts_with('$')) {
            reading.index = static_cast<std::int32_t>(std::distance(values.begin(), found));
        }
        return reading;
    }
};

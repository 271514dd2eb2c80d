#pragma once

#include <map>
#include <string>

#include "base/text_functions.h"
#include "description/variable_lookup.h"

// Variables from a table that a test fills; names compare exactly. Names with a leading `$` are the
// environment's.
class MapLookup : public VariableLookup {
public:
    std::map<std::string, std::string> values;

    int getVariable(const char* name, char* buffer, int size) override {
        const auto found = values.find(name == nullptr ? "" : name);
        if (found == values.end()) {
            return -1;
        }
        OUtils::copyText(buffer, found->second.c_str(), size);
        return found->first[0] == '$' ? -2 : static_cast<int>(std::distance(values.begin(), found));
    }
};

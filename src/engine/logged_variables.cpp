#include "engine/logged_variables.h"

#include "description/variable_exclusions.h"
#include "description/variable_store.h"

std::vector<LoggedVariable> LoggedVariables::collect() const {
    std::vector<LoggedVariable> kept;
    for (std::int32_t i = 0; i < variables_.getCount(); ++i) {
        const InstallVariable& variable = variables_.at(i);
        if (exclusions_.isVariableExported(variable.name.c_str(), kExcludeFromLog)) {
            kept.push_back({variable.name, variable.value});
        }
    }
    return kept;
}

#pragma once

#include <string>
#include <vector>

#include "platform/registry.h"

// The system's environment for login shells: the registry's variables as a script.
namespace platform {

struct EnvironmentVariable {
    std::string name;
    std::string value;
};

// The script, for any Bourne shell; empty when there is nothing to set. Lists with `;` become lists with `:`
// without their empty entries, values and entries with backslashes that are paths of what is there get the
// slashes of this system, and variables without a value are left out, as are names that no shell takes
// or that it keeps for itself. The directories of PATH join the ones that the login has, at their end, with
// the paths as this system writes them; only absolute ones. No value can be run as code.
std::string environmentScriptOf(const std::vector<EnvironmentVariable>& variables);

struct EnvironmentScriptPlace {
    std::string script;
    std::string link;  // what leads shells to the script; empty: nothing does
};

// In the state directory, with a link only when that is the default one.
EnvironmentScriptPlace environmentScriptPlace();

// Brings script and link in line with the registry; removes them when nothing is to be set. 0 or an error
// number of the registry or the system. Anything else in the link's place is kept and is a failure; a missing
// directory for the link is not.
int publishEnvironment(Registry& registry, const EnvironmentScriptPlace& place);

}  // namespace platform

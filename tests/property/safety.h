#pragma once

#include <string>
#include <vector>

#include "machine_state.h"
#include "product_case.h"

// What holds whatever goes wrong: nothing of the user is lost, and nothing untrue is said.

// What the user had, or made, and has no longer although no record allows that; one line each. A file that
// was overwritten may still hold what was installed, and a product may still be there. `isUsed`: the user has
// done his part since the installation (useMachine).
std::vector<std::string> lossesOfUser(const MachineState& start, const ProductCase& product,
                                      const MachineState& found, bool isUsed);
// What an installation that told of success has left out.
std::vector<std::string> missingParts(MemoryPlatform& machine, const ProductCase& product);

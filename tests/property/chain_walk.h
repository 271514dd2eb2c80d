#pragma once

#include <string>
#include <vector>

#include "version_chain.h"

// Takes the steps of the chain on a machine in memory, and uninstalls what is there in the end. What differs
// from what may, one line each; empty when all is well:
//  - a version that comes after the removal of another one makes of the machine what it makes of a fresh one;
//  - one that fails and is taken back leaves the machine as it was before, or as it was before the first
//    version where it went over another one;
//  - each uninstallation gives back the state before the first version.
std::vector<std::string> walkChain(const VersionChain& chain);

// The smallest chain that still fails, found by leaving out what isn't needed for that.
VersionChain shrink(VersionChain failing);

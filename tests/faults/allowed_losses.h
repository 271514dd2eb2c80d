#pragma once

#include <string>
#include <vector>

#include "machine.h"
#include "operations.h"

// Given as the call, where an uninstallation was killed; after the end of another run it is empty.
inline constexpr char kKilledUninstallation[] = "(killed)";

// What need not come back, and why. The manual has each of them, with these words (docs/manual/failures.md).
struct AllowedLoss {
    const char* name;
    const char* words;
    // Whether it is one, in the case of this call.
    bool (*covers)(const Difference& difference, const std::string& failedCall);
};

// The loss that this is; null when nothing allows it.
const AllowedLoss* allowedLoss(const Difference& difference, const std::string& failedCall);
const std::vector<AllowedLoss>& allowedLosses();
// Those whose words the manual doesn't have.
std::vector<std::string> lossesWithoutWords();

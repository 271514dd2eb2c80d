#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "support/debug_log.h"

class VariableLookup;

// The two forms in which a text refers to variables. Values that are put in are not expanded again.

// A text after its variables were put in.
struct Expansion {
    std::string text;  // cut to the limit
    std::size_t length =
        0;  // of what was produced, before the cut; nothing is produced once the limit is reached
};

// Replaces [NAME] by the value, of which at most 1,559 bytes count. Nothing when `source` is empty or, with
// `stopOnMissing`, when a variable is missing; otherwise a missing variable stays as it is written. Each
// missing variable is logged.
std::optional<Expansion> expandBracketVariables(VariableLookup& variables, const DebugLog& debugLog,
                                                std::string_view source, std::size_t limit,
                                                bool stopOnMissing);

// Replaces $NAME by the value, of which at most 1,023 bytes count. False when a variable is missing or the
// result is longer than `limit` bytes; `outText` holds what was produced before the fault then.
bool expandDollarVariables(VariableLookup& variables, std::string_view source, std::size_t limit,
                           std::string& outText);

#pragma once

#include "support/debug_log.h"

class VariableLookup;

// The work behind Expressions, for those that are below it. Contracts as there.
int expandBracketVariables(VariableLookup& variables, DebugLog debugLog, const char* source,
                           char* destination, int size, bool stopOnMissing);
int expandDollarVariables(VariableLookup& variables, const char* source, char* destination, int size);

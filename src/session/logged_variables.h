#pragma once

#include "support/debug_log.h"

class PStream;
class VariableStore;

// Sets the variables that an open action log holds. A log that is damaged doesn't prevent its product from
// being uninstalled: what can be read of them counts. False when that may not be all; why is logged. Moves
// the log.
bool importLoggedVariables(PStream& log, VariableStore& variables, DebugLog debugLog);

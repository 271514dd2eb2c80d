#include "session/logged_variables.h"

#include "base/errors.h"
#include "description/variable_store.h"
#include "engine/action_log_reader.h"
#include "engine/log_head.h"
#include "support/p_stream.h"

bool importLoggedVariables(PStream& log, VariableStore& variables, DebugLog debugLog) {
    const auto set = [&](const std::string& name, const std::string& value) { variables.set(name, value); };
    try {
        return ActionLogReader(&log, debugLog).readVariables(set);
    } catch (const GenericError& error) {
        debugLog.line(error.what());
    }
    for (const auto& [name, value] : readLogHead(log).variables) {
        set(name, value);
    }
    return false;
}

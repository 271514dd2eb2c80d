#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "description/variable_lookup.h"

class PStream;

// The part of an action log before its records, as an uninstallation reads it. A head that is damaged doesn't
// make the records worthless: they begin at the latest with the first line that is one.
struct LogHead {
    std::int64_t recordsStart = 0;  // offset in the log
    // There is a count of variables, and just as many follow it.
    bool isSound = false;
    // By the name in lower case; of equal names the last one counts. Also those of a damaged head, as far as
    // their lines are whole.
    std::map<std::string, std::string> variables;
};

// Moves the log. A log that can't be read has an empty head.
LogHead readLogHead(PStream& log);

// The variables with the values of an action log, whatever has become of those of the session meanwhile. What
// no log holds is read from the session: predefined variables and the environment.
class LoggedValues : public VariableLookup {
public:
    // Both outlive this object.
    LoggedValues(const LogHead& head, VariableLookup& session) : head_(head), session_(session) {}

    // The index of a variable of the log is its place in the session's store, or 0 without one.
    std::optional<VariableReading> read(std::string_view name, std::size_t limit) override;

private:
    const LogHead& head_;
    VariableLookup& session_;
};

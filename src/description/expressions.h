#pragma once

#include "support/debug_log.h"

class VariableLookup;

// The two forms of variable references and the language of conditions.
class Expressions {
public:
    //
    Expressions(VariableLookup& variables, DebugLog debugLog) : variables_(variables), debugLog_(debugLog) {}

    // Puts values in the place of [NAME]. Returns the bytes that the whole expansion needs, with the
    // terminator; 0 when `source` is null or empty or, with `stopOnMissing`, a variable is missing, and then
    // `destination` is empty. A missing variable otherwise stays as it is written, and is logged. The result
    // is cut to `size` bytes and terminated. `destination` may be null to measure; when it isn't, the
    // expansion ends as soon as it is full, and the return value only tells what was needed up to there.
    int expandVariables(const char* source, char* destination, int size, bool stopOnMissing);

    // Puts values in the place of $NAME. 1 on success; 0 when a variable is missing or the text doesn't fit
    // `size` bytes, and then `destination` holds what was produced ahead of the fault, terminated.
    int expandDollarVariables(const char* source, char* destination, int size);

    // 1 true, 0 false, -1 when it can't be evaluated; callers test for non-zero. A null or empty text is
    // true. Only the first 2,047 bytes of the expanded text count, which also bounds how deep parentheses
    // nest.
    int evaluateCondition(const char* text);

private:
    VariableLookup& variables_;
    DebugLog debugLog_;
};

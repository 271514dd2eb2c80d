#include "description/expressions.h"

#include "description/condition_parser.h"
#include "description/variable_expansion.h"

namespace {

constexpr int kConditionSize = 2048;

}  // namespace

int Expressions::expandVariables(const char* source, char* destination, int size, bool stopOnMissing) {
    return expandBracketVariables(variables_, debugLog_, source, destination, size, stopOnMissing);
}

int Expressions::expandDollarVariables(const char* source, char* destination, int size) {
    return ::expandDollarVariables(variables_, source, destination, size);
}

int Expressions::evaluateCondition(const char* text) {
    if (text == nullptr || *text == '\0') {
        return 1;
    }
    char expanded[kConditionSize];
    if (expandVariables(text, expanded, kConditionSize, false) == 0) {
        return 0;
    }
    return ConditionParser(expanded).evaluate();
}

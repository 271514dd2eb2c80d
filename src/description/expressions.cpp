#include "description/expressions.h"

#include "description/condition_parser.h"

namespace {

constexpr std::size_t kConditionCapacity = 2048;

}  // namespace

std::optional<std::string> Expressions::expand(std::string_view text, std::size_t capacity,
                                               bool stopOnMissing) {
    std::optional<Expansion> result = expandMeasured(text, capacity - 1, stopOnMissing);
    return result ? std::optional<std::string>(std::move(result->text)) : std::nullopt;
}

std::string Expressions::expandWhole(std::string_view text, bool stopOnMissing) {
    return expand(text, kWholeLimit + 1, stopOnMissing).value_or("");
}

std::optional<std::string> Expressions::expandForSystem(std::string_view text, std::size_t capacity,
                                                        bool stopOnMissing) {
    WrittenPathLookup variables(variables_, paths_);
    std::optional<Expansion> result =
        expandBracketVariables(variables, debugLog_, text, capacity - 1, stopOnMissing);
    return result ? std::optional<std::string>(std::move(result->text)) : std::nullopt;
}

std::string Expressions::expandWholeForSystem(std::string_view text, bool stopOnMissing) {
    return expandForSystem(text, kWholeLimit + 1, stopOnMissing).value_or("");
}

std::optional<Expansion> Expressions::expandMeasured(std::string_view text, std::size_t limit,
                                                     bool stopOnMissing) {
    return expandBracketVariables(variables_, debugLog_, text, limit, stopOnMissing);
}

std::optional<std::string> Expressions::expandDollars(std::string_view text, std::size_t capacity) {
    std::string result;
    return expandDollarsUpToFault(text, capacity, result) ? std::optional<std::string>(std::move(result))
                                                          : std::nullopt;
}

bool Expressions::expandDollarsUpToFault(std::string_view text, std::size_t capacity, std::string& outText) {
    return ::expandDollarVariables(variables_, text, capacity - 1, outText);
}

std::optional<bool> Expressions::evaluate(std::string_view condition) {
    if (condition.empty()) {
        return true;
    }
    const std::optional<std::string> expanded = expand(condition, kConditionCapacity);
    return ConditionParser(expanded.value_or("")).evaluate();
}

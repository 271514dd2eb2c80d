#include "description/expressions.h"

#include "base/text_functions.h"
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

int Expressions::expandVariables(const char* source, char* destination, int size, bool stopOnMissing) {
    const std::string_view text = source == nullptr ? std::string_view() : std::string_view(source);
    const bool isBounded = destination != nullptr;
    const std::size_t limit = !isBounded ? std::string::npos
                              : size > 0 ? static_cast<std::size_t>(size) - 1
                                         : 0;
    const std::optional<Expansion> result = expandMeasured(text, limit, stopOnMissing);
    OUtils::copyText(destination, result ? result->text.c_str() : "", size);
    return result ? static_cast<int>(result->length) + 1 : 0;
}

int Expressions::expandDollarVariables(const char* source, char* destination, int size) {
    if (source == nullptr || destination == nullptr || size < 1) {
        OUtils::copyText(destination, "", size);
        return 0;
    }
    std::string text;
    const bool isComplete = expandDollarsUpToFault(source, static_cast<std::size_t>(size), text);
    OUtils::copyText(destination, text.c_str(), size);
    return isComplete ? 1 : 0;
}

int Expressions::evaluateCondition(const char* text) {
    const std::optional<bool> truth = evaluate(text == nullptr ? std::string_view() : std::string_view(text));
    return truth ? static_cast<int>(*truth) : -1;
}

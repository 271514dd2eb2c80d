#include <cstdint>
#include <cstdlib>
#include <string>

#include "description/condition_parser.h"
#include "description/expressions.h"
#include "description/variable_lookup.h"
#include "description/version_order.h"
#include "fuzz_target.h"

// The condition language and both expansions, with the same text as condition, source and value.
namespace {

class TextVariables : public VariableLookup {
public:
    explicit TextVariables(const std::string& text) : text_(text) {}

    // Names that begin with a letter up to M have the input as their value, `_` the empty text.
    std::optional<VariableReading> read(std::string_view name, std::size_t limit) override {
        const char first = name.empty() ? '\0' : static_cast<char>(name[0] & ~0x20);
        if (first >= 'A' && first <= 'M') {
            return VariableReading{text_.substr(0, limit), 0};
        }
        if (name.starts_with('_')) {
            return VariableReading{"", 1};
        }
        return std::nullopt;
    }

private:
    const std::string& text_;
};

void expandAtMost(Expressions& expressions, std::string_view source, std::size_t limit) {
    const std::optional<Expansion> whole = expressions.expandMeasured(source, std::string::npos, false);
    const std::optional<Expansion> cut = expressions.expandMeasured(source, limit, false);
    require(whole.has_value() == cut.has_value() && whole.has_value() == !source.empty());
    if (cut) {
        require(whole->text.size() == whole->length && cut->length <= whole->length);
        require(cut->text == whole->text.substr(0, limit));
    }
    std::string text;
    expressions.expandDollarsUpToFault(source, limit + 1, text);
    require(text.size() <= limit);
}

// The order is the same from both sides, and no text is later than itself.
void checkVersions(std::string_view text) {
    const std::string_view first = text.substr(0, text.size() / 2);
    const std::string_view second = text.substr(first.size());
    require(std::is_eq(compareVersions(text, text)));
    require(std::is_lt(compareVersions(first, second)) == std::is_gt(compareVersions(second, first)));
}

}  // namespace

bool accepts(std::string_view input) {
    const std::string text(input);
    ConditionParser(text).evaluate();
    checkVersions(text);

    TextVariables variables(text);
    DebugLog noLog;
    Expressions expressions(variables, noLog);
    const std::optional<bool> truth = expressions.evaluate(text);
    require(expressions.holds(text) == truth.value_or(true));
    for (const std::size_t limit : {0, 1, 15, 1023, 1559}) {
        expandAtMost(expressions, text, limit);
    }
    const std::string whole = expressions.expandWhole(text);
    require(whole.size() <= Expressions::kWholeLimit && whole == expressions.expandWholeForSystem(text));
    require(expressions.expand(text, 16).value_or("") == whole.substr(0, 15));
    std::string dollars;
    const bool isSound = expressions.expandDollarsUpToFault(text, Expressions::kWholeLimit, dollars);
    require(expressions.expandDollars(text, Expressions::kWholeLimit) ==
            (isSound ? std::optional(dollars) : std::nullopt));
    return truth.has_value() && !text.empty();
}

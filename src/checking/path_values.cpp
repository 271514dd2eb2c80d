#include "checking/path_values.h"

#include <algorithm>
#include <utility>

#include "base/path_functions.h"
#include "base/text_functions.h"
#include "checking/check_context.h"
#include "checking/declared_variables.h"
#include "checking/references.h"

namespace {

// Variables that refer to each other end here.
constexpr int kDeepest = 16;
// No path is longer; what grows beyond it isn't followed.
constexpr std::size_t kLongest = 4096;

std::string referenceTo(std::string_view name) {
    return "[" + OUtils::toLowerAscii(name) + "]";
}

// A network path keeps its two separators.
std::string cleaned(const std::string& path) {
    std::string result;
    for (const char c : OUtils::withSeparators(path, '/')) {
        if (c != '/' || result.size() < 2 || result.back() != '/') {
            result += c;
        }
    }
    if (result.starts_with("//") && result.find_first_not_of('/') == std::string::npos) {
        return "/";
    }
    return std::string(OUtils::stripTrailingSeparators(result));
}

// Texts of DefValues refer with a dollar, all others with brackets.
std::vector<Reference> referencesOf(std::string_view text, int depth) {
    return depth == 0 ? bracketReferences(text) : dollarReferences(text);
}

// The reference with which a path begins; empty when it is another text.
std::string_view leadingReference(std::string_view path) {
    const std::size_t close = path.find(']');
    if (!path.starts_with('[') || close == std::string_view::npos) {
        return {};
    }
    return isReferenceName(path.substr(1, close - 1)) ? path.substr(0, close + 1) : std::string_view();
}

// Whether one of two ends has the reference again with which its whole path begins, and the other one no
// room for its value: a path begins with something.
bool isLongerBy(std::string_view start, std::string_view longer, std::string_view shorter) {
    return !start.empty() && longer.starts_with(start) && !hasReference(longer.substr(start.size())) &&
           !hasReference(shorter) && shorter.size() + start.size() <= longer.size();
}

// Whether the parts behind the last references end alike, as far as the shorter one reaches.
bool haveOneEnd(std::string_view a, std::string_view b) {
    a.remove_prefix(a.rfind(']') + 1);
    b.remove_prefix(b.rfind(']') + 1);
    return a.ends_with(b) || b.ends_with(a);
}

}  // namespace

PathValues::PathValues(const CheckContext& context, const DeclaredVariables& variables)
    : context_(context), variables_(variables) {}

PathValues PathValues::unchanged() const {
    PathValues result(context_, variables_);
    result.isUnchanged_ = true;
    return result;
}

std::string PathValues::resolve(std::string_view text, const Choice& choice) const {
    Values chosen;
    return cleaned(expand(text, choice, choice.empty() ? known_ : chosen, 0));
}

std::string PathValues::expand(std::string_view text, const Choice& choice, Values& known, int depth) const {
    std::string result;
    std::size_t done = 0;
    for (const Reference& reference : referencesOf(text, depth)) {
        result.append(text.substr(done, reference.at - done));
        result += valueOf(reference.name, choice, known, depth);
        done = reference.end;
        if (result.size() > kLongest) {
            return result;
        }
    }
    return result.append(text.substr(done));
}

std::string PathValues::valueOf(std::string_view name, const Choice& choice, Values& known, int depth) const {
    const std::string key = OUtils::toLowerAscii(name);
    if (const auto found = known.find(key); found != known.end()) {
        return found->second;
    }
    const std::vector<std::string_view> expressions = expressionsOf(name);
    const auto chosen = choice.find(key);
    const bool isChosen = chosen != choice.end() && chosen->second < expressions.size();
    known.emplace(key, referenceTo(name));  // what a variable that refers to itself finds
    if (depth < kDeepest && (isChosen || expressions.size() == 1)) {
        std::string expanded = expand(expressions[isChosen ? chosen->second : 0], choice, known, depth + 1);
        if (expanded.size() <= kLongest) {
            known[key] = std::move(expanded);
        }
    }
    return known[key];
}

// Empty for a variable that a user, a trigger or the machine gives its value.
std::vector<std::string_view> PathValues::expressionsOf(std::string_view name) const {
    const DeclaredVariable* const variable = variables_.find(name);
    std::vector<std::string_view> expressions;
    if (variable == nullptr || variable->isControl || variable->isAssigned ||
        (variable->isAsked && !isUnchanged_) || variable->isValidation) {
        return expressions;
    }
    for (const std::int32_t node : variable->values) {
        if (!OUtils::startsWithIgnoreCase(context_.attribute(node, "DataType").value_or(""), "value")) {
            return {};
        }
        expressions.push_back(context_.text(node));
    }
    return expressions;
}

std::vector<PathValues::Choice> PathValues::choicesOf(std::string_view text) const {
    std::map<std::string, std::size_t> counts;
    addChoices(text, counts, 0);
    std::vector<Choice> choices = {{}};
    for (const auto& [name, count] : counts) {
        if (count < 2) {
            continue;
        }
        if (choices.size() * count > kMostChoices) {
            return {};
        }
        std::vector<Choice> longer;
        for (const Choice& choice : choices) {
            for (std::size_t i = 0; i < count; ++i) {
                longer.push_back(choice);
                longer.back()[name] = i;
            }
        }
        choices = std::move(longer);
    }
    return choices;
}

void PathValues::addChoices(std::string_view text, std::map<std::string, std::size_t>& counts,
                            int depth) const {
    if (depth >= kDeepest) {
        return;
    }
    for (const Reference& reference : referencesOf(text, depth)) {
        const std::vector<std::string_view> expressions = expressionsOf(reference.name);
        const bool isNew =
            counts.try_emplace(OUtils::toLowerAscii(reference.name), expressions.size()).second;
        for (const std::string_view expression : isNew ? expressions : std::vector<std::string_view>()) {
            addChoices(expression, counts, depth + 1);
        }
    }
}

std::string PathValues::environmentOf(std::string_view reference) const {
    if (isEnvironmentName(reference)) {
        return OUtils::toLowerAscii(reference.substr(1));
    }
    const DeclaredVariable* const variable = variables_.find(reference);
    if (variable == nullptr || variable->values.empty()) {
        return {};
    }
    const std::int32_t node = variable->values.front();
    const bool isFromEnvironment =
        OUtils::startsWithIgnoreCase(context_.attribute(node, "DataType").value_or(""), "envvar");
    return isFromEnvironment ? OUtils::toLowerAscii(context_.text(node)) : std::string();
}

bool PathValues::isDescribed(std::string_view reference) const {
    const DeclaredVariable* const variable = variables_.find(reference);
    return variable != nullptr && !variable->values.empty() &&
           std::ranges::all_of(variable->values, [this](std::int32_t node) {
               return OUtils::startsWithIgnoreCase(context_.attribute(node, "DataType").value_or(""),
                                                   "value");
           });
}

PathMatch matchPaths(std::string_view a, std::string_view b) {
    const auto [endOfA, endOfB] = std::ranges::mismatch(a, b);
    if (endOfA == a.end() && endOfB == b.end()) {
        return PathMatch::kSame;
    }
    // Back to the start of a reference that only one of them has.
    auto same = static_cast<std::size_t>(endOfA - a.begin());
    const std::string_view start = leadingReference(a.substr(0, same));
    const std::size_t open = a.substr(0, same).rfind('[');
    if (open != std::string_view::npos && a.substr(open, same - open).find(']') == std::string_view::npos) {
        same = open;
    }
    a.remove_prefix(same);
    b.remove_prefix(same);
    // What is the same before and after a reference doesn't depend on it.
    const bool isOpen = beginsWithReference(a) || beginsWithReference(b);
    const bool differByStart = isLongerBy(start, a, b) || isLongerBy(start, b, a);
    return isOpen && haveOneEnd(a, b) && !differByStart ? PathMatch::kPossible : PathMatch::kDifferent;
}

bool beginsWithReference(std::string_view path) {
    return !leadingReference(path).empty();
}

bool hasReference(std::string_view path) {
    for (std::size_t at = path.find('['); at != std::string_view::npos; at = path.find('[', at + 1)) {
        if (beginsWithReference(path.substr(at))) {
            return true;
        }
    }
    return false;
}

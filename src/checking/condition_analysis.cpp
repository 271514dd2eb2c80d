#include "checking/condition_analysis.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <map>
#include <optional>
#include <set>
#include <utility>

#include "base/text_functions.h"
#include "checking/quoted_text.h"
#include "checking/references.h"
#include "description/condition_parser.h"

namespace {

// How many combinations of values are tried. With more a condition counts as one that varies.
constexpr std::size_t kMostCombinations = 4096;
// Conditions that say what they are, by which authors switch something on or off.
constexpr std::string_view kSwitches[] = {"0", "1", "0==1", "1==0", "1==1", "0==0"};

// The condition cut at its references, each with the quotes around it.
class Pattern {
public:
    explicit Pattern(std::string_view text) : text_(text), references_(bracketReferences(text)) {
        bool isQuoted = false;
        std::size_t at = 0;
        for (const Reference& reference : references_) {
            const auto quotes = std::ranges::count(text.substr(at, reference.at - at), '\'');
            isQuoted = isQuoted != (quotes % 2 != 0);
            at = reference.end;
            isQuoted_.push_back(isQuoted);
            const std::string name = OUtils::toLowerAscii(reference.name);
            const auto [known, isNew] = variables_.try_emplace(name, variables_.size());
            variableOf_.push_back(known->second);
            if (isNew) {
                names_.emplace_back(reference.name);
                isBare_.push_back(false);
            }
            if (!isQuoted) {
                isBare_[known->second] = true;
            }
        }
    }

    // In the order in which they appear first.
    const std::vector<std::string_view>& variables() const { return names_; }
    // Whether a reference to the variable stands outside of quotes.
    bool isBare(std::size_t variable) const { return isBare_[variable]; }

    // The condition with values in place of the references.
    std::string with(const std::vector<std::string>& values) const {
        std::string filled;
        std::size_t at = 0;
        for (std::size_t i = 0; i < references_.size(); ++i) {
            filled += text_.substr(at, references_[i].at - at);
            filled += values[variableOf_[i]];
            at = references_[i].end;
        }
        return filled + std::string(text_.substr(at));
    }

    // The texts and numbers that the condition holds itself.
    std::set<std::string> literals() const {
        std::set<std::string> found;
        std::string plain = with(std::vector<std::string>(names_.size()));
        for (std::size_t at = plain.find('\''); at != std::string::npos;) {
            const std::size_t end = plain.find('\'', at + 1);
            found.insert(plain.substr(at + 1, end == std::string::npos ? end : end - at - 1));
            at = end == std::string::npos ? end : plain.find('\'', end + 1);
        }
        constexpr std::string_view kDigits = "0123456789";
        for (std::size_t at = plain.find_first_of(kDigits); at != std::string::npos;) {
            const std::size_t end = plain.find_first_not_of("0123456789abcdefABCDEFxX", at);
            found.insert(valueOf(plain.substr(at, end == std::string::npos ? end : end - at)));
            at = plain.find_first_of(kDigits, end);
        }
        return found;
    }

    // Values that a variable may have: numbers where one has to be.
    std::vector<std::string> candidates(std::size_t variable, const std::set<std::string>& literals) const {
        std::set<std::string> values{"0", "1", "7423"};
        if (!isBare(variable)) {
            values.insert({"", "some other text", "~"});
        }
        for (const std::string& literal : literals) {
            const bool isNumber = isShortNumber(literal);
            if (!isBare(variable) || isNumber) {
                values.insert(literal);
            }
            if (isNumber) {
                values.insert(std::to_string(std::stoll(literal) + 1));
                values.insert(std::to_string(std::max(0LL, std::stoll(literal) - 1)));
            }
        }
        return {values.begin(), values.end()};
    }

private:
    // The decimal form of a number, which may be written as an octal or a hexadecimal one.
    static std::string valueOf(const std::string& number) {
        constexpr std::size_t kLongest = 9;
        return number.size() <= kLongest ? std::to_string(std::strtoll(number.c_str(), nullptr, 0)) : number;
    }

    static bool isShortNumber(const std::string& text) {
        constexpr std::size_t kLongest = 9;
        return !text.empty() && text.size() <= kLongest &&
               text.find_first_not_of("0123456789") == std::string::npos;
    }

    std::string_view text_;
    std::vector<Reference> references_;
    std::vector<bool> isQuoted_;
    std::map<std::string, std::size_t> variables_;
    std::vector<std::size_t> variableOf_;  // of each reference
    std::vector<std::string_view> names_;
    std::vector<bool> isBare_;
};

std::optional<bool> evaluate(const std::string& condition) {
    return condition.empty() ? std::optional(true) : ConditionParser(condition).evaluate();
}

// Numbers everywhere, which fit bare references and quoted ones.
std::string sampleOf(const Pattern& pattern) {
    return pattern.with(std::vector<std::string>(pattern.variables().size(), "1"));
}

// What is left outside of quotes, for the search of signs that mean something in other languages.
std::string outsideQuotes(const std::string& condition) {
    std::string outside;
    bool isQuoted = false;
    for (const char c : condition) {
        isQuoted = isQuoted != (c == '\'');
        outside += isQuoted || c == '\'' ? ' ' : c;
    }
    return outside;
}

bool holdsAssignment(const std::string& outside) {
    for (std::size_t at = outside.find('='); at != std::string::npos; at = outside.find('=', at + 1)) {
        const char before = at == 0 ? ' ' : outside[at - 1];
        const char after = at + 1 < outside.size() ? outside[at + 1] : ' ';
        if (after == '=') {
            ++at;
        } else if (before != '!' && before != '<' && before != '>') {
            return true;
        }
    }
    return false;
}

// The first word outside of quotes. A call of a function is none.
std::string bareWordOf(const std::string& outside) {
    const auto isLetter = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_'; };
    const auto isPart = [&](char c) { return isLetter(c) || (c >= '0' && c <= '9'); };
    for (std::size_t at = 0; at < outside.size();) {
        if (!isPart(outside[at])) {
            ++at;
            continue;
        }
        const std::size_t begin = at;
        while (at < outside.size() && isPart(outside[at])) {
            ++at;
        }
        const bool isCall = at < outside.size() && outside[at] == '(';
        const bool isHexadecimal = outside.substr(begin, 2) == "0x" || outside.substr(begin, 2) == "0X";
        if (isLetter(outside[begin]) && !isCall && !isHexadecimal) {
            return outside.substr(begin, at - begin);
        }
    }
    return {};
}

std::string operatorOf(const std::string& outside) {
    for (const std::string_view sign : {"&&", "||", "&", "|", "<>", "+", "*", "~"}) {
        if (outside.find(sign) != std::string::npos) {
            return std::string(sign);
        }
    }
    const std::size_t bang = outside.find('!');
    const bool isNot = bang != std::string::npos && outside.substr(bang, 2) != "!=";
    std::string word = OUtils::toLowerAscii(bareWordOf(outside));
    if (word == "and" || word == "or" || word == "not") {
        return word;
    }
    return isNot ? "!" : std::string();
}

// Why a condition can't be read.
ConditionFault faultOf(const std::string& condition) {
    const std::string outside = outsideQuotes(condition);
    const std::string sign = operatorOf(outside);
    if (!sign.empty()) {
        return {"condition-operator",
                inQuotes(sign) + " means nothing in a condition, which therefore always holds",
                {}};
    }
    if (holdsAssignment(outside)) {
        return {"condition-assignment",
                "a single = means nothing in a condition, which therefore always holds",
                {}};
    }
    if (const std::string word = bareWordOf(outside); !word.empty()) {
        return {"condition-bare-word",
                "the word " + word + " isn't in quotes, and the condition therefore always holds",
                "Write '" + word + "' and put what it is compared with in single quotes, too."};
    }
    return {"condition-broken", "this condition can't be read and therefore always holds", {}};
}

class Analysis {
public:
    Analysis(std::string_view condition, const KnownValues& knownValues)
        : condition_(condition), pattern_(condition), knownValues_(knownValues) {}

    std::vector<ConditionFault> run() {
        const std::string sample = sampleOf(pattern_);
        if (!evaluate(sample)) {
            faults_.push_back(faultOf(sample));
            return std::move(faults_);
        }
        checkBalance(sample);
        checkEnd(sample);
        checkInitialValues();
        if (faults_.empty()) {
            checkConstancy();
        }
        return std::move(faults_);
    }

private:
    void add(FindingCode code, std::string message) { faults_.push_back({code, std::move(message), {}}); }

    void checkBalance(const std::string& sample) {
        const std::string outside = outsideQuotes(sample);
        if (std::ranges::count(sample, '\'') % 2 != 0) {
            add("condition-broken", "a quote of this condition isn't closed");
        } else if (std::ranges::count(outside, '(') > std::ranges::count(outside, ')')) {
            add("condition-parenthesis", "a parenthesis of this condition isn't closed");
        }
    }

    // What a condition goes on to read changes it.
    void checkEnd(const std::string& sample) {
        if (!faults_.empty() || sample.empty() || !evaluate(sample + ",?")) {
            return;
        }
        if (const std::string sign = operatorOf(outsideQuotes(sample)); !sign.empty()) {
            add("condition-operator",
                inQuotes(sign) + " means nothing in a condition, and what stands behind it is ignored");
        } else {
            add("condition-ignored-end", "what stands behind the condition is ignored");
        }
    }

    void checkInitialValues() {
        std::vector<std::string> values(pattern_.variables().size(), "1");
        for (std::size_t i = 0; i < values.size(); ++i) {
            if (!pattern_.isBare(i)) {
                continue;
            }
            for (const std::string& value : knownValues_(pattern_.variables()[i])) {
                values[i] = value;
                if (!evaluate(pattern_.with(values))) {
                    add("condition-initial-value", "with the value " + inQuotes(value) + " of " +
                                                       std::string(pattern_.variables()[i]) +
                                                       " this condition can't be read and therefore holds");
                    break;
                }
            }
            values[i] = "1";
        }
    }

    void checkConstancy() {
        const bool isSwitch = std::ranges::find(kSwitches, condition_) != std::end(kSwitches);
        const Constancy constancy = isSwitch ? Constancy::kVaries : constancyOf(condition_);
        if (constancy == Constancy::kAlwaysTrue && !condition_.empty()) {
            add("condition-always-true", "this condition always holds");
        } else if (constancy == Constancy::kAlwaysFalse) {
            add("condition-always-false", "this condition never holds");
        }
    }

    std::string_view condition_;
    Pattern pattern_;
    const KnownValues& knownValues_;
    std::vector<ConditionFault> faults_;
};

}  // namespace

std::vector<ConditionFault> analyseCondition(std::string_view condition, const KnownValues& knownValues) {
    return Analysis(condition, knownValues).run();
}

Constancy constancyOf(std::string_view condition) {
    const Pattern pattern(condition);
    const std::set<std::string> literals = pattern.literals();
    std::vector<std::vector<std::string>> candidates;
    std::size_t combinations = 1;
    for (std::size_t i = 0; i < pattern.variables().size(); ++i) {
        candidates.push_back(pattern.candidates(i, literals));
        combinations *= candidates.back().size();
        if (combinations > kMostCombinations) {
            return Constancy::kVaries;
        }
    }
    std::array<bool, 2> seen{};
    for (std::size_t number = 0; number < combinations; ++number) {
        std::vector<std::string> values;
        std::size_t rest = number;
        for (const std::vector<std::string>& choices : candidates) {
            values.push_back(choices[rest % choices.size()]);
            rest /= choices.size();
        }
        seen[evaluate(pattern.with(values)).value_or(true) ? 1 : 0] = true;
        if (seen[0] && seen[1]) {
            return Constancy::kVaries;
        }
    }
    return seen[1] ? Constancy::kAlwaysTrue : Constancy::kAlwaysFalse;
}

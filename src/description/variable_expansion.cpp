#include "description/variable_expansion.h"

#include <algorithm>

#include "description/variable_lookup.h"

namespace {

constexpr std::size_t kNameLimit = 1023;
constexpr std::size_t kNameWarningLimit = 1024;
constexpr std::size_t kQuotedLimit = 1023;       // bytes of the source that a warning shows
constexpr std::size_t kDollarValueLimit = 1023;  // bytes that count of a value after `$`

bool isNameCharacter(char c) {
    return c == '_' || c == '$' || (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

// The end of the text counts as the start of a name, too: a last `[` is a reference without a name.
bool beginsReference(std::string_view rest) {
    return rest.front() == '[' && (rest.size() == 1 || isNameCharacter(rest[1]));
}

class BracketExpansion {
public:
    BracketExpansion(VariableLookup& variables, const DebugLog& debugLog, std::string_view source,
                     std::size_t limit)
        : variables_(variables), debugLog_(debugLog), source_(source), limit_(limit), rest_(source) {}

    std::optional<Expansion> run(bool stopOnMissing) {
        do {
            if (!beginsReference(rest_)) {
                copyPlain();
            } else if (!expandReference() && stopOnMissing) {
                return std::nullopt;
            }
        } while (!isOver());
        return std::move(result_);
    }

private:
    bool isOver() const { return rest_.empty() || result_.length >= limit_; }

    void append(std::string_view text) {
        result_.text.append(text.substr(0, limit_ - result_.text.size()));
        result_.length += text.size();
    }

    void copyPlain() {
        const std::size_t room = result_.length < limit_ ? limit_ - result_.length : 1;
        std::size_t length = 1;
        while (length < std::min(rest_.size(), room) && !beginsReference(rest_.substr(length))) {
            ++length;
        }
        append(rest_.substr(0, length));
        rest_.remove_prefix(length);
    }

    std::string_view takeName() {
        rest_.remove_prefix(1);
        const std::string_view name = rest_.substr(0, rest_.find(']'));
        rest_.remove_prefix(std::min(name.size() + 1, rest_.size()));
        return name;
    }

    // False when there is no such variable; the reference stays as it is written then.
    bool expandReference() {
        const std::string_view written = takeName();
        const std::string name(written.substr(0, kNameLimit));
        if (written.size() > kNameWarningLimit) {
            debugLog_.line("WARNING: Variable [" + name + "] is too long in the expression \"" + quoted() +
                           "\"");
        }
        if (const std::optional<std::string> value = variables_.get(name)) {
            append(*value);
            return true;
        }
        debugLog_.line("WARNING: Variable [" + name + "] is not initialized in the expression: \"" +
                       quoted() + "\"");
        append("[" + name + "]");
        return false;
    }

    std::string quoted() const { return std::string(source_.substr(0, kQuotedLimit)); }

    VariableLookup& variables_;
    const DebugLog& debugLog_;
    std::string_view source_;
    std::size_t limit_;
    std::string_view rest_;
    Expansion result_;
};

// Cuts a name off the start of `rest`.
std::string_view takeDollarName(std::string_view& rest) {
    const auto end = std::find_if_not(rest.begin(), rest.end(), isNameCharacter);
    const std::string_view name = rest.substr(0, static_cast<std::size_t>(end - rest.begin()));
    rest.remove_prefix(name.size());
    return name.substr(0, kNameLimit);
}

}  // namespace

std::optional<std::string> VariableLookup::get(std::string_view name) {
    std::optional<VariableReading> reading = read(name, kTextLimit);
    return reading ? std::optional<std::string>(std::move(reading->value)) : std::nullopt;
}

std::optional<Expansion> expandBracketVariables(VariableLookup& variables, const DebugLog& debugLog,
                                                std::string_view source, std::size_t limit,
                                                bool stopOnMissing) {
    if (source.empty()) {
        return std::nullopt;
    }
    return BracketExpansion(variables, debugLog, source, limit).run(stopOnMissing);
}

bool expandDollarVariables(VariableLookup& variables, std::string_view source, std::size_t limit,
                           std::string& outText) {
    outText.clear();
    while (!source.empty()) {
        if (source.front() != '$') {
            const std::string_view plain = source.substr(0, source.find('$'));
            const std::size_t room = limit - outText.size();
            // Of plain text, what fits is kept; of a value, all or nothing.
            outText.append(plain.substr(0, room));
            if (plain.size() > room) {
                return false;
            }
            source.remove_prefix(plain.size());
            continue;
        }
        source.remove_prefix(1);
        const std::optional<VariableReading> value =
            variables.read(takeDollarName(source), kDollarValueLimit);
        if (!value || value->value.size() > limit - outText.size()) {
            return false;
        }
        outText.append(value->value);
    }
    return true;
}

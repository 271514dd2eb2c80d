#include "description/condition_parser.h"

#include "base/text_functions.h"
#include "description/version_order.h"

namespace {

constexpr std::size_t kStringLimit = 1023;  // bytes that are read of a string in quotes
constexpr std::string_view kVersionFunction = "version";
constexpr int kHexadecimalDigits = 8;  // digits that count; others are passed over

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

int hexadecimalValue(char c) {
    if (isDigit(c)) {
        return c - '0';
    }
    const char lower = static_cast<char>(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

}  // namespace

std::optional<bool> ConditionParser::evaluate() {
    levels_.emplace_back();
    Next next = Next::kOperand;
    while (next == Next::kOperand) {
        if (skipTo('(')) {
            levels_.emplace_back();
        } else {
            next = takeOperand(readOperand());
        }
    }
    if (next == Next::kFailed) {
        return std::nullopt;
    }
    return result_;
}

// Carries an operand as far as it leads: it may complete a comparison, that the condition in a parenthesis,
// and that condition is an operand again.
ConditionParser::Next ConditionParser::takeOperand(Operand operand) {
    for (;;) {
        if (operand.number == kFailure) {
            return Next::kFailed;
        }
        Level& level = levels_.back();
        bool truth = operand.number != 0;
        if (level.pending != Operator::kNone) {
            if (!canCompare(level.left, operand)) {
                return Next::kFailed;
            }
            truth = compare(level.left, level.pending, operand);
            level.pending = Operator::kNone;
        } else {
            level.pending = readOperator();
            if (level.pending != Operator::kNone) {
                level.left = operand;
                return level.pending == Operator::kBad ? Next::kFailed : Next::kOperand;
            }
        }
        if (endComparison(truth) == Next::kOperand) {
            return Next::kOperand;
        }
        if (!closeLevel(operand)) {
            return Next::kNothing;
        }
    }
}

// kNothing when the condition of the present level is over.
ConditionParser::Next ConditionParser::endComparison(bool truth) {
    Level& level = levels_.back();
    level.allTrue = level.allTrue && truth;
    if (skipTo(',')) {
        return Next::kOperand;
    }
    level.anyTrue = level.anyTrue || level.allTrue;
    level.allTrue = true;
    return skipTo(';') ? Next::kOperand : Next::kNothing;
}

// False when it was the outermost level. A missing parenthesis goes unnoticed.
bool ConditionParser::closeLevel(Operand& outValue) {
    const bool value = levels_.back().anyTrue;
    levels_.pop_back();
    if (levels_.empty()) {
        result_ = value;
        return false;
    }
    skipTo(')');
    outValue = Operand{value ? 1 : 0, {}};
    return true;
}

ConditionParser::Operand ConditionParser::readOperand() {
    skipBlanks();
    if (peek() == '\'') {
        return readString();
    }
    if (skipWord(kVersionFunction)) {
        return readVersion();
    }
    return Operand{isDigit(peek()) ? readNumber() : kFailure, {}};
}

// Unlike that of a condition, this parenthesis must be closed, and nothing but one string is in it.
ConditionParser::Operand ConditionParser::readVersion() {
    if (!skipTo('(') || !skipTo('\'')) {
        return Operand{};
    }
    --at_;
    Operand version = readString();
    version.isVersion = true;
    return skipTo(')') ? version : Operand{};
}

ConditionParser::Operand ConditionParser::readString() {
    const std::size_t start = ++at_;
    while (at_ < text_.size() && peek() != '\'' && at_ - start < kStringLimit) {
        ++at_;
    }
    const std::string_view text = text_.substr(start, at_ - start);
    if (peek() == '\'') {
        ++at_;
    }
    return Operand{kString, text};
}

// Numbers wrap over at 32 bits. A leading zero means octal, in which the digits 8 and 9 count as well.
std::int32_t ConditionParser::readNumber() {
    if (peek() == '0' && (peek(1) == 'x' || peek(1) == 'X')) {
        return readHexadecimal();
    }
    const std::uint32_t base = peek() == '0' ? 8 : 10;
    std::uint32_t value = 0;
    for (; isDigit(peek()); ++at_) {
        value = value * base + static_cast<std::uint32_t>(peek() - '0');
    }
    return static_cast<std::int32_t>(value);
}

std::int32_t ConditionParser::readHexadecimal() {
    at_ += 2;
    std::uint32_t value = 0;
    for (int digits = 0; hexadecimalValue(peek()) >= 0; ++at_, ++digits) {
        if (digits < kHexadecimalDigits) {
            value = value * 16 + static_cast<std::uint32_t>(hexadecimalValue(peek()));
        }
    }
    return value > INT32_MAX ? INT32_MAX : static_cast<std::int32_t>(value);
}

ConditionParser::Operator ConditionParser::readOperator() {
    skipBlanks();
    const char first = peek();
    if (first != '=' && first != '!' && first != '<' && first != '>') {
        return Operator::kNone;
    }
    const bool withEqual = peek(1) == '=';
    at_ += withEqual ? 2 : 1;
    switch (first) {
        case '<':
            return withEqual ? Operator::kLessEqual : Operator::kLess;
        case '>':
            return withEqual ? Operator::kGreaterEqual : Operator::kGreater;
        case '=':
            return withEqual ? Operator::kEqual : Operator::kBad;
        default:
            return withEqual ? Operator::kNotEqual : Operator::kBad;
    }
}

// A number has lost its dots: 1.10 as a number would be 1, and what follows ignored.
bool ConditionParser::canCompare(const Operand& left, const Operand& right) {
    const bool areStrings = left.number == kString && right.number == kString;
    return areStrings || (!left.isVersion && !right.isVersion);
}

std::int32_t ConditionParser::orderOf(const Operand& left, const Operand& right) {
    if (left.isVersion || right.isVersion) {
        const std::weak_ordering order = compareVersions(left.text, right.text);
        return std::is_lt(order) ? -1 : static_cast<std::int32_t>(std::is_gt(order));
    }
    if (left.number == kString && right.number == kString) {
        return left.text.compare(right.text);
    }
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(left.number) -
                                     static_cast<std::uint32_t>(right.number));
}

bool ConditionParser::compare(const Operand& left, Operator what, const Operand& right) {
    const std::int32_t order = orderOf(left, right);
    switch (what) {
        case Operator::kEqual:
            return order == 0;
        case Operator::kNotEqual:
            return order != 0;
        case Operator::kLess:
            return order < 0;
        case Operator::kLessEqual:
            return order <= 0;
        case Operator::kGreater:
            return order > 0;
        case Operator::kGreaterEqual:
            return order >= 0;
        default:
            return false;
    }
}

bool ConditionParser::skipTo(char wanted) {
    skipBlanks();
    if (peek() != wanted) {
        return false;
    }
    ++at_;
    return true;
}

// ASCII case makes no difference.
bool ConditionParser::skipWord(std::string_view word) {
    if (!OUtils::startsWithIgnoreCase(text_.substr(at_), word)) {
        return false;
    }
    at_ += word.size();
    return true;
}

void ConditionParser::skipBlanks() {
    while (peek() == ' ' || peek() == '\t') {
        ++at_;
    }
}

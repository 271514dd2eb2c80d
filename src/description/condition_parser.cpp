#include "description/condition_parser.h"

namespace {

constexpr std::size_t kStringLimit = 1023;  // bytes that are read of a string in quotes
constexpr int kHexadecimalDigits = 8;       // digits that count; others are passed over

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
    return Operand{isDigit(peek()) ? readNumber() : kFailure, {}};
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

bool ConditionParser::compare(const Operand& left, Operator what, const Operand& right) {
    std::int32_t order = 0;
    if (left.number == kString && right.number == kString) {
        order = left.text.compare(right.text);
    } else {
        order = static_cast<std::int32_t>(static_cast<std::uint32_t>(left.number) -
                                          static_cast<std::uint32_t>(right.number));
    }
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

void ConditionParser::skipBlanks() {
    while (peek() == ' ' || peek() == '\t') {
        ++at_;
    }
}

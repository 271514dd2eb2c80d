#pragma once

#include <cstdint>
#include <string_view>

// Evaluates a condition whose variables are expanded already, as it reads it. `;` is OR, `,` is AND and binds
// tighter; every term is evaluated.
class ConditionParser {
public:
    // The text must outlive the parser.
    ConditionParser(std::string_view text, int nestingLimit) : text_(text), nestingLimit_(nestingLimit) {}

    // 1, 0, or -1 when an operand or operator can't be read or parentheses nest too deeply.
    int evaluate();

private:
    struct Operand {
        std::int32_t number = 0;
        std::string_view text;
        bool isString() const;
    };
    enum class Operator { kNone, kEqual, kNotEqual, kLess, kLessEqual, kGreater, kGreaterEqual, kBad };

    std::int32_t condition();
    std::int32_t conjunction();
    std::int32_t comparison();
    Operand operand();
    Operand parenthesised();
    Operand quoted();
    std::int32_t number();
    std::int32_t hexadecimal();
    Operator readOperator();
    static std::int32_t compare(const Operand& left, Operator what, const Operand& right);

    void skipBlanks();
    char peek() const { return at_ < text_.size() ? text_[at_] : '\0'; }

    std::string_view text_;
    int nestingLimit_;
    std::size_t at_ = 0;
    int depth_ = 0;
};

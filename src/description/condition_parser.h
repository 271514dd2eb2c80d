#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

// Evaluates a condition whose variables are expanded already, as it reads it. `;` is OR, `,` is AND and binds
// tighter; every term is evaluated. Parentheses take no stack, so only the length of the text bounds them.
class ConditionParser {
public:
    // The text must outlive the parser; it ends at its first zero byte.
    explicit ConditionParser(std::string_view text) : text_(text.substr(0, text.find('\0'))) {}

    // Nothing when an operand or an operator cannot be read. Text after the condition is ignored.
    std::optional<bool> evaluate();

private:
    // Two numbers have a meaning beside their value, and so can't be written in a condition.
    static constexpr std::int32_t kFailure = -1;
    static constexpr std::int32_t kString = -2;

    struct Operand {
        std::int32_t number = kFailure;
        std::string_view text;   // of a string
        bool isVersion = false;  // then it is a string as well
    };
    enum class Operator { kNone, kEqual, kNotEqual, kLess, kLessEqual, kGreater, kGreaterEqual, kBad };
    // What is known of a condition while its terms are read; one for each open parenthesis and one around
    // all.
    struct Level {
        bool anyTrue = false;
        bool allTrue = true;
        Operator pending = Operator::kNone;
        Operand left;
    };
    // What has to be read next.
    enum class Next { kOperand, kNothing, kFailed };

    Next takeOperand(Operand operand);
    Next endComparison(bool truth);
    bool closeLevel(Operand& outValue);

    Operand readOperand();
    Operand readString();
    Operand readVersion();
    std::int32_t readNumber();
    std::int32_t readHexadecimal();
    Operator readOperator();
    static bool canCompare(const Operand& left, const Operand& right);
    static std::int32_t orderOf(const Operand& left, const Operand& right);
    static bool compare(const Operand& left, Operator what, const Operand& right);

    bool skipTo(char wanted);
    bool skipWord(std::string_view word);
    void skipBlanks();
    char peek(std::size_t ahead = 0) const { return at_ + ahead < text_.size() ? text_[at_ + ahead] : '\0'; }

    std::string_view text_;
    std::size_t at_ = 0;
    std::vector<Level> levels_;
    bool result_ = false;
};

#include "ui/console/decimal_text.h"

#include <charconv>

#include "base/text_functions.h"

std::optional<std::int32_t> parseDecimal(std::string_view text) {
    std::string_view digits = OUtils::trimWhiteSpace(text);
    if (digits.starts_with('+') && !digits.starts_with("+-")) {
        digits.remove_prefix(1);
    }
    std::int32_t number = 0;
    const char* const end = digits.data() + digits.size();
    const std::from_chars_result result = std::from_chars(digits.data(), end, number);
    if (digits.empty() || result.ec != std::errc() || result.ptr != end) {
        return std::nullopt;
    }
    return number;
}

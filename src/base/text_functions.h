#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/errors.h"

// Functions on UTF-8 text. None logs.
namespace OUtils {

// The byte capacity of a path buffer, terminator included.
inline constexpr int kPathCapacity = 1560;

// Copies at most `capacity` - 1 bytes and terminates; for the buffers of fixed interfaces. A null `text`
// counts as empty. Nothing happens with a null `out` or a capacity below 1.
void copyText(char* out, const char* text, std::int64_t capacity);

// Formats as printf does. Empty when the format can't be carried out.
std::string formatText(const char* format, ...) TANDREL_PRINTF(1, 2);

// The runs between the separators. An empty run gives an empty element, and so does a separator at the very
// end. An empty text has no elements.
std::vector<std::string> splitText(std::string_view text, char separator);
// The same into `outList`. Returns the number of elements; a null text counts as empty.
int splitText(const char* text, char separator, std::vector<std::string>& outList);

// What is between the first `open` and the last `close` after it; nothing when one of them is missing.
std::optional<std::string> extractBetween(std::string_view text, char open, char close);

// Comparison without regard to ASCII case; other bytes compare as they are. A null text equals nothing.
bool equalsIgnoreCase(const char* a, const char* b);
bool equalsIgnoreCase(std::string_view a, std::string_view b);
// True when `text` begins with `prefix`, without regard to ASCII case.
bool startsWithIgnoreCase(std::string_view text, std::string_view prefix);

// ASCII letters in lower case, other bytes as they are: a key for look-ups that ignore case.
std::string toLowerAscii(std::string_view text);

// Blank, tab, line feed or carriage return.
bool isWhiteSpace(char c);
// The text without white space at its ends.
std::string_view trimWhiteSpace(std::string_view text);

// The reading of numbers that the description uses: white space, a sign, decimal digits; anything else ends
// it, and without digits the result is 0. Values outside 32 bits stop at the nearest limit.
std::int32_t textToInteger(std::string_view text);
std::int32_t textToInteger(const char* text);  // null gives 0

}  // namespace OUtils

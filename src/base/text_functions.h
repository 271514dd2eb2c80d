#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/errors.h"

// Functions on zero-terminated UTF-8 text in fixed buffers. They neither throw nor log: a text that doesn't
// fit is cut, and the output stays terminated. Capacities are in bytes and include the terminator.
namespace OUtils {

// The byte capacity of a path buffer, terminator included.
inline constexpr int kPathCapacity = 1560;

// Copies at most `capacity` - 1 bytes and terminates. A null `text` counts as empty. Nothing happens with a
// null `out` or a capacity below 1.
void copyText(char* out, const char* text, std::int64_t capacity);

// Formats as printf does, and always terminates. Returns the length, or -1 if the text was cut.
int formatText(char* out, std::int64_t capacity, const char* format, ...) TANDREL_PRINTF(3, 4);

// Empties `outList`, then appends each run up to the next `separator`; an empty run gives an empty element,
// and so does a separator at the very end. Returns the number of elements; an empty or null text has none.
int splitText(const char* text, char separator, std::vector<std::string>& outList);

// Copies what stands between the first `open` and the last `close` behind it. Returns 1 on success, else 0
// with `out` emptied.
int extractBetween(const char* text, char open, char close, char* out, std::int64_t capacity);

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
std::int32_t textToInteger(const char* text);

}  // namespace OUtils

#pragma once

#include <string>
#include <string_view>

namespace OUtils {

// A string of JSON (RFC 8259) with its quotes, on one line. What a terminal would obey (base/visible_text.h)
// is escaped, and each byte that isn't UTF-8 is replaced by U+FFFD, so the result is UTF-8 whatever `text`
// holds.
std::string jsonString(std::string_view text);

}  // namespace OUtils

#pragma once

#include <string>
#include <string_view>

// A text of the description in the message of a finding.
inline std::string inQuotes(std::string_view text) {
    return "\"" + std::string(text) + "\"";
}

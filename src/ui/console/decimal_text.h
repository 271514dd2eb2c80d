#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

// A whole text that is one decimal number of 32 bits, with a sign or without, white space around it allowed.
std::optional<std::int32_t> parseDecimal(std::string_view text);

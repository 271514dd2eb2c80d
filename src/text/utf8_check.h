#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

// The number, from 0, of the first character that is no valid UTF-8: broken or cut sequences, overlong forms,
// surrogates, values above U+10FFFF. Nothing when all are valid.
std::optional<std::size_t> findInvalidUtf8(std::string_view text);

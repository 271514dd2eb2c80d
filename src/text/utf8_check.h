#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

// The number, from 0, of the first character that isn't valid UTF-8: a broken or cut sequence, an overlong
// form, a surrogate, or a value above U+10FFFF. Nothing when all are valid.
std::optional<std::size_t> findInvalidUtf8(std::string_view text);

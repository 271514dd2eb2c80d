#pragma once

#include <string_view>

// Whether a file's name fits a pattern of `*` (any number of characters) and `?` (one byte), without regard
// to ASCII case; "*.*" fits every name. The time is at most the product of the lengths.
bool matchesWildcard(std::string_view pattern, std::string_view name);

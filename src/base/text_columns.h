#pragma once

#include <cstddef>
#include <string_view>

namespace OUtils {

// How many cells of a terminal a character takes: 0 for marks that combine with the letter before them and
// for joiners, 2 for the wide letters of East Asia and for pictures, otherwise 1. Control characters count as
// 1, because a `?` is shown for them.
int columnsOf(char32_t character);

// The same of a whole text. Each byte that isn't UTF-8 counts as 1.
std::size_t columnsOf(std::string_view text);

}  // namespace OUtils

#pragma once

#include <string_view>
#include <vector>

// The word that somebody probably meant: the nearest by the number of letters that are wrong, missing, too
// many or swapped (optimal string alignment), without regard to ASCII case; the first of several. Empty when
// none is near: at most one in three letters may differ.
std::string_view nearestWord(std::string_view word, const std::vector<std::string_view>& words);

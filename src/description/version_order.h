#pragma once

#include <compare>
#include <string_view>

// Which of two versions is the later one.
//
// Blanks at both ends of a version don't count. A version is its parts, separated by `.`, and possibly a tail
// behind its first `-`, as in 1.10.2-beta. A part is numbers and other characters in turns, beginning with a
// number: 2b1 is 2, b, 1. Numbers compare by their values, which may be as large as one likes, other
// characters by their unsigned bytes; what is missing at the end, or a number at the beginning, counts as 0
// or as no characters. So the empty version is 0, 1.2 is 1.2.0, and 1.2b is later than 1.2. Of two versions
// that are equal otherwise, one with a tail is the earlier; tails compare as versions without tails. The time
// is linear in the texts, which are not copied.
std::weak_ordering compareVersions(std::string_view left, std::string_view right);

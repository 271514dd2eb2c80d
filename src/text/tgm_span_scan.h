#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "text/tgm_node.h"

// A part of a text: kTgmPlain, or an emphasis without its delimiters. Borrows the text.
struct TGMPiece {
    std::string_view text;
    TGMNodeType type = kTgmPlain;
};

// The position of the first backslash, star or underscore from `from` on, or the length of the text.
std::size_t findTgmMark(std::string_view text, std::size_t from);

// Cuts a text at its outermost emphasis, in order; escapes stay. `pieces` is replaced and empty only for an
// empty text. There is at least a
// delimiter between two pieces. Linear in time: a delimiter either closes, and the scan goes on behind it, or
// takes the rest of the text.
void scanTgmSpans(std::string_view text, std::vector<TGMPiece>& pieces);

#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "text/tgm_tree.h"

// A part of a text: kTgmPlain, or an emphasis without its delimiters. Borrows the text.
struct TGMPiece {
    std::string_view text;
    TGMNodeType type = kTgmPlain;
};

// The position of the first backslash, star or underscore from `from` on, or the length of the text.
std::size_t findTgmMark(std::string_view text, std::size_t from);

// Cuts a text at its outermost emphasis. Replaces `pieces` by the parts in their order; they keep their
// escapes, two of them always have a delimiter between them, and only an empty text has none. Linear in time:
// a delimiter either closes, and the scan goes on after its span, or takes the rest of the text.
void scanTgmSpans(std::string_view text, std::vector<TGMPiece>& pieces);

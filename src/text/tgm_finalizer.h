#pragma once

#include <cstdint>

#include "text/tgm_limits.h"
#include "text/tgm_parse_options.h"
#include "text/tgm_tree.h"

// The second phase: turns the emphasis in the texts of a node and of all nodes below it into nodes, and
// removes the escapes from texts without emphasis. `depth` is that of the node; new nodes come from `tree`. A
// text whose emphasis can't be resolved stays as it is and gives kTgmInvalidEmphasis; the others are finished
// all the same.
TGMParseResult finalizeTgmNode(TGMNode& node, std::uint32_t depth, TGMTree& tree, TGMWorkBudget& budget);

// Removes the backslashes before the characters that they protect from being read as markup.
void unescapeTgmText(TGMText& text);

#pragma once

#include <cstdint>

#include "text/tgm_node.h"
#include "text/tgm_parse_options.h"
#include "text/tgm_tree.h"
#include "text/tgm_work_budget.h"

// The second phase: turns the emphasis in the texts of a node and of all below it into nodes, and takes the
// escapes from what has none. `depth` is that of the node, `tree` has the memory. A text whose emphasis can't
// be resolved stays as it is and gives kTgmInvalidEmphasis; the others are finished all the same.
TGMParseResult finalizeTgmNode(TGMNode& node, std::uint32_t depth, TGMTree& tree, TGMWorkBudget& budget);

// Takes out the backslashes ahead of the characters that they keep from being read as markup.
void unescapeTgmText(TGMText& text);

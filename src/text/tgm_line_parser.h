#pragma once

#include <cstdint>
#include <vector>

#include "text/tgm_line.h"
#include "text/tgm_node.h"
#include "text/tgm_parse_options.h"
#include "text/tgm_tree.h"
#include "text/tgm_work_budget.h"

// Where lines stand in the whole text: a quote's lines are read as a text of their own.
struct TGMParseScope {
    TGMTree& tree;  // of the whole text, as the budget is
    TGMWorkBudget& budget;
    std::uint32_t depth = 0;      // of the node that receives the lines
    std::uint32_t firstLine = 0;  // the number of the first of the lines
};

// Both phases over lines, with the dumps that the options ask for. The root has the type kTgmDocument; after
// an error it holds what was built until then. `result` is added to.
TGMNodePtr parseTgmLines(const std::vector<TGMLine>& lines, const TGMParseOptions& options,
                         const TGMParseScope& scope, TGMParseResult& result);

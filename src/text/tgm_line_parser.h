#pragma once

#include <vector>

#include "text/tgm_block_builder.h"
#include "text/tgm_line.h"
#include "text/tgm_parse_options.h"
#include "text/tgm_tree.h"

// Runs both phases over `lines` and writes the dumps that the options ask for. The root has the type
// kTgmDocument; after an error it holds what was built until then. What went wrong is added to `result`.
TGMNodePtr parseTgmLines(const std::vector<TGMLine>& lines, const TGMParseOptions& options,
                         const TGMParseScope& scope, TGMParseResult& result);

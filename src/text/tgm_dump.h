#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "text/tgm_line.h"
#include "text/tgm_tree.h"

// The four letters of a type; blanks are part of them.
std::string_view getTgmTypeName(TGMNodeType type);

// Appends one line of output: the number of the line, its type, the last line of a block that would begin
// there, and its payload.
void dumpTgmLine(std::string& out, std::size_t number, const TGMLine& line, std::size_t blockEnd);

// Appends one line of output for each node, indented by its depth below `node`.
void dumpTgmTree(std::string& out, const TGMNode& node);

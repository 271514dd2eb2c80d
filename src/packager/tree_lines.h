#pragma once

#include <string>
#include <vector>

#include "packager/tree_request.h"

// A file or link of a tree with all that its element says.
struct TreeFile {
    TreeItem item;
    std::string alias;  // of a file; empty for the default
};

// The elements that the description gets in the place of a Tree: an FN for each file, then a group of
// shortcuts for the links, if there are any. `lineEnd` stands between the lines, with the indentation of the
// Tree.
std::string treeLines(const TreeRequest& tree, const std::vector<TreeFile>& files,
                      const std::string& lineEnd);

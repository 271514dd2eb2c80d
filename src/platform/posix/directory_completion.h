#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace platform {

struct DirectoryCompletion {
    std::string added;               // what can only follow
    std::vector<std::string> names;  // the directories that the text may mean, sorted; at most kMostNames
};

// Completes the path of a directory, which may be relative and may begin with `~/` ($HOME). A single
// directory gets a separator behind it. Hidden ones only count when their dot is typed, names that a terminal
// can't show never.
DirectoryCompletion completeDirectory(std::string_view typed);

}  // namespace platform

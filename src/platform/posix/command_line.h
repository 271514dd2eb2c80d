#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace platform {

// The words of a command line: blanks separate them, double quotes keep blanks together and are dropped.
// Quotes may begin inside a word; `""` is an empty word; a quote that isn't closed reaches to the end.
std::vector<std::string> splitCommandLine(std::string_view commandLine);

}  // namespace platform

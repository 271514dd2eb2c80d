#pragma once

#include <string>
#include <string_view>
#include <vector>

// What a test wants of the text of a page.
namespace ManualReader {

struct FencedBlock {
    std::string info;  // the words after the fence
    std::string text;
    int line = 0;  // of the fence, counted from 1
};

std::vector<FencedBlock> fencedBlocks(std::string_view page);

// Everything that is written as code: the fenced blocks, and what is between backticks.
std::string codeOf(std::string_view page);

// Whether `code` contains `word`, with no letter, digit or underscore next to it.
bool holdsWord(std::string_view code, std::string_view word);

}  // namespace ManualReader

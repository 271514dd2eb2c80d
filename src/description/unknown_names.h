#pragma once

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

class CommandLineArguments;
class Expressions;
class PXML;

// The options of the command line that a description reads into variables, in lower case.
std::unordered_set<std::string> optionsReadBy(const PXML& description);

// What the user gave by name: on the command line and in a file of answers.
struct GivenNames {
    const CommandLineArguments* arguments = nullptr;  // null: none
    std::vector<std::string_view> programOptions;     // the options that the program itself reads
    const PXML* answers = nullptr;                    // null: none
    std::string_view answersPath;
};

// What of it doesn't have the effect that the user may expect, one line each for the screen: options that
// nobody reads, variables that `description` doesn't mention anywhere, variables that can't be set, an empty
// value on the command line (which counts as 1), and answers that can't be taken as they are. Values are
// never shown. To be called when the variables have been loaded.
std::vector<std::string> remarksOnGivenNames(const PXML& description, Expressions& expressions,
                                             const GivenNames& given);

#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "checking/source_place.h"

// The examples of docs/manual/check.md: fenced blocks of XML in which » marks the place of a finding and ␀
// stands for a zero byte. The words behind a fence:
//
//   base             the description that the others change
//   finding=CODE     what is found; without another word the sections are added to those of the base
//   replace=SECTION  this section takes the place of that of the base
//   whole, before, behind   the block is the whole file, or stands before or behind the base
//   also=CODE        is found as well, anywhere
//   root             the files below the root are known
//
// ```text file=NAME directly before an example is a file below its root.
struct CheckExample {
    std::string code;
    int line = 0;  // of its fence on the page
    std::string description;
    SourcePlace place;
    std::set<std::string> also;
    std::map<std::string, std::string> files;
    bool hasRoot = false;
};

// The base comes first; it has no code.
std::vector<CheckExample> checkExamples(std::string_view page);

#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "package/cabinet.h"

// Where a file of a package is installed.
struct InstalledPlace {
    std::string directory;  // the attribute Dest, its references unexpanded
    std::string name;
    std::string condition;  // of the file and its set together, in the language of conditions; empty: none
    bool isExecutable = false;
};

// What the description in a package says of its files.
class PackedDescription {
public:
    // A package without a readable description installs nothing.
    explicit PackedDescription(const Cabinet& cabinet);

    // The places of the file with this alias, in the order of the description. Empty for one that only lies
    // in the package.
    const std::vector<InstalledPlace>& placesOf(std::string_view alias) const;

private:
    std::unordered_map<std::string, std::vector<InstalledPlace>> places_;
};

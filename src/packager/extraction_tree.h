#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "package/cabinet.h"
#include "packager/packed_description.h"

// Where a file of a package goes in the tree that looks like the installed product. Paths have `/` between
// their components and are safe below any directory, on both systems: no component is empty, made of dots
// only or ends in a dot or a blank, and none holds a separator, a colon or another character that a system
// refuses. Those are replaced by `_`; a component that is one reference [NAME] becomes NAME.
std::string treePathOf(const InstalledPlace& place);
// For a file that only lies in the package.
std::string packedOnlyPathOf(std::string_view name);

// One file to be written.
struct ExtractedFile {
    std::int32_t index = 0;  // of the entry
    std::string path;        // below the target
    bool isExecutable = false;
};

// Distributes the files of a package. Of several different files for one place, which only conditions keep
// apart, the first gets it, and the others their aliases behind the name, in parentheses. A content that is
// the same is there once. Case makes no difference, as on some systems.
class ExtractionTree {
public:
    // Both outlive the object.
    ExtractionTree(const Cabinet& cabinet, const PackedDescription& description)
        : cabinet_(cabinet), description_(description) {}

    // Throws InstallerError when a file finds no name of its own.
    void add(std::int32_t index);

    const std::vector<ExtractedFile>& files() const { return files_; }
    // One line for each file that didn't get its own name.
    const std::vector<std::string>& remarks() const { return remarks_; }

private:
    void place(ExtractedFile file);

    const Cabinet& cabinet_;
    const PackedDescription& description_;
    std::vector<ExtractedFile> files_;
    std::unordered_map<std::string, std::size_t> taken_;  // by path in lower case
    std::vector<std::string> remarks_;
};

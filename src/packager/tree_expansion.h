#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "packager/tree_aliases.h"
#include "packager/tree_lines.h"
#include "packager/tree_names.h"

class PXML;
struct PXMLSpan;
namespace platform {
class FileSystem;
}

// Where the files of a package come from.
struct PackageSources {
    std::string description;  // its path
    std::string root;         // the directory in which the files are looked up
    std::string image;        // the bare installer; may be empty
};

// Puts elements that the installer knows in the place of the Tree elements of a description. All other bytes
// of it stay as they are. The result depends on the description, the tree and the kind of the image alone.
class TreeExpansion {
public:
    // `files` is borrowed.
    TreeExpansion(PackageSources sources, platform::FileSystem& files);

    // The description without trees; none when `text` has no tree. Throws InstallerError with one line that
    // names the tree, file or link that can't be packed. To be called once.
    std::optional<std::string> expand(std::string_view text);

    // One line each.
    const std::vector<std::string>& warnings() const { return warnings_; }

private:
    std::vector<std::int32_t> findTrees(const PXML& document);
    void reserveAliases(const PXML& document);
    void reserveAlias(const PXML& document, std::int32_t node);
    std::string linesFor(const PXML& document, std::int32_t node, const std::string& lineEnd);
    std::vector<TreeFile> filesOf(const TreeRequest& tree, const TreeWalk& walk, std::vector<TreeItem> items);
    void checkPath(const TreeRequest& tree, const TreeWalk& walk, const TreeItem& item);
    void checkLink(const TreeWalk& walk, const TreeItem& item);
    bool isDescription(const std::string& path, const std::string& place);
    void warnOfUnused(const TreeRequest& tree, bool isEmpty);
    TargetSystem target();

    PackageSources sources_;
    platform::FileSystem& files_;
    std::string descriptionName_;
    TreeAliases aliases_;
    std::optional<TargetSystem> target_;
    std::vector<std::string> warnings_;
};

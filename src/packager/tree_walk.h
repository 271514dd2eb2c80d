#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "packager/path_pattern.h"
#include "platform/file_system.h"

// A file or a symbolic link of a tree.
struct TreeItem {
    std::string path;                 // below the tree, with `/`
    std::int64_t size = -1;           // of a file, in bytes
    bool isProgram = false;           // the disk marks the file as one
    std::optional<std::string> link;  // the text of a symbolic link
};

// Finds what a tree consists of. No link is followed, neither in the tree nor on the way to it.
class TreeWalk {
public:
    // What belongs to the tree: without `include` everything. A pattern that matches a directory stands for
    // all that is in it. `exclude` is stronger.
    struct Filter {
        PathPatterns include;
        PathPatterns exclude;
    };

    // `files` and `filter` are borrowed. `from` is the path of the tree below the root, with `/` between its
    // parts; empty for the root itself.
    TreeWalk(platform::FileSystem& files, std::string root, std::string from, Filter& filter)
        : files_(files), root_(std::move(root)), from_(std::move(from)), filter_(filter) {}

    // The items in the order of their paths, byte by byte. None when there is no such directory. Throws
    // InstallerError for a link on the way, for what can't be read, and for what is neither file, directory
    // nor link.
    std::optional<std::vector<TreeItem>> run();

    // How an item is named in messages.
    std::string placeOf(const std::string& path) const;

private:
    using DirectoryPtr = std::unique_ptr<platform::Directory>;

    DirectoryPtr openTop();
    void walk(platform::Directory& directory, const std::string& path, bool isIncluded);
    void take(platform::Directory& directory, const platform::DiskEntry& entry, const std::string& path,
              bool isIncluded);
    void enter(platform::Directory& directory, const platform::DiskEntry& entry, const std::string& path,
               bool isIncluded);
    std::string linkText(const std::string& path);

    platform::FileSystem& files_;
    std::string root_;
    std::string from_;
    Filter& filter_;
    std::string realTop_;  // the directory of the tree, without any link
    std::vector<TreeItem> items_;
};

#include "packager/tree_walk.h"

#include <algorithm>

#include "base/failure.h"
#include "description/file_sets.h"
#include "packager/path_pattern.h"
#include "platform/error_text.h"

using platform::PathKind;

namespace {

constexpr const char* kLeaveOut = ": leave it out with Exclude";

std::string joined(const std::string& directory, const std::string& name) {
    return directory.empty() || name.empty() ? directory + name : directory + "/" + name;
}

}  // namespace

std::string TreeWalk::placeOf(const std::string& path) const {
    return joined(joined(root_, from_), path);
}

std::optional<std::vector<TreeItem>> TreeWalk::run() {
    const DirectoryPtr top = openTop();
    if (top == nullptr) {
        return std::nullopt;
    }
    walk(*top, "", filter_.include.areNone());
    std::sort(items_.begin(), items_.end(),
              [](const TreeItem& a, const TreeItem& b) { return a.path < b.path; });
    return std::move(items_);
}

// Each directory is opened in the one above it, so that nothing can lead elsewhere in between. The root may
// be reached through links: its author has named it.
TreeWalk::DirectoryPtr TreeWalk::openTop() {
    DirectoryPtr directory;
    if (files_.realPath(root_, realTop_) != 0 || files_.openDirectory(realTop_, directory) != 0) {
        fail(root_ + ": no such directory");
    }
    std::string path;
    for (std::size_t start = 0; start < from_.size();) {
        const std::size_t end = std::min(from_.find('/', start), from_.size());
        const std::string name = from_.substr(start, end - start);
        path = joined(path, name);
        realTop_ += "/" + name;
        start = end + 1;
        const PathKind kind = files_.kindOf(realTop_);
        if (kind == PathKind::kNothing) {
            return nullptr;
        }
        if (kind != PathKind::kDirectory) {
            fail(joined(root_, path) +
                 (kind == PathKind::kLink ? ": a Tree doesn't follow links" : ": this is not a directory"));
        }
        DirectoryPtr next;
        if (const int status = directory->openDirectory(name, next); status != 0) {
            fail(joined(root_, path) + ": the directory can't be read: " + platform::errorText(status));
        }
        directory = std::move(next);
    }
    return directory;
}

void TreeWalk::walk(platform::Directory& directory, const std::string& path, bool isIncluded) {
    std::vector<platform::DiskEntry> entries;
    if (const int status = directory.listDisk(entries); status != 0) {
        fail(placeOf(path) + ": the directory can't be read: " + platform::errorText(status));
    }
    for (const platform::DiskEntry& entry : entries) {
        const std::string below = joined(path, entry.name);
        if (!filter_.exclude.matchAny(below)) {
            const bool matches = filter_.include.matchAny(below);
            take(directory, entry, below, isIncluded || matches);
        }
    }
}

void TreeWalk::take(platform::Directory& directory, const platform::DiskEntry& entry, const std::string& path,
                    bool isIncluded) {
    switch (entry.kind) {
        case PathKind::kNothing:
            return;  // it has gone
        case PathKind::kDirectory:
            return enter(directory, entry, path, isIncluded);
        case PathKind::kFile:
            if (isIncluded) {
                items_.push_back({path, entry.size, entry.isProgram, std::nullopt});
            }
            return;
        case PathKind::kLink:
            if (isIncluded) {
                items_.push_back({path, -1, false, linkText(path)});
            }
            return;
        case PathKind::kOther:
            if (isIncluded) {
                fail(placeOf(path) + ": this is neither a file nor a directory nor a link" + kLeaveOut);
            }
            return;
    }
}

// No Dest can be longer, and the depth is limited, too.
void TreeWalk::enter(platform::Directory& directory, const platform::DiskEntry& entry,
                     const std::string& path, bool isIncluded) {
    if (!entry.isNameable || path.size() > FileEntry::kDestLimit) {
        fail(placeOf(path) +
             (entry.isNameable ? ": this path is too long" : ": this name leads elsewhere in a path") +
             kLeaveOut);
    }
    DirectoryPtr below;
    if (const int status = directory.openDirectory(entry.name, below); status != 0) {
        fail(placeOf(path) + ": the directory can't be read: " + platform::errorText(status));
    }
    walk(*below, path, isIncluded);
}

std::string TreeWalk::linkText(const std::string& path) {
    std::string text;
    if (const int status = files_.linkTarget(realTop_ + "/" + path, text); status != 0) {
        fail(placeOf(path) + ": this link can't be read on this system: " + platform::errorText(status) +
             kLeaveOut);
    }
    return text;
}

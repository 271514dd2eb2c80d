#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/change_rules.h"
#include "platform/overlay/file_change.h"
#include "platform/overlay/overlay_content.h"
#include "platform/overlay/space_ledger.h"

// One entry of the file system as the overlay has met or made it.
struct OverlayNode {
    using Pointer = std::shared_ptr<OverlayNode>;

    platform::PathKind kind = platform::PathKind::kNothing;
    std::string name;                     // in its directory; of a root, its path
    std::optional<std::string> basePath;  // where the base has it; none: made here
    std::weak_ptr<OverlayNode> directory;
    bool isAttached = false;
    bool isElsewhere = false;  // in another place than the base has it
    // Of a directory, by the key of their names: what was met, and null for what is gone.
    std::map<std::string, Pointer> entries = {};
    // Of a file: null while it is the base's.
    std::shared_ptr<OverlayContent> content = nullptr;
    std::shared_ptr<SpaceCharge> space = nullptr;
    std::optional<std::string> rights = {};  // none while they are the base's
    std::string linkText = {};               // of a link made here

    bool isDirectory() const { return kind == platform::PathKind::kDirectory; }
    bool isFile() const { return kind == platform::PathKind::kFile; }
    bool isLink() const { return kind == platform::PathKind::kLink; }
};

// A name in a directory, and what is there now.
struct OverlayPlace {
    OverlayNode::Pointer directory;  // null for a root
    std::string name;
    OverlayNode::Pointer node;  // null: nothing
};

// All entries: those of the base as it has them now, and over them what was changed. Knows where things are,
// and nothing of contents or permissions. For one thread.
class OverlayTree {
public:
    using NodePointer = OverlayNode::Pointer;

    // Both are borrowed.
    OverlayTree(platform::FileSystem& base, platform::ChangeRules& rules) : base_(base), rules_(rules) {}

    // 0 also when nothing is there, but its directory is. With `followsLink` a link at the end of the path is
    // followed, to where there may be nothing.
    int find(std::string_view path, bool followsLink, OverlayPlace& outPlace);
    OverlayPlace placeIn(const NodePointer& directory, std::string_view name);
    std::string pathOf(const OverlayNode& node) const;
    std::string pathOf(const OverlayPlace& place) const;

    // A free place gets a node, which is in no other one. A node is taken out of its place.
    void attach(const OverlayPlace& place, const NodePointer& node);
    void detach(const OverlayPlace& place);

    // `outEntries` is emptied first. Entries whose names no path can mean are those of the base.
    int listDisk(const NodePointer& directory, std::vector<platform::DiskEntry>& outEntries);
    int list(const NodePointer& directory, std::vector<platform::DirectoryEntry>& outEntries);
    // Whether the base has the place itself, and by which path.
    std::optional<std::string> basePlace(const OverlayPlace& place) const;
    int textOfLink(const OverlayNode& link, std::string& outText);
    // The path that the base, which doesn't know what is new here, has nearest to it: for volumes.
    std::string nearestBasePath(std::string_view path);

    std::vector<platform::FileChange> changes() const;

private:
    struct Vacated {
        std::string path;
        platform::PathKind kind;
        std::weak_ptr<OverlayNode> node;
    };
    struct Walk;

    NodePointer rootOf(const std::string& root);
    NodePointer entryOf(const NodePointer& directory, const std::string& name);
    int step(Walk& walk, bool followsLink);
    int follow(Walk& walk, const OverlayNode& link);
    bool isOwnPlace(const OverlayNode& directory, const OverlayNode& node) const;
    void addNew(const NodePointer& directory, std::vector<platform::DiskEntry>& ioEntries);
    bool isReplaced(const OverlayNode& directory, const std::string& name) const;
    std::int64_t sizeOf(const OverlayNode& node) const;
    void addChanges(const OverlayNode& directory, const std::string& path,
                    std::map<std::string, platform::FileChange>& ioChanges) const;
    std::optional<platform::FileChange> changeOf(const OverlayNode& node, const std::string& path) const;

    platform::FileSystem& base_;
    platform::ChangeRules& rules_;
    std::map<std::string, NodePointer> roots_;
    std::map<std::string, Vacated> vacated_;  // by the key of the base's path
};

#include "platform/overlay/overlay_tree.h"

#include <algorithm>
#include <deque>
#include <iterator>
#include <utility>

using platform::FileChange;
using platform::PathKind;
using platform::Refusal;

namespace {

constexpr int kMostLinks = 40;

bool isAbsolute(std::string_view path) {
    return path.find_first_of("/\\") == 0 || (path.size() > 1 && path[1] == ':');
}

}  // namespace

// A way from a root to a place.
struct OverlayTree::Walk {
    OverlayPlace place;
    std::deque<std::string> rest;
    int links = 0;
};

OverlayTree::NodePointer OverlayTree::rootOf(const std::string& root) {
    NodePointer& node = roots_[rules_.nameKey(root)];
    if (node == nullptr) {
        node = std::make_shared<OverlayNode>();
        node->kind = PathKind::kDirectory;
        node->name = root;
        node->basePath = root;
        node->isAttached = true;
    }
    return node;
}

bool OverlayTree::isOwnPlace(const OverlayNode& directory, const OverlayNode& node) const {
    return directory.basePath && node.basePath &&
           rules_.nameKey(joinedPath(rules_, *directory.basePath, node.name)) ==
               rules_.nameKey(*node.basePath);
}

// What the overlay hasn't changed is looked at again each time, as the base may have changed.
OverlayTree::NodePointer OverlayTree::entryOf(const NodePointer& directory, const std::string& name) {
    const std::string key = rules_.nameKey(name);
    const auto found = directory->entries.find(key);
    const bool isKnown = found != directory->entries.end();
    if (isKnown && (found->second == nullptr || !found->second->basePath || found->second->isElsewhere ||
                    found->second->content != nullptr)) {
        return found->second;
    }
    if (!directory->basePath) {
        return nullptr;
    }
    const std::string path = joinedPath(rules_, *directory->basePath, name);
    const PathKind kind = base_.kindOf(path);
    if (isKnown && found->second->kind == kind) {
        return found->second;
    }
    if (isKnown) {
        found->second->isAttached = false;
        directory->entries.erase(found);
    }
    if (kind == PathKind::kNothing) {
        return nullptr;
    }
    auto node = std::make_shared<OverlayNode>();
    node->kind = kind;
    node->name = name;
    node->basePath = path;
    node->directory = directory;
    node->isAttached = true;
    directory->entries[key] = node;
    return node;
}

OverlayPlace OverlayTree::placeIn(const NodePointer& directory, std::string_view name) {
    OverlayPlace place{directory, std::string(name), nullptr};
    place.node = entryOf(directory, place.name);
    return place;
}

int OverlayTree::find(std::string_view path, bool followsLink, OverlayPlace& outPlace) {
    outPlace = {};
    platform::PathParts parts;
    if (const int status = rules_.partsOf(path, parts); status != 0) {
        return status;
    }
    if (parts.parts.empty() && base_.kindOf(path) == PathKind::kNothing) {
        return rules_.statusOf(Refusal::kMissing);  // a drive that isn't there
    }
    Walk walk;
    walk.place.node = rootOf(parts.root);
    walk.place.name = parts.root;
    walk.rest.assign(parts.parts.begin(), parts.parts.end());
    while (!walk.rest.empty()) {
        if (const int status = step(walk, followsLink); status != 0) {
            return status;
        }
    }
    outPlace = std::move(walk.place);
    return 0;
}

// Goes to the next name, below what the walk has reached.
int OverlayTree::step(Walk& walk, bool followsLink) {
    const NodePointer directory = walk.place.node;
    if (directory == nullptr || !directory->isDirectory()) {
        return rules_.statusOf(directory == nullptr ? Refusal::kMissingDirectory : Refusal::kNoDirectory);
    }
    const std::string name = walk.rest.front();
    walk.rest.pop_front();
    if (name == "..") {
        const NodePointer outer = directory->directory.lock();
        walk.place.node = outer == nullptr ? directory : outer;
        walk.place.directory = walk.place.node->directory.lock();
        walk.place.name = walk.place.node->name;
        return 0;
    }
    walk.place = placeIn(directory, name);
    const bool isEnd = walk.rest.empty();
    const NodePointer& node = walk.place.node;
    return node != nullptr && node->isLink() && (!isEnd || followsLink) ? follow(walk, *node) : 0;
}

int OverlayTree::follow(Walk& walk, const OverlayNode& link) {
    std::string text;
    if (++walk.links > kMostLinks) {
        return rules_.statusOf(Refusal::kTooManyLinks);
    }
    int status = textOfLink(link, text);
    if (status != 0 && link.basePath) {
        status = base_.realPath(*link.basePath, text);  // where links have no text
    }
    if (status != 0) {
        return status;
    }
    if (!isAbsolute(text)) {
        text = joinedPath(rules_, pathOf(*walk.place.directory), text);
    }
    platform::PathParts parts;
    if (status = rules_.partsOf(text, parts); status != 0) {
        return status;
    }
    walk.rest.insert(walk.rest.begin(), parts.parts.begin(), parts.parts.end());
    walk.place = {nullptr, parts.root, rootOf(parts.root)};
    return 0;
}

int OverlayTree::textOfLink(const OverlayNode& link, std::string& outText) {
    if (!link.basePath) {
        outText = link.linkText;
        return 0;
    }
    return base_.linkTarget(*link.basePath, outText);
}

std::string OverlayTree::pathOf(const OverlayNode& node) const {
    const NodePointer directory = node.directory.lock();
    return directory == nullptr ? node.name : joinedPath(rules_, pathOf(*directory), node.name);
}

std::string OverlayTree::pathOf(const OverlayPlace& place) const {
    return place.directory == nullptr ? place.name : joinedPath(rules_, pathOf(*place.directory), place.name);
}

std::optional<std::string> OverlayTree::basePlace(const OverlayPlace& place) const {
    if (place.directory == nullptr || !place.directory->basePath) {
        return std::nullopt;
    }
    return joinedPath(rules_, *place.directory->basePath, place.name);
}

void OverlayTree::attach(const OverlayPlace& place, const NodePointer& node) {
    node->name = place.name;
    node->directory = place.directory;
    node->isAttached = true;
    node->isElsewhere = node->basePath && !isOwnPlace(*place.directory, *node);
    if (node->basePath && !node->isElsewhere) {
        vacated_.erase(rules_.nameKey(*node->basePath));
    }
    place.directory->entries[rules_.nameKey(place.name)] = node;
}

void OverlayTree::detach(const OverlayPlace& place) {
    OverlayNode& node = *place.node;
    if (node.basePath) {
        vacated_[rules_.nameKey(*node.basePath)] = {*node.basePath, node.kind, place.node};
    }
    node.isAttached = false;
    const std::string key = rules_.nameKey(place.name);
    if (place.directory->basePath) {
        place.directory->entries[key] = nullptr;
    } else {
        place.directory->entries.erase(key);
    }
}

// Whether the overlay and not the base says what a name of the base is.
bool OverlayTree::isReplaced(const OverlayNode& directory, const std::string& name) const {
    const auto found = directory.entries.find(rules_.nameKey(name));
    return found != directory.entries.end() &&
           (found->second == nullptr || !found->second->basePath || found->second->isElsewhere);
}

std::int64_t OverlayTree::sizeOf(const OverlayNode& node) const {
    if (!node.isFile()) {
        return -1;
    }
    return node.content != nullptr ? node.content->size() : base_.fileSize(*node.basePath);
}

void OverlayTree::addNew(const NodePointer& directory, std::vector<platform::DiskEntry>& ioEntries) {
    for (const auto& [key, node] : directory->entries) {
        if (node == nullptr || (node->basePath && !node->isElsewhere)) {
            continue;
        }
        const std::string rights = node->rights     ? *node->rights
                                   : node->basePath ? base_.rightsOf(*node->basePath)
                                                    : "";
        ioEntries.push_back(
            {node->name, node->kind, sizeOf(*node), node->isFile() && rules_.isProgram(rights), true});
    }
}

int OverlayTree::listDisk(const NodePointer& directory, std::vector<platform::DiskEntry>& outEntries) {
    outEntries.clear();
    if (directory->basePath) {
        std::unique_ptr<platform::Directory> opened;
        std::vector<platform::DiskEntry> present;
        int status = base_.openDirectory(*directory->basePath, opened);
        status = status != 0 ? status : opened->listDisk(present);
        if (status != 0) {
            return status;
        }
        for (platform::DiskEntry& entry : present) {
            if (!entry.isNameable || !isReplaced(*directory, entry.name)) {
                outEntries.push_back(std::move(entry));
            }
        }
    }
    for (platform::DiskEntry& entry : outEntries) {
        const auto found = directory->entries.find(rules_.nameKey(entry.name));
        if (entry.isNameable && found != directory->entries.end() && entry.kind == PathKind::kFile) {
            entry.size = sizeOf(*found->second);
            entry.isProgram =
                found->second->rights ? rules_.isProgram(*found->second->rights) : entry.isProgram;
        }
    }
    addNew(directory, outEntries);
    return 0;
}

int OverlayTree::list(const NodePointer& directory, std::vector<platform::DirectoryEntry>& outEntries) {
    outEntries.clear();
    if (directory->basePath) {
        if (const int status = base_.list(*directory->basePath, outEntries); status != 0) {
            return status;
        }
        std::erase_if(outEntries, [&](const auto& entry) { return isReplaced(*directory, entry.name); });
    }
    for (const auto& [key, node] : directory->entries) {
        if (node != nullptr && (!node->basePath || node->isElsewhere)) {
            outEntries.push_back({node->name, node->isDirectory()});
        }
    }
    return 0;
}

std::string OverlayTree::nearestBasePath(std::string_view path) {
    OverlayPlace place;
    if (find(path, true, place) != 0) {
        return std::string(path);
    }
    if (place.node != nullptr && place.node->basePath) {
        return *place.node->basePath;
    }
    std::string rest = place.name;
    NodePointer directory = place.directory;
    while (!directory->basePath) {
        rest = joinedPath(rules_, directory->name, rest);
        directory = directory->directory.lock();
    }
    return joinedPath(rules_, *directory->basePath, rest);
}

std::vector<FileChange> OverlayTree::changes() const {
    std::map<std::string, FileChange> found;
    for (const auto& [key, root] : roots_) {
        addChanges(*root, root->name, found);
    }
    for (const auto& [key, vacated] : vacated_) {
        const NodePointer node = vacated.node.lock();
        const bool wasMoved = node != nullptr && node->isAttached;
        if (!wasMoved && !found.contains(key)) {
            found[key] = {FileChange::What::kDeleted, vacated.path, vacated.kind};
        }
    }
    std::vector<FileChange> all;
    std::ranges::transform(found, std::back_inserter(all),
                           [](auto& change) { return std::move(change.second); });
    return all;
}

void OverlayTree::addChanges(const OverlayNode& directory, const std::string& path,
                             std::map<std::string, FileChange>& ioChanges) const {
    for (const auto& [key, node] : directory.entries) {
        if (node == nullptr) {
            continue;
        }
        const std::string place = joinedPath(rules_, path, node->name);
        if (std::optional<FileChange> change = changeOf(*node, place)) {
            ioChanges[rules_.nameKey(place)] = std::move(*change);
        }
        addChanges(*node, place, ioChanges);
    }
}

std::optional<FileChange> OverlayTree::changeOf(const OverlayNode& node, const std::string& path) const {
    FileChange change{FileChange::What::kChanged, path, node.kind};
    change.replaces = vacated_.contains(rules_.nameKey(path));
    change.hasNewContent = node.content != nullptr;
    change.hasNewRights = node.rights.has_value();
    if (!node.basePath) {
        change.what = change.replaces ? FileChange::What::kReplaced : FileChange::What::kCreated;
    } else if (node.isElsewhere) {
        change.what = FileChange::What::kMoved;
        change.from = *node.basePath;
    } else if (!change.hasNewContent && !change.hasNewRights) {
        return std::nullopt;
    }
    change.size = sizeOf(node);
    return change;
}

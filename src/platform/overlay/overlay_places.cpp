#include "platform/overlay/overlay_places.h"

#include <utility>

#include "platform/overlay/overlay_file.h"
#include "platform/overlay/overlay_rights.h"

using platform::Disposition;
using platform::Intent;
using platform::PathKind;
using platform::Refusal;

namespace {

bool isBelow(OverlayNode::Pointer node, const OverlayNode& top) {
    for (; node != nullptr; node = node->directory.lock()) {
        if (node.get() == &top) {
            return true;
        }
    }
    return false;
}

}  // namespace

int OverlayPlaces::mayMake(const OverlayPlace& place) {
    const std::optional<std::string> path = state_.tree.basePlace(place);
    return path ? state_.rules.wouldRefuse(Intent::kMakeEntry, *path) : 0;
}

// What was made here may go wherever something may be made.
int OverlayPlaces::mayGo(const OverlayPlace& place, Intent intent) {
    const OverlayNode& node = *place.node;
    return node.basePath && !node.isElsewhere ? state_.rules.wouldRefuse(intent, *node.basePath)
                                              : mayMake(place);
}

OverlayPlaces::NodePointer OverlayPlaces::newNode(PathKind kind) {
    auto node = std::make_shared<OverlayNode>();
    node->kind = kind;
    return node;
}

OverlayPlaces::NodePointer OverlayPlaces::newFile(std::string rights) {
    NodePointer node = newNode(PathKind::kFile);
    node->content = std::make_shared<OverlayContent>(state_.memory, 0);
    node->rights = std::move(rights);
    return node;
}

int OverlayPlaces::open(const OverlayPlace& place, const platform::OpenOptions& options,
                        std::unique_ptr<platform::File>& outFile) {
    NodePointer node = place.node;
    const bool isPrivate = options.disposition == Disposition::kCreatePrivate;
    if (node != nullptr && (isPrivate || options.disposition == Disposition::kCreateNew)) {
        return state_.refusal(Refusal::kExists);
    }
    std::unique_ptr<platform::File> baseFile;
    if (node != nullptr) {
        if (const int status = openPresent(node, options, baseFile); status != 0) {
            return status;
        }
    } else {
        const bool isMade = options.disposition != Disposition::kOpenExisting;
        const int status = isMade ? mayMake(place) : state_.refusal(Refusal::kMissing);
        if (status != 0) {
            return status;
        }
        node = newFile(isPrivate ? state_.rules.rightsOfNew(platform::FileRights::kPrivate)
                                 : state_.rules.rightsOfUnset());
        state_.tree.attach(place, node);
    }
    auto file = std::make_unique<OverlayFile>(state_, node, options, std::move(baseFile));
    if (options.disposition == Disposition::kCreateAlways) {
        file->empty();
    }
    outFile = std::move(file);
    return 0;
}

// Opens the base's file, too, unless only what was written here counts.
int OverlayPlaces::openPresent(const NodePointer& node, const platform::OpenOptions& options,
                               std::unique_ptr<platform::File>& outBaseFile) {
    if (!node->isFile()) {
        return state_.refusal(node->isDirectory() ? Refusal::kOpensDirectory
                              : node->isLink()    ? Refusal::kOpensLink
                                                  : Refusal::kDevice);
    }
    const bool writes =
        (options.access & platform::kWrite) != 0 || options.disposition == Disposition::kCreateAlways;
    if (const int status = writes ? OverlayRights(state_).mayWrite(*node) : 0; status != 0) {
        return status;
    }
    if (!node->basePath || node->content != nullptr || (options.access & platform::kRead) == 0) {
        return 0;
    }
    platform::OpenOptions reading = options;
    reading.access = platform::kRead;
    reading.disposition = Disposition::kOpenExisting;
    reading.followLinks = false;
    return state_.base.open(*node->basePath, reading, outBaseFile);
}

int OverlayPlaces::statusOfTakingFile(const OverlayPlace& from) {
    if (from.node == nullptr || from.node->isDirectory()) {
        return state_.refusal(from.node == nullptr ? Refusal::kMissing : Refusal::kIsDirectory);
    }
    return from.node->kind == PathKind::kOther ? state_.refusal(Refusal::kDevice)
                                               : mayGo(from, Intent::kRemoveEntry);
}

int OverlayPlaces::removeFile(const OverlayPlace& place) {
    const int status = statusOfTakingFile(place);
    if (status == 0) {
        state_.tree.detach(place);
    }
    return status;
}

int OverlayPlaces::statusOfTakingDirectory(const OverlayPlace& from) {
    if (from.node == nullptr || !from.node->isDirectory()) {
        return state_.refusal(from.node == nullptr ? Refusal::kMissing : Refusal::kNotADirectory);
    }
    std::vector<platform::DiskEntry> entries;
    if (const int status = state_.tree.listDisk(from.node, entries); status != 0) {
        return status;
    }
    if (!entries.empty()) {
        return state_.refusal(Refusal::kNotEmpty);
    }
    return from.directory == nullptr ? state_.refusal(Refusal::kRoot) : mayGo(from, Intent::kRemoveEntry);
}

int OverlayPlaces::removeDirectory(const OverlayPlace& place) {
    const int status = statusOfTakingDirectory(place);
    if (status == 0) {
        state_.tree.detach(place);
    }
    return status;
}

int OverlayPlaces::createDirectory(const OverlayPlace& place) {
    if (place.node != nullptr) {
        return state_.refusal(Refusal::kTaken);
    }
    const int status = mayMake(place);
    if (status == 0) {
        state_.tree.attach(place, newNode(PathKind::kDirectory));
    }
    return status;
}

// What is at the new place isn't looked at.
int OverlayPlaces::mayMove(const OverlayPlace& from, const OverlayPlace& to) {
    if (from.directory == nullptr || to.directory == nullptr) {
        return state_.refusal(Refusal::kRoot);
    }
    if (isBelow(to.directory, *from.node)) {
        return state_.refusal(Refusal::kBadName);
    }
    int status = mayGo(from, Intent::kMoveEntry);
    status = status != 0 ? status : mayMake(to);
    if (status != 0) {
        return status;
    }
    platform::Volume source;
    platform::Volume target;
    const bool areKnown =
        state_.base.findVolume(state_.tree.nearestBasePath(state_.tree.pathOf(*from.directory)), source) ==
            0 &&
        state_.base.findVolume(state_.tree.nearestBasePath(state_.tree.pathOf(*to.directory)), target) == 0;
    return areKnown && source.key != target.key ? state_.refusal(Refusal::kOtherVolume) : 0;
}

void OverlayPlaces::relocate(const OverlayPlace& from, const OverlayPlace& to) {
    state_.tree.detach(from);
    state_.tree.attach(to, from.node);
}

int OverlayPlaces::statusOfMove(const OverlayPlace& from) {
    if (from.node == nullptr) {
        return state_.refusal(Refusal::kMissing);
    }
    return from.node->isDirectory() && !state_.rules.movesDirectories()
               ? state_.refusal(Refusal::kIsDirectory)
               : 0;
}

int OverlayPlaces::move(const OverlayPlace& from, const OverlayPlace& to) {
    const bool isItself = to.node == from.node && !state_.rules.distinguishesCase();
    if (to.node != nullptr && !isItself) {
        return state_.refusal(Refusal::kTaken);
    }
    const int status = mayMove(from, to);
    if (status == 0) {
        relocate(from, to);
    }
    return status;
}

int OverlayPlaces::replace(const OverlayPlace& from, const OverlayPlace& to) {
    if (to.node == nullptr || to.node == from.node) {
        return to.node != nullptr && state_.rules.distinguishesCase() ? 0 : move(from, to);
    }
    if (from.node->isDirectory() || to.node->isDirectory()) {
        return state_.refusal(to.node->isDirectory() ? Refusal::kReplacesDirectory : Refusal::kNotADirectory);
    }
    int status = mayGo(to, Intent::kRemoveEntry);
    status = status != 0 ? status : mayMove(from, to);
    if (status == 0) {
        state_.tree.detach(to);
        relocate(from, to);
    }
    return status;
}

int OverlayPlaces::moveDirectory(const OverlayPlace& from, const OverlayPlace& to) {
    const int status = to.node != nullptr ? state_.refusal(Refusal::kTaken) : mayMove(from, to);
    if (status == 0) {
        relocate(from, to);
    }
    return status;
}

int OverlayPlaces::put(const OverlayPlace& place, const NodePointer& node) {
    if (place.node != nullptr && place.node->isDirectory()) {
        return state_.refusal(Refusal::kReplacesDirectory);
    }
    int status = mayMake(place);
    if (status == 0 && place.node != nullptr) {
        status = mayGo(place, Intent::kRemoveEntry);
    }
    if (status != 0) {
        return status;
    }
    if (place.node != nullptr) {
        state_.tree.detach(place);
    }
    state_.tree.attach(place, node);
    return 0;
}

int OverlayPlaces::putLink(const OverlayPlace& place, std::string_view text) {
    const NodePointer link = newNode(PathKind::kLink);
    link->linkText = text;
    const int status = state_.refusal(Refusal::kLinking);
    return status != 0 ? status : put(place, link);
}

int OverlayPlaces::putUnknownFile(const OverlayPlace& place) {
    const NodePointer file = newFile(state_.rules.rightsOfNew(platform::FileRights::kPlain));
    file->content->forget();
    return put(place, file);
}

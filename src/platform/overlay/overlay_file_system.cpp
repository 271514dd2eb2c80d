#include "platform/overlay/overlay_file_system.h"

#include <algorithm>
#include <utility>

#include "platform/overlay/overlay_directory.h"
#include "platform/overlay/overlay_places.h"
#include "platform/overlay/overlay_rights.h"

using platform::PathKind;
using platform::Refusal;

OverlayFileSystem::OverlayFileSystem(platform::FileSystem& base, platform::ChangeRules& rules,
                                     std::int64_t memoryLimit)
    : state_(std::make_unique<OverlayState>(base, rules, memoryLimit)) {}

OverlayFileSystem::~OverlayFileSystem() = default;

std::vector<platform::FileChange> OverlayFileSystem::changes() const {
    const std::lock_guard lock(state_->mutex);
    return state_->tree.changes();
}

std::vector<std::string> OverlayFileSystem::removedAtRestart() const {
    const std::lock_guard lock(state_->mutex);
    return removedAtRestart_;
}

int OverlayFileSystem::forgottenReads() const {
    const std::lock_guard lock(state_->mutex);
    return state_->forgottenReads;
}

// Calls `operate` with the place, whose directory is there; a link at the end isn't followed.
template <typename Operate>
int OverlayFileSystem::at(std::string_view path, Operate operate) {
    const std::lock_guard lock(state_->mutex);
    OverlayPlace place;
    const int status = state_->tree.find(path, false, place);
    return status != 0 ? status : operate(place);
}

int OverlayFileSystem::between(std::string_view from, std::string_view to, Look look, Move move) {
    return at(from, [&](const OverlayPlace& source) {
        OverlayPlaces places(*state_);
        OverlayPlace target;
        int status = (places.*look)(source);
        status = status != 0 ? status : state_->tree.find(to, false, target);
        return status != 0 ? status : (places.*move)(source, target);
    });
}

int OverlayFileSystem::wouldRefuseWriting(std::string_view path) {
    return at(path, [&](const OverlayPlace& place) {
        OverlayPlaces places(*state_);
        return place.node == nullptr ? places.mayMake(place) : OverlayRights(*state_).mayWrite(*place.node);
    });
}

int OverlayFileSystem::putLink(std::string_view path, std::string_view text) {
    return at(path, [&](const OverlayPlace& place) { return OverlayPlaces(*state_).putLink(place, text); });
}

int OverlayFileSystem::putUnknownFile(std::string_view path) {
    return at(path, [&](const OverlayPlace& place) { return OverlayPlaces(*state_).putUnknownFile(place); });
}

int OverlayFileSystem::open(std::string_view path, const platform::OpenOptions& options,
                            std::unique_ptr<platform::File>& outFile) {
    using platform::Disposition;
    outFile.reset();
    const std::lock_guard lock(state_->mutex);
    if ((options.access & (platform::kRead | platform::kWrite)) == 0) {
        return state_->refusal(Refusal::kBadAccess);
    }
    const bool onlyNew =
        options.disposition == Disposition::kCreateNew || options.disposition == Disposition::kCreatePrivate;
    OverlayPlace place;
    const int status = state_->tree.find(path, options.followLinks && !onlyNew, place);
    return status != 0 ? status : OverlayPlaces(*state_).open(place, options, outFile);
}

bool OverlayFileSystem::exists(std::string_view path) {
    return kindOf(path) != PathKind::kNothing;
}

PathKind OverlayFileSystem::kindOf(std::string_view path) {
    PathKind kind = PathKind::kNothing;
    at(path, [&](const OverlayPlace& place) {
        kind = place.node == nullptr ? PathKind::kNothing : place.node->kind;
        return 0;
    });
    return kind;
}

bool OverlayFileSystem::isDirectory(std::string_view path) {
    const std::lock_guard lock(state_->mutex);
    OverlayPlace place;
    return state_->tree.find(path, true, place) == 0 && place.node != nullptr && place.node->isDirectory();
}

bool OverlayFileSystem::isOrdinaryDirectory(std::string_view path) {
    bool isOrdinary = false;
    at(path, [&](const OverlayPlace& place) {
        isOrdinary = place.node != nullptr && place.node->isDirectory() &&
                     (!place.node->basePath || state_->base.isOrdinaryDirectory(*place.node->basePath));
        return 0;
    });
    return isOrdinary;
}

std::int64_t OverlayFileSystem::fileSize(std::string_view path) {
    const std::lock_guard lock(state_->mutex);
    OverlayPlace place;
    if (state_->tree.find(path, true, place) != 0 || place.node == nullptr || place.node->isDirectory()) {
        return -1;
    }
    const OverlayNode& node = *place.node;
    return node.content != nullptr ? node.content->size() : state_->base.fileSize(*node.basePath);
}

int OverlayFileSystem::resolveFile(std::string_view path, std::string& outPath) {
    outPath.clear();
    const std::lock_guard lock(state_->mutex);
    OverlayPlace place;
    if (const int status = state_->tree.find(path, true, place); status != 0) {
        return status;
    }
    if (place.node == nullptr || !place.node->isFile()) {
        return state_->refusal(place.node == nullptr       ? Refusal::kMissing
                               : place.node->isDirectory() ? Refusal::kResolvesDirectory
                                                           : Refusal::kDevice);
    }
    const std::string own = state_->tree.pathOf(place);
    if (place.node->basePath == own) {
        return state_->base.resolveFile(own, outPath);
    }
    outPath = own;
    return 0;
}

int OverlayFileSystem::linkTarget(std::string_view path, std::string& outTarget) {
    outTarget.clear();
    return at(path, [&](const OverlayPlace& place) {
        if (place.node == nullptr || !place.node->isLink()) {
            return state_->refusal(place.node == nullptr ? Refusal::kMissing : Refusal::kNoLink);
        }
        return state_->tree.textOfLink(*place.node, outTarget);
    });
}

int OverlayFileSystem::takeDirectoryRights(std::string_view path) {
    return at(path, [&](const OverlayPlace& place) {
        return OverlayRights(*state_).takeDirectoryRights(place.node.get());
    });
}

std::string OverlayFileSystem::rightsOf(std::string_view path) {
    std::string rights;
    at(path, [&](const OverlayPlace& place) {
        rights = place.node == nullptr ? "" : OverlayRights(*state_).of(*place.node);
        return 0;
    });
    return rights;
}

int OverlayFileSystem::removeFile(std::string_view path) {
    return at(path, [&](const OverlayPlace& place) { return OverlayPlaces(*state_).removeFile(place); });
}

int OverlayFileSystem::moveFile(std::string_view from, std::string_view to) {
    return between(from, to, &OverlayPlaces::statusOfMove, &OverlayPlaces::move);
}

int OverlayFileSystem::replaceFile(std::string_view from, std::string_view to) {
    return between(from, to, &OverlayPlaces::statusOfMove, &OverlayPlaces::replace);
}

int OverlayFileSystem::takeFileAway(std::string_view path, std::string_view to) {
    return between(path, to, &OverlayPlaces::statusOfTakingFile, &OverlayPlaces::move);
}

int OverlayFileSystem::takeDirectoryAway(std::string_view path, std::string_view to) {
    return between(path, to, &OverlayPlaces::statusOfTakingDirectory, &OverlayPlaces::moveDirectory);
}

int OverlayFileSystem::createDirectory(std::string_view path) {
    return at(path, [&](const OverlayPlace& place) { return OverlayPlaces(*state_).createDirectory(place); });
}

int OverlayFileSystem::removeDirectory(std::string_view path) {
    return at(path, [&](const OverlayPlace& place) { return OverlayPlaces(*state_).removeDirectory(place); });
}

int OverlayFileSystem::list(std::string_view path, std::vector<platform::DirectoryEntry>& outEntries) {
    outEntries.clear();
    const std::lock_guard lock(state_->mutex);
    OverlayPlace place;
    if (const int status = state_->tree.find(path, true, place); status != 0) {
        return status;
    }
    if (place.node == nullptr || !place.node->isDirectory()) {
        return state_->refusal(place.node == nullptr ? Refusal::kMissingDirectory : Refusal::kNotADirectory);
    }
    return state_->tree.list(place.node, outEntries);
}

int OverlayFileSystem::openDirectory(std::string_view path,
                                     std::unique_ptr<platform::Directory>& outDirectory) {
    outDirectory.reset();
    return at(path, [&](const OverlayPlace& place) {
        if (place.node == nullptr || !place.node->isDirectory()) {
            return state_->refusal(place.node == nullptr ? Refusal::kMissing : Refusal::kOpensNoDirectory);
        }
        outDirectory = std::make_unique<OverlayDirectory>(*state_, place.node);
        return 0;
    });
}

int OverlayFileSystem::makeExecutable(std::string_view path) {
    return at(path, [&](const OverlayPlace& place) {
        return OverlayRights(*state_).makeExecutable(place.node.get());
    });
}

bool OverlayFileSystem::temporaryDirectory(std::string& outPath) {
    return state_->base.temporaryDirectory(outPath);
}

bool OverlayFileSystem::temporaryName(std::string_view prefix, std::uint32_t number, std::string& outPath) {
    return state_->base.temporaryName(prefix, number, outPath);
}

// The base knows the names in their own case, as far as it has them.
std::string OverlayFileSystem::realPathOf(const OverlayPlace& place) {
    const std::string own = state_->tree.pathOf(place);
    std::string real;
    if (place.directory == nullptr ||
        (place.node != nullptr && place.node->basePath == own && state_->base.realPath(own, real) == 0)) {
        return real.empty() ? own : real;
    }
    const OverlayNode::Pointer outer = place.directory->directory.lock();
    return joinedPath(state_->rules, realPathOf({outer, place.directory->name, place.directory}), place.name);
}

int OverlayFileSystem::realPath(std::string_view path, std::string& outPath) {
    outPath.clear();
    const std::lock_guard lock(state_->mutex);
    OverlayPlace place;
    int status = state_->tree.find(path, true, place);
    status = status == 0 && place.node == nullptr ? state_->refusal(Refusal::kMissing) : status;
    if (status == 0 && place.directory == nullptr) {
        return state_->base.realPath(path, outPath);
    }
    outPath = status == 0 ? realPathOf(place) : "";
    return status;
}

// What is new is as well protected as the directory of the base that it is in: it belongs to this user.
bool OverlayFileSystem::isProtected(std::string_view path, platform::Protection protection) {
    const std::lock_guard lock(state_->mutex);
    OverlayPlace place;
    if (state_->tree.find(path, true, place) != 0 || place.node == nullptr) {
        return false;
    }
    for (OverlayNode::Pointer node = place.node; node != nullptr; node = node->directory.lock()) {
        if (node->basePath == state_->tree.pathOf(*node) && node->content == nullptr) {
            return state_->base.isProtected(*node->basePath, protection);
        }
    }
    return false;
}

int OverlayFileSystem::createPrivateDirectory(std::string_view parent, std::string_view prefix,
                                              std::string& outPath) {
    const std::lock_guard lock(state_->mutex);
    outPath.clear();
    std::string path;
    do {
        path = joinedPath(state_->rules, parent, std::string(prefix) + std::to_string(++privateDirectories_));
    } while (exists(path));
    const int status = createDirectory(path);
    outPath = status == 0 ? path : "";
    return status;
}

std::vector<std::string> OverlayFileSystem::otherPrivatePlaces() {
    return state_->base.otherPrivatePlaces();
}

int OverlayFileSystem::findVolume(std::string_view path, platform::Volume& outVolume) {
    const std::lock_guard lock(state_->mutex);
    const int status = state_->base.findVolume(state_->tree.nearestBasePath(path), outVolume);
    if (status == 0) {
        outVolume.free -= std::min(outVolume.free, state_->space.used(outVolume.key));
    }
    return status;
}

int OverlayFileSystem::removeAtRestart(std::string_view path) {
    const std::lock_guard lock(state_->mutex);
    const int status = state_->refusal(Refusal::kAtRestart);
    if (status == 0) {
        removedAtRestart_.emplace_back(path);
    }
    return status;
}

#include "platform/overlay/overlay_directory.h"

#include <utility>

#include "platform/overlay/overlay_places.h"

using platform::Refusal;

OverlayDirectory::OverlayDirectory(OverlayState& state, OverlayNode::Pointer node)
    : state_(state), node_(std::move(node)) {}

int OverlayDirectory::statusOfDirectory() const {
    return node_->isAttached ? 0 : state_.refusal(Refusal::kMissing);
}

template <typename Operate>
int OverlayDirectory::on(std::string_view name, Operate operate) {
    const std::lock_guard lock(state_.mutex);
    if (!state_.rules.isPlainName(name)) {
        return state_.refusal(Refusal::kBadName);
    }
    const int status = statusOfDirectory();
    return status != 0 ? status : operate(state_.tree.placeIn(node_, name));
}

int OverlayDirectory::take(std::string_view name, std::string_view path, Look look, Move move) {
    return on(name, [&](const OverlayPlace& place) {
        OverlayPlaces places(state_);
        OverlayPlace target;
        int status = (places.*look)(place);
        status = status != 0 ? status : state_.tree.find(path, false, target);
        return status != 0 ? status : (places.*move)(place, target);
    });
}

int OverlayDirectory::list(std::vector<platform::DirectoryEntry>& outEntries) {
    const std::lock_guard lock(state_.mutex);
    outEntries.clear();
    const int status = statusOfDirectory();
    return status != 0 ? status : state_.tree.list(node_, outEntries);
}

int OverlayDirectory::listDisk(std::vector<platform::DiskEntry>& outEntries) {
    const std::lock_guard lock(state_.mutex);
    outEntries.clear();
    const int status = statusOfDirectory();
    return status != 0 ? status : state_.tree.listDisk(node_, outEntries);
}

int OverlayDirectory::openDirectory(std::string_view name,
                                    std::unique_ptr<platform::Directory>& outDirectory) {
    outDirectory.reset();
    return on(name, [&](const OverlayPlace& place) {
        if (place.node == nullptr || !place.node->isDirectory()) {
            return state_.refusal(place.node == nullptr ? Refusal::kMissing : Refusal::kOpensNoDirectory);
        }
        outDirectory = std::make_unique<OverlayDirectory>(state_, place.node);
        return 0;
    });
}

int OverlayDirectory::removeFile(std::string_view name) {
    return on(name, [&](const OverlayPlace& place) { return OverlayPlaces(state_).removeFile(place); });
}

int OverlayDirectory::removeDirectory(std::string_view name) {
    return on(name, [&](const OverlayPlace& place) { return OverlayPlaces(state_).removeDirectory(place); });
}

int OverlayDirectory::openFile(std::string_view name, std::unique_ptr<platform::File>& outFile) {
    outFile.reset();
    platform::OpenOptions options;
    options.share = platform::kShareRead | platform::kShareWrite | platform::kShareDelete;
    options.followLinks = false;
    return on(name,
              [&](const OverlayPlace& place) { return OverlayPlaces(state_).open(place, options, outFile); });
}

int OverlayDirectory::takeFileAway(std::string_view name, std::string_view to) {
    return take(name, to, &OverlayPlaces::statusOfTakingFile, &OverlayPlaces::move);
}

int OverlayDirectory::takeDirectoryAway(std::string_view name, std::string_view to) {
    return take(name, to, &OverlayPlaces::statusOfTakingDirectory, &OverlayPlaces::moveDirectory);
}

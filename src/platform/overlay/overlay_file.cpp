#include "platform/overlay/overlay_file.h"

#include <algorithm>
#include <utility>

#include "platform/overlay/overlay_rights.h"

using platform::Origin;
using platform::Refusal;

OverlayFile::OverlayFile(OverlayState& state, OverlayNode::Pointer node, const platform::OpenOptions& options,
                         std::unique_ptr<platform::File> baseFile)
    : state_(state),
      node_(std::move(node)),
      access_(options.access),
      share_(options.share),
      baseFile_(std::move(baseFile)) {}

OverlayFile::~OverlayFile() {
    OverlayFile::close();
}

int OverlayFile::statusOf(std::uint32_t neededAccess) const {
    if (node_ == nullptr) {
        return state_.refusal(Refusal::kClosed);
    }
    return (access_ & neededAccess) == neededAccess ? 0 : state_.refusal(Refusal::kNotOpenFor);
}

OverlayContent& OverlayFile::ownContent() {
    if (node_->content == nullptr) {
        node_->content =
            std::make_shared<OverlayContent>(state_.memory, std::max<std::int64_t>(present(), 0));
    }
    return *node_->content;
}

std::int64_t OverlayFile::present() const {
    return node_->content != nullptr ? node_->content->size() : state_.base.fileSize(*node_->basePath);
}

int OverlayFile::readBase(std::int64_t position, char* buffer, std::uint32_t size, std::uint32_t& outDone) {
    outDone = 0;
    if (baseFile_ == nullptr) {
        platform::OpenOptions options;
        options.share = share_ | platform::kShareRead;
        options.followLinks = false;
        if (const int status = state_.base.open(*node_->basePath, options, baseFile_); status != 0) {
            return status;
        }
        basePosition_ = 0;
    }
    if (position != basePosition_) {
        if (const int status = baseFile_->seek(position, Origin::kStart, basePosition_); status != 0) {
            return status;
        }
    }
    const int status = baseFile_->read(buffer, size, outDone);
    basePosition_ += outDone;
    return status;
}

int OverlayFile::read(void* buffer, std::uint32_t size, std::uint32_t& outDone) {
    const std::lock_guard lock(state_.mutex);
    outDone = 0;
    int status = statusOf(platform::kRead);
    if (status != 0) {
        return status;
    }
    auto* const bytes = static_cast<char*>(buffer);
    if (node_->content == nullptr) {
        status = readBase(position_, bytes, size, outDone);
    } else if (node_->content->isForgotten()) {
        ++state_.forgottenReads;
        status = state_.refusal(Refusal::kNotKept);
    } else {
        status = node_->content->read(
            position_, bytes, size, outDone,
            [this](std::int64_t position, char* part, std::uint32_t length, std::uint32_t& outRead) {
                return readBase(position, part, length, outRead);
            });
    }
    position_ += outDone;
    return status;
}

// How many bytes the file may still grow by; asks the volume when the first file on it does.
std::int64_t OverlayFile::roomFor(std::int64_t end) {
    if (end <= present()) {
        return 0;
    }
    if (node_->space == nullptr) {
        platform::Volume volume;
        const std::string place = state_.tree.nearestBasePath(state_.tree.pathOf(*node_));
        const bool isKnown = state_.base.findVolume(place, volume) == 0;
        node_->space = std::make_shared<SpaceCharge>(state_.space, volume.key, isKnown ? volume.free : -1);
    }
    return std::max<std::int64_t>(node_->space->left(), 0);
}

// What the base's file takes is taken already.
void OverlayFile::account() {
    if (node_->space != nullptr) {
        const std::int64_t before = node_->basePath ? state_.base.fileSize(*node_->basePath) : 0;
        node_->space->setTaken(std::max<std::int64_t>(present() - std::max<std::int64_t>(before, 0), 0));
    }
}

int OverlayFile::write(const void* buffer, std::uint32_t size, std::uint32_t& outDone) {
    const std::lock_guard lock(state_.mutex);
    outDone = 0;
    const int status = statusOf(platform::kWrite);
    if (status != 0 || size == 0) {
        return status;
    }
    const std::int64_t end = position_ + size;
    const std::int64_t growth = std::max<std::int64_t>(end - std::max(present(), position_), 0);
    const std::int64_t missing = std::max<std::int64_t>(growth - roomFor(end), 0);
    outDone = static_cast<std::uint32_t>(size - missing);
    if (outDone > 0) {
        ownContent().write(position_, static_cast<const char*>(buffer), outDone);
        position_ += outDone;
        account();
    }
    return outDone < size ? state_.refusal(Refusal::kDiskFull) : 0;
}

int OverlayFile::seek(std::int64_t distance, Origin origin, std::int64_t& outPosition) {
    const std::lock_guard lock(state_.mutex);
    if (const int status = statusOf(0); status != 0) {
        return status;
    }
    const std::int64_t from = origin == Origin::kStart     ? 0
                              : origin == Origin::kCurrent ? position_
                                                           : present();
    if (from + distance < 0) {
        return state_.refusal(Refusal::kBeforeStart);
    }
    position_ = from + distance;
    outPosition = position_;
    return 0;
}

std::int64_t OverlayFile::size() {
    const std::lock_guard lock(state_.mutex);
    return node_ == nullptr ? -1 : present();
}

int OverlayFile::truncateHere() {
    const std::lock_guard lock(state_.mutex);
    const int status = statusOf(platform::kWrite);
    if (status == 0) {
        ownContent().resize(position_);
        account();
    }
    return status;
}

void OverlayFile::empty() {
    const std::lock_guard lock(state_.mutex);
    ownContent().resize(0);
    account();
}

int OverlayFile::flush() {
    const std::lock_guard lock(state_.mutex);
    return statusOf(0);
}

int OverlayFile::setRights(platform::FileRights rights) {
    const std::lock_guard lock(state_.mutex);
    const int status = statusOf(0);
    if (status == 0) {
        OverlayRights(state_).set(*node_, rights);
    }
    return status;
}

int OverlayFile::takeRightsOf(std::string_view path) {
    const std::lock_guard lock(state_.mutex);
    OverlayPlace source;
    int status = statusOf(0);
    status = status != 0 ? status : state_.tree.find(path, false, source);
    if (status != 0) {
        return status;
    }
    return OverlayRights(state_).take(*node_, source.node.get());
}

int OverlayFile::makeExecutable() {
    const std::lock_guard lock(state_.mutex);
    const int status = statusOf(0);
    if (status == 0) {
        OverlayRights(state_).markAsProgram(*node_);
    }
    return status;
}

int OverlayFile::close() {
    const std::lock_guard lock(state_.mutex);
    if (node_ == nullptr) {
        return 0;
    }
    node_.reset();
    const int status = baseFile_ != nullptr ? baseFile_->close() : 0;
    baseFile_.reset();
    return status;
}

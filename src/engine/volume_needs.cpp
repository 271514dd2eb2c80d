#include "engine/volume_needs.h"

#include <algorithm>

std::int64_t VolumeNeeds::Need::bytes() const {
    return before + std::max<std::int64_t>(after + passing - freed, 0);
}

VolumeNeeds::Need& VolumeNeeds::at(std::string_view directory) {
    const std::size_t index = indexOf(directory);
    return index == kNowhere ? nobodys_ : needs_[index];
}

bool VolumeNeeds::isOneVolume(std::string_view directory, std::string_view other) {
    return indexOf(directory) == indexOf(other);
}

std::size_t VolumeNeeds::indexOf(std::string_view directory) {
    std::string key(directory);
    const auto known = indexes_.find(key);
    if (known != indexes_.end()) {
        return known->second;
    }
    const std::size_t index = find(key);
    indexes_.emplace(std::move(key), index);
    return index;
}

std::size_t VolumeNeeds::find(const std::string& directory) {
    platform::Volume volume;
    if (const int status = files_.findVolume(directory, volume); status != 0) {
        unknown_ = unknown_ ? unknown_ : Unknown{directory, status};
        return kNowhere;
    }
    const auto known =
        std::ranges::find_if(needs_, [&](const Need& need) { return need.volume.key == volume.key; });
    if (known != needs_.end()) {
        return static_cast<std::size_t>(known - needs_.begin());
    }
    needs_.push_back({volume, directory});
    return needs_.size() - 1;
}

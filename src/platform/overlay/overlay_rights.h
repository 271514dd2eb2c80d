#pragma once

#include <string>

#include "platform/overlay/overlay_state.h"

// The rights of an overlay's files, in the texts of platform::FileSystem::rightsOf. For one thread.
class OverlayRights {
public:
    // Borrowed.
    explicit OverlayRights(OverlayState& state) : state_(state) {}

    // Empty where nobody could take them.
    std::string of(const OverlayNode& node) const;
    // 0, or the status with which the machine would refuse to have the file's content changed.
    int mayWrite(const OverlayNode& node) const;
    void set(OverlayNode& node, platform::FileRights rights) const;
    void markAsProgram(OverlayNode& node) const;
    // As the calls of platform::FileSystem and File that have these names; null: nothing is there.
    int makeExecutable(OverlayNode* node) const;
    int takeDirectoryRights(OverlayNode* node) const;
    int take(OverlayNode& node, const OverlayNode* from) const;

private:
    OverlayState& state_;
};

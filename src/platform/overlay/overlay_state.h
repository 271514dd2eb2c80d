#pragma once

#include <mutex>

#include "platform/overlay/content_memory.h"
#include "platform/overlay/overlay_tree.h"
#include "platform/overlay/space_ledger.h"

// What the parts of an overlay of a file system share. Whoever uses the rest of it holds the mutex.
struct OverlayState {
    OverlayState(platform::FileSystem& machine, platform::ChangeRules& machineRules, std::int64_t memoryLimit)
        : base(machine), rules(machineRules), memory(memoryLimit), tree(machine, machineRules) {}

    int refusal(platform::Refusal refusal) const { return rules.statusOf(refusal); }

    std::recursive_mutex mutex;
    platform::FileSystem& base;
    platform::ChangeRules& rules;
    ContentMemory memory;  // before the tree, whose contents use both
    SpaceLedger space;
    OverlayTree tree;
    int forgottenReads = 0;  // of content that was too large to be kept
};

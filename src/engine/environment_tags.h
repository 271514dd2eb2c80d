#pragma once

#include "engine/tag_context.h"

// The groups `Environment`: variables of the system's environment.
class EnvironmentTags {
public:
    explicit EnvironmentTags(TagContext context) : context_(context) {}

    // 0, or 1 when a change, or telling the system about the changes, failed.
    int apply(InstallerUI* ui);

private:
    bool applyChild(std::int32_t node, InstallerUI* ui);

    TagContext context_;
    bool written_ = false;
};

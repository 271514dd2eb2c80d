#pragma once

#include "engine/tag_context.h"

// The groups `ModifyFiles`: lines that are added to text files.
class ModifyFileTags {
public:
    explicit ModifyFileTags(TagContext context) : context_(context) {}

    // 0, or 1 when a change failed.
    int apply(InstallerUI* ui);

private:
    bool applyChild(std::int32_t node, InstallerUI* ui);

    TagContext context_;
};
